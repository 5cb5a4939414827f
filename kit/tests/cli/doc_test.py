"""doc/kit.md and README.md show what zorvela-kit prints; with --update the real output is written into them.

A block behind <!-- run: zorvela-kit ... --> (in README.md <!-- kit: zorvela-kit ... -->) holds the command and what it prints, run from the root of the
checkout with its own tables.
"""
import re
import shlex
import sys
import unittest

import program

DOCUMENT = program.SOURCE / "doc" / "kit.md"
README = program.SOURCE / "README.md"
BLOCK = re.compile(r"<!-- (?:run|kit): (?P<command>zorvela-kit [^\n]+) -->\n```console\n(?P<text>.*?)^```$",
                   re.MULTILINE | re.DOTALL)


def shown(command):
    """The block as it should be."""
    result = program.kit(*shlex.split(command)[1:], cwd=program.SOURCE)
    assert result.returncode == 0, result.stderr
    return "$ " + command + "\n" + result.stderr + result.stdout


class Document(unittest.TestCase):
    maxDiff = None

    def test_output_is_real(self):
        for document in (DOCUMENT, README):
            blocks = list(BLOCK.finditer(document.read_text(encoding="utf-8")))
            self.assertGreater(len(blocks), 0)
            for block in blocks:
                with self.subTest(document=document.name, command=block["command"]):
                    self.assertEqual(block["text"], shown(block["command"]), "to mend: doc_test.py --update")

    def test_names_every_column_reason_and_threshold(self):
        text = DOCUMENT.read_text(encoding="utf-8")
        schema = program.SCHEMA.read_text(encoding="utf-8")
        reasons = re.findall(r'"((?:first|last) residue|too few shifts|written[^"]+|neither[^"]+)"', schema)
        self.assertEqual(len(reasons), 5)
        for name in [*program.COLUMNS, *reasons]:
            self.assertIn("`%s`" % name, text)
        help_text = program.kit("run", "--help").stdout
        for value in re.findall(r"is at (?:least|most) ([0-9.]+[0-9])", help_text):
            self.assertIn(" %s |" % value, text)

    def test_thresholds_of_the_manual_page(self):
        page = (program.SOURCE / "doc" / "zorvela-kit.1").read_text(encoding="utf-8")
        help_text = program.kit("run", "--help").stdout
        least, most = re.search(r"at least ([0-9.]+[0-9]),.*at most ([0-9.]+[0-9]),", help_text).groups()
        self.assertIn(".It cis\nat least %s;\n.It trans\nat most %s;\n" % (least, most), page)

    def test_manual_page_has_every_option(self):
        page = (program.SOURCE / "doc" / "zorvela-kit.1").read_text(encoding="utf-8")
        options = re.findall(r"^ +(?:-h,)?(--[a-z]+)", program.kit("run", "--help").stdout, re.MULTILINE)
        self.assertGreater(len(options), 5)
        for option in options:
            self.assertIn("Fl -" + option.lstrip("-"), page)


def update():
    def renewed(block):
        before = block[0][:block.start("text") - block.start()]
        return before + shown(block["command"]) + "```"
    for document in (DOCUMENT, README):
        document.write_text(BLOCK.sub(renewed, document.read_text(encoding="utf-8")), encoding="utf-8")


if __name__ == "__main__":
    if sys.argv[1:] == ["--update"]:
        update()
    else:
        unittest.main(verbosity=2)

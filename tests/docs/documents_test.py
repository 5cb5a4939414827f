"""Every document holds what the programs print, and its links lead somewhere."""
import re
import unittest

from blocks import DOCUMENTS, blocks_of, masked
from zorvela_tests.program import SOURCE, kit

# The documents that show output, and how many blocks of it at least.
SHOWING = {"README.md": 2, "file-format.md": 3, "run.md": 2, "files.md": 1, "structures.md": 1}


def anchors_of(document):
    headings = re.findall(r"^#+ (.+)$", document.read_text(encoding="utf-8"), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


class Documents(unittest.TestCase):
    maxDiff = None

    def test_output_is_real(self):
        for document in DOCUMENTS:
            _, blocks = blocks_of(document)
            self.assertGreaterEqual(len(blocks), SHOWING.get(document.name, 0), "blocks in " + document.name)
            for block, real in blocks:
                with self.subTest(document=document.name, block=block["what"]):
                    self.assertEqual(masked(block["text"]), masked(real), "to renew: script/check --update")

    def test_there_is_no_other_kind_of_marker(self):
        for document in DOCUMENTS:
            text, blocks = blocks_of(document)
            self.assertEqual(text.count("<!--"), len(blocks), document.name)

    def test_links(self):
        for document in DOCUMENTS:
            for target in re.findall(r"\]\(([^)]+)\)", document.read_text(encoding="utf-8")):
                if re.match(r"\w+:", target):
                    continue
                name, _, anchor = target.partition("#")
                linked = (document.parent / name).resolve() if name else document
                with self.subTest(document=document.name, link=target):
                    self.assertTrue(linked.exists(), "no such file")
                    if anchor:
                        self.assertIn(anchor, anchors_of(linked))


class Readme(unittest.TestCase):
    def test_odds_are_divided_by_19(self):
        text = (SOURCE / "README.md").read_text(encoding="utf-8")
        rows = [re.search(rf"^\| `{name}` \| (.*) \|$", text, re.MULTILINE) for name in ("P_CIS", "P_CIS_NORM")]
        equal, natural = ([float(cell) for cell in row.group(1).split("|")] for row in rows)
        for p, norm in zip(equal, natural):
            odds = p / (1 - p) / 19
            self.assertAlmostEqual(odds / (1 + odds), norm, delta=0.0005)


class Release(unittest.TestCase):
    def test_the_version_is_that_of_the_program(self):
        version = kit("--version").stdout.split()[-1]
        self.assertRegex(version, r"^\d+\.\d+\.\d+$")
        citation = (SOURCE / "CITATION.cff").read_text(encoding="utf-8")
        self.assertIn(f"\nversion: {version}\n", citation)
        changes = (SOURCE / "CHANGELOG.md").read_text(encoding="utf-8")
        self.assertEqual(re.search(r"^## (\d\S*)", changes, re.MULTILINE).group(1), version)

"""The examples of doc/python.md print the output in it. ZORVELA_UPDATE=1 writes the current output."""
import contextlib
import doctest
import os
import pathlib
import unittest

from zorvela_tests import program

DOCUMENT = program.SOURCE / "doc" / "python.md"


class Updater(doctest.DocTestRunner):
    """Remembers what each example printed; an exception stays as it is."""

    def __init__(self):
        super().__init__()
        self.lines = DOCUMENT.read_text(encoding="utf-8").splitlines(keepends=True)
        self.changes = []

    def report_failure(self, out, test, example, got):
        start = example.lineno + example.source.count("\n")
        self.changes.append((start, start + example.want.count("\n"), got))

    def text(self):
        for start, end, got in reversed(self.changes):
            self.lines[start:end] = [got]
        return "".join(self.lines)


@contextlib.contextmanager
def in_examples():
    before = pathlib.Path.cwd()
    os.chdir(program.SOURCE / "examples")
    try:
        yield
    finally:
        os.chdir(before)


class Document(unittest.TestCase):
    def test_examples(self):
        test = doctest.DocTestParser().get_doctest(DOCUMENT.read_text(encoding="utf-8"), {}, DOCUMENT.name, None, 0)
        runner = Updater() if os.environ.get("ZORVELA_UPDATE") else doctest.DocTestRunner()
        with in_examples():
            failed, tried = runner.run(test)
        if isinstance(runner, Updater):
            DOCUMENT.write_text(runner.text(), encoding="utf-8")
            return
        self.assertGreater(tried, 20)
        self.assertEqual(failed, 0, "see above; script/python update writes what is printed")

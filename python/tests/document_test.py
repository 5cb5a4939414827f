"""The examples of doc/python.md print what stands there."""
import doctest
import os
import pathlib
import unittest

from zorvela_tests import program

DOCUMENT = program.SOURCE / "doc" / "python.md"


class Document(unittest.TestCase):
    def test_examples(self):
        before = pathlib.Path.cwd()
        os.chdir(program.SOURCE / "examples")
        try:
            failed, tried = doctest.testfile(str(DOCUMENT), module_relative=False, encoding="utf-8",
                                             optionflags=doctest.NORMALIZE_WHITESPACE)
        finally:
            os.chdir(before)
        self.assertGreater(tried, 20)
        self.assertEqual(failed, 0)


if __name__ == "__main__":
    unittest.main()

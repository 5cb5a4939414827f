"""Tests with a temporary folder."""
import os
import tempfile
import unittest


class InFolder(unittest.TestCase):
    """`folder` is new and empty for each test, and removed after it."""

    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def put(self, name, content):
        """Writes a file, text as UTF-8 with its line ends as they are. Its path."""
        with open(self.path(name), "wb") as file:
            file.write(content.encode() if isinstance(content, str) else content)
        return self.path(name)

    def read(self, name):
        """The text of a file, with its line ends as they are."""
        with open(self.path(name), encoding="utf-8", newline="") as file:
            return file.read()

"""The commands of doc/accuracy.md print what it shows; all of them take minutes."""
import os
import subprocess
import sys
import unittest

from zorvela_tests.program import KIT, SOURCE, data_folder


@unittest.skipIf(os.environ.get("ZORVELA_SANITIZE"), "takes too long with sanitizers")
class AccuracyDocument(unittest.TestCase):
    def check_document(self, *options):
        done = subprocess.run([sys.executable, "-B", SOURCE / "script" / "accuracy-document", *options, KIT],
                              capture_output=True, text=True, check=False,
                              env={**os.environ, "ZORVELA_DATA": str(data_folder())})
        self.assertEqual(("", "", 0), (done.stdout, done.stderr, done.returncode))

    def test_figures(self):
        self.check_document("--quick")

    def test_choices_in_training(self):
        self.check_document()

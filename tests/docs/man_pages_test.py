"""The man pages are clean for mandoc."""
import shutil
import subprocess
import unittest

from zorvela_tests.program import SOURCE

# The other page may not be installed; the section of the sub-command label is no misspelt NAME.
PASSED_OVER = ("referenced manual not found: Xr zorvela", "possible typo in section name: Sh LABEL instead of NAME")


class ManPages(unittest.TestCase):
    @unittest.skipUnless(shutil.which("mandoc"), "mandoc is not installed")
    def test_mandoc_finds_nothing(self):
        for page in sorted((SOURCE / "doc").glob("*.1")):
            done = subprocess.run(["mandoc", "-Tlint", page], capture_output=True, text=True, check=False)
            self.assertEqual(done.stderr, "")
            findings = [line for line in done.stdout.splitlines() if not any(known in line for known in PASSED_OVER)]
            self.assertEqual(findings, [], page.name)

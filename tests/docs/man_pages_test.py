"""The man pages are clean for mandoc, and that of zorvela-kit has the options of the program."""
import re
import shutil
import subprocess
import unittest

import man_page
from zorvela_tests.program import SOURCE

# The other page may not be installed; the section LABEL, of a sub-command, is not a misspelt NAME.
IGNORED = ("referenced manual not found: Xr zorvela", "possible typo in section name: Sh LABEL instead of NAME")


class ManPages(unittest.TestCase):
    maxDiff = None

    @unittest.skipUnless(shutil.which("mandoc"), "mandoc is not installed")
    def test_mandoc_finds_nothing(self):
        for page in sorted((SOURCE / "doc").glob("*.1")):
            done = subprocess.run(["mandoc", "-Tlint", page], capture_output=True, text=True, check=False)
            self.assertEqual(done.stderr, "")
            findings = [line for line in done.stdout.splitlines() if not any(known in line for known in IGNORED)]
            self.assertEqual(findings, [], page.name)

    def test_every_sub_command_has_its_options(self):
        page = man_page.MAN_PAGE.read_text(encoding="utf-8")
        commands = list(dict.fromkeys(row[0] for row in man_page.listed_options()))
        self.assertIn("run", commands)
        self.assertEqual(man_page.REGION.findall(page), commands)
        self.assertEqual([name.lower() for name in re.findall(r'^\.Sh (\w+)\n(?:(?!\.Sh).*\n)*?\.\\" options', page, re.M)],
                         commands)
        self.assertEqual(page, man_page.renewed(), "to renew: script/check --update")

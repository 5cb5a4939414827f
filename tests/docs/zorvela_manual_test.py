"""The man page zorvela(1) has the options that the program accepts, with and without effect."""
import re
import unittest

from blocks import Workplace, masked, run
from zorvela_tests.program import SOURCE

MAN_PAGE = SOURCE / "doc" / "zorvela.1"


class ManPage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        source = (SOURCE / "src" / "settings.cpp").read_text(encoding="utf-8")
        names = re.search(r"argNames = \{([^}]*)\}", source).group(1)
        cls.accepted = re.findall(r'"(\w+)"', names)
        cls.page = MAN_PAGE.read_text(encoding="utf-8")
        workplace = Workplace()
        cls.directory = workplace.__enter__()
        cls.addClassCleanup(workplace.__exit__)

    def section(self, heading):
        after = self.page.split(heading + "\n", 1)[1]
        return re.split(r"^\.S[hs] ", after, maxsplit=1, flags=re.MULTILINE)[0]

    def options_in(self, heading):
        return re.findall(r"^\.It Fl (\w+)", self.section(heading), re.MULTILINE)

    def test_every_accepted_option_once(self):
        documented = re.findall(r"^\.It Fl (\w+)", self.page, re.MULTILINE)
        self.assertEqual(len(self.accepted), 19)
        self.assertEqual(sorted(documented), sorted(self.accepted))

    def predict(self, *options):
        """Standard output, standard error, and the table, of the nuclease example."""
        written = self.directory / "pred.tab"
        written.unlink(missing_ok=True)
        done = run(self.directory, "-in", "examples/nuclease.tab", *options)
        table = written.read_bytes() if written.exists() else None
        return done.returncode, masked(done.stdout.decode()), done.stderr.decode(), table

    def test_options_without_effect(self):
        options = self.options_in(".Ss Options that are accepted without effect")
        self.assertEqual(len(options), 7)
        for option in options:
            self.assertEqual(self.predict("-" + option, "nosuch"), self.predict(), option)

    def test_options_with_effect(self):
        for option in self.options_in(".Ss Options that do something"):
            if option not in ("first", "last", "noclip"):
                self.assertNotEqual(self.predict("-" + option, "nosuch"), self.predict(), option)
        for choice in (["-first", "40"], ["-last", "40"]):
            self.assertNotEqual(self.predict(*choice), self.predict(), choice)

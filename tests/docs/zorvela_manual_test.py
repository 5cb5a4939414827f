"""The man page zorvela(1) has the options that the program accepts, and they do what it says."""
import os
import re
import subprocess
import unittest

from blocks import Workplace, masked, run
from zorvela_tests.program import SOURCE, ZORVELA

MAN_PAGE = SOURCE / "doc" / "zorvela.1"


class ManPage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        source = (SOURCE / "src" / "settings.cpp").read_text(encoding="utf-8")
        names = re.search(r"argNames = \{([^}]*)\}", source).group(1)
        cls.accepted = re.findall(r'"(\w+)"', names)
        cls.page = MAN_PAGE.read_text(encoding="utf-8")
        cls.workplace = Workplace()
        cls.directory = cls.workplace.__enter__()
        cls.addClassCleanup(cls.workplace.__exit__)

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

    def test_noclip_shows_on_an_extreme_shift(self):
        text = (SOURCE / "examples" / "nuclease.tab").read_text(encoding="utf-8")
        extreme = re.sub(r"(116 K +CB) +\S+", r"\1 60.000", text)
        self.assertNotEqual(extreme, text)
        (self.directory / "extreme.tab").write_text(extreme, encoding="utf-8")
        tables = []
        for flags in ([], ["-noclip"], ["-noclip", "-clip"]):
            run(self.directory, "-in", "extreme.tab", *flags)
            tables.append((self.directory / "pred.tab").read_bytes())
        self.assertNotEqual(tables[0], tables[1])
        self.assertEqual(tables[1], tables[2])

    def test_rejected_names(self):
        for arguments, name in (
            (["-limits", "x"], "limits"),
            (["-first", "-5"], "5"),
            (["--in", "x"], "-in"),
            (["-IN", "x"], "IN"),
            (["x"], ""),
        ):
            done = run(self.directory, *arguments)
            self.assertEqual(
                (done.returncode, done.stdout, done.stderr.decode()), (0, b"", f" Invaid arg name -{name}\n"))

    def test_usage_shows_limits(self):
        self.assertIn(b"\n -limits ", run(self.directory, "-help").stderr)

    def test_sum_and_out(self):
        run(self.directory, "-in", "examples/nuclease.tab", "-out", "b.tab", "-sum", "a.tab")
        self.assertTrue((self.directory / "b.tab").exists())
        self.assertFalse((self.directory / "a.tab").exists())
        run(self.directory, "-in", "examples/nuclease.tab", "-sum")
        self.assertTrue((self.directory / "sum").exists())

    def test_empty_table_is_no_correction(self):
        status, output, errors, table = self.predict("-adj", "/dev/null", "-prev", "/dev/null", "-next", "/dev/null")
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(output.count("from /dev/null\n"), 3)
        self.assertNotEqual(table, self.predict()[3])
        self.assertEqual(self.predict("-adj", "None")[2], "\tCan't open file None for reading\n")

    def test_exit_statuses(self):
        self.assertEqual(self.predict("-check")[0], 255)
        self.assertEqual(run(self.directory, "-in", "nosuch.tab").returncode, 0)
        status, _, errors, _ = self.predict("-sum", "nosuch/pred.tab")
        self.assertEqual((status, errors), (0, "\tCan't save file nosuch/pred.tab\n"))

    def test_check_report_gives_ca_and_cb_the_same_offset(self):
        report = self.predict("-check")[1]
        offsets = dict(re.findall(r"Estimated (\S+) shift referencing offset +(\S+) ppm", report))
        self.assertEqual(list(offsets), ["CA", "CB", "HA", "C'"])
        self.assertAlmostEqual(float(offsets["CA"]), float(offsets["CB"]), delta=0.002)

    def test_main_directory_without_a_slash_is_ignored(self):
        program = os.path.abspath(ZORVELA)
        (self.directory / "main").mkdir()
        (self.directory / "main" / "tab").symlink_to(SOURCE / "tab")
        for value, table in (("main", ".tabrandcoil.tab"), ("./main", "./main/tab/randcoil.tab")):
            done = subprocess.run(
                [program, "-in", "examples/nuclease.tab"],
                cwd=self.directory, env={**os.environ, "ZORVELA_DIR": value}, capture_output=True, check=False)
            self.assertEqual(
                done.stdout.decode().splitlines()[0], "Reading Random Coil Shifts from " + table)

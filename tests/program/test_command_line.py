"""Options: which names are taken, what each does, and every way in which a command line ends the run early."""

import os

from reference import OPTION_NAMES, USAGE
from support import (TABLE_HEAD, TABLE_NAMES, ProgramTest, answer, coil_shifts, finished, progress, protein,
                     statistics_table, table)

SEQUENCE = "APGAPGAPG"


class CommandLine(ProgramTest):
    """A protein of nine residues that has prolines 2, 5 and 8."""

    def setUp(self):
        super().setUp()
        self.write_tables()
        self.write("in.tab", protein(SEQUENCE + "A", coil_shifts(SEQUENCE + "A")))

    def expect_run(self, arguments, numbers=(2, 5, 8), **changes):
        self.expect_answers(*map(answer, numbers), arguments=arguments, **changes)

    def expect_unreadable(self, name, *arguments, count=0):
        """The run ends at a file that is not there, after `count` progress lines."""
        lines = progress().splitlines(keepends=True)[:count]
        self.expect(arguments, "".join(lines), "\tCan't open file " + name + " for reading\n")


class Usage(CommandLine):
    def test_usage(self):
        for arguments in ([], ["-help"], ["-help", "no"], ["-in", "in.tab", "-help"], ["-help", "-in", "in.tab"]):
            with self.subTest(arguments=arguments):
                self.expect(arguments, "", USAGE)

    def test_help_with_an_empty_value_is_not_given(self):
        self.expect_run(["-help", "", "-in", "in.tab"])

    def test_the_credit_follows_the_version(self):
        raw = self.run_program("-help", environment={"LC_ALL": "C"})
        self.assertIn("\nVersion 1.01 (build 2009.1102.12)<credit>\n", raw.stderr)


class UnknownNames(CommandLine):
    def test_the_first_name_that_is_not_known_is_told(self):
        for arguments, name in (
                # Names that the settings know but the command line does not.
                *((["-" + name, "in.tab"], name) for name in ("ref", "pdb", "count", "rc", "limits", "ZORVELADir")),
                *((["-" + name, "in.tab"], name) for name in ("IN", "In", "Help", "NOCLIP", "tabdir", "bogus")),
                # The beginning of a name is not a name.
                *((["-" + name], name) for name in ("i", "inn", "firs", "noclips", "h", "n" * 100000)),
                (["--in", "in.tab"], "-in"), (["--help"], "-help"), (["---in", "in.tab"], "--in"),
                (["-in=in.tab"], "in=in.tab"),
                (["-in\tin.tab"], "in\tin.tab"), (["-in\nx"], "in\nx"),
                # Text before the first minus sign is a piece without a name.
                (["x", "-in", "in.tab"], ""), (["in.tab"], ""), ([""], ""), (["", "-in", "in.tab"], ""), (["   "], ""),
                (["-", "in", "in.tab"], ""), (["- in"], ""),
                # A blank and a minus sign begin the next name.
                (["-in", "in.tab", "-first", "-5"], "5"), (["-in", "a -b.tab"], "b.tab"),
                (["-in", "in.tab", "-one", "-two"], "one"),
                # Nothing is applied before all names are known.
                (["-help", "-bogus"], "bogus"), (["-in", "nowhere.tab", "-check", "-bogus"], "bogus")):
            with self.subTest(arguments=[text[:30] for text in arguments]):
                self.expect(arguments, "", " Invaid arg name -" + name + "\n")


class Values(CommandLine):
    def test_without_a_file_name(self):
        for arguments in (["-noclip"], ["-"], ["-in", ""], ["-in", "in.tab", "-in", ""]):
            with self.subTest(arguments=arguments):
                self.expect_unreadable("", *arguments)

    def test_in_without_a_value_is_a_file_of_that_name(self):
        self.expect_unreadable("in", "-in")
        self.write("in", self.read("in.tab"))
        self.expect_run(["-in"], name="in")

    def test_white_space_in_a_value_becomes_one_blank(self):
        self.write("my file.tab", self.read("in.tab"))
        for value in (["my file.tab"], ["my", "file.tab"], ["  my \t\n  file.tab  "]):
            with self.subTest(value=value):
                self.expect_run(["-in", *value], name="my file.tab")

    def test_name_and_value_in_one_argument(self):
        self.expect_run(["-in in.tab -last 5"], numbers=(2, 5))

    def test_a_minus_sign_inside_a_value(self):
        self.write("in-1.tab", self.read("in.tab"))
        self.expect_run(["-in", "in-1.tab"], name="in-1.tab")

    def test_an_option_given_twice_has_its_last_value(self):
        self.expect_run(["-in", "nowhere.tab", "-in", "in.tab"])
        self.expect_unreadable("nowhere.tab", "-in", "in.tab", "-in", "nowhere.tab")
        self.expect_run(["-in", "in.tab", "-last", "2", "-last", ""])

    def test_a_very_long_value(self):
        self.expect_unreadable("x" * 5000, "-in", "x" * 5000)

    def test_a_name_that_is_not_ascii(self):
        self.write("Prolin-\xe9.tab", self.read("in.tab"))
        self.expect_run(["-in", "Prolin-\xe9.tab"], name="Prolin-\xe9.tab".encode("utf-8").decode("latin-1"))


class Output(CommandLine):
    def test_name_of_the_table(self):
        self.write("results/here", "")
        for options, out in ((["-sum", "mine.tab"], "mine.tab"), (["-out", "mine.tab"], "mine.tab"),
                             (["-out", "mine.tab", "-sum", "other.tab"], "mine.tab"),
                             (["-sum", "other.tab", "-out", "mine.tab"], "mine.tab"),
                             (["-sum", "mine.tab", "-out", ""], "mine.tab"), (["-sum"], "sum"),
                             (["-sum", ""], "pred.tab"), (["-sum", "my", "results"], "my results"),
                             (["-sum", "results/a.b.tab"], "results/a.b.tab"),
                             (["-out", "in.tab"], "in.tab")):
            with self.subTest(options=options):
                self.expect_run(["-in", "in.tab", *options], out=out)

    def test_a_file_that_is_there_is_replaced(self):
        self.write("pred.tab", "something longer than the new table\n" * 1000)
        self.expect_run(["-in", "in.tab"])


class Range(CommandLine):
    def test_residues_of_the_range(self):
        every = (2, 5, 8)
        for options, numbers in (
                (["-first", "3"], (5, 8)), (["-last", "7"], (2, 5)), (["-first", "5", "-last", "5"], (5,)),
                (["-first", "6", "-last", "2"], (2, 5)), (["-first", "3", "-last", "4"], ()),
                # 0 and text are 0: from the first residue on, or up to it.
                *((["-first", value], every) for value in ("0", "x", "first", "+0")), (["-first"], every),
                *((["-last", value], ()) for value in ("0", "x", "0x9")),
                # Numbers are decimal, and text after them is ignored.
                (["-first", "3x", "-last", "5.9"], (5,)), (["-first", "003"], (5, 8)), (["-last", "7e2"], (2, 5)),
                (["-first", "+3"], (5, 8)),
                (["-last", "2147483647"], every), (["-first", "2147483647"], ())):
            with self.subTest(options=options):
                self.expect_run(["-in", "in.tab", *options], numbers=numbers)

    def test_numbers_beyond_32_and_64_bits_do_no_harm(self):
        for value in ("2147483648", "4294967297", "9999999999999999999999"):
            with self.subTest(value):
                self.expect_reference("-in", "in.tab", "-first", value)
                self.expect_reference("-in", "in.tab", "-last", value)

    def test_a_range_beside_the_shifts_is_moved_to_them(self):
        # Shifts from 5 on; -last 3 becomes 5, so that proline 5 is the one residue that is left.
        rows = coil_shifts(SEQUENCE + "A")
        self.write("part.tab", protein(SEQUENCE + "A", [row for row in rows if row[0] >= 5]))
        self.expect_answers(answer(5, counts=(0, 5, 5)), arguments=["-in", "part.tab", "-last", "3"], name="part.tab")
        # Shifts up to 5; -first 9 becomes 6, which is not a proline. Proline 5 would have passed.
        self.write("part.tab", protein(SEQUENCE + "A", [row for row in rows if row[0] <= 5]))
        self.expect_answers(arguments=["-in", "part.tab", "-first", "9"], name="part.tab")
        self.expect_answers(answer(2), answer(5, counts=(6, 5, 0)), arguments=["-in", "part.tab"], name="part.tab")


class Clipping(CommandLine):
    """Proline 2 of APGA has CA 20 ppm above its coil value, where the limit is 10; only CA tells cis from trans."""

    def setUp(self):
        super().setUp()
        # Means 5 and 15, deviations 5: at 10 both are one deviation away, at 20 cis is three away and trans one:
        # P_CIS = 1 / (1 + exp(4)) = 0.018, P_CIS_NORM = P / (P + 19 (1 - P)) = 0.001.
        self.write("tab/Pro.cs.tab", statistics_table({9: (5, 5, 15, 5)}))
        self.write("in.tab", protein("APGA", coil_shifts("APGA", {(2, "CA"): 20.0})))

    def test_noclip_alone_leaves_shifts_as_they_are(self):
        for pair, *every in ((("0.500", "0.050"), [], ["-clip"], ["-clip", "no"], ["-nodetail"]),
                             (("0.018", "0.001"), ["-noclip"], ["-noclip", "-clip"],
                              *(["-noclip", value] for value in ("0", "no", "false", "")))):
            for options in every:
                with self.subTest(options=options):
                    self.expect_answers(answer(pair=pair), arguments=["-in", "in.tab", *options])


class OptionsWithoutEffect(CommandLine):
    def test_each(self):
        for options in (["-zorvelaDir", "/nowhere"], ["-predDir", "nowhere"], ["-rand", "nowhere.tab"],
                        ["-clip"], ["-nodetail"], ["-tpct", "0"], ["-tpct", "x"], ["-dbpct", "1e400"],
                        ["-dbpct", "nan"], ["-dbpct"], ["-tpct", "50"]):
            with self.subTest(options):
                self.expect_run(["-in", "in.tab", *options])

    def test_every_name_is_taken(self):
        values = {"in": "in.tab", "tabDir": "./tab", "adj": "tab/rcadj.tab", "prev": "tab/rcprev.tab",
                  "next": "tab/rcnext.tab", "first": "1", "last": "9999", "out": "pred.tab", "help": "", "check": None,
                  "noclip": None}
        arguments = [text for name in OPTION_NAMES if values.get(name, "") is not None
                     for text in ("-" + name, values.get(name, "x"))]
        self.assertEqual(len(arguments), 2 * 17)
        lines, rows = ("".join(texts) for texts in zip(*map(answer, (2, 5, 8))))
        self.expect(arguments, finished("in.tab", lines).replace("./tab/rc", "tab/rc"),
                    written={"pred.tab": TABLE_HEAD + rows})


class TableOptions(CommandLine):
    def test_tabDir(self):
        self.write_tables(place="other/")
        self.write_tables({"randcoil.tab": "not read\n"})
        self.expect_run(["-in", "in.tab", "-tabDir", "other"], directory="other/")

    def test_tabDir_with_a_separator_gets_another_one(self):
        self.expect_run(["-in", "in.tab", "-tabDir", "tab/"], directory="tab//")

    def test_tabDir_that_is_not_there(self):
        self.expect(["-in", "in.tab", "-tabDir", "nowhere"],
                    "Reading Random Coil Shifts from nowhere/randcoil.tab\n",
                    "\tCan't open file nowhere/randcoil.tab for reading\n")

    def test_empty_tabDir_is_the_default(self):
        self.expect_run(["-in", "in.tab", "-tabDir", ""])

    def test_a_correction_table_of_its_own(self):
        """A correction of -1 to the CA of one residue type, from a table given by an option.

        Only the CA of the proline tells: cis 1 +- 1, trans 0 +- 1. The correction makes its secondary shift 1:
        P_CIS = 1 / (1 + exp(-1/2)) = 0.622, P_CIS_NORM = 0.622 / (0.622 + 19 * 0.378) = 0.080.
        """
        self.write("tab/Pro.cs.tab", statistics_table({9: (1, 1, 0, 1)}))
        self.write("in.tab", protein("APGA", coil_shifts("APGA")))
        for option, name in (("adj", "P"), ("prev", "A"), ("next", "G")):
            with self.subTest(option):
                self.write("mine.tab", table("RESNAME CA", "%s %8.3f", [[name, -1]]))
                line, row = answer(pair=("0.622", "0.080"))
                self.expect(["-in", "in.tab", "-" + option, "mine.tab"],
                            finished("in.tab", line).replace("./tab/rc" + option + ".tab\n", "mine.tab\n"),
                            written={"pred.tab": TABLE_HEAD + row})

    def test_None_is_a_file_name_like_any_other(self):
        for option in ("adj", "prev", "next"):
            with self.subTest(option):
                before = progress().split("./tab/rc" + option + ".tab")[0]
                self.expect(["-in", "in.tab", "-" + option, "None"], before + "None\n",
                            "\tCan't open file None for reading\n")


class EarlyEnds(CommandLine):
    def test_a_missing_file_or_a_bad_format(self):
        bad = "VARS RESNAME CA\nFORMAT %s %8.3e  \nA 1.0\n"
        for count, name in enumerate(("in.tab", *("./tab/" + table for table in TABLE_NAMES))):
            lines = "".join(progress().splitlines(keepends=True)[:count])
            kept = self.read(name)
            os.remove(self.path(name))
            with self.subTest(name):
                self.expect(["-in", "in.tab"], lines, "\tCan't open file " + name + " for reading\n")
                self.write(name, bad)
                self.expect(["-in", "in.tab"], lines, "\tBad format syntax '%8.3e  '\n")
            self.write(name, kept)

"""Options: which names are taken, what each does, and every way in which a command line ends the run early."""

import os

from reference import OPTION_NAMES, TIME_LINE, USAGE
from support import (LISTING_HEAD, NAN, TABLE_HEAD, ProgramTest, coil_shifts, finished, progress, protein,
                     statistics_table, table)

SEQUENCE = "APGAPGAPG"
# Prolines 2, 5 and 8 with every shift at its coil value and no CG: the evidence is even, so P_CIS is 1/2 and
# P_CIS_NORM 1 / (1 + 19). Glycine has no CB, proline no HN.
LINES = {2: "   A1   P2   G3   0.500  0.050 \n", 5: "   A4   P5   G6   0.500  0.050 \n",
         8: "   A7   P8   G9   0.500  0.050 \n"}
ROWS = {2: " 2 A P G  6  5  5 9999.000    0.500    0.050 \n", 5: " 5 A P G  6  5  5 9999.000    0.500    0.050 \n",
        8: " 8 A P G  6  5  5 9999.000    0.500    0.050 \n"}


class CommandLine(ProgramTest):
    """A protein of nine residues that has prolines 2, 5 and 8."""

    def setUp(self):
        super().setUp()
        self.write_tables()
        self.write("in.tab", protein(SEQUENCE + "A", coil_shifts(SEQUENCE + "A")))

    def expect_run(self, arguments, numbers=(2, 5, 8), out="pred.tab", name="in.tab", directory="./tab/"):
        self.expect(arguments, finished(name, "".join(LINES[number] for number in numbers), directory),
                    written={out: TABLE_HEAD + "".join(ROWS[number] for number in numbers)})

    def expect_unknown(self, name, *arguments):
        self.expect(arguments, "", " Invaid arg name -" + name + "\n")

    def expect_unreadable(self, name, *arguments, count=0):
        """The run ends at a file that is not there, after `count` progress lines."""
        lines = progress().splitlines(keepends=True)[:count]
        self.expect(arguments, "".join(lines), "\tCan't open file " + name + " for reading\n")


class Usage(CommandLine):
    def test_no_arguments(self):
        self.expect([], "", USAGE)

    def test_help(self):
        self.expect(["-help"], "", USAGE)

    def test_help_with_a_value(self):
        self.expect(["-help", "no"], "", USAGE)

    def test_help_before_and_behind_other_options(self):
        self.expect(["-in", "in.tab", "-help"], "", USAGE)
        self.expect(["-help", "-in", "in.tab"], "", USAGE)

    def test_help_with_an_empty_value_is_not_given(self):
        self.expect_run(["-help", "", "-in", "in.tab"])

    def test_the_credit_stands_behind_the_version(self):
        raw = self.run_program("-help", environment={"LC_ALL": "C"})
        self.assertIn("\nVersion 1.01 (build 2009.1102.12)<credit>\n", raw.stderr)


class UnknownNames(CommandLine):
    def test_names_that_the_settings_know_but_the_command_line_does_not(self):
        for name in ("ref", "pdb", "count", "rc", "limits", "ZORVELADir"):
            with self.subTest(name):
                self.expect_unknown(name, "-" + name, "in.tab")

    def test_a_name_that_nobody_knows(self):
        self.expect_unknown("bogus", "-bogus")

    def test_names_are_case_sensitive(self):
        for name in ("IN", "In", "Help", "NOCLIP", "tabdir"):
            with self.subTest(name):
                self.expect_unknown(name, "-" + name, "in.tab")

    def test_a_name_is_not_taken_for_its_beginning(self):
        for name in ("i", "inn", "firs", "noclips", "h"):
            with self.subTest(name):
                self.expect_unknown(name, "-" + name)

    def test_two_minus_signs(self):
        self.expect_unknown("-in", "--in", "in.tab")
        self.expect_unknown("-help", "--help")

    def test_three_minus_signs(self):
        self.expect_unknown("--in", "---in", "in.tab")

    def test_a_value_behind_an_equals_sign(self):
        self.expect_unknown("in=in.tab", "-in=in.tab")

    def test_a_first_argument_without_a_minus_sign(self):
        self.expect_unknown("", "x", "-in", "in.tab")

    def test_a_file_name_alone(self):
        self.expect_unknown("", "in.tab")

    def test_an_empty_first_argument(self):
        self.expect_unknown("", "")
        self.expect_unknown("", "", "-in", "in.tab")

    def test_blanks_alone(self):
        self.expect_unknown("", "   ")

    def test_a_minus_sign_and_a_blank(self):
        self.expect_unknown("", "-", "in", "in.tab")
        self.expect_unknown("", "- in")

    def test_a_negative_number_is_cut_off(self):
        self.expect_unknown("5", "-in", "in.tab", "-first", "-5")

    def test_a_value_with_a_blank_and_a_minus_sign_is_cut(self):
        self.expect_unknown("b.tab", "-in", "a -b.tab")

    def test_a_tab_does_not_end_a_name(self):
        self.expect_unknown("in\tin.tab", "-in\tin.tab")

    def test_a_line_feed_in_a_name(self):
        self.expect_unknown("in\nx", "-in\nx")

    def test_the_first_unknown_name_is_told(self):
        self.expect_unknown("one", "-in", "in.tab", "-one", "-two")

    def test_nothing_is_applied_before_all_names_are_known(self):
        self.expect_unknown("bogus", "-help", "-bogus")
        self.expect_unknown("bogus", "-in", "nowhere.tab", "-check", "-bogus")

    def test_a_very_long_name(self):
        self.expect_unknown("n" * 100000, "-" + "n" * 100000)


class Values(CommandLine):
    def test_in(self):
        self.expect_run(["-in", "in.tab"])

    def test_without_in(self):
        self.expect_unreadable("", "-noclip")

    def test_a_minus_sign_alone_gives_no_option_at_all(self):
        self.expect_unreadable("", "-")

    def test_empty_in_is_not_given(self):
        self.expect_unreadable("", "-in", "")

    def test_in_without_a_value_is_a_file_of_that_name(self):
        self.expect_unreadable("in", "-in")
        self.write("in", self.read("in.tab"))
        self.expect_run(["-in"], name="in")

    def test_a_value_with_a_blank(self):
        self.write("my file.tab", self.read("in.tab"))
        self.expect_run(["-in", "my file.tab"], name="my file.tab")

    def test_a_value_in_two_arguments(self):
        self.write("my file.tab", self.read("in.tab"))
        self.expect_run(["-in", "my", "file.tab"], name="my file.tab")

    def test_white_space_in_a_value_becomes_one_blank(self):
        self.write("my file.tab", self.read("in.tab"))
        self.expect_run(["-in", "  my \t\n  file.tab  "], name="my file.tab")

    def test_name_and_value_in_one_argument(self):
        self.expect_run(["-in in.tab -last 5"], numbers=(2, 5))

    def test_a_minus_sign_inside_a_value(self):
        self.write("in-1.tab", self.read("in.tab"))
        self.expect_run(["-in", "in-1.tab"], name="in-1.tab")

    def test_an_option_given_twice_has_its_last_value(self):
        self.expect_run(["-in", "nowhere.tab", "-in", "in.tab"])
        self.expect_unreadable("nowhere.tab", "-in", "in.tab", "-in", "nowhere.tab")

    def test_an_option_given_twice_and_empty_the_second_time_is_not_given(self):
        self.expect_unreadable("", "-in", "in.tab", "-in", "")
        self.expect_run(["-in", "in.tab", "-last", "2", "-last", ""])

    def test_a_very_long_value(self):
        name = "x" * 5000
        self.expect_unreadable(name, "-in", name)

    def test_a_name_that_is_no_ascii(self):
        self.write("Prolin-\xe9.tab".encode("utf-8").decode("utf-8"), self.read("in.tab"))
        self.expect_run(["-in", "Prolin-\xe9.tab"], name="Prolin-\xe9.tab".encode("utf-8").decode("latin-1"))


class Output(CommandLine):
    def test_sum(self):
        self.expect_run(["-in", "in.tab", "-sum", "mine.tab"], out="mine.tab")

    def test_out(self):
        self.expect_run(["-in", "in.tab", "-out", "mine.tab"], out="mine.tab")

    def test_out_wins_over_sum(self):
        self.expect_run(["-in", "in.tab", "-out", "mine.tab", "-sum", "other.tab"], out="mine.tab")
        self.expect_run(["-in", "in.tab", "-sum", "other.tab", "-out", "mine.tab"], out="mine.tab")

    def test_an_empty_out_leaves_sum(self):
        self.expect_run(["-in", "in.tab", "-sum", "mine.tab", "-out", ""], out="mine.tab")

    def test_sum_without_a_value(self):
        self.expect_run(["-in", "in.tab", "-sum"], out="sum")

    def test_empty_sum_is_the_default(self):
        self.expect_run(["-in", "in.tab", "-sum", ""])

    def test_a_name_with_blanks_and_no_ending(self):
        self.expect_run(["-in", "in.tab", "-sum", "my", "results"], out="my results")

    def test_another_folder(self):
        self.write("results/here", "")
        self.expect_run(["-in", "in.tab", "-sum", "results/a.b.tab"], out="results/a.b.tab")

    def test_a_file_that_is_there_is_replaced(self):
        self.write("pred.tab", "something longer than the new table\n" * 1000)
        self.expect_run(["-in", "in.tab"])

    def test_the_input_itself_can_be_replaced(self):
        self.expect_run(["-in", "in.tab", "-out", "in.tab"], out="in.tab")


class Range(CommandLine):
    def test_first(self):
        self.expect_run(["-in", "in.tab", "-first", "3"], numbers=(5, 8))

    def test_last(self):
        self.expect_run(["-in", "in.tab", "-last", "7"], numbers=(2, 5))

    def test_both_ends_are_included(self):
        self.expect_run(["-in", "in.tab", "-first", "5", "-last", "5"], numbers=(5,))

    def test_a_range_that_runs_backwards_is_swapped(self):
        self.expect_run(["-in", "in.tab", "-first", "6", "-last", "2"], numbers=(2, 5))

    def test_a_range_without_a_proline(self):
        self.expect_run(["-in", "in.tab", "-first", "3", "-last", "4"], numbers=())

    def test_zero_and_text_mean_zero_and_start_at_the_first_residue(self):
        for value in ("0", "x", "first", "+0"):
            with self.subTest(value):
                self.expect_run(["-in", "in.tab", "-first", value])

    def test_last_zero_and_text_leave_the_first_residue_alone(self):
        for value in ("0", "x"):
            with self.subTest(value):
                self.expect_run(["-in", "in.tab", "-last", value], numbers=())

    def test_first_without_a_value(self):
        self.expect_run(["-in", "in.tab", "-first"])

    def test_text_behind_the_number_is_ignored(self):
        self.expect_run(["-in", "in.tab", "-first", "3x", "-last", "5.9"], numbers=(5,))

    def test_numbers_are_decimal(self):
        self.expect_run(["-in", "in.tab", "-first", "003"], numbers=(5, 8))
        self.expect_run(["-in", "in.tab", "-last", "0x9"], numbers=())
        self.expect_run(["-in", "in.tab", "-last", "7e2"], numbers=(2, 5))

    def test_a_plus_sign(self):
        self.expect_run(["-in", "in.tab", "-first", "+3"], numbers=(5, 8))

    def test_ends_beyond_the_protein_are_brought_in(self):
        self.expect_run(["-in", "in.tab", "-last", "2147483647"])
        self.expect_run(["-in", "in.tab", "-first", "2147483647"], numbers=())

    def test_numbers_beyond_32_and_64_bits_do_no_harm(self):
        for value in ("2147483648", "4294967297", "9999999999999999999999"):
            with self.subTest(value):
                self.expect_reference("-in", "in.tab", "-first", value)
                self.expect_reference("-in", "in.tab", "-last", value)

    def test_a_range_before_the_first_shift_is_moved_to_it(self):
        # Shifts from 5 on; -last 3 becomes 5, so that proline 5 is the one residue that is left.
        self.write("part.tab", protein(SEQUENCE + "A", [row for row in coil_shifts(SEQUENCE + "A") if row[0] >= 5]))
        self.expect(["-in", "part.tab", "-last", "3"], finished("part.tab", LINES[5]), written={
            "pred.tab": TABLE_HEAD + " 5 A P G  0  5  5 9999.000    0.500    0.050 \n"})

    def test_a_range_behind_the_last_shift_is_moved_to_the_residue_after_it(self):
        # Shifts up to 5; -first 9 becomes 6, which is no proline. Proline 5 would have passed.
        rows = [row for row in coil_shifts(SEQUENCE + "A") if row[0] <= 5]
        self.write("part.tab", protein(SEQUENCE + "A", rows))
        self.expect(["-in", "part.tab", "-first", "9"], finished("part.tab"), written={"pred.tab": TABLE_HEAD})
        self.expect(["-in", "part.tab"], finished("part.tab", LINES[2] + LINES[5]), written={
            "pred.tab": TABLE_HEAD + ROWS[2] + " 5 A P G  6  5  0 9999.000    0.500    0.050 \n"})

    def test_prolines_beside_residues_without_shifts(self):
        # Shifts for 4 to 7 only: proline 8 lacks two of its three residues. With 9 as well it lacks only its own.
        rows = coil_shifts(SEQUENCE + "A")
        self.write("part.tab", protein(SEQUENCE + "A", [row for row in rows if 4 <= row[0] <= 7]))
        self.expect_run(["-in", "part.tab"], numbers=(5,), name="part.tab")
        self.write("part.tab", protein(SEQUENCE + "A", [row for row in rows if row[0] in (4, 5, 6, 7, 9)]))
        self.expect(["-in", "part.tab"], finished("part.tab", LINES[5] + LINES[8]), written={
            "pred.tab": TABLE_HEAD + ROWS[5] + " 8 A P G  6  0  5 9999.000    0.500    0.050 \n"})


class Clipping(CommandLine):
    """Proline 2 of APGA has CA 20 ppm above its coil value, where the limit is 10; only CA tells cis from trans."""

    def setUp(self):
        super().setUp()
        # Means 5 and 15, deviations 5: at 10 both are one deviation away, at 20 cis is three away and trans one:
        # P_CIS = 1 / (1 + exp(4)) = 0.018, P_CIS_NORM = P / (P + 19 (1 - P)) = 0.001.
        self.write("tab/Pro.cs.tab", statistics_table({9: (5, 5, 15, 5)}))
        self.write("in.tab", protein("APGA", coil_shifts("APGA", {(2, "CA"): 20.0})))

    def expect_clipped(self, *options):
        self.expect(["-in", "in.tab", *options], finished("in.tab", "   A1   P2   G3   0.500  0.050 \n"),
                    written={"pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000    0.500    0.050 \n"})

    def expect_unclipped(self, *options):
        self.expect(["-in", "in.tab", *options], finished("in.tab", "   A1   P2   G3   0.018  0.001 \n"),
                    written={"pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000    0.018    0.001 \n"})

    def test_shifts_are_clipped(self):
        self.expect_clipped()

    def test_clip_changes_nothing(self):
        self.expect_clipped("-clip")
        self.expect_clipped("-clip", "no")

    def test_noclip(self):
        self.expect_unclipped("-noclip")

    def test_noclip_with_any_value(self):
        for value in ("0", "no", "false", ""):
            with self.subTest(value):
                self.expect_unclipped("-noclip", value)

    def test_clip_does_not_undo_noclip(self):
        self.expect_unclipped("-noclip", "-clip")

    def test_nodetail_changes_nothing(self):
        self.expect_clipped("-nodetail")
        self.expect_unclipped("-nodetail", "no", "-noclip")


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
        self.expect(arguments, "Reading Random Coil Shifts from ./tab/randcoil.tab\n"
                    "Reading RC Adjustments from tab/rcadj.tab\n"
                    "Reading Previous Residue RC Adjustments from tab/rcprev.tab\n"
                    "Reading Next Residue RC Adjustments from tab/rcnext.tab\n"
                    "Reading Secondary Shift Limits from ./tab/sslimit.tab\n"
                    "Analyzing in.tab:\n" + LISTING_HEAD + LINES[2] + LINES[5] + LINES[8]
                    + TIME_LINE,
                    written={"pred.tab": TABLE_HEAD + ROWS[2] + ROWS[5] + ROWS[8]})


class TableOptions(CommandLine):
    def correction(self, name, column, value):
        return table("RESNAME " + column, "%s %8.3f", [[name, value]])

    def test_tabDir(self):
        self.write_tables(folder="other/")
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

    def expect_replaced(self, option, label, name):
        """A correction of -1 to the CA of one residue type, from a table given by an option.

        Only the CA of the proline tells: cis 1 +- 1, trans 0 +- 1. The correction makes its secondary shift 1:
        P_CIS = 1 / (1 + exp(-1/2)) = 0.622, P_CIS_NORM = 0.622 / (0.622 + 19 * 0.378) = 0.080.
        """
        self.write("tab/Pro.cs.tab", statistics_table({9: (1, 1, 0, 1)}))
        self.write("in.tab", protein("APGA", coil_shifts("APGA")))
        self.write("mine.tab", self.correction(name, "CA", -1))
        stdout = finished("in.tab", "   A1   P2   G3   0.622  0.080 \n")
        wanted = {"adj": "tab/rcadj.tab", "prev": "tab/rcprev.tab", "next": "tab/rcnext.tab"}[option]
        self.assertIn(label + " from ./" + wanted + "\n", stdout)
        self.expect(["-in", "in.tab", "-" + option, "mine.tab"],
                    stdout.replace(label + " from ./" + wanted, label + " from mine.tab"),
                    written={"pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000    0.622    0.080 \n"})

    def test_adj(self):
        self.expect_replaced("adj", "Reading RC Adjustments", "P")

    def test_prev(self):
        self.expect_replaced("prev", "Reading Previous Residue RC Adjustments", "A")

    def test_next(self):
        self.expect_replaced("next", "Reading Next Residue RC Adjustments", "G")

    def test_None_is_a_file_name_like_any_other(self):
        for option, label, count in (("adj", "RC Adjustments", 1), ("prev", "Previous Residue RC Adjustments", 2),
                                     ("next", "Next Residue RC Adjustments", 3)):
            with self.subTest(option):
                lines = progress().splitlines(keepends=True)[:count]
                self.expect(["-in", "in.tab", "-" + option, "None"],
                            "".join(lines) + "Reading " + label + " from None\n",
                            "\tCan't open file None for reading\n")

    def test_a_table_called_None_without_rows_switches_the_correction_off(self):
        self.write("tab/rcadj.tab", self.correction("P", "CA", -1))
        self.write("tab/Pro.cs.tab", statistics_table({9: (1, 1, 0, 1)}))
        self.write("None", "VARS RESNAME CA\nFORMAT %s %8.3f\n")
        # Without the correction the CA lies at 0: P_CIS = 1 / (1 + exp(1/2)) = 0.378, normalised 0.031.
        self.write("in.tab", protein("APGA", coil_shifts("APGA")))
        self.expect(["-in", "in.tab", "-adj", "None"],
                    finished("in.tab", "   A1   P2   G3   0.378  0.031 \n").replace("./tab/rcadj.tab", "None"),
                    written={"pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000    0.378    0.031 \n"})


class EarlyEnds(CommandLine):
    def test_a_missing_input(self):
        self.expect_unreadable("nowhere.tab", "-in", "nowhere.tab")

    def test_a_missing_reference_table(self):
        for count, name in enumerate(("randcoil", "rcadj", "rcprev", "rcnext", "sslimit"), 1):
            with self.subTest(name):
                kept = self.read("tab/%s.tab" % name)
                os.remove(self.path("tab/%s.tab" % name))
                self.expect_unreadable("./tab/%s.tab" % name, "-in", "in.tab", count=count)
                self.write("tab/%s.tab" % name, kept)

    def test_a_missing_proline_database(self):
        for name in ("Pro.cs", "Pro.seq"):
            with self.subTest(name):
                kept = self.read("tab/%s.tab" % name)
                os.remove(self.path("tab/%s.tab" % name))
                self.expect_unreadable("./tab/%s.tab" % name, "-in", "in.tab", count=5)
                self.write("tab/%s.tab" % name, kept)

    def test_a_bad_format_in_each_table(self):
        text = "VARS RESNAME CA\nFORMAT %s %8.3e  \nA 1.0\n"
        cases = [("in.tab", 0), ("tab/randcoil.tab", 1), ("tab/rcadj.tab", 2), ("tab/rcprev.tab", 3),
                 ("tab/rcnext.tab", 4), ("tab/sslimit.tab", 5), ("tab/Pro.cs.tab", 5), ("tab/Pro.seq.tab", 5)]
        for name, count in cases:
            with self.subTest(name):
                kept = self.read(name)
                self.write(name, text)
                self.expect(["-in", "in.tab"], "".join(progress().splitlines(keepends=True)[:count]),
                            "\tBad format syntax '%8.3e  '\n")
                self.write(name, kept)

    def test_the_check_report_ends_the_run_with_status_255_and_no_time(self):
        self.write("in.tab", protein("APGA", coil_shifts("APGA")))
        self.expect(["-in", "in.tab", "-check"], self.even_report("in.tab"), status=255)

    def test_check_with_any_value(self):
        self.write("in.tab", protein("APGA", coil_shifts("APGA")))
        for value in ("no", "0", ""):
            with self.subTest(value):
                self.expect(["-in", "in.tab", "-check", value], self.even_report("in.tab"), status=255)

    @staticmethod
    def even_report(name):
        """No residue has CA - CB below 0: four fits on nothing, 0/0 all through."""
        fit = ("  Estimated %s shift referencing offset " + NAN.rjust(7) + " ppm (fitting error: " + NAN.rjust(6)
               + ", size:   0)\n")
        # Glycine has no CB and counts as missing. Every difference is 0.
        return (progress() + "Analyzing " + name + ":\n\nChemical shift outlier checking...\n"
                "\nChemical shift referencing checking...\n" + "".join(fit % atom for atom in ("CA", "CB", "HA", "C'")))

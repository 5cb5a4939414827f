"""From shifts to probabilities: small proteins whose outcome is worked out by hand.

With the plain tables a secondary shift is the number added to the coil value, and nothing tells cis from trans but
the index that a test gives other statistics. For cis 1 +- 1 and trans 0 +- 1 a shift x has the odds
exp(-(x - 1)^2/2) / exp(-x^2/2) = exp(x - 1/2), so that P_CIS is
    x = 0: 1/(1 + e^(1/2))  = 0.377541    normalised P/(P + 19 (1 - P)): 0.030934
    x = 1: 1/(1 + e^(-1/2)) = 0.622459                                   0.079834
    x = 2: 1/(1 + e^(-3/2)) = 0.817574                                   0.190865
    x = 3: 1/(1 + e^(-5/2)) = 0.924142                                   0.390659
    without the shift: 0.5                                               0.05
"""

from support import NAN, TABLE_HEAD, ProgramTest, coil_shifts, finished, protein, statistics_table, table

ANSWERS = {0: (" 0.378", " 0.031"), 1: (" 0.622", " 0.080"), 2: (" 0.818", " 0.191"), 3: (" 0.924", " 0.391"),
           None: (" 0.500", " 0.050")}
HA1, C1, CA1, CB1 = 1, 2, 3, 4
N2, CA2, HN2 = 6, 9, 11
N3, HA3, C3, CA3 = 12, 13, 14, 15
CG = 18
TELLING = (1, 1, 0, 1)


class Shifts(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write_tables()

    def tell(self, *indices):
        self.write("tab/Pro.cs.tab", statistics_table({index: TELLING for index in indices}))

    def expect_prediction(self, answer, sequence="APGA", counts=(6, 5, 5), cg="9999.000", changes=None, leave_out=(),
                          rows=None, options=(), stderr="", first=None, number=2):
        """One proline of the sequence gets this answer: x of the table above, or the two texts."""
        cis, norm = ANSWERS.get(answer, answer)
        self.write("in.tab", protein(sequence, coil_shifts(sequence, changes, leave_out) if rows is None else rows,
                                     first))
        before, after = sequence[number - 2], sequence[number]
        line = "   %s%-3d P%-3d %s%-3d %-6s %-6s\n" % (before, number - 1, number, after, number + 1,
                                                        cis.strip(), norm.strip())
        row = "%2d %s P %s %2d %2d %2d %8s %8s %8s \n" % (number, before, after, *counts, cg, cis.strip(),
                                                           norm.strip())
        self.expect(["-in", "in.tab", *options], finished("in.tab", line), stderr, written={
            "pred.tab": TABLE_HEAD + row})

    def expect_none(self, sequence, rows, options=(), stderr="", first=None):
        self.write("in.tab", protein(sequence, rows, first))
        self.expect(["-in", "in.tab", *options], finished("in.tab"), stderr, written={"pred.tab": TABLE_HEAD})


class Indices(Shifts):
    """Each of the 19 shifts is compared with the statistics of its own index and with no other."""

    def one(self, index, residue, atom):
        self.tell(index)
        step = {"HA": 1, "HN": 2}.get(atom, 3)
        change = 0.999 if step == 1 else float(step)
        sequence = "APAA"
        self.expect_prediction(step, sequence, (6, 5, 6), changes={(residue, atom): change})
        self.expect_prediction(0, sequence, (6, 5, 6))

    def test_all_backbone_shifts(self):
        for index in range(18):
            residue, atom = index // 6 + 1, ("N", "HA", "C", "CA", "CB", "HN")[index % 6]
            if (residue, atom) in ((2, "N"), (2, "HN")):
                continue
            with self.subTest(residue=residue, atom=atom):
                self.one(index, residue, atom)

    def test_the_nitrogen_and_amide_proton_of_proline_are_not_used(self):
        self.tell(N2, HN2)
        rows = coil_shifts("APAA", {(2, "N"): 3.0}) + [(2, "P", "HN", "9.000"), (2, "P", "H", "9.000")]
        self.expect_prediction(None, "APAA", (6, 6, 6), rows=rows)

    def test_the_atoms_of_other_residues_are_not_used(self):
        self.tell(*range(18))
        inner = coil_shifts("AAPAA")
        outer = coil_shifts("AAPAA", {(1, atom): 1.0 for atom in ("N", "C", "CA")})
        self.write("in.tab", protein("AAPAA", inner))
        first = self.run_program("-in", "in.tab")
        self.write("in.tab", protein("AAPAA", outer))
        self.assertEqual(self.run_program("-in", "in.tab").stdout, first.stdout)

    def test_CG_is_the_observed_shift(self):
        # cis 24.5 +- 1, trans 27 +- 1. At 24.5: 1/(1 + exp(-3.125)) = 0.957912, normalised 0.545017; at 27 the
        # reverse: 0.042088, normalised 0.002307; in the middle nothing.
        for shift, answer in (("24.500", ("0.958", "0.545")), ("27.000", ("0.042", "0.002")),
                              ("25.750", ("0.500", "0.050"))):
            with self.subTest(shift):
                rows = coil_shifts("APGA") + [(2, "P", "CG", shift)]
                self.expect_prediction(answer, cg=shift.rjust(8), rows=rows)

    def test_CG_of_999_is_absent_and_shown(self):
        rows = coil_shifts("APGA") + [(2, "P", "CG", "999")]
        self.expect_prediction(None, cg=" 999.000", rows=rows)

    def test_CG_just_below_999_is_used(self):
        # Hundreds of deviations away from both means: both products are 0, and 0/0 is printed as it stands.
        rows = coil_shifts("APGA") + [(2, "P", "CG", "998.9")]
        self.expect_prediction((NAN, NAN), cg=" 998.900", rows=rows)

    def test_CG_is_not_bounded_by_99(self):
        self.write("tab/Pro.cs.tab", statistics_table({CG: (100, 1, 101, 1)}))
        # At 100: 1/(1 + exp(-1/2)).
        self.expect_prediction(1, cg=" 100.000", rows=coil_shifts("APGA") + [(2, "P", "CG", "100")])

    def test_CG_of_another_residue_is_not_used(self):
        rows = coil_shifts("APGA") + [(1, "A", "CG", "24.5"), (3, "G", "CG", "24.5")]
        self.expect_prediction(None, rows=rows)

    def test_several_shifts_multiply(self):
        # Three shifts of x = 1, 1 and 0: odds exp(1/2 + 1/2 - 1/2), so P_CIS 0.622.
        self.tell(CA1, CA2, C3)
        self.expect_prediction(1, "APAA", (6, 5, 6), changes={(1, "CA"): 1.0, (2, "CA"): 1.0})

    def test_deviations_act_through_the_exponent_alone(self):
        # Same mean, deviations 1 and 2, shift 2: exp(-2) against exp(-1/2): P_CIS = 1/(1 + exp(3/2)) = 0.182426,
        # normalised 0.011607. With 1/sigma in front it would be 0.308.
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (0, 1, 0, 2)}))
        self.expect_prediction(("0.182", "0.012"), changes={(2, "CA"): 2.0})


class Bounds(Shifts):
    def setUp(self):
        super().setUp()
        # 99 +- 1 against 100 +- 1: at 99 the odds are exp(1/2), P_CIS 0.622; left out, 0.5.
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (99, 1, 100, 1)}))

    def test_a_shift_of_exactly_99_is_used(self):
        self.expect_prediction(1, changes={(2, "CA"): 99.0}, options=["-noclip"])

    def test_a_shift_above_99_is_missing(self):
        self.expect_prediction(None, changes={(2, "CA"): 99.001}, options=["-noclip"])

    def test_a_shift_of_999_or_more_is_not_clipped(self):
        self.expect_prediction(None, changes={(2, "CA"): 999.0})

    def test_a_shift_just_below_999_is_clipped(self):
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (10, 1, 9, 1)}))
        self.expect_prediction(1, changes={(2, "CA"): 998.999})

    def test_a_shift_below_its_limit_is_clipped(self):
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (-10, 1, -9, 1)}))
        self.expect_prediction(1, changes={(2, "CA"): -11.0})

    def test_a_shift_at_its_limit_stays(self):
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (10, 1, 9, 1)}))
        self.expect_prediction(1, changes={(2, "CA"): 10.0})

    def test_a_residue_type_without_limits_is_clipped_to_0(self):
        self.write("tab/Pro.cs.tab", statistics_table({CA2: TELLING}))
        self.write("tab/sslimit.tab", table("RESNAME CA_MIN CA_MAX", "%s %f %f", [["A", -10, 10]]))
        self.expect_prediction(0, changes={(2, "CA"): 3.0})
        self.expect_prediction(0, changes={(2, "CA"): -3.0})
        self.expect_prediction(3, changes={(2, "CA"): 3.0}, options=["-noclip"])


class Corrections(Shifts):
    """Random coil + adjustment + effects of the neighbours."""

    def corrected(self, name, residue, atom, value, index, answer=1):
        self.tell(index)
        self.write_tables({name: table("RESNAME " + atom, "%s %8.3f", [[residue, value]])})
        self.tell(index)
        self.expect_prediction(answer, "AGPSV", (5, 5, 6), number=3)

    def test_the_residue_itself(self):
        self.corrected("rcadj.tab", "P", "CA", -1, CA2)
        self.corrected("rcadj.tab", "G", "CA", -1, CA1)
        self.corrected("rcadj.tab", "G", "CA", -1, CA2, 0)

    def test_the_preceding_residue(self):
        self.corrected("rcprev.tab", "G", "CA", -1, CA2)
        self.corrected("rcprev.tab", "A", "C", -1, C1)
        self.corrected("rcprev.tab", "P", "N", -1, N3)
        self.corrected("rcprev.tab", "S", "CA", -1, CA2, 0)

    def test_the_following_residue(self):
        self.corrected("rcnext.tab", "S", "CA", -1, CA2)
        self.corrected("rcnext.tab", "P", "C", -1, C1)
        self.corrected("rcnext.tab", "V", "N", -1, N3)
        self.corrected("rcnext.tab", "G", "CA", -1, CA2, 0)

    def test_they_add_up(self):
        one = table("RESNAME CA", "%s %8.3f", [[name, -1] for name in "AGPS"])
        self.write_tables({"rcadj.tab": one, "rcprev.tab": one, "rcnext.tab": one})
        self.tell(CA2)
        self.expect_prediction(3)

    def test_the_first_residue_has_no_preceding_one(self):
        self.tell(CA1)
        self.write("tab/rcprev.tab", table("RESNAME CA", "%s %8.3f", [[name, -1] for name in "AGPS"]))
        self.expect_prediction(0)

    def test_the_last_residue_has_no_following_one(self):
        self.tell(CA3)
        self.write("tab/rcnext.tab", table("RESNAME CA", "%s %8.3f", [[name, -1] for name in "APS"]))
        self.expect_prediction(0, "APG")

    def test_a_table_without_RESNAME_corrects_at_the_ends(self):
        # Its rows have no name, and neither has the residue before the first.
        self.tell(CA1)
        self.write("tab/rcprev.tab", "VARS CA\nFORMAT %8.3f\n-2\n-3\n")
        self.expect_prediction(2)

    def test_the_first_of_two_rows_of_a_residue_counts(self):
        self.tell(CA2)
        self.write("tab/rcadj.tab", table("RESNAME CA", "%s %8.3f", [["P", -1], ["P", -2]]))
        self.expect_prediction(1)

    def test_a_number_that_is_none_is_0(self):
        self.tell(CA2)
        for text, answer in (("x", 0), ("-1.0ppm", 1), ("-2e0", 2), ("-.1e+1", 1), ("-0x1p1", 2)):
            with self.subTest(text):
                self.write("tab/rcadj.tab", table("RESNAME CA", "%s %8.3f", [["P", text]]))
                self.expect_prediction(answer)

    def test_a_random_coil_table_without_the_atom_gives_0(self):
        self.tell(CA2)
        self.write("tab/randcoil.tab", table("RESNAME C", "%s %8.3f", [[name, 175] for name in "AGP"]))
        rows = [row for row in coil_shifts("APGA") if row[2] == "C"] + [(2, "P", "CA", "2")]
        rows += [(1, "A", atom, "0") for atom in ("N", "HA", "CB")] + [(3, "G", atom, "0") for atom in ("N", "CB", "HN")]
        self.expect_prediction(2, counts=(4, 2, 4), rows=rows)

    def test_a_residue_without_random_coil_shifts_tells_nothing_but_is_counted(self):
        self.tell(CA1)
        rows = [(1, "X", *row[2:]) if row[0] == 1 else row for row in coil_shifts("APGA")]
        self.write("tab/Pro.seq.tab", table("resname cis_prev cis_next trans_prev trans_next", "%s %f %f %f %f",
                                            [[name] + [0.05] * 4 for name in "XG"]))
        self.expect_prediction(None, "XPGA", (6, 5, 5), rows=rows)

    def test_an_effect_does_not_make_a_random_coil_shift_of_none(self):
        self.tell(CA1)
        self.write("tab/rcnext.tab", table("RESNAME CA", "%s %8.3f", [["P", -2000]]))
        self.write("tab/Pro.seq.tab", table("resname cis_prev cis_next trans_prev trans_next", "%s %f %f %f %f",
                                            [[name] + [0.05] * 4 for name in "XG"]))
        # 9999 - 2000 is still at least 999.
        rows = [(1, "X", *row[2:]) if row[0] == 1 else row for row in coil_shifts("APGA")]
        self.expect_prediction(None, "XPGA", (6, 5, 5), rows=rows)


class Glycine(Shifts):
    """The HA of glycine is the mean of HA2 and HA3. Only the HA of residue 3 tells; its limit is 1 ppm."""

    def setUp(self):
        super().setUp()
        self.tell(HA3)
        self.base = coil_shifts("APGA", leave_out=((3, "HA2"), (3, "HA3")))

    def glycine(self, answer, count, *rows, options=()):
        self.expect_prediction(answer, counts=(6, 5, count), rows=self.base + [(3, "G", *row) for row in rows],
                               options=options)

    def test_both(self):
        self.glycine(1, 5, ("HA2", "5.250"), ("HA3", "5.750"))

    def test_only_one(self):
        self.glycine(1, 5, ("HA2", "5.500"))
        self.glycine(1, 5, ("HA3", "5.500"))

    def test_a_value_of_999_is_none(self):
        self.glycine(1, 5, ("HA2", "999"), ("HA3", "5.500"))
        self.glycine(1, 5, ("HA2", "5.500"), ("HA3", "9999"))

    def test_a_row_called_HA_is_overridden(self):
        self.glycine(1, 5, ("HA", "4.5"), ("HA2", "5.250"), ("HA3", "5.750"))

    def test_none(self):
        # 9999 less the reference is stored, still missing; and one shift fewer.
        self.glycine(None, 4)

    def test_a_row_called_HA_alone_is_none(self):
        self.glycine(None, 4, ("HA", "5.500"))

    def test_both_999_are_none(self):
        self.glycine(None, 4, ("HA2", "999"), ("HA3", "999"))

    def test_an_unknown_reference_keeps_the_mean(self):
        # No random-coil row for G: the mean itself, 5.5, which the limits bring down to 1.
        coil = self.read("tab/randcoil.tab")
        self.write("tab/randcoil.tab", "".join(line for line in coil.splitlines(True) if not line.startswith("G ")))
        self.glycine(1, 5, ("HA2", "5.250"), ("HA3", "5.750"))

    def test_other_residues_do_not_average(self):
        self.tell(HA1)
        rows = [row for row in coil_shifts("APGA") if row[:3:2] != (1, "HA")]
        self.expect_prediction(None, counts=(5, 5, 5), rows=rows + [(1, "A", "HA2", "5.5"), (1, "A", "HA3", "5.5")])


class Triplets(Shifts):
    """Which prolines get a row."""

    def test_no_proline(self):
        self.expect_none("AGAGA", coil_shifts("AGAGA"))

    def test_proline_first_and_last(self):
        self.expect_none("PAAP", coil_shifts("PAAP"))

    def test_a_protein_of_one_proline(self):
        self.expect_none("P", coil_shifts("P"))

    def test_a_protein_of_two(self):
        self.expect_none("AP", coil_shifts("AP"))

    def test_all_prolines(self):
        self.write("in.tab", protein("PPPPP", coil_shifts("PPPPP")))
        lines = "".join("   P%-3d P%-3d P%-3d 0.500  0.050 \n" % (number - 1, number, number + 1)
                        for number in (2, 3, 4))
        rows = "".join("%2d P P P  5  5  5 9999.000    0.500    0.050 \n" % number for number in (2, 3, 4))
        self.expect(["-in", "in.tab"], finished("in.tab", lines), written={"pred.tab": TABLE_HEAD + rows})

    def test_numbers_of_one_to_four_digits(self):
        sequence = "AP" + "A" * 7 + "P" + "A" * 89 + "P" + "A" * 899 + "P" + "A"
        self.write("in.tab", protein(sequence, coil_shifts(sequence)))
        lines = ("   A1   P2   A3   0.500  0.050 \n   A9   P10  A11  0.500  0.050 \n"
                 "   A99  P100 A101 0.500  0.050 \n   A999 P1000 A1001 0.500  0.050 \n")
        rows = "".join("%2d A P A  6  5  6 9999.000    0.500    0.050 \n" % number for number in (2, 10, 100, 1000))
        self.expect(["-in", "in.tab"], finished("in.tab", lines), written={"pred.tab": TABLE_HEAD + rows})

    def test_one_sparse_residue_of_three_is_enough(self):
        leave = {(1, atom) for atom in ("N", "HA", "C", "CA", "CB", "HN")}
        self.expect_prediction(None, "APAA", (0, 5, 6), leave_out=leave)

    def test_two_sparse_residues_are_too_many(self):
        leave = {(number, atom) for number in (1, 3) for atom in ("N", "HA", "C", "CA")}
        self.expect_none("APAA", coil_shifts("APAA", leave_out=leave))

    def test_four_missing_make_a_residue_sparse_and_three_do_not(self):
        leave = {(1, atom) for atom in ("N", "HA", "C", "CA")} | {(3, atom) for atom in ("N", "HA", "C")}
        self.expect_prediction(None, "APAA", (2, 5, 3), leave_out=leave)

    def test_proline_lacks_HN_from_the_start(self):
        # HN, C, CA missing: 3; with CB 4.
        leave = {(1, atom) for atom in ("N", "HA", "C", "CA")}
        self.expect_prediction(None, "APAA", (2, 3, 6), leave_out=leave | {(2, "C"), (2, "CA")})
        self.expect_none("APAA", coil_shifts("APAA", leave_out=leave | {(2, "C"), (2, "CA"), (2, "CB")}))

    def test_rows_in_any_order(self):
        self.expect_prediction(None, rows=coil_shifts("APGA")[::-1])

    def test_the_first_of_two_shifts_of_an_atom_counts(self):
        self.tell(CA2)
        self.expect_prediction(1, rows=coil_shifts("APGA", {(2, "CA"): 1.0}) + [(2, "P", "CA", "58.0")])

    def test_residue_numbers_are_compared_as_texts(self):
        self.tell(CA2)
        for text in ("002", "+2", "2x", "2.0", "0x2"):
            with self.subTest(text):
                rows = [(text, *row[1:]) if row[0] == 2 else row for row in coil_shifts("APGA", {(2, "CA"): 3.0})]
                # Proline lacks all six, its neighbours none. 0x2 begins with the number 0, which has no name.
                warning = "WARNING: Unmatched name for residue 0 between header () and chemical shift table (P)\n"
                self.expect_prediction(None, counts=(6, 0, 5), rows=rows, stderr=warning * 5 * (text == "0x2"))

    def test_names_of_atoms_are_exact(self):
        self.tell(CA2)
        rows = [(2, "P", "ca", "58.0") if row[:3:2] == (2, "CA") else row for row in coil_shifts("APGA")]
        self.expect_prediction(None, counts=(6, 4, 5), rows=rows)

    def test_other_atoms_are_ignored(self):
        rows = coil_shifts("APGA") + [(2, "P", atom, "1.0") for atom in ("HB2", "HB3", "CD", "H", "x")]
        self.expect_prediction(None, rows=rows)


class Sequence(Shifts):
    def test_lower_case_p_is_no_proline_that_is_predicted(self):
        self.expect_none("ApGA", [(number, name.replace("P", "p"), *rest) for number, name, *rest in
                                  coil_shifts("APGA")])

    def test_a_disulfide_cysteine_beside_a_proline(self):
        self.tell(CB1)
        coil = "VARS RESNAME N HA C CA CB HN\nFORMAT %s %f %f %f %f %f %f\nA 120 4.5 175 55 35 8\n" \
               "P 120 4.5 175 55 35 8\nG 120 4.5 175 55 35 8\nC 120 4.5 175 55 35 8\nc 120 4.5 175 55 48 8\n"
        limits = "VARS RESNAME CB_MIN CB_MAX\nFORMAT %s %f %f\nC -10 10\nc -10 10\n"
        odds = table("resname cis_prev cis_next trans_prev trans_next", "%s %f %f %f %f",
                     [[name] + [0.05] * 4 for name in "CcG"])
        self.write_tables({"randcoil.tab": coil, "sslimit.tab": limits, "Pro.seq.tab": odds})
        self.tell(CB1)
        # 49 ppm is 1 above the CB of c; taken for C it would be 14 above, clipped to 10.
        for name, answer in (("c", ANSWERS[1]), ("C", ("1.000", "0.999"))):
            rows = [(1, name, atom, "49" if atom == "CB" else shift) if number == 1 else (number, res, atom, shift)
                    for number, res, atom, shift in coil_shifts("CPGA")]
            with self.subTest(name):
                self.expect_prediction(answer, name + "PGA", rows=rows)

    def test_an_unknown_residue_beside_a_proline(self):
        odds = table("resname cis_prev cis_next trans_prev trans_next", "%s %f %f %f %f",
                     [["?", 0.05, 0, 0.15, 0], ["G", 0, 1, 0, 1]])
        self.write("tab/Pro.seq.tab", odds)
        rows = [row for row in coil_shifts("APGA") if row[0] != 1]
        # P_CIS = 1/4, normalised 0.25 / (0.25 + 19 * 0.75) = 0.017241.
        self.expect_prediction(("0.250", "0.017"), "?PGA", (0, 5, 5), rows=rows)

    def test_first_resid_above_1_leaves_residues_out(self):
        # Numbers 3 to 8 for AAPAPA. Residue numbers 1 to 6 are covered: 1 and 2 are outside the sequence, and 7, 8
        # are not reached. Proline 5 is predicted (4, 5, 6 are there); proline 7 is not.
        rows = coil_shifts("AAPAPA", first=3)
        self.write("in.tab", protein("AAPAPA", rows, first=3))
        self.expect(["-in", "in.tab"], finished("in.tab", "   A4   P5   A6   0.500  0.050 \n"),
                    written={"pred.tab": TABLE_HEAD + " 5 A P A  6  5  6 9999.000    0.500    0.050 \n"})

    def test_first_resid_far_above_covers_nothing(self):
        self.expect_none("APGA", coil_shifts("APGA", first=100), first=100)

    def test_first_resid_0(self):
        # Numbers 0 to 5 for AAPAPA: proline 2 is predicted, proline 4 has residues 3, 4, 5.
        self.write("in.tab", protein("AAPAPA", coil_shifts("AAPAPA", first=0), first=0))
        lines = "   A1   P2   A3   0.500  0.050 \n   A3   P4   A5   0.500  0.050 \n"
        rows = "".join("%2d A P A  6  5  6 9999.000    0.500    0.050 \n" % number for number in (2, 4))
        self.expect(["-in", "in.tab"], finished("in.tab", lines), written={"pred.tab": TABLE_HEAD + rows})

    def test_first_resid_minus_2(self):
        # Numbers -2 to 3 for AAPAPA: residue 0 is the first proline, never reached; residue 2 the second.
        self.write("in.tab", protein("AAPAPA", coil_shifts("AAPAPA", first=-2), first=-2))
        self.expect(["-in", "in.tab"], finished("in.tab", "   A1   P2   A3   0.500  0.050 \n"),
                    written={"pred.tab": TABLE_HEAD + " 2 A P A  6  5  6 9999.000    0.500    0.050 \n"})

    def test_two_first_resid_lines_are_joined(self):
        text = protein("APGA", coil_shifts("APGA", first=12), head="DATA FIRST_RESID 1\nDATA FIRST_RESID 2\n")
        self.write("in.tab", text)
        self.expect(["-in", "in.tab"], finished("in.tab"), written={"pred.tab": TABLE_HEAD})

    def test_sequence_in_pieces_blanks_and_other_signs(self):
        rows = coil_shifts("APGA")
        text = table("RESID RESNAME ATOMNAME SHIFT", "%4d %1s %4s  %8.3f", rows,
                     "DATA SEQUENCE A1 P*\nDATA SEQUENCE  zZ-\nDATA SEQUENCE G\tA\n")
        self.write("in.tab", text)
        self.expect(["-in", "in.tab"], finished("in.tab", "   A1   P2   G3   0.500  0.050 \n"),
                    written={"pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000    0.500    0.050 \n"})

    def test_a_sequence_line_without_letters_spells_its_own_keyword(self):
        # S E Q U E N C E: eight residues, none of them a proline; the rows' names do not match.
        self.write("in.tab", table("RESID RESNAME ATOMNAME SHIFT", "%4d %1s %4s  %8.3f",
                                   [(number, name, "CA", 55) for number, name in enumerate("SEQUENCE", 1)],
                                   "DATA SEQUENCE\n"))
        self.expect(["-in", "in.tab"], finished("in.tab"), written={"pred.tab": TABLE_HEAD})

    def test_warnings_name_residue_header_and_row(self):
        rows = [(1, "A", "CA", 55), (2, "A", "CA", 55), (2, "p", "CB", 35), (9, "K", "CA", 55), (0, "K", "CA", 55),
                (-3, "LYS", "CA", 55), ("x", "A", "CA", 55)]
        warning = "WARNING: Unmatched name for residue %d between header (%s) and chemical shift table (%s)\n"
        self.expect_none("AP", rows, stderr="".join(warning % case for case in (
            (2, "P", "A"), (2, "P", "p"), (9, "", "K"), (0, "", "K"), (-3, "", "LYS"), (0, "", "A"))))

    def test_a_row_that_does_not_match_is_still_used(self):
        self.tell(CA2)
        rows = [(2, "A", "CA", "56.0") if row[:3:2] == (2, "CA") else row for row in coil_shifts("APGA")]
        self.expect_prediction(1, rows=rows, stderr="WARNING: Unmatched name for residue 2 between header (P) and "
                               "chemical shift table (A)\n")


class Odds(Shifts):
    """The neighbours' share of the evidence."""

    def odds(self, rows):
        self.write("tab/Pro.seq.tab", table("resname cis_prev cis_next trans_prev trans_next", "%s %f %f %f %f", rows))

    def test_neighbours_before_and_behind(self):
        self.odds([["A", 0.3, 0.9, 0.1, 0.9], ["G", 0.9, 0.2, 0.9, 0.6]])
        # 0.3 * 0.2 against 0.1 * 0.6: even.
        self.expect_prediction(None)
        # G before and A after: 0.9 * 0.9 on both sides.
        self.expect_prediction(None, "GPAA", (5, 5, 6))
        # A on both sides: 0.3 * 0.9 = 0.27 against 0.09: P_CIS 3/4, normalised 0.75 / (0.75 + 4.75) = 0.136364.
        self.expect_prediction(("0.750", "0.136"), "APAA", (6, 5, 6))

    def test_certainly_cis(self):
        self.odds([["A", 1, 1, 0, 0], ["G", 1, 1, 1, 1]])
        self.expect_prediction(("1.000", "1.000"))

    def test_certainly_trans(self):
        self.odds([["A", 0, 0, 1, 1], ["G", 1, 1, 1, 1]])
        self.expect_prediction(("0.000", "0.000"))

    def test_a_neighbour_that_the_table_lacks_gives_0_over_0(self):
        self.odds([["A", 1, 1, 1, 1]])
        self.expect_prediction((NAN, NAN))

    def test_the_later_of_two_rows_counts(self):
        self.odds([["A", 1, 1, 1, 1], ["G", 1, 1, 1, 1], ["A", 3, 1, 1, 1]])
        self.expect_prediction(("0.750", "0.136"))

    def test_a_table_without_rows(self):
        self.odds([])
        self.expect_prediction((NAN, NAN))

    def test_products_that_underflow_give_0_over_0(self):
        # 20 deviations from both means: exp(-200) is no 32-bit number but 0.
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (20, 1, -20, 1)}))
        self.expect_prediction((NAN, NAN))

    def test_denormal_products_still_count(self):
        # 14 deviations: exp(-98) = 2.7e-43 on both sides, which a 32-bit number just holds, times odds 1.
        self.odds([["A", 1, 1, 1, 1], ["G", 1, 1, 1, 1]])
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (14, 1, -14, 1)}))
        self.expect_prediction(None)

    def test_a_deviation_of_0(self):
        # At its mean 0 * infinity, elsewhere exp(-infinity) = 0.
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (1, 0, 0, 1)}))
        self.expect_prediction(("0.000", "0.000"))
        self.expect_prediction((NAN, NAN), changes={(2, "CA"): 1.0})

    def test_statistics_rows_in_any_order_and_the_later_of_two(self):
        lines = statistics_table({CA2: TELLING}).split("\n")
        head, rows = lines[:3], lines[3:-1]
        rows = ["   9 5 1 7 1"] + rows[::-1]
        self.write("tab/Pro.cs.tab", "\n".join(head + rows) + "\n")
        self.expect_prediction(2, changes={(2, "CA"): 2.0})

    def test_a_statistics_table_without_rows(self):
        self.write("tab/Pro.cs.tab", "VARS index avg_cis\nFORMAT %d %f\n")
        # Deviation 0 and mean 0 everywhere: shifts at the mean give 0 * infinity.
        self.expect_prediction((NAN, NAN))

    def test_probabilities_have_six_digits_before_they_have_three_decimals(self):
        # P_CIS = 1/8000 = 0.000125 and 0.0004995: six digits, then three decimals.
        self.odds([["A", 1, 1, 1, 1], ["G", 1, 0.0004995, 1, 0.9995005]])
        self.expect_prediction(("0.000", "0.000"))
        self.odds([["A", 1, 1, 1, 1], ["G", 1, 0.0005001, 1, 0.9994999]])
        self.expect_prediction(("0.001", "0.000"))


class Columns(Shifts):
    def test_columns_in_another_order_and_more_of_them(self):
        self.tell(CA2)
        rows = [(shift, "x", atom, number, name) for number, name, atom, shift in
                coil_shifts("APGA", {(2, "CA"): 1.0})]
        self.write("in.tab", table("SHIFT NOTE ATOMNAME RESID RESNAME", "%f %s %s %d %s", rows,
                                   "DATA SEQUENCE APGA\n"))
        self.expect(["-in", "in.tab"], finished("in.tab", "   A1   P2   G3   0.622  0.080 \n"),
                    written={"pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000    0.622    0.080 \n"})

    def test_an_input_without_SHIFT_has_shifts_of_0(self):
        # All rows are there, so nothing is missing; 0 less the coil value is clipped to the lower limit.
        self.write("tab/Pro.cs.tab", statistics_table({CA2: (-10, 1, -9, 1)}))
        rows = [row[:3] for row in coil_shifts("APGA")]
        self.write("in.tab", table("RESID RESNAME ATOMNAME", "%d %s %s", rows, "DATA SEQUENCE APGA\n"))
        # The CG has no row at all.
        # Far from every mean but the CA's: N, CA, C: exp(-50) each; the products underflow to 0.
        self.expect(["-in", "in.tab"], finished("in.tab", "   A1   P2   G3   %-6s %-6s\n" % (NAN, NAN)),
                    written={"pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000 %8s %8s \n" % (NAN, NAN)})

    def test_an_input_without_RESID_has_all_rows_at_number_0(self):
        rows = [row[1:] for row in coil_shifts("APGA")]
        self.write("in.tab", table("RESNAME ATOMNAME SHIFT", "%s %s %f", rows, "DATA SEQUENCE APGA\n"))
        warning = "WARNING: Unmatched name for residue 0 between header () and chemical shift table (%s)\n"
        self.expect(["-in", "in.tab"], finished("in.tab"), "".join(warning % row[0] for row in rows),
                    written={"pred.tab": TABLE_HEAD})

    def test_an_input_without_RESNAME_warns_of_every_row(self):
        rows = [(row[0],) + row[2:] for row in coil_shifts("APGA")]
        self.write("in.tab", table("RESID ATOMNAME SHIFT", "%d %s %f", rows, "DATA SEQUENCE APGA\n"))
        stderr = "".join("WARNING: Unmatched name for residue %d between header (%s) and chemical shift table ()\n"
                         % (row[0], "APGA"[row[0] - 1]) for row in rows)
        self.expect(["-in", "in.tab"], finished("in.tab", "   A1   P2   G3   0.500  0.050 \n"), stderr,
                    written={"pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000    0.500    0.050 \n"})

    def test_reference_tables_with_more_columns_and_rows(self):
        self.tell(CA2)
        rows = [["x", "P", 9, -2.0]] + [["y", name, 9, 0] for name in "QWERTY*"]
        self.write("tab/rcadj.tab", table("NOTE RESNAME CZ CA", "%s %s %d %f", rows, "REMARK a table with more in it\n"))
        self.expect_prediction(2)

"""From shifts to probabilities: small proteins whose outcome is worked out by hand.

With the plain tables a secondary shift is the number added to the coil value, and nothing tells cis from trans but
the index that a test gives other statistics. For cis 1 +- 1 and trans 0 +- 1 a shift x has the odds
exp(-(x - 1)^2/2) / exp(-x^2/2) = exp(x - 1/2), so that P_CIS is
    x = 0: 1/(1 + e^(1/2))  = 0.377541    normalised P/(P + 19 (1 - P)): 0.030934
    x = 1: 1/(1 + e^(-1/2)) = 0.622459                                   0.079834
    x = 2: 1/(1 + e^(-3/2)) = 0.817574                                   0.190865
    x = 3: 1/(1 + e^(-5/2)) = 0.924142                                   0.390659
"""

from support import ProgramTest, answer, coil_shifts, protein, statistics_table, table

ANSWERS = {0: ("0.378", "0.031"), 1: ("0.622", "0.080"), 2: ("0.818", "0.191"), 3: ("0.924", "0.391")}
CB1, CA2 = 4, 9
TELLING = (1, 1, 0, 1)


class Shifts(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write_tables()

    def tell(self, *indices):
        self.write("tab/Pro.cs.tab", statistics_table({index: TELLING for index in indices}))

    def expect_prediction(self, pair, sequence="APGA", counts=(6, 5, 5), cg="9999.000", changes=None, rows=None):
        """Proline 2 of the sequence gets this answer: x of the table above, or the two texts."""
        self.write("in.tab", protein(sequence, coil_shifts(sequence, changes) if rows is None else rows))
        self.expect_answers(answer(2, sequence[0], sequence[2], ANSWERS.get(pair, pair), counts, cg))


class Indices(Shifts):
    """Each of the 19 shifts is compared with the statistics of its own index and with no other."""

    def test_all_backbone_shifts(self):
        for index in range(18):
            residue, atom = index // 6 + 1, ("N", "HA", "C", "CA", "CB", "HN")[index % 6]
            if (residue, atom) in ((2, "N"), (2, "HN")):
                continue
            step, change = {"HA": (1, 0.999), "HN": (2, 2.0)}.get(atom, (3, 3.0))
            with self.subTest(residue=residue, atom=atom):
                self.tell(index)
                self.expect_prediction(step, "APAA", (6, 5, 6), changes={(residue, atom): change})
                self.expect_prediction(0, "APAA", (6, 5, 6))

    def test_CG_is_the_observed_shift(self):
        # cis 24.5 +- 1, trans 27 +- 1. At 24.5: 1/(1 + exp(-3.125)) = 0.957912, normalised 0.545017; at 27 the
        # reverse: 0.042088, normalised 0.002307; in the middle nothing.
        for shift, pair in (("24.500", ("0.958", "0.545")), ("27.000", ("0.042", "0.002")),
                            ("25.750", ("0.500", "0.050"))):
            with self.subTest(shift):
                rows = coil_shifts("APGA") + [(2, "P", "CG", shift)]
                self.expect_prediction(pair, cg=shift.rjust(8), rows=rows)


class Sequence(Shifts):
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
        for name, pair in (("c", ANSWERS[1]), ("C", ("1.000", "0.999"))):
            rows = [(1, name, atom, "49" if atom == "CB" else shift) if number == 1 else (number, res, atom, shift)
                    for number, res, atom, shift in coil_shifts("CPGA")]
            with self.subTest(name):
                self.expect_prediction(pair, name + "PGA", rows=rows)


class Columns(Shifts):
    def test_columns_in_another_order_and_more_of_them(self):
        self.tell(CA2)
        rows = [(shift, "x", atom, number, name) for number, name, atom, shift in
                coil_shifts("APGA", {(2, "CA"): 1.0})]
        self.write("in.tab", table("SHIFT NOTE ATOMNAME RESID RESNAME", "%f %s %s %d %s", rows,
                                   "DATA SEQUENCE APGA\n"))
        self.expect_answers(answer(pair=ANSWERS[1]))

    def test_an_input_without_RESID_has_all_rows_at_number_0(self):
        rows = [row[1:] for row in coil_shifts("APGA")]
        self.write("in.tab", table("RESNAME ATOMNAME SHIFT", "%s %s %f", rows, "DATA SEQUENCE APGA\n"))
        warning = "WARNING: Unmatched name for residue 0 between header () and chemical shift table (%s)\n"
        self.expect_answers(stderr="".join(warning % row[0] for row in rows))

    def test_an_input_without_RESNAME_warns_of_every_row(self):
        rows = [(row[0],) + row[2:] for row in coil_shifts("APGA")]
        self.write("in.tab", table("RESID ATOMNAME SHIFT", "%d %s %f", rows, "DATA SEQUENCE APGA\n"))
        stderr = "".join("WARNING: Unmatched name for residue %d between header (%s) and chemical shift table ()\n"
                         % (row[0], "APGA"[row[0] - 1]) for row in rows)
        self.expect_answers(answer(), stderr=stderr)

    def test_reference_tables_with_more_columns_and_rows(self):
        self.tell(CA2)
        rows = [["x", "P", 9, -2.0]] + [["y", name, 9, 0] for name in "QWERTY*"]
        self.write("tab/rcadj.tab", table("NOTE RESNAME CZ CA", "%s %s %d %f", rows, "REMARK a table with more in it\n"))
        self.expect_prediction(2)

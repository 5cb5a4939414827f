"""The check report: outliers, their marks, and the referencing offsets. Limits: 10 ppm, HA 1, HN 2."""

from support import NAN, ProgramTest, coil_shifts, progress, protein, table

FIT = "  Estimated %s shift referencing offset %7s ppm (fitting error: %6s, size: %3d)%s\n"
CORRECT = " A referencing correction is recommended!"
NOTHING = "".join(FIT % (atom, NAN, NAN, 0, "") for atom in ("CA", "CB", "HA", "C'"))


class CheckReport(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write_tables()

    def expect_report(self, sequence, rows, outliers="", fits=NOTHING, options=(), stderr="", first=None):
        self.write("in.tab", protein(sequence, rows, first))
        self.expect(["-in", "in.tab", "-check", *options], progress() + "Analyzing in.tab:\n"
                    "\nChemical shift outlier checking...\n" + outliers
                    + "\nChemical shift referencing checking...\n" + fits, stderr, status=255)


class Outliers(CheckReport):
    @staticmethod
    def line(number, name, atom, shift, limit, mark=""):
        return "  %3d %s %3s Secondary Shift: %8s    Limit: %8s%s\n" % (number, name, atom, shift, limit, mark)

    def one(self, atom, change, shift, limit, mark=""):
        """One shift of residue 2 changed; its differences stay at or above 0, so that nothing is fitted."""
        self.expect_report("AKA", coil_shifts("AKA", {(2, atom): change}), self.line(2, "K", atom, shift, limit, mark))

    def test_no_outlier(self):
        self.expect_report("AKA", coil_shifts("AKA"))

    def test_above_its_limit(self):
        self.one("CA", 15.0, "15.000", "10.000")

    def test_below_its_limit(self):
        self.one("N", -15.0, "-15.000", "-10.000")

    def test_twice_the_limit_is_not_marked_and_more_is(self):
        self.one("C", 20.0, "20.000", "10.000")
        self.one("C", 20.01, "20.010", "10.000", " !")
        self.one("N", -20.01, "-20.010", "-10.000", " !")
        self.one("HN", 4.5, "4.500", "2.000", " !")

    def test_HA_is_marked_above_three_times_its_limit(self):
        self.one("HA", 2.5, "2.500", "1.000")
        self.one("HA", 3.0, "3.000", "1.000")
        self.one("HA", 3.5, "3.500", "1.000", " !")
        self.one("HA", -3.5, "-3.500", "-1.000", " !")

    def test_a_shift_at_its_limit_is_no_outlier(self):
        self.expect_report("AKA", coil_shifts("AKA", {(2, "CA"): 10.0, (2, "N"): -10.0}))

    def test_missing_shifts_are_no_outliers(self):
        rows = coil_shifts("AKA", {(2, "CA"): 999.0, (3, "N"): 5000.0})
        self.expect_report("AKA", rows)

    def test_missing_shifts_below_a_limit_are_no_outliers(self):
        self.write("tab/sslimit.tab", table("RESNAME CA_MIN CA_MAX", "%s %f %f", [["A", 2000, 3000]]))
        self.expect_report("A", [(1, "A", "CA", "1555.0")])
        self.expect_report("A", [(1, "A", "CA", "1053.0")], self.line(1, "A", "CA", "998.000", "2000.000"))

    def test_the_limits_of_a_residue_without_limits_are_0(self):
        self.write("tab/sslimit.tab", table("RESNAME CA_MIN CA_MAX", "%s %f %f", []))
        self.expect_report("A", coil_shifts("A", {(1, "CA"): 0.5, (1, "N"): -0.25}),
                           self.line(1, "A", "N", "-0.250", "0.000", " !") + self.line(1, "A", "CA", "0.500", "0.000",
                                                                                       " !"))

    def test_every_residue_whatever_the_range(self):
        rows = coil_shifts("AKA", {(number, "C"): 12.0 for number in (1, 2, 3)})
        lines = "".join(self.line(number, name, "C", "12.000", "10.000") for number, name in enumerate("AKA", 1))
        self.expect_report("AKA", rows, lines, options=["-first", "2", "-last", "2"])

    def test_noclip_changes_nothing(self):
        self.expect_report("AKA", coil_shifts("AKA", {(2, "C"): 12.0}), self.line(2, "K", "C", "12.000", "10.000"),
                           options=["-noclip"])

    def test_order_residues_then_atoms(self):
        rows = coil_shifts("AK", {(number, atom): 15.0 for number in (1, 2) for atom in ("HN", "C", "N", "CA")})[::-1]
        lines = ""
        for number, name in ((1, "A"), (2, "K")):
            for atom in ("N", "C", "CA", "HN"):
                limit, mark = ("2.000", " !") if atom == "HN" else ("10.000", "")
                lines += self.line(number, name, atom, "15.000", limit, mark)
        self.expect_report("AK", rows, lines)

    def test_a_shift_that_is_no_number_is_listed(self):
        rows = [row[:3] + ("nan",) if row[:3:2] == (2, "C") else row for row in coil_shifts("AKA")]
        self.expect_report("AKA", rows, self.line(2, "K", "C", "nan", "nan"))

    def test_a_number_of_four_digits(self):
        sequence = "A" * 1000
        rows = [(1000, "A", "N", "140"), (1, "A", "N", "120")]
        # No residue has both CA and CB.
        self.expect_report(sequence, rows, self.line(1000, "A", "N", "20.000", "10.000"))


class Referencing(CheckReport):
    """Fits of the shift against d = CA - CB over residues with d < 0; the first pair counts in the means alone."""

    def fits(self, ca, cb, ha, c):
        return "".join(FIT % (atom, *values) for atom, values in zip(("CA", "CB", "HA", "C'"), (ca, cb, ha, c)))

    def test_no_shifts_at_all(self):
        self.expect_report("AKA", [])

    def test_no_sequence_at_all(self):
        self.expect_report("", [])

    def test_no_difference_below_0(self):
        self.expect_report("AKA", coil_shifts("AKA", {(2, "CA"): 3.0}))

    def test_a_residue_without_CB_is_left_out(self):
        self.expect_report("AKA", coil_shifts("AKA", {(2, "CA"): -3.0}, leave_out=[(2, "CB")]))

    def test_one_residue(self):
        # One pair (d, y): slope y/d, offset 0; error sqrt(0 / -1) / sqrt(1), a negative zero. CA: d = y = -2, slope
        # 1, offset -2 - 1 * -2 = 0. CB: y = 0: 0/(-4): slope -0... offset 0. HA 0.5: slope -0.25, offset 0.
        # Slope of CB: (0 * 1 - -2 * (0 * 1)) / (0 * 1 - -2 * (-2 * 1)) = 0 / -4 = -0; offset 0 - (-0 * -2) = 0.
        self.expect_report("AKA", coil_shifts("AKA", {(2, "CA"): -2.0, (2, "HA"): 0.5}), fits=self.fits(
            ("0.000", "-0.000", 1, ""), ("0.000", "-0.000", 1, ""), ("0.000", "-0.000", 1, ""),
            ("0.000", "-0.000", 1, "")))

    def test_two_residues(self):
        # Pairs (d, CA): (-1, -1), (-2, -2); the first in the means only: n = 2, means -1.5, mean of d * CA and of
        # d * d is 4. slope = (4*2 - 1.5*3) / (4*2 - 1.5*3) = 1, offset 0; residual 0, one: 0/0.
        # CB is 0 throughout: slope (0 - 0) / 3.5 = 0, offset 0, 0/0. C is 4 and 0:
        # mean 2, mean of products 0: slope (0 - -1.5 * 4) / 3.5 = 12/7, offset 2 + 1.5 * 12/7 = 32/7 = 4.571;
        # residual 0 - (-2 * 12/7 + 32/7) = -8/7, squared over 0: infinite. HA is missing in residue 1: one pair.
        rows = coil_shifts("AKA", {(1, "CA"): -1.0, (2, "CA"): -2.0, (1, "C"): 4.0}, leave_out=[(1, "HA")])
        self.expect_report("AKA", rows, fits=self.fits(
            ("0.000", NAN, 2, ""), ("0.000", NAN, 2, ""), ("0.000", "-0.000", 1, ""), ("4.571", "inf", 2, CORRECT)))

    def test_three_residues(self):
        # d = -1, -2, -3. C = 2, 3, 4: means -2 and 3; of residues 2 and 3: d * C = -6, -12, mean -9; d * d = 4, 9,
        # mean 6.5. slope = (-27 + 18) / (19.5 - 12) = -1.2, offset 3 - 2.4 = 0.6. Residuals: 3 - 3 = 0,
        # 4 - 4.2 = -0.2; error sqrt(0.04 / 1) / sqrt(3) = 0.115470.
        # CA = d: slope 1, offset 0, error 0. CB = 0.
        # HA = 0.3 throughout: d * HA = -0.6, -0.9, mean -0.75; slope (-2.25 + 1.8) / 7.5 = -0.06, offset 0.18;
        # residuals 0.3 - 0.30 = 0 and 0.3 - 0.36 = -0.06: error 0.06 / sqrt(3) = 0.034641.
        changes = {(number, "CA"): -float(number) for number in (1, 2, 3)}
        changes.update({(number, "C"): number + 1.0 for number in (1, 2, 3)})
        changes.update({(number, "HA"): 0.3 for number in (1, 2, 3)})
        self.expect_report("AKA", coil_shifts("AKA", changes), fits=self.fits(
            ("0.000", "0.000", 3, ""), ("0.000", "0.000", 3, ""), ("0.180", "0.035", 3, ""),
            ("0.600", "0.115", 3, "")))

    def test_corrections_are_recommended_above_1_ppm_and_a_quarter_for_HA(self):
        # The fit of three residues scales with y. C = 4, 6, 8: offset 1.2, error 0.231. HA 0.45: offset 0.27, error
        # 0.052. Both are recommended.
        changes = {(number, "CA"): -float(number) for number in (1, 2, 3)}
        changes.update({(number, "C"): 2.0 * (number + 1) for number in (1, 2, 3)})
        changes.update({(number, "HA"): 0.45 for number in (1, 2, 3)})
        self.expect_report("AKA", coil_shifts("AKA", changes), fits=self.fits(
            ("0.000", "0.000", 3, ""), ("0.000", "0.000", 3, ""), ("0.270", "0.052", 3, CORRECT),
            ("1.200", "0.231", 3, CORRECT)))

    def test_an_offset_below_0_is_recommended_by_its_size(self):
        # CA = -2 throughout against CB = -1, 0, 1: d = -1, -2, -3. d * CA = 4, 6, mean 5; slope
        # (15 - 12) / 7.5 = 0.4, offset -2 + 0.8 = -1.2; residuals -2 + 2 = 0, -2 + 2.4 = 0.4: error 0.230940.
        # CB: d * CB = 0, -3, mean -1.5; mean of CB 0; slope -4.5 / 7.5 = -0.6, offset -1.2; residuals
        # 0 - 0 = 0, 1 - 0.6 = 0.4: error 0.230940.
        changes = {(number, "CA"): -2.0 for number in (1, 2, 3)}
        changes.update({(number, "CB"): number - 2.0 for number in (1, 2, 3)})
        self.expect_report("AKA", coil_shifts("AKA", changes), fits=self.fits(
            ("-1.200", "0.231", 3, CORRECT), ("-1.200", "0.231", 3, CORRECT), ("0.000", "0.000", 3, ""),
            ("0.000", "0.000", 3, "")))

    def test_residues_are_taken_in_the_order_of_their_numbers_as_texts(self):
        # Residues 2 and 10 (and 9) have d = -2, -1, -3 with C = 3, 2, 4; as texts 10 comes first, and so d = -1 is
        # the pair that is left out: the fit of three residues, offset 0.6.
        changes = {(10, "CA"): -1.0, (2, "CA"): -2.0, (9, "CA"): -3.0, (10, "C"): 2.0, (2, "C"): 3.0, (9, "C"): 4.0}
        rows = coil_shifts("AKAAAAAAAKA", changes)
        fits = self.fits(("0.000", "0.000", 3, ""), ("0.000", "0.000", 3, ""), ("0.000", "0.000", 3, ""),
                         ("0.600", "0.115", 3, ""))
        self.expect_report("AKAAAAAAAKA", rows, fits=fits)

    def test_missing_HA_and_C_shorten_their_fits_alone(self):
        changes = {(number, "CA"): -float(number) for number in (1, 2, 3)}
        rows = coil_shifts("AKA", changes, leave_out=[(1, "HA"), (2, "HA"), (3, "HA"), (1, "C"), (2, "C")])
        self.expect_report("AKA", rows, fits=self.fits(
            ("0.000", "0.000", 3, ""), ("0.000", "0.000", 3, ""), (NAN, NAN, 0, ""), ("0.000", "-0.000", 1, "")))

    def test_shifts_are_not_clipped(self):
        # One residue far out: d = -40, listed as an outlier and still in the fit.
        line = "    2 K  CA Secondary Shift:  -40.000    Limit:  -10.000 !\n"
        self.expect_report("AKA", coil_shifts("AKA", {(2, "CA"): -40.0}), line, self.fits(
            *[("0.000", "-0.000", 1, "")] * 4))

    def test_glycine_without_HA2_and_HA3_counts_as_missing(self):
        rows = [row for row in coil_shifts("AGA", {(2, "CA"): -1.0}) if row[2] not in ("HA2", "HA3")]
        rows.append((2, "G", "CB", "35.0"))
        self.expect_report("AGA", rows, fits=self.fits(
            ("0.000", "-0.000", 1, ""), ("0.000", "-0.000", 1, ""), (NAN, NAN, 0, ""), ("0.000", "-0.000", 1, "")))

    def test_the_sequence_does_not_start_at_1(self):
        # Residues 3, 4, 5; covered are 1 to 3. Residues 1 and 2 have no name and no shifts.
        rows = coil_shifts("AKA", {(3, "CA"): -1.0, (4, "CA"): -1.0}, first=3)
        self.expect_report("AKA", rows, fits=self.fits(*[("0.000", "-0.000", 1, "")] * 4), first=3)

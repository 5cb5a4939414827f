"""The check report: outliers, their marks, and the referencing offsets. Limits: 10 ppm, HA 1, HN 2."""

from support import NAN, ProgramTest, coil_shifts, progress, protein

NONE, ONE = (NAN, NAN, 0), ("0.000", "-0.000", 1)  # what is fitted to no pair and to one


def fits(*values):
    """The lines of CA, CB, HA and C', from offset, error and size of each."""
    return "".join("  Estimated %s shift referencing offset %7s ppm (fitting error: %6s, size: %3d)\n" % (atom, *fit)
                   for atom, fit in zip(("CA", "CB", "HA", "C'"), values))


class CheckReport(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write_tables()

    def expect_report(self, sequence, rows, outliers="", fitted=(NONE,) * 4, first=None, options=()):
        self.write("in.tab", protein(sequence, rows, first))
        self.expect(["-in", "in.tab", "-check", *options], progress() + "Analyzing in.tab:\n"
                    "\nChemical shift outlier checking...\n" + outliers
                    + "\nChemical shift referencing checking...\n" + fits(*fitted), status=255)


class Outliers(CheckReport):
    @staticmethod
    def line(number, name, atom, shift, limit, mark=""):
        return "  %3d %s %3s Secondary Shift: %8s    Limit: %8s%s\n" % (number, name, atom, shift, limit, mark)

    def test_order_residues_then_atoms(self):
        rows = coil_shifts("AK", {(number, atom): 15.0 for number in (1, 2) for atom in ("HN", "C", "N", "CA")})[::-1]
        lines = ""
        for number, name in ((1, "A"), (2, "K")):
            for atom in ("N", "C", "CA", "HN"):
                limit, mark = ("2.000", " !") if atom == "HN" else ("10.000", "")
                lines += self.line(number, name, atom, "15.000", limit, mark)
        self.expect_report("AK", rows, lines)

    def test_a_shift_of_nan_is_listed(self):
        rows = [row[:3] + ("nan",) if row[:3:2] == (2, "C") else row for row in coil_shifts("AKA")]
        self.expect_report("AKA", rows, self.line(2, "K", "C", "nan", "nan"))

    def test_a_number_of_four_digits(self):
        sequence = "A" * 1000
        rows = [(1000, "A", "N", "140"), (1, "A", "N", "120")]
        # No residue has both CA and CB.
        self.expect_report(sequence, rows, self.line(1000, "A", "N", "20.000", "10.000"))


class Referencing(CheckReport):
    """Fits of the shift against d = CA - CB over residues with d < 0; the first pair counts in the means alone."""

    def test_no_sequence_at_all(self):
        self.expect_report("", [])

    def test_no_difference_below_0(self):
        """The report ends the run with status 255 and no time, whatever the value of the option."""
        for value in ([], ["no"], ["0"], [""]):
            with self.subTest(value=value):
                self.expect_report("APGA", coil_shifts("APGA"), options=value)

    def test_glycine_without_HA2_and_HA3_counts_as_missing(self):
        rows = [row for row in coil_shifts("AGA", {(2, "CA"): -1.0}) if row[2] not in ("HA2", "HA3")]
        rows.append((2, "G", "CB", "35.0"))
        self.expect_report("AGA", rows, fitted=(ONE, ONE, NONE, ONE))

    def test_the_sequence_does_not_start_at_1(self):
        # Residues 3, 4, 5; covered are 1 to 3. Residues 1 and 2 have no name and no shifts.
        rows = coil_shifts("AKA", {(3, "CA"): -1.0, (4, "CA"): -1.0}, first=3)
        self.expect_report("AKA", rows, fitted=(ONE,) * 4, first=3)

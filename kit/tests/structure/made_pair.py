"""A protein with shifts of chosen calls, chains with chosen omegas, and a folder for both."""
import made_structure as made
from zorvela_tests import folder, program

#           1234567890123456789012345678901234567890
SEQUENCE = "MLEGSKLAPKWDNHIGPKQFYVTEAPKLSTDHGVAPKMRL"  # the made tables know A, G and K beside a proline
OTHER = "GGSTKKLMNQRSTVWYAAEDFHIKKLNQ"
CIS = {"CB": 34.0, "CG": 24.0}    # far on the cis side of the made tables
TRANS = {"CB": 30.0, "CG": 27.0}  # on the means of trans


def shifts(cis=(), sequence=SEQUENCE):
    """A shift table whose prolines are all called: cis at these positions, else trans."""
    return program.full_table(sequence, {
        (position, atom): value for position, letter in enumerate(sequence, 1) if letter == "P"
        for atom, value in (CIS if position in cis else TRANS).items()})


def chain(cis=(), omegas=None, sequence=SEQUENCE, first=1):
    """Residues of a chain; omegas: {position: omega}, cis: positions with omega 0."""
    return made.backbone(sequence, {**{p - 1: 0.0 for p in cis}, **{p - 1: o for p, o in (omegas or {}).items()}},
                         first)


class Case(folder.InFolder):
    """Tests in a folder of their own, with shifts that say cis for proline 17."""

    def setUp(self):
        super().setUp()
        self.put("shifts.tab", shifts(cis=[17]))

    def run_kit(self, *arguments):
        return program.run(*arguments, cwd=self.folder)

    def rows(self, content, name="model.pdb"):
        """The rows of the CSV by residue number; what is said beside them is `stderr`."""
        self.put(name, content)
        result = self.run_kit("shifts.tab", "--structure", name, "--format", "csv")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.stderr = result.stderr
        return {row["resid"]: row for row in program.csv_rows(result.stdout)}

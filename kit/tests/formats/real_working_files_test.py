"""The real proteins as working files of assignment programs: the predictions of their shift tables."""
import pathlib
import re
import tempfile
import unittest

import layouts
from zorvela_tests import program

ENTRIES = program.real_entries()
# CB of one is 40 ppm too high throughout, the other has four unlikely shifts: without names neither fits.
UNLIKE_THEIR_SEQUENCE = ["bmr4068", "bmr4150"]
NOT_COMPARED = ("file", "chain", "list", "resid")  # tables keep their own numbers; the lists have positions


class RealWorkingFiles(unittest.TestCase):
    maxDiff = None

    def rows(self, *files):
        """Rows by the stem of the file, and the stems of files that do not fit their sequence."""
        result = program.run("--format", "csv", *files, tables=program.TABLES)
        # The summary at the end names each once more.
        refused = sorted(set(re.findall(r"(\w+)\.prot: does not fit the sequence of", result.stderr)))
        self.assertEqual(result.returncode, 1 if refused else 0, result.stderr[-2000:])
        found = {}
        for row in program.csv_rows(result.stdout):
            kept = {column: value for column, value in row.items() if column not in NOT_COMPARED}
            if pathlib.Path(row["file"]).stem not in refused:
                found.setdefault(pathlib.Path(row["file"]).stem, []).append(kept)
        return found, refused

    @classmethod
    def setUpClass(cls):
        cls.proteins = {file.stem: layouts.of_table(file.read_text()) for file in ENTRIES}

    def compare(self, write, refused):
        """`write` gives the files of a protein by their endings."""
        with tempfile.TemporaryDirectory() as folder:
            for stem, protein in self.proteins.items():
                for ending, text in write(protein).items():
                    pathlib.Path(folder, stem + ending).write_text(text)
            found, not_fitting = self.rows(folder)
        self.assertEqual(not_fitting, refused)
        expected = {stem: rows for stem, rows in self.rows(*ENTRIES)[0].items() if stem not in refused}
        self.assertEqual(sorted(found), sorted(expected))
        differing = [stem for stem in expected if found[stem] != expected[stem]]
        for stem in differing[:3]:
            with self.subTest(stem):
                self.assertEqual(found[stem], expected[stem])
        self.assertEqual(differing, [])

    def test_prot_and_seq(self):
        self.compare(lambda protein: {".prot": layouts.xeasy(protein), ".seq": layouts.whole_seq(protein)},
                     UNLIKE_THEIR_SEQUENCE)

    def test_nef_with_prolines_under_the_next_residue(self):
        self.compare(lambda protein: {".nef": layouts.nef(protein)}, [])

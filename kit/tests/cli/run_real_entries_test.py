"""zorvela-kit run over all real proteins: the same as zorvela, and one row for each proline."""
import unittest

from zorvela_tests import program
import run_against_zorvela_test as zorvela

COMPARED = 50
ENTRIES = program.real_entries()


class RealEntries(unittest.TestCase):
    maxDiff = None

    def test_same_as_zorvela(self):
        chosen = ENTRIES[::len(ENTRIES) // COMPARED][:COMPARED]
        self.assertEqual(len(chosen), COMPARED)
        self.assertGreater(zorvela.compare(self, chosen), COMPARED)

    def test_every_proline_is_there_once(self):
        expected = {(str(file), str(i)) for file in ENTRIES
                    for i, name in enumerate(zorvela.sequence_of(file), start=1) if name == "P"}
        result = program.run("--format", "csv", *ENTRIES, tables=program.TABLES)
        self.assertEqual(result.returncode, 0, result.stderr)
        rows = program.csv_rows(result.stdout)
        self.assertEqual(len(rows), len(expected))
        self.assertEqual({(row["file"], row["position"]) for row in rows}, expected)
        for row in rows:
            self.assertEqual(row["p_cis_norm"] == "", row["call"] == "none", row)
            self.assertEqual(row["reason"] != "", row["call"] == "none", row)

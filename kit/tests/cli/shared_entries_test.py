"""Runs over the shift tables of the shared data; skipped where they are not there.

They are looked for in the folder that ZORVELA_SHARED_DATA names, else in ../shared/data beside the checkout.
"""
import sys
import unittest

import program
import same_as_zorvela_test as zorvela

SKIPPED = 77  # told to CTest
COMPARED = 50
ENTRIES = program.shared_entries()


class SharedEntries(unittest.TestCase):
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


if __name__ == "__main__":
    if len(ENTRIES) < COMPARED:
        print("skipped: there are no shift tables in ../shared/data/entries; set ZORVELA_SHARED_DATA to the folder "
              "above entries")
        sys.exit(SKIPPED)
    unittest.main(verbosity=2)

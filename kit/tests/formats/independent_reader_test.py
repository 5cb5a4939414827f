"""Every STAR and NEF file of the tests, read once more by a reader of its own: same residues, same shifts.

The real files of the shared data are compared as well, where that folder is there.
"""
import gzip
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

import independent_star
from zorvela_tests.program import KIT, SOURCE

FILES = pathlib.Path(__file__).resolve().parent.parent / "files"
SHARED = pathlib.Path(os.environ.get("ZORVELA_SHARED_DATA", SOURCE.parent / "shared" / "data")) / "files"
NO_PROTEIN = {"star3_rna.str"}
KINDS = (".str", ".nef", ".mr")


def read_table(text):
    """Sequence and {(place, atom): value} of a shift table."""
    sequence = "".join(re.findall(r"^DATA SEQUENCE (.*)$", text, re.MULTILINE)).replace(" ", "")
    rows = re.findall(r"^ *(\d+) +(\S) +(\S+) +(-?[\d.]+)$", text, re.MULTILINE)
    return sequence, {(int(place), atom): float(value) for place, _, atom, value in rows}


def imported(file):
    """The tables of a file, of every list, in the order in which they were written."""
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run([KIT, "import", "--list", "all", "--output", folder + "/", str(file)],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300, check=False)
        names = re.findall(r"wrote (.*\.tab) \(", done.stderr.decode())
        return [read_table(pathlib.Path(name).read_text()) for name in names]


def expected(text):
    """The same by the independent reader."""
    tables = []
    for chain in independent_star.read(text):
        if not chain.rows:
            continue
        if not chain.residues:
            independent_star.derive(chain)
            chain.is_given = False
        independent_star.fill_gaps(chain)
        for rows in chain.rows.values():
            shifts = independent_star.shifts(chain, rows)
            letters = list(chain.sequence())
            for key, number, name, *_ in (row for all_rows in chain.rows.values() for row in all_rows):
                for place, residue in enumerate(chain.residues):
                    if residue[0] == key and not residue[2]:
                        letters[place] = chain.letter(name)
            if shifts and any(letter != "?" for letter in letters):
                tables.append(("".join(letters), shifts))
    return tables


class IndependentReader(unittest.TestCase):
    def compare(self, file, text):
        found, wanted = imported(file), expected(text)
        self.assertEqual(len(found), len(wanted), file.name)
        for (sequence, shifts), (letters, values) in zip(found, wanted):
            self.assertEqual(sequence.replace("c", "C"), letters, file.name)
            self.assertEqual(sorted(shifts), sorted(values), file.name)
            for key, value in values.items():
                self.assertAlmostEqual(shifts[key], value, delta=0.00051, msg="%s %s" % (file.name, key))
        return sum(len(shifts) for _, shifts in found)

    def test_files_of_the_tests(self):
        files = [f for f in sorted(FILES.iterdir()) if f.suffix in KINDS and f.name not in NO_PROTEIN]
        self.assertGreater(len(files), 18)
        for file in files:
            with self.subTest(file=file.name):
                self.assertGreater(self.compare(file, file.read_text()), 0)

    @unittest.skipUnless(SHARED.is_dir(), "no shared data")
    def test_real_files(self):
        files = [f for f in sorted(SHARED.iterdir()) if f.name[:-3].endswith((".str", ".nef"))]
        self.assertEqual(len(files), 9)
        total = 0
        for file in files:
            with self.subTest(file=file.name):
                total += self.compare(file, gzip.decompress(file.read_bytes()).decode())
        self.assertGreater(total, 3000)


"""The numbers are the same as those of zorvela-kit."""
import csv
import io
import json
import math
import os
import subprocess
import unittest

import pandas
import zorvela
from tables import mapping_of
from zorvela_tests import program

COUNT = 30 if os.environ.get("ZORVELA_SANITIZE") else 300


def companion(*arguments):
    done = subprocess.run([program.KIT, "run", "--tables", "tab", *map(str, arguments)], cwd=program.SOURCE,
                          capture_output=True, check=False)
    return done.stdout.decode()


def some_entries():
    entries = program.real_entries()
    return [entries[index * len(entries) // COUNT] for index in range(COUNT)]


class SameNumbers(unittest.TestCase):
    maxDiff = 2000

    def same(self, described, found, place):
        """All members of a JSON value are in the object, with the same values."""
        if isinstance(described, dict):
            for name, member in described.items():
                self.same(member, found[name] if isinstance(found, dict) else getattr(found, name), f"{place}.{name}")
        elif isinstance(described, list):
            self.assertEqual(len(described), len(found), place)
            for index, (one, other) in enumerate(zip(described, found)):
                self.same(one, other, f"{place}[{index}]")
        elif described != found or type(described) is not type(found):
            self.fail(f"{place}: {described!r} by the companion, {found!r} here")

    def compare(self, files, *options, **keywords):
        report = json.loads(companion("--format", "json", *files, *options))
        results = list(zorvela.predict_many(files, list="all" if "all" in options else None, **keywords))
        proteins = [protein for one in results for protein in one.proteins]
        self.same(report["proteins"], proteins, "proteins")
        if "structures" in report:
            self.same(report["structures"], results[0].structures, "structures")
        return len(proteins)

    def test_real_proteins(self):
        self.assertEqual(self.compare(some_entries()), COUNT)

    def test_other_files(self):
        files = program.SOURCE / "kit" / "tests" / "files"
        self.compare([program.SOURCE / "examples" / "nuclease.str", files / "star3_complex.str",
                      files / "star3_messy.str", files / "nef_entry.nef", files / "shifts.csv"], "--list", "all")

    def test_as_referenced(self):
        self.compare(some_entries()[:COUNT // 10], "--as-referenced", as_referenced=True)

    def test_structures(self):
        table = program.SOURCE / "examples" / "ubiquitin.tab"
        for structure in ("examples/ubiquitin.pdb.gz", "kit/tests/files/ubiquitin_ensemble.cif.gz",
                          "examples/nuclease.pdb.gz"):
            path = str(program.SOURCE / structure)
            self.compare([table], "--structure", path, structure=path)

    def test_the_frame_has_the_cells_of_the_csv(self):
        files = some_entries()[:COUNT // 10]
        structure = program.SOURCE / "examples" / "nuclease.pdb.gz"
        files.append(program.SOURCE / "examples" / "nuclease.tab")
        rows = list(csv.reader(io.StringIO(companion("--format", "csv", *files, "--structure", structure))))
        frame = zorvela.to_frame(zorvela.predict_many(files, structure=structure))
        self.assertEqual(rows[0], list(frame.columns))
        self.assertEqual(len(rows) - 1, len(frame))
        for row, cells in zip(rows[1:], frame.itertuples(index=False)):
            for column, text, cell in zip(rows[0], row, cells):
                if text == "":
                    self.assertTrue(cell is None or cell is pandas.NA or cell == "" or math.isnan(cell), column)
                elif isinstance(cell, bool):
                    self.assertEqual(text, "yes" if cell else "no")
                else:
                    self.assertEqual(float(text) if isinstance(cell, float) else text.removeprefix("'"),
                                     cell if isinstance(cell, float) else str(cell), column)

    def test_shifts_without_a_file(self):
        for path in some_entries():
            sequence, shifts = mapping_of(path)
            ours, theirs = zorvela.predict_shifts(sequence, shifts), zorvela.predict(path)
            with self.subTest(path.name):
                self.assertEqual(
                    [(p.position, p.call, p.p_cis, p.p_cis_norm, p.cs_cnt, p.cg_shift) for p in ours.prolines],
                    [(p.position, p.call, p.p_cis, p.p_cis_norm, p.cs_cnt, p.cg_shift) for p in theirs.prolines])

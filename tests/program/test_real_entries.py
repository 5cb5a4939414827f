"""A hundred real proteins, each compared with the run worked out independently."""

import csv
import os

import reference
from reference import ROOT
from support import ProgramTest, mask
from zorvela_tests.program import data_folder

WITH_CIS = 50
OTHERS = 50


def chosen_entries(folder):
    """Fifty proteins with a cis proline and fifty others, both spread evenly over the sorted names."""
    names = sorted(name for name in os.listdir(folder) if name.endswith(".tab"))
    with open(data_folder() / "prolines.csv", newline="", encoding="utf-8") as file:
        cis = {row["entry"] for row in csv.DictReader(file) if row["label_structure"] == "cis"}
    groups = ([name for name in names if name[:-4] in cis], [name for name in names if name[:-4] not in cis])
    return [group[at * len(group) // count] for group, count in zip(groups, (WITH_CIS, OTHERS)) if group
            for at in range(count)]


class RealEntries(ProgramTest):
    def test_as_worked_out(self):
        folder = data_folder() / "entries"
        names = chosen_entries(folder)
        self.assertEqual(len(set(names)), WITH_CIS + OTHERS)
        for count, name in enumerate(names):
            for options in ([], ["-check"], ["-noclip"])[:3 if count % 20 < 4 else 2]:
                with self.subTest(name, options=options):
                    self.compare_one(os.path.join(folder, name), options)

    def compare_one(self, path, options):
        arguments = ["-in", path, "-out", self.path("pred.tab"), *options]
        environment = self.environment()
        expected = reference.Run(arguments, environment, ROOT)
        result = self.run_program(*arguments, directory=ROOT)
        self.assertEqual((result.stderr, result.status), (expected.stderr, expected.status))
        if expected.status == 0:
            self.assertEqual(result.stdout, expected.stdout)
            self.assertEqual(self.read("pred.tab"), expected.table_text)
        elif result.stdout != expected.stdout:
            # The fit may hold intermediate results wider than single precision, which can turn the last decimal.
            wide = reference.Run(arguments, environment, ROOT, wide_fit=True)
            for line, *allowed in zip(mask(result.stdout).split("\n"), expected.stdout.split("\n"),
                                      wide.stdout.split("\n")):
                self.assertIn(line, allowed)

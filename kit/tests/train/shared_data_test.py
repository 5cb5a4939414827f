"""On the development data: the tables in tab/ are what train writes, and reach the figures that we state.

The data are not part of the repository. They are looked for in ZORVELA_SHARED_DATA, else in
../shared/data beside the checkout; without them these tests are skipped.
"""
import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

KIT = os.environ["ZORVELA_KIT"]
SOURCE = os.environ["ZORVELA_SOURCE"]
DATA = os.environ.get("ZORVELA_SHARED_DATA") or os.path.join(SOURCE, "..", "shared", "data")
PROTEINS = ["--entries", os.path.join(DATA, "entries"), "--labels", os.path.join(DATA, "prolines.csv")]
SOURCES = ["--neighbours", os.path.join(DATA, "proline_neighbour_counts.csv"), "--random-coil",
           os.path.join(DATA, "random_coil", "nielsen_mulder_2018.csv"), "--neighbour-effects",
           os.path.join(DATA, "random_coil", "nielsen_mulder_2018_neighbours.csv")]
SKIPPED = 77


class SharedData(unittest.TestCase):
    def run_kit(self, *arguments):
        begin = time.monotonic()
        result = subprocess.run([KIT, *arguments], capture_output=True, text=True, check=False)
        self.assertEqual(("", 0), (result.stderr, result.returncode))
        return result.stdout, time.monotonic() - begin

    def test_tables_are_those_that_train_writes(self):
        with tempfile.TemporaryDirectory() as folder:
            self.run_kit("train", *PROTEINS, *SOURCES, "--output", folder)
            names = sorted(os.listdir(folder))
            self.assertEqual(7, len(names))
            for name in names:
                with open(os.path.join(folder, name), "rb") as made:
                    with open(os.path.join(SOURCE, "tab", name), "rb") as ours:
                        self.assertEqual(ours.read(), made.read(), name)

    def test_cross_validation_reaches_the_figures(self):
        output, seconds = self.run_kit("evaluate", *PROTEINS, "--cross-validate", "10", "--json")
        groups = {group["group"]: group for group in json.loads(output)["groups"]}

        def figure(group, name):
            return groups[group][name]["value"]

        self.assertGreaterEqual(figure("all", "auc"), 0.935)
        self.assertLess(figure("all", "log_loss"), 0.12)
        self.assertGreaterEqual(figure("all", "mcc"), 0.56)
        self.assertGreater(figure("with_cb_and_cg", "mcc"), figure("with_cb_and_cg_rule", "mcc"))
        self.assertGreater(figure("with_cb_and_cg", "auc"), figure("with_cb_and_cg_rule", "auc"))
        self.assertGreaterEqual(figure("without_cb_minus_cg", "auc"), 0.865)
        self.assertGreaterEqual(figure("not_contradicted_with_cb_and_cg", "auc"), 0.97)
        self.assertLess(seconds, 180)

    def test_one_evaluation_is_quick(self):
        _, seconds = self.run_kit("evaluate", *PROTEINS, "--tables", os.path.join(SOURCE, "tab"))
        self.assertLess(seconds, 20)


if __name__ == "__main__":
    if not os.path.isdir(os.path.join(DATA, "entries")):
        print(f"skipped: there is no {os.path.join(DATA, 'entries')}; set ZORVELA_SHARED_DATA to the folder")
        sys.exit(SKIPPED)
    unittest.main()

"""On the development data: the tables in tab/ are what train writes, and reach the figures that the documents state.

Without the data, which are not part of the repository, these tests are skipped.
"""
import json
import os
import resource
import subprocess
import sys
import tempfile
import unittest

from zorvela_tests.program import DATA, KIT, SOURCE, needs_shared_data

PROTEINS = ["--entries", os.path.join(DATA, "entries"), "--labels", os.path.join(DATA, "prolines.csv")]
SOURCES = ["--neighbours", os.path.join(DATA, "proline_neighbour_counts.csv"), "--random-coil",
           os.path.join(DATA, "random_coil", "nielsen_mulder_2018.csv"), "--neighbour-effects",
           os.path.join(DATA, "random_coil", "nielsen_mulder_2018_neighbours.csv")]


def processor_time():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def document(name):
    with open(os.path.join(SOURCE, "doc", name), encoding="utf-8") as file:
        return file.read()


@needs_shared_data
class ShippedTables(unittest.TestCase):
    maxDiff = None

    def run_kit(self, *arguments):
        """Output, and processor time in seconds: it does not depend on what else the machine does."""
        begin = processor_time()
        result = subprocess.run([KIT, *arguments], capture_output=True, text=True, check=False)
        self.assertEqual(("", 0), (result.stderr, result.returncode))
        return result.stdout, processor_time() - begin

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

    def test_documents_hold_what_is_printed(self):
        with tempfile.TemporaryDirectory() as folder:
            calibration = os.path.join(folder, "calibration.csv")
            output, _ = self.run_kit("evaluate", *PROTEINS, "--cross-validate", "10", "--calibration", calibration)
            with open(calibration, encoding="utf-8") as file:
                bins = "".join(",".join(line.split(",")[:6]) + "\n" for line in file)
        command = "$ zorvela-kit evaluate --entries DATA/entries --labels DATA/prolines.csv --cross-validate 10"
        self.assertIn(f"```console\n{command}\n{output}```\n", document("accuracy.md"))
        self.assertIn(f"$ cut -d, -f1-6 calibration.csv\n{bins}```\n", document("accuracy.md"))
        sources = subprocess.run([sys.executable, os.path.join(SOURCE, "script", "tables-sources"), DATA], check=True,
                                 capture_output=True, text=True).stdout
        self.assertTrue(document("tables.md").endswith(sources.rstrip("\n") + "\n"))

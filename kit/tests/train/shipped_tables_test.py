"""The tables in tab/ are what train writes from the data of the repository, and reach the figures of the documents."""
import json
import os
import resource
import shutil
import subprocess
import sys
import tempfile
import unittest

from zorvela_tests.program import KIT, SOURCE, data_folder

DATA = data_folder()
PROTEINS = ["--entries", os.path.join(DATA, "entries"), "--labels", os.path.join(DATA, "prolines.csv")]


def processor_time():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


class ShippedTables(unittest.TestCase):
    maxDiff = None

    def run_kit(self, *arguments):
        """Output, and processor time in seconds: it does not depend on what else the machine does."""
        begin = processor_time()
        result = subprocess.run([KIT, *arguments], capture_output=True, text=True, check=False)
        self.assertEqual(("", 0), (result.stderr, result.returncode))
        return result.stdout, processor_time() - begin

    def test_tables_are_those_that_train_writes(self):
        done = subprocess.run([os.path.join(SOURCE, "script", "tables"), KIT], capture_output=True, text=True, check=False)
        self.assertEqual(("The seven tables are those in tab/, byte for byte\n", "", 0),
                         (done.stdout, done.stderr, done.returncode))

    def test_another_table_is_noticed(self):
        with tempfile.TemporaryDirectory() as folder:
            for name in ("data", "script"):
                os.symlink(os.path.join(SOURCE, name), os.path.join(folder, name))
            shutil.copytree(os.path.join(SOURCE, "tab"), os.path.join(folder, "tab"))
            with open(os.path.join(folder, "tab", "sslimit.tab"), "a", encoding="utf-8") as file:
                file.write("\n")
            done = subprocess.run([os.path.join(folder, "script", "tables"), KIT], capture_output=True, text=True,
                                  check=False)
        self.assertEqual(1, done.returncode)
        self.assertIn("sslimit.tab", done.stdout + done.stderr)

    def test_cross_validation_reaches_the_figures(self):
        output, seconds = self.run_kit("evaluate", *PROTEINS, "--cross-validate", "10", "--json")
        groups = {group["group"]: group for group in json.loads(output)["groups"]}

        def figure(group, name):
            return groups[group][name]["value"]

        self.assertGreaterEqual(figure("all", "auc"), 0.945)
        self.assertLess(figure("all", "log_loss"), 0.11)
        self.assertGreaterEqual(figure("all", "mcc"), 0.54)
        self.assertGreater(figure("with_cb_and_cg", "mcc"), figure("with_cb_and_cg_rule", "mcc"))
        self.assertGreater(figure("with_cb_and_cg", "auc"), figure("with_cb_and_cg_rule", "auc"))
        self.assertGreaterEqual(figure("without_cb_minus_cg", "auc"), 0.865)
        self.assertGreaterEqual(figure("not_contradicted_with_cb_and_cg", "auc"), 0.99)
        self.assertLess(seconds, 180)

    def test_one_evaluation_is_quick(self):
        _, seconds = self.run_kit("evaluate", *PROTEINS, "--tables", os.path.join(SOURCE, "tab"))
        self.assertLess(seconds, 20)

    def test_accession_numbers_of_the_document(self):
        sources = subprocess.run([sys.executable, os.path.join(SOURCE, "script", "tables-sources"), DATA], check=True,
                                 capture_output=True, text=True).stdout
        with open(os.path.join(SOURCE, "doc", "tables.md"), encoding="utf-8") as file:
            self.assertTrue(file.read().endswith(sources.rstrip("\n") + "\n"))

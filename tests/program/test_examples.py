"""The two proteins that come with the program, run from the root of the repository as in the README."""

import os

import expected
from reference import ROOT
from support import ProgramTest


class Examples(ProgramTest):
    def read_from_root(self, name):
        with open(os.path.join(ROOT, name), "rb") as file:
            return file.read().decode("latin-1")

    def compare(self, name, options, kind, status):
        result = self.run_program("-in", "examples/" + name + ".tab", "-sum", self.path("pred.tab"), *options,
                                  directory=ROOT)
        self.assertEqual(result.stderr, "")
        self.assertEqual(result.stdout, self.read_from_root(kind + ".out"))
        self.assertEqual(result.status, status)
        self.assertEqual(self.files(), {"pred.tab"} if status == 0 else set())
        if status == 0:
            self.assertEqual(self.read("pred.tab"), self.read_from_root(kind + ".pred.tab"))
            os.remove(self.path("pred.tab"))

    def test_examples(self):
        for name in expected.EXAMPLES:
            for options, kind, status in (([], "examples/" + name, 0),
                                          (["-noclip"], expected.HERE + "/" + name + ".noclip", 0),
                                          (["-check"], expected.HERE + "/" + name + ".check", 255)):
                with self.subTest(name, options=options):
                    self.compare(name, options, kind, status)

    def test_nuclease_proline_117_is_the_one_that_looks_cis(self):
        listed = {line.split()[1]: float(line.split()[3])
                  for line in self.read_from_root("examples/nuclease.out").split("\n") if line.startswith("   ")}
        self.assertEqual(sorted(listed), ["P11", "P117", "P31", "P42", "P47"])
        self.assertEqual(max(listed, key=listed.get), "P117")
        self.assertGreater(listed["P117"], 0.8)

    def test_expected_files_are_up_to_date(self):
        for name, text in expected.expected_files().items():
            self.assertEqual(self.read_from_root(name), text,
                             name + " is older than tab/: run python3 tests/program/expected.py")

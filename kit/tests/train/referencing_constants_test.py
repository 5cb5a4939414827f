"""On the development data: the constants of the referencing estimate and the ranges of plausible shifts are what their
commands print, and offsets are seen as often as the document says."""
import os
import re
import subprocess
import sys
import unittest

from zorvela_tests.program import KIT, SOURCE, data_folder

DATA = data_folder()

def study(command):
    program = os.path.join(os.path.dirname(KIT), "zorvela-study")
    return subprocess.run([program, command, DATA, os.path.join(SOURCE, "tab")], capture_output=True, text=True,
                          check=True).stdout


def text_of(*path):
    with open(os.path.join(SOURCE, *path), encoding="utf-8") as file:
        return file.read()


def code(text):
    """Without what the formatter changes."""
    return re.sub(r"\s", "", text)


class Constants(unittest.TestCase):
    maxDiff = None

    def test_offsets_are_seen_as_the_document_says(self):
        fitted = study("relations").splitlines()
        self.assertEqual(8, len(fitted))
        source = code(text_of("kit", "predict", "referencing.cpp"))
        for line in fitted:
            self.assertIn(code(line.rstrip(",")), source)
        printed = study("referencing")
        self.assertIn(printed, text_of("doc", "accuracy.md"))
        for name, least, most in (("as they are", 0, 2), ("1.5 ppm added to all 13C, chains with 13C", 95, 100),
                                  ("0.5 ppm added to HA, chains with HA", 95, 100)):
            (line,) = [line for line in printed.splitlines() if line.startswith(name)]
            for percent in re.findall(r"\(([0-9.]+) %\)", line)[1:]:
                self.assertGreater(float(percent), least, line)
                self.assertLess(float(percent), most, line)

    def test_plausible_ranges_are_those_of_their_script(self):
        printed = subprocess.run([sys.executable, os.path.join(SOURCE, "script", "plausible-shifts"), str(DATA)],
                                 capture_output=True, text=True, check=True).stdout.splitlines()
        source = code(text_of("kit", "names", "plausible_shifts.cpp"))
        self.assertEqual(22, len(printed))
        for line in printed[:-1]:
            self.assertIn(code(line.rstrip(",")), source)
        self.assertIn(printed[-1], text_of("doc", "accuracy.md"))

"""Writes the expected output of the examples, worked out by `reference` from tab/ and the examples' shift tables.

Run it after a change of tab/ or of an example:   python3 tests/program/expected.py
The program itself is not asked.
"""

import os
import sys

sys.dont_write_bytecode = True

import reference
from reference import ROOT

EXAMPLES = ("ubiquitin", "nuclease")
HERE = "tests/program/expected"


def expected_files():
    """File name below the repository's root to text, for each example: the run as the README shows it, the run
    without clipping, and the check report."""
    files = {}
    for name in EXAMPLES:
        base = ["-in", "examples/" + name + ".tab"]
        plain, unclipped, report = (work_out(base + more) for more in ([], ["-noclip"], ["-check"]))
        files["examples/" + name + ".out"] = plain.stdout
        files["examples/" + name + ".pred.tab"] = plain.table_text
        files[HERE + "/" + name + ".noclip.out"] = unclipped.stdout
        files[HERE + "/" + name + ".noclip.pred.tab"] = unclipped.table_text
        files[HERE + "/" + name + ".check.out"] = report.stdout
    return files


def work_out(arguments):
    environment = {"PATH": "/usr/bin"}
    run = reference.Run(arguments, environment, ROOT)
    if run.stderr:
        raise SystemExit("unexpected message: " + run.stderr)
    if reference.Run(arguments, environment, ROOT, wide_fit=True).stdout != run.stdout:
        raise SystemExit("an offset of %s is too near the middle of two printed values" % arguments)
    return run


if __name__ == "__main__":
    for file_name, text in expected_files().items():
        path = os.path.join(ROOT, file_name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(text.encode("latin-1"))
        print("wrote " + file_name)

"""zorvela-kit run gives the same as zorvela."""
import os
import re
import subprocess
import tempfile
import unittest

from zorvela_tests import program


def zorvela(*arguments):
    return subprocess.run([program.ZORVELA, *map(str, arguments)], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          text=True, env=program.environment(ZORVELA_DIR=program.SOURCE), timeout=300, check=False)


def zorvela_rows(file):
    """The rows of the prediction table that zorvela writes: residue number to cells."""
    with tempfile.TemporaryDirectory() as folder:
        out = os.path.join(folder, "pred.tab")
        result = zorvela("-in", file, "-out", out)
        assert result.returncode == 0, result.stderr
        with open(out, encoding="ascii") as lines:
            rows = [line.split() for line in lines]
    return {int(row[0]): row for row in rows if row and re.fullmatch(r"-?\d+", row[0])}


def as_zorvela_prints(value):
    """Six digits as text, then three decimals."""
    return "%.3f" % float("%.6g" % program.single(value))


def expected_row(proline):
    cg = 9999.0 if proline["cg_shift"] is None else proline["cg_shift"]
    counts = [str(proline[name]) for name in ("cs_cnt_prev", "cs_cnt", "cs_cnt_next")]
    return [str(proline["position"]), proline["prev"], "P", proline["next"], *counts, as_zorvela_prints(cg),
            as_zorvela_prints(proline["p_cis"]), as_zorvela_prints(proline["p_cis_norm"])]


def compare(test, files):
    """Compares run with zorvela over shift tables; gives the number of predicted prolines."""
    predicted = 0
    for file, protein in zip(files, program.proteins("--as-referenced", *files), strict=True):
        with test.subTest(file=str(file)):
            test.assertEqual(protein["file"], str(file))
            rows = {p["position"]: expected_row(p) for p in protein["prolines"] if p["call"] != "none"}
            test.assertEqual(rows, zorvela_rows(file))
            predicted += len(rows)
    return predicted


def sequence_of(file):
    with open(file, encoding="ascii") as lines:
        parts = [line[len("DATA SEQUENCE"):] for line in lines if line.startswith("DATA SEQUENCE")]
    return "".join("".join(parts).split())


class SameAsZorvela(unittest.TestCase):
    maxDiff = None

    def test_examples(self):
        self.assertGreaterEqual(len(program.EXAMPLES), 2)
        self.assertGreater(compare(self, program.EXAMPLES), 0)

    def test_every_proline_of_the_sequence_is_there_once(self):
        for file, protein in zip(program.EXAMPLES, program.proteins(*program.EXAMPLES), strict=True):
            sequence = sequence_of(file)
            self.assertEqual([p["position"] for p in protein["prolines"]],
                             [i + 1 for i, name in enumerate(sequence) if name == "P"])
            self.assertEqual(protein["length"], len(sequence))

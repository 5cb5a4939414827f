"""zorvela-kit run gives the same as zorvela, and both the same as a calculation in Python."""
import math
import os
import re
import subprocess
import tempfile
import unittest

from zorvela_tests import program

ATOMS = ["N", "HA", "C", "CA", "CB", "HN"]

# --- zorvela itself -----------------------------------------------------------------------------

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


# --- The same in Python -------------------------------------------------------------------------

def sequence_of(file):
    with open(file, encoding="ascii") as lines:
        parts = [line[len("DATA SEQUENCE"):] for line in lines if line.startswith("DATA SEQUENCE")]
    return "".join("".join(parts).split())


def rows_of(file):
    """The rows of a table: column name to text."""
    names, rows = [], []
    with open(file, encoding="ascii") as lines:
        for words in map(str.split, lines):
            if words[:1] == ["VARS"]:
                names = words[1:]
            elif words and words[0] not in ("REMARK", "DATA", "FORMAT"):
                rows.append(dict(zip(names, words)))
    return rows


def by_name(table, key):
    return {row[key]: row for row in rows_of(program.TABLES / table)}


class Calculation:
    """The prediction of one shift table, in double precision."""

    def __init__(self, file):
        self.sequence = sequence_of(file)
        self.shifts = {}
        for row in rows_of(file):
            self.shifts.setdefault((int(row["RESID"]), row["ATOMNAME"]), float(row["SHIFT"]))
        self.coil, self.own, self.prev, self.next, self.limit = (
            by_name(name, "RESNAME") for name in
            ("randcoil.tab", "rcadj.tab", "rcprev.tab", "rcnext.tab", "sslimit.tab"))
        self.classes = {int(row["index"]): row for row in rows_of(program.TABLES / "Pro.cs.tab")}
        self.shares = by_name("Pro.seq.tab", "resname")

    def name(self, resid):
        return self.sequence[resid - 1] if 1 <= resid <= len(self.sequence) else ""

    def observed(self, resid, atom):
        if self.name(resid) == "G" and atom == "HA":
            both = [self.shifts[resid, a] for a in ("HA2", "HA3") if (resid, a) in self.shifts]
            return sum(both) / len(both) if both else None
        return self.shifts.get((resid, atom))

    def secondary(self, resid, atom):
        """Clipped; None if absent or not used."""
        name, shift = self.name(resid), self.observed(resid, atom)
        if shift is None or name not in self.coil or (name == "P" and atom in ("N", "HN")):
            return None
        corrections = ((self.own, name), (self.prev, self.name(resid - 1)), (self.next, self.name(resid + 1)))
        reference = float(self.coil[name][atom]) + sum(float(table[n][atom]) for table, n in corrections if n in table)
        low, high = (float(self.limit[name][atom + end]) for end in ("_MIN", "_MAX"))
        return min(max(shift - reference, low), high)

    def missing(self, resid):
        return sum(self.observed(resid, atom) is None for atom in ATOMS)

    def predict(self, resid):
        """P_CIS and P_CIS_NORM, or None."""
        if not 1 < resid < len(self.sequence):
            return None
        if sum(self.missing(r) > 3 for r in (resid - 1, resid, resid + 1)) > 1:
            return None
        values = {6 * p + a: self.secondary(resid - 1 + p, atom) for p in range(3) for a, atom in enumerate(ATOMS)}
        values[18] = self.shifts.get((resid, "CG"))
        logs = []
        for kind in ("cis", "trans"):
            before, after = self.shares[self.name(resid - 1)], self.shares[self.name(resid + 1)]
            total = math.log(float(before[kind + "_prev"])) + math.log(float(after[kind + "_next"]))
            for index, value in values.items():
                if value is not None:
                    mean, deviation = (float(self.classes[index][n + kind]) for n in ("avg_", "std_"))
                    total -= 0.5 * ((value - mean) / deviation) ** 2
            logs.append(total)
        odds = math.exp(logs[0] - logs[1])
        return odds / (1 + odds), odds / 19 / (1 + odds / 19)


class SameAsCalculated(unittest.TestCase):
    def test_examples(self):
        predicted = 0
        for file, protein in zip(program.EXAMPLES, program.proteins(*program.EXAMPLES), strict=True):
            calculation = Calculation(file)
            for proline in protein["prolines"]:
                with self.subTest(file=file.name, resid=proline["resid"]):
                    expected = calculation.predict(proline["position"])
                    if expected is None:
                        self.assertIsNone(proline["p_cis"])
                        continue
                    predicted += 1
                    for name, value in zip(("p_cis", "p_cis_norm"), expected):
                        self.assertTrue(math.isclose(proline[name], value, rel_tol=2e-4, abs_tol=1e-7),
                                        (proline[name], value))
        self.assertGreater(predicted, 0)

"""Made proteins and tables drawn at random (always the same ones), compared with the run worked out independently.

They reach combinations that nobody writes down: gaps, unknown residues, numbers in every notation, tables with rows and
columns missing, ranges of all kinds.
"""

import random

from reference import ATOMS
from support import COIL, INPUT_COLUMNS, INPUT_FORMATS, RESIDUES, ProgramTest, table


class Maker:
    """Draws tables and proteins."""

    def __init__(self, seed):
        self.draw = random.Random(seed)

    def number(self, mean, spread):
        """A number in some notation."""
        value = self.draw.gauss(mean, spread)
        kind = self.draw.random()
        for share, notation in ((0.7, "%.3f"), (0.8, "%.17g"), (0.85, "%.1e"), (0.9, "%d"), (0.93, "%+.9f")):
            if kind < share:
                return notation % value
        return self.draw.choice(["%.20f" % value, ("%.4f" % value).lstrip("0"), float(round(value, 2)).hex(), "9999",
                                 "999", "%.2fx" % value, "0", "-0.0", "%.30e" % value])

    def residue_table(self, key, columns, mean, spread):
        """Rows for most of the residue names, one of them twice."""
        names = [name for name in RESIDUES + "c?p" if self.draw.random() > 0.04]
        rows = [[name] + [self.number(mean(column), spread) for column in columns]
                for name in [*names, self.draw.choice(RESIDUES + "c?p")]]
        self.draw.shuffle(rows)
        return table(key + " " + " ".join(columns), "%s" + " %f" * len(columns), rows)

    def tables(self):
        atoms = [atom for atom in ATOMS if self.draw.random() > 0.02]
        result = {"randcoil.tab": self.residue_table("RESNAME", atoms, COIL.get, 0.3)}
        for name in ("rcadj.tab", "rcprev.tab", "rcnext.tab"):
            result[name] = self.residue_table("RESNAME", atoms, lambda atom: 0.0, 0.3)
        result["sslimit.tab"] = self.residue_table("RESNAME", [atom + end for atom in atoms for end in ("_MIN", "_MAX")],
                                                   lambda end: -3.0 if end.endswith("MIN") else 3.0, 0.5)
        rows = [[index] + [self.number(mean + (25 if index == 18 else 0), spread) for mean, spread in
                           ((0, 1), (0, 1), (2.5, 0.3), (2.5, 0.3))] for index in range(19)]
        self.draw.shuffle(rows)
        result["Pro.cs.tab"] = table("index avg_cis avg_trans std_cis std_trans", "%d %f %f %f %f", rows)
        result["Pro.seq.tab"] = self.residue_table("resname", ["cis_prev", "cis_next", "trans_prev", "trans_next"],
                                                   lambda column: 0.05, 0.01)
        return result

    def protein(self):
        length = self.draw.randrange(1, 80)
        letters = RESIDUES + "PPPPPGGGcp?X"
        sequence = "".join(self.draw.choice(letters) for _ in range(length))
        first = self.draw.choice([1] * 8 + [0, 2, -3, 5])
        rows = []
        for number, name in enumerate(sequence, first):
            kept = self.draw.choice([1.0, 0.95, 0.9, 0.6, 0.2])
            for atom in ATOMS + ("HA2", "HA3", "CG"):
                if self.draw.random() < kept:
                    mean = 25.5 if atom == "CG" else COIL[atom[:2] if atom in ("HA2", "HA3") else atom]
                    rows.append((self.residue_number(number), self.residue_name(name), atom,
                                 self.number(mean, 1.0 if atom == "CG" else 2.0)))
        for _ in range(self.draw.randrange(4)):
            if rows:
                rows.insert(self.draw.randrange(len(rows)), self.draw.choice(rows))
        if self.draw.random() < 0.3:
            self.draw.shuffle(rows)
        head = "DATA FIRST_RESID %d\n" % first if first != 1 or self.draw.random() < 0.2 else ""
        return table(INPUT_COLUMNS, INPUT_FORMATS, rows, head + "DATA SEQUENCE " + sequence + "\n")

    def residue_number(self, number):
        return "0%d" % number if self.draw.random() < 0.002 else number

    def residue_name(self, name):
        return self.draw.choice(RESIDUES) if self.draw.random() < 0.003 else name

    def options(self):
        result = []
        for name, low, high in (("-first", 0, 30), ("-last", 10, 90)):
            if self.draw.random() < 0.2:
                result += [name, str(self.draw.randrange(low, high))]
        if self.draw.random() < 0.3:
            result.append("-noclip")
        return result


class RandomRuns(ProgramTest):
    def compare(self, seed, *options):
        """One run; returns how many prolines it predicts."""
        with self.subTest(seed=seed):
            maker = Maker(seed)
            self.write_tables(maker.tables())
            self.write("in.tab", maker.protein())
            return len(self.expect_reference("-in", "in.tab", *options, *maker.options()).predictions)

    def test_predictions(self):
        self.assertGreater(sum(self.compare(seed) for seed in range(200)), 500)

    def test_reports(self):
        for seed in range(1000, 1060):
            self.compare(seed, "-check")

"""The example of doc/file-format.md and the special residues of the tables; tests/program/ tests the other rules."""
import re
import shutil
import unittest

from blocks import BLOCK, Workplace, run
from zorvela_tests.program import SOURCE


class FileFormat(unittest.TestCase):
    maxDiff = None
    document = SOURCE / "doc" / "file-format.md"

    @classmethod
    def setUpClass(cls):
        text = cls.document.read_text(encoding="utf-8")
        example = next(b["text"] for b in BLOCK.finditer(text) if b["what"] == "peptide.tab")
        cls.rows = [line.split() for line in example.splitlines() if re.match(r" *\d", line)]
        workplace = Workplace()
        cls.directory = workplace.__enter__()
        cls.addClassCleanup(workplace.__exit__)
        # Tables in which every shift changes the prediction a little.
        tables = cls.directory / "tables"
        shutil.copytree(SOURCE / "tab", tables)
        lines = ["VARS index avg_cis avg_trans std_cis std_trans", "FORMAT %d %f %f %f %f"]
        lines += [f"{index} 2 -2 10 10" for index in range(18)] + ["18 23 27 10 10"]
        (tables / "Pro.cs.tab").write_text("\n".join(lines) + "\n", encoding="utf-8")
        cls.plain = cls.predict_rows(cls.rows)

    @classmethod
    def predict(cls, text):
        """The rows of pred.tab as mappings."""
        (cls.directory / "in.tab").write_text(text, encoding="utf-8")
        run(cls.directory, "-in", "in.tab", "-tabDir", "tables")
        lines = [line.split() for line in (cls.directory / "pred.tab").read_text(encoding="utf-8").splitlines() if line]
        return [dict(zip(lines[0][1:], line)) for line in lines[2:]]

    @classmethod
    def predict_rows(cls, rows):
        head = "DATA SEQUENCE VYKPNNT\nVARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n"
        return cls.predict(head + "".join(" ".join(row) + "\n" for row in rows))

    def without(self, resid, atom):
        """The prediction without one row of the example."""
        return self.predict_rows([row for row in self.rows if (row[0], row[2]) != (resid, atom)])

    def test_every_shift_of_the_example_counts(self):
        self.assertEqual([row["RESID"] for row in self.plain], ["4"])
        for row in self.rows:
            with self.subTest(row=row):
                self.assertNotEqual(self.without(row[0], row[2]), self.plain)

    def test_part_of_a_protein_gives_the_answer_of_the_whole(self):
        whole = (SOURCE / "examples" / "nuclease.tab").read_text(encoding="utf-8")
        (proline,) = [row for row in self.predict(whole) if row["RESID"] == "117"]
        self.assertEqual({**proline, "RESID": "4"}, self.plain[0])

    def test_special_residues_in_the_tables(self):
        tables = {}
        for path in sorted((SOURCE / "tab").glob("*.tab")):
            lines = path.read_text(encoding="utf-8").splitlines()
            rows = [line.split() for line in lines if line and not re.match("REMARK|VARS|FORMAT|DATA", line)]
            tables[path.name] = {row[0]: row[1:] for row in rows}
        for name, rows in tables.items():
            if name != "Pro.cs.tab":
                self.assertEqual(rows["p"], rows["P"], name)
        for unknown in "?BJOUX":
            self.assertNotIn(unknown, tables["randcoil.tab"])
            cis_prev, cis_next, trans_prev, trans_next = tables["Pro.seq.tab"][unknown]
            self.assertEqual((cis_prev, cis_next), (trans_prev, trans_next))
        cb = 4
        oxidised, reduced = (float(tables["randcoil.tab"][name][cb]) for name in "cC")
        self.assertAlmostEqual(oxidised - reduced, 13, delta=1)

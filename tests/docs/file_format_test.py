"""The rules that doc/file-format.md states, tried one by one on its own example."""
import re
import shutil
import signal
import unittest

from blocks import BLOCK, Workplace, run
from zorvela_tests.program import SOURCE


class FileFormat(unittest.TestCase):
    maxDiff = None
    document = SOURCE / "doc" / "file-format.md"
    columns = "VARS RESID RESNAME ATOMNAME SHIFT\n"
    formats = "FORMAT %4d %1s %4s %8.3f\n"
    sequence = "DATA SEQUENCE VYKPNNT\n"

    @classmethod
    def setUpClass(cls):
        text = cls.document.read_text(encoding="utf-8")
        example = next(b["text"] for b in BLOCK.finditer(text) if b["what"] == "peptide.tab")
        cls.rows = [line.split() for line in example.splitlines() if re.match(r" *\d", line)]
        cls.workplace = Workplace()
        cls.directory = cls.workplace.__enter__()
        cls.addClassCleanup(cls.workplace.__exit__)
        cls.make_tables()
        cls.plain = cls.predict_rows(cls.rows)

    @classmethod
    def make_tables(cls):
        """Tables in which every shift has a little to say, so that each one that is used shows."""
        tables = cls.directory / "tables"
        shutil.copytree(SOURCE / "tab", tables)
        lines = ["VARS index avg_cis avg_trans std_cis std_trans", "FORMAT %d %f %f %f %f"]
        lines += [f"{index} 2 -2 10 10" for index in range(18)] + ["18 23 27 10 10"]
        (tables / "Pro.cs.tab").write_text("\n".join(lines) + "\n", encoding="utf-8")

    @classmethod
    def predict(cls, text, *options):
        """The rows of pred.tab as mappings, and standard error. No pred.tab is None."""
        written = cls.directory / "pred.tab"
        written.unlink(missing_ok=True)
        (cls.directory / "in.tab").write_bytes(text if isinstance(text, bytes) else text.encode())
        done = run(cls.directory, "-in", "in.tab", "-tabDir", "tables", *options)
        cls.status, cls.errors = done.returncode, done.stderr.decode()
        if not written.exists():
            return None
        lines = [line.split() for line in written.read_text(encoding="utf-8").splitlines() if line]
        names = lines[0][1:]
        return [dict(zip(names, line)) for line in lines[2:]]

    @classmethod
    def table(cls, rows, sequence=None, head=None):
        cells = "".join(" ".join(row) + "\n" for row in rows)
        return (cls.sequence if sequence is None else sequence) + (head or cls.columns + cls.formats) + cells

    @classmethod
    def predict_rows(cls, rows, *options, **parts):
        return cls.predict(cls.table(rows, **parts), *options)

    def changed(self, resid, atom, /, **cells):
        """The example with some cells of one row changed; without any, the row is left out."""
        rows = []
        for row in self.rows:
            if (row[0], row[2]) != (resid, atom):
                rows.append(row)
            elif cells:
                names = ["resid", "resname", "atom", "shift"]
                rows.append([cells.get(name, cell) for name, cell in zip(names, row)])
        self.assertNotEqual(rows, self.rows)
        return rows

    def without(self, resid, atom):
        return self.predict_rows(self.changed(resid, atom))

    def renumbered(self, offset):
        return [[str(int(row[0]) + offset), *row[1:]] for row in self.rows]

    def residues(self, result):
        return [row["RESID"] for row in result]

    # --- The example

    def test_every_shift_of_the_example_counts(self):
        self.assertEqual(self.residues(self.plain), ["4"])
        for row in self.rows:
            with self.subTest(row=row):
                self.assertNotEqual(self.without(row[0], row[2]), self.plain)

    def test_part_of_a_protein_gives_the_answer_of_the_whole(self):
        whole = (SOURCE / "examples" / "nuclease.tab").read_text(encoding="utf-8")
        (proline,) = [row for row in self.predict(whole) if row["RESID"] == "117"]
        self.assertEqual({**proline, "RESID": "4"}, self.plain[0])

    # --- Lines

    def test_order_of_vars_format_and_rows(self):
        rows = "".join(" ".join(row) + "\n" for row in self.rows)
        self.assertEqual(self.predict(self.sequence + self.columns + rows), [])
        self.assertEqual(self.predict(self.sequence + self.columns + rows + self.formats), [])
        for line in (self.columns, self.formats):
            self.assertEqual(self.predict(self.table(self.rows) + line), [])

    def test_rows_must_have_as_many_words_as_columns(self):
        for row in ("3 K CB 31.490 # low", "3 K CB"):
            rows = [row.split() if (r[0], r[2]) == ("3", "CB") else r for r in self.rows]
            self.assertEqual(self.predict_rows(rows), self.without("3", "CB"))

    def test_blanks_and_tabs_between_words_do_not_matter(self):
        text = self.table(self.rows)
        rows = self.columns + self.formats
        self.assertEqual(self.predict(text.replace(rows, rows.replace(" ", "\t"))), self.plain)
        self.assertEqual(self.predict_rows([["  ".join(row)] for row in self.rows]), self.plain)

    def test_columns_in_another_order_and_further_columns(self):
        head = "VARS ERROR SHIFT ATOMNAME RESNAME RESID\nFORMAT %f %f %s %s %d\n"
        rows = [["0.1", *reversed(row)] for row in self.rows]
        self.assertEqual(self.predict_rows(rows, head=head), self.plain)

    def test_format_items(self):
        for item in ("%8.3e", "%+8f"):
            head = self.columns + f"FORMAT %4d %1s %4s {item}\n"
            self.assertIsNone(self.predict_rows(self.rows, head=head))
            self.assertEqual((self.status, self.errors), (0, f"\tBad format syntax '{item}'\n"))
        for items in ("%4d %1s %4s", "%4d %1s %4s %8.3f %s", ""):
            self.assertEqual(self.predict_rows(self.rows, head=self.columns + f"FORMAT {items}\n"), self.plain)

    def test_keywords_are_upper_case_at_the_start_of_the_line(self):
        lower = (self.columns + self.formats).replace("VARS", "vars").replace("FORMAT", "format")
        self.assertEqual(self.predict_rows(self.rows, head=lower), [])
        for line in (" DATA SEQUENCE VYKPNNT\n", "DATA  SEQUENCE VYKPNNT\n", "DATA SEQUENCE\tVYKPNNT\n"):
            self.assertEqual(self.predict_rows(self.rows, sequence=line), [])
            self.assertIn("between header () and chemical shift table (K)", self.errors)

    def test_bare_keyword_ends_the_run_abnormally(self):
        for keyword in ("REMARK", "DATA"):
            self.assertIsNone(self.predict(keyword + "\n" + self.table(self.rows)))
            self.assertEqual(self.status, -signal.SIGABRT)
            self.assertEqual(self.predict(keyword + " \n" + self.table(self.rows)), self.plain)

    def test_line_ends_and_byte_order_mark(self):
        text = self.table(self.rows).encode()
        self.assertEqual(self.predict(text.replace(b"\n", b"\r\n")), self.plain)
        self.assertEqual(self.predict(text[:-1]), self.plain)
        mark = b"\xef\xbb\xbf"
        self.assertEqual(self.predict(mark + text), [])  # the sequence is the first line
        self.assertEqual(self.predict(mark + b"REMARK\n" + text), self.plain)

    def test_a_file_that_is_no_table_is_one_without_rows(self):
        self.assertEqual(self.predict(b"\x00\x01\xff" * 100), [])
        self.assertEqual(self.errors, "")
        done = run(self.directory, "-in", "examples")
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    # --- Columns

    def test_residue_numbers_are_plain(self):
        for resid in ("003", "+3"):
            self.assertEqual(
                self.predict_rows(self.changed("3", "CB", resid=resid)), self.without("3", "CB"))

    def test_residue_names_are_only_compared(self):
        rows = self.changed("3", "CB", resname="LYS")
        self.assertEqual(self.predict_rows(rows), self.plain)
        self.assertEqual(
            self.errors,
            "WARNING: Unmatched name for residue 3 between header (K) and chemical shift table (LYS)\n")

    def test_atom_names_are_exact(self):
        for atom, other in (("HN", "H"), ("CA", "ca"), ("C", "C'"), ("C", "CO")):
            rows = self.changed("3", atom, atom=other)
            self.assertEqual(self.predict_rows(rows), self.without("3", atom), other)

    def glycine(self, **shifts):
        """Glycine in place of the residue before the proline, with these HA."""
        rows = [[r[0], "G" if r[0] == "3" else r[1], *r[2:]] for r in self.changed("3", "HA")]
        rows += [["3", "G", atom, shift] for atom, shift in shifts.items()]
        return self.predict_rows(rows, sequence="DATA SEQUENCE VYGPNNT\n")

    def test_glycine(self):
        both = self.glycine(HA2="3.5", HA3="4.5")
        self.assertEqual(both, self.glycine(HA2="4.0"))
        self.assertEqual(both, self.glycine(HA3="4.0"))
        self.assertNotEqual(both, self.glycine(HA3="4.5"))
        self.assertEqual(self.glycine(HA="4.0"), self.glycine())
        self.assertNotEqual(self.glycine(), both)

    def test_proline_nitrogen_is_counted_and_not_used(self):
        (with_n,) = self.predict_rows(self.rows + [["4", "P", "N", "140"]])
        self.assertEqual((with_n["CS_CNT2"], self.plain[0]["CS_CNT2"]), ("5", "4"))
        self.assertEqual({**with_n, "CS_CNT2": "4"}, self.plain[0])

    def test_missing_shifts(self):
        (missing,) = self.predict_rows(self.changed("3", "CB", shift="9999"))
        (left_out,) = self.without("3", "CB")
        self.assertEqual((missing["CS_CNT1"], left_out["CS_CNT1"]), ("6", "5"))
        self.assertEqual({**missing, "CS_CNT1": "5"}, left_out)
        self.assertEqual(self.predict_rows(self.changed("4", "CG", shift="9999")), self.without("4", "CG"))
        self.assertEqual(self.without("4", "CG")[0]["CG_SHIFT"], "9999.000")
        zero = self.predict_rows(self.changed("3", "CB", shift="0"))
        for text in ("n/a", ".", "-"):
            self.assertEqual(self.predict_rows(self.changed("3", "CB", shift=text)), zero)
        self.assertEqual(
            self.predict_rows(self.changed("3", "CB", shift="31,49")),
            self.predict_rows(self.changed("3", "CB", shift="31")))
        self.assertEqual(
            self.predict_rows(self.changed("3", "CB", shift="999")),
            self.predict_rows(self.changed("3", "CB", shift="200")))

    def poor(self, *counts):
        """The example with so many shifts only of residues 3, 4 and 5."""
        rows = []
        for resid, count in zip("345", counts):
            rows += [row for row in self.rows if row[0] == resid and row[2] != "CG"][:count]
        return self.residues(self.predict_rows(rows))

    def test_one_poor_residue_is_allowed(self):
        self.assertEqual(self.poor(3, 3, 3), ["4"])
        self.assertEqual(self.poor(0, 3, 3), ["4"])
        self.assertEqual(self.poor(3, 0, 3), ["4"])
        self.assertEqual(self.poor(3, 3, 2), ["4"])
        self.assertEqual(self.poor(2, 3, 2), [])
        self.assertEqual(self.poor(3, 2, 2), [])

    def test_proline_nitrogen_counts_as_a_shift(self):
        rows = [r for r in self.rows if r[0] == "3" or (r[0] == "4" and r[2] in ("CA", "CB"))]
        self.assertEqual(self.predict_rows(rows), [])
        self.assertEqual(self.residues(self.predict_rows(rows + [["4", "P", "N", "140"]])), ["4"])

    def test_first_of_two_rows_wins(self):
        other = [["3", "K", "CB", "40"]]
        self.assertEqual(self.predict_rows(self.rows + other), self.plain)
        self.assertNotEqual(self.predict_rows(other + self.rows), self.plain)

    # --- Sequence

    def test_blanks_and_digits_in_the_sequence(self):
        lines = "DATA SEQUENCE 1 VYK PN 5\nDATA SEQUENCE N-T*\n"
        self.assertEqual(self.predict_rows(self.rows, sequence=lines), self.plain)

    def test_characters_that_take_no_number(self):
        for character in "Z-*a":
            result = self.predict_rows(self.rows, sequence=f"DATA SEQUENCE VY{character}PNNT\n")
            self.assertIn("for residue 3 between header (P) and chemical shift table (K)", self.errors)
            self.assertNotIn("4", self.residues(result))

    def test_lower_case_and_three_letter_sequences_are_lost(self):
        for sequence in ("vykpnnt", "VAL TYR LYS PRO ASN ASN THR"):
            self.assertEqual(self.predict_rows(self.rows, sequence=f"DATA SEQUENCE {sequence}\n"), [])
            self.assertIn("WARNING: Unmatched name", self.errors)

    def test_lower_case_p_is_never_predicted(self):
        rows = [[r[0], "p" if r[0] == "4" else r[1], *r[2:]] for r in self.rows]
        self.assertEqual(self.predict_rows(rows, sequence="DATA SEQUENCE VYKpNNT\n"), [])
        self.assertEqual(self.errors, "")

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

    # --- FIRST_RESID

    def numbered_from(self, first, tail="G" * 20):
        sequence = f"DATA FIRST_RESID {first}\nDATA SEQUENCE VYKPNNT{tail}\n"
        return self.predict_rows(self.renumbered(first - 1), sequence=sequence)

    def test_first_resid(self):
        self.assertEqual(self.numbered_from(10), [{**self.plain[0], "RESID": "13"}])
        self.assertEqual(self.errors, "")
        self.assertEqual(self.numbered_from(10, tail=""), [])  # 7 letters: residues above 7 are not covered
        self.assertEqual(self.numbered_from(0), [{**self.plain[0], "RESID": "3"}])
        self.assertEqual(self.numbered_from(-3), [])  # the proline is residue 0

    def test_number_1_and_the_length_are_never_predicted(self):
        self.assertEqual(self.numbered_from(-2), [])  # the proline is residue 1
        self.assertEqual(self.numbered_from(4, tail=""), [])  # and residue 7 of 7
        self.assertEqual(self.residues(self.numbered_from(4, tail="G")), ["7"])

    def test_proline_at_the_start_of_a_sequence_above_1(self):
        rows = [row for row in self.renumbered(-2) if int(row[0]) > 1]
        (row,) = self.predict_rows(rows, sequence="DATA FIRST_RESID 2\nDATA SEQUENCE PNNTGG\n")
        self.assertIn(row["P_CIS"], ("nan", "-nan"))

    def test_two_first_resid_lines_are_joined(self):
        sequence = f"DATA FIRST_RESID 1\nDATA FIRST_RESID 2\nDATA SEQUENCE VYKPNNT{'G' * 20}\n"
        self.assertEqual(
            self.predict_rows(self.renumbered(11), sequence=sequence), [{**self.plain[0], "RESID": "15"}])

    def test_residues_above_9999(self):
        sequence = "".join(f"DATA SEQUENCE {'G' * 100}\n" for _ in range(100)) + self.sequence
        rows = self.renumbered(10000)
        self.assertEqual(self.predict_rows(rows, sequence=sequence), [])
        self.assertEqual(self.residues(self.predict_rows(rows, "-last", "20000", sequence=sequence)), ["10004"])

"""What zorvela-kit shows of hostile files: nothing that a terminal, or a spreadsheet, would obey."""
import json
import os
import shutil
import subprocess
import tempfile
import unicodedata
import unittest

from zorvela_tests import folder, hostile, program

ESCAPE = "\x1b[31m"
C1 = "\x9b31m"
TURNED = "\u202e"
# Zero width, soft hyphen, marks of annotation, tags; the last two are not characters and not allowed in XML.
UNSEEN = "\u200b\u00ad\ufeff\ufff9\ufffa\ufffb\U000e0041\ufffe\uffff"
BAD = (ESCAPE + C1 + TURNED + "\x07\x7f" + UNSEEN).encode() + b"\xff\xc3"
TURNING = "\u061c\u200e\u200f\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069"


def is_harmless(character):
    return character == "\n" or (unicodedata.category(character) not in ("Cc", "Zl", "Zp")
                                 and character not in TURNING + UNSEEN)


class Shown(folder.InFolder):
    """Names and contents are bytes."""

    def setUp(self):
        super().setUp()
        self.folder = os.fsencode(self.folder)

    def kit(self, *arguments):
        return subprocess.run([program.KIT, *arguments], capture_output=True, check=False, cwd=self.folder,
                              stdin=subprocess.DEVNULL, timeout=60, env=program.environment())

    def check_harmless(self, *texts):
        for text in texts:
            self.assertEqual([c for c in text.decode("utf-8") if not is_harmless(c)], [], text)

    def check_kit(self, *arguments):
        """What a sub-command shows, which must be something."""
        ended = self.kit(*arguments)
        self.assertIn(ended.returncode, (0, 1))
        self.assertNotEqual(ended.stdout + ended.stderr, b"")
        self.check_harmless(ended.stdout, ended.stderr)
        return ended

    def hostile_files(self):
        rows = b"".join(b"B%s,%d,%s,%s,%s\n" % (BAD, resid, name, atom.encode(), str(shift).encode())
                        for resid, name in enumerate((b"ALA", b"PRO", b"LYS"), 1)
                        for _, atom, shift in program.full_residue("APK", resid))
        star = (b"data_x%s\nsave_a\n_Entity.Sf_category entity\n_Entity.Name 'n%s'\n"
                b"_Entity.Polymer_seq_one_letter_code APK\nsave_\nloop_\n_Atom_chem_shift.Entity_ID\n"
                b"_Atom_chem_shift.Comp_index_ID\n_Atom_chem_shift.Comp_ID\n_Atom_chem_shift.Atom_ID\n"
                b"_Atom_chem_shift.Val\n1 1 ALA CA 52\n1 2 PRO CA 63\n1 2 %s CB 'v%s'\n1 3 LYS CA 55\nstop_\n"
                % ((BAD,) * 4))
        table = program.full_table("APK").encode()
        return [self.put(b"chain.csv", b"chain,resid,resname,atom,shift\n" + rows),
                self.put(b"values.csv", b"resid,resname,atom,shift\n1,ALA,CA,5%s\n2,PRO,CA,63\n3%s,LYS,CB,30\n"
                         % (BAD, BAD)),
                self.put(b"entry.str", star),
                self.put(b"remark.tab", b"REMARK r" + BAD + b"\nREMARK Residue 1 here is residue 5" + BAD + b" there\n"
                         + table + b"   3 K   " + BAD + b"   1.0\n   3" + BAD + b" K   CA   1.0\n"),
                self.put(b"format.tab", table.replace(b"%8.3f", b"%8.3f" + BAD + b"q")),
                self.put(b"none.txt", b"nothing " + BAD + b" here\n"),
                self.put(b"n" + BAD.replace(b"/", b"") + b"\n.tab", table)]

    def test_run(self):
        files = self.hostile_files()
        for fmt in (b"table", b"csv", b"json", b"html"):
            for file in [[f] for f in files] + [files]:
                self.check_kit("run", "--tables", program.TABLES, "--format", fmt, *file)

    def test_names_of_tables(self):
        """What a chain is called becomes part of a file's name, which `ls` shows."""
        rows = b"%s,1,ALA,CA,52\n%s,2,PRO,CA,63\n%s,3,LYS,CA,55\n"
        # 59 bytes and a character of two, of which a name of 60 bytes holds no half.
        chains = (BAD, "\u202e\x9b\x85\u2028".encode(), b"\xff\xfe", b"x" * 59 + "\u00e9\u00e9".encode())
        self.put(b"c.csv", b"chain,resid,resname,atom,shift\n" + b"".join(rows % ((chain,) * 3) for chain in chains))
        self.assertEqual(self.kit("import", b"c.csv", "--output", "out/").returncode, 0)
        names = os.listdir(os.path.join(self.folder, b"out"))
        self.assertEqual(len(names), len(chains))
        self.check_harmless(*names)
        self.assertIn(b"c_" + b"x" * 59 + b".tab", names)

    def test_import(self):
        for file in self.hostile_files():
            self.check_kit("import", file)
            self.check_kit("import", "--list", "all", "--output", b"out" + BAD + b"/", file)
        tables = os.listdir(os.path.join(self.folder, b"out" + BAD))
        self.assertEqual(len(tables), 5)  # two of the seven files have no table
        for name in tables:
            with open(os.path.join(self.folder, b"out" + BAD, name), "rb") as table:
                self.check_harmless(table.read())

    def test_names_of_files_folders_chains_and_tables_that_are_not_there(self):
        name = b"none" + BAD + b"\nx"
        file = self.put(b"a.tab", program.full_table("APK").encode())
        for arguments in (["run", name], ["import", name], ["run", "--tables", name, file], ["run", "--chain", name, file],
                          ["import", "--list", name, file], ["run", "--output", name + b"/x", file],
                          ["run", b"--" + name, file], [name], ["run", "--format", name, file],
                          ["train", "--entries", name, "--labels", name, "--neighbours", name, "--random-coil", name,
                           "--neighbour-effects", name, "--output", name],
                          ["evaluate", "--entries", name, "--labels", name]):
            with self.subTest(arguments=arguments):
                ended = self.kit(*arguments)
                self.assertNotEqual(ended.returncode, 0)
                self.assertNotEqual(ended.stderr, b"")
                self.check_harmless(ended.stdout, ended.stderr)

    def hostile_name(self, folder, suffix):
        os.makedirs(os.path.join(self.folder, folder), exist_ok=True)
        return folder + b"/n" + BAD + b"\n" + suffix

    def test_run_with_structures(self):
        shifts = hostile.csv_file(40).encode()
        named = shifts.replace(b"resid,", b"chain,resid,").replace(b"\n", b"\nA" + BAD + b",")
        pdb = (b"HEADER %s\nTITLE %s\n" % (BAD, BAD) +
               hostile.pdb_file(40).encode().replace(b"PRO A", b"PRO \x9b").replace(b"LYS", b"L\x1bS"))
        mmcif = hostile.mmcif_file(40).encode().replace(b" A0 ", b" 'A\xc2\x9b31m\xe2\x80\xae' ")
        files = [self.put(self.hostile_name(b"s", b".csv"), content) for content in (named, shifts)]
        structures = [self.put(self.hostile_name(b"s", suffix), content)
                      for suffix, content in ((b".pdb", pdb), (b".cif", mmcif), (b"x", BAD))]
        for fmt in ("table", "csv", "json", "html"):
            for structure in structures:
                self.check_kit("run", "--tables", program.TABLES, "--format", fmt, *files, "--structure", structure)

    def test_annotate(self):
        """On standard error: the file itself is given back as it is."""
        nef = hostile.nef_entry(40).encode().replace(b" A ", b" 'A\x1b\xc2\x9b' ").replace(b"\nA ", b"\n'A\x1b\xc2\x9b' ")
        flagged = nef.replace(b"_nef_sequence.linking", b"_nef_sequence.cis_peptide").replace(b"middle", b"'f\x1b'")
        for content in (nef, flagged, nef.replace(b"PRO", b"P" + BAD), BAD):
            self.check_kit("annotate", "--tables", program.TABLES, self.put(self.hostile_name(b"s", b".nef"), content),
                           "--output", "out.nef")

    def test_label_and_evaluate(self):
        for folder, suffix, good in ((b"entries", b".tab", hostile.shift_table(40)), (b"models", b".pdb", hostile.pdb_file(40))):
            self.put(self.hostile_name(folder, suffix), good.encode())
            self.put(self.hostile_name(folder, b"bad" + suffix), BAD)
            self.put(folder + b"/plain" + suffix, good.encode())
        self.check_kit("label", "--entries", "entries", "--structures", "models", "--output", "-")
        self.put(b"labels.csv", b"entry,resid,label_structure,cluster\nplain,4,cis,k" + BAD + b"\nplain,14,trans,m\n")
        tables = b"tab" + BAD
        shutil.copytree(os.fsencode(program.TABLES), os.path.join(self.folder, tables))
        for options in ([], ["--json"], ["--predictions", "-", "--output", "f"]):
            self.check_kit("evaluate", "--entries", "entries", "--labels", "labels.csv", "--tables", tables, *options)

    def test_json_keeps_the_name(self):
        name = "Gr\u00fc\u00dfe\u202e\x1b.tab"
        self.put(name.encode(), program.full_table("APK").encode())
        ended = self.kit("run", "--tables", program.TABLES, "--format", "json", name.encode())
        self.assertEqual(json.loads(ended.stdout)["proteins"][0]["file"], name)
        self.check_harmless(ended.stdout)


class Formulas(unittest.TestCase):
    def test_names_that_are_formulas_are_marked(self):
        with tempfile.TemporaryDirectory() as folder:
            rows = "chain,resid,resname,atom,shift\n"
            names = ["=cmd|' /C calc'!A0", "+1+1", "-2+3", "@SUM(A1)", "plain", "-7"]
            for chain in names:
                for resid, name in ((-3, "ALA"), (-2, "PRO"), (-1, "LYS")):
                    rows += "".join("%s,%d,%s,%s,%s\n" % (chain, resid, name, atom, shift)
                                    for _, atom, shift in program.full_residue("APK", resid + 4))
            path = os.path.join(folder, "=x.csv")
            with open(path, "w", encoding="utf-8") as file:
                file.write(rows)
            ended = program.run("--format", "csv", "=x.csv", cwd=folder)
            table = program.csv_rows(ended.stdout)
            self.assertEqual({row["file"] for row in table}, {"'=x.csv"})
            self.assertEqual({row["resid"] for row in table}, {"-2"})
            self.assertEqual(sorted(row["chain"] for row in table),
                             sorted(["'=cmd|' /C calc'!A0", "'+1+1", "'-2+3", "'@SUM(A1)", "plain", "-7"]))


class Locale(unittest.TestCase):
    def test_a_decimal_comma_in_the_locale_changes_nothing(self):
        with tempfile.TemporaryDirectory() as folder:
            comma = program.decimal_commas(folder)
            for fmt in ("table", "csv", "json", "html"):
                plain, changed = (program.run("--format", fmt, *program.EXAMPLES, tables=program.TABLES,
                                              env=program.environment(**locale)) for locale in ({}, comma))
                self.assertIn("0.", plain.stdout)
                self.assertEqual((changed.stdout, changed.returncode), (plain.stdout, 0))

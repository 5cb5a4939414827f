"""zorvela-kit restrain: what each program would read of it, and which atoms are meant."""
import gzip
import math
import os
import re
import sys

from readers import COMMENTS, READERS, amber_atoms, cispep, cyana_sequence, loops, nef_atoms, rosetta_atoms, tbl_atoms
from zorvela_tests import folder, program
from zorvela_tests.tables import full_residue

sys.path.insert(0, str(program.SOURCE / "kit" / "tests" / "structure"))
import made_structure as made  # noqa: E402
from made_pair import CIS, SEQUENCE, TRANS  # noqa: E402

OTHER = "GGSTKKLMNQKPGTVWYAAEDFHIKKLNQ"
OPEN = {"CB": 31.78}              # odds of 4.75, a quarter of the 19 for trans
WITHOUT_CHAINS = ("cyana", "cyana-aco", "amber")


def rows(chain, sequence, numbers, cis=(), undecided=()):
    """Rows of a CSV file."""
    lines = []
    for i, letter in enumerate(sequence, 1):
        shifts = {atom: value for _, atom, value in full_residue(sequence, i)}
        if letter == "P":
            shifts.update(CIS if i in cis else OPEN if i in undecided else TRANS)
        lines += ["%s,%s,%s,%s,%.3f" % (chain, numbers[i - 1], made.THREE[letter], atom, value) for atom, value in shifts.items()]
    return lines


def csv(*chains):
    return "\n".join(["chain,resid,resname,atom,shift", *sum(chains, [])]) + "\n"


def plain(first, count=len(SEQUENCE)):
    return [str(first + i) for i in range(count)]


def numbered(residues, numbers):
    """The same residues with other numbers, perhaps with insertion codes."""
    return [made.Residue(r.name, int(re.sub(r"\D", "", n)), r.atoms, re.sub(r"\d", "", n)) for r, n in zip(residues, numbers)]


def with_hydrogens(residues):
    return [made.Residue(r.name, r.number, [*r.atoms, ("H", tuple(x + 1 for x in r.atoms[0][1]), "", 1.0)], r.code) for r in residues]


def dihedral(a, b, c, d):
    first, second, third = made.sub(b, a), made.sub(c, b), made.sub(d, c)
    m, n = made.cross(first, second), made.cross(second, third)
    x = sum(p * q for p, q in zip(m, n))
    y = sum(p * q for p, q in zip(made.cross(m, n), made.unit(second)))
    return math.degrees(math.atan2(y, x))


class Case(folder.InFolder):
    def setUp(self):
        super().setUp()
        # Cis 117, undecided 126, trans 109 and 136.
        self.put("one.csv", csv(rows("A", SEQUENCE, plain(101), cis=[17], undecided=[26])))
        self.put("two.csv", csv(rows("A", SEQUENCE, plain(101), cis=[17]), rows("B", OTHER, plain(-3), cis=[12])))
        self.put("trans.csv", csv(rows("A", SEQUENCE, plain(101))))

    def restrain(self, name, file, *options):
        return program.kit("restrain", "--tables", program.MADE_TABLES, "--for", name, file, *options, cwd=self.folder)

    def text(self, *arguments):
        result = self.restrain(*arguments)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.stderr = result.stderr
        return result.stdout

    def fails(self, *arguments):
        result = self.restrain(*arguments)
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(result.stdout, "")
        errors = [line for line in result.stderr.splitlines() if not line.startswith("zorvela-kit: note: ")]
        self.assertEqual(len(errors), 1, result.stderr)
        return errors[0]

    def assert_bonds(self, found, expected):
        """What the format does not name is not compared."""
        self.assertEqual(len(found), len(expected), found)
        for bond, wanted in zip(found, expected):
            self.assertEqual(bond, tuple(None if part is None else value for part, value in zip(bond, wanted)))


class Programs(Case):
    def test_the_cis_proline_of_nuclease(self):
        for name, read in READERS.items():
            with self.subTest(program=name):
                result = program.kit("restrain", "--tables", program.TABLES, "--for", name, "--chain-as", "X",
                                     program.SOURCE / "examples" / "nuclease.str")
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assert_bonds(read(result.stdout), [("X", "116", "117")])
                self.assertIn("K116-P117, cis 0.987", result.stdout)
                self.assertIn("cis: P117; undecided, left open: none; trans: 4; without a prediction: 0", result.stderr)

    def test_undecided_prolines_are_comments(self):
        for name, read in READERS.items():
            with self.subTest(program=name):
                text = self.text(name, "one.csv")
                self.assert_bonds(read(text), [("A", "116", "117")])
                self.assertNotRegex(text.replace("PRO 109", "").replace("PRO 136", ""), r"\b(109|136)\b")
                # Without the marks of comments after it, the undecided one is declared too.
                head, rest = text.split("A125-P126, undecided 0.", 1)
                lines = rest.split("\n")
                mark = COMMENTS.get(name, "# ")
                lines[1:] = [line.removeprefix(mark).removesuffix(" -->") for line in lines[1:]]
                opened = head + "\n".join(lines)
                if name == "cyana":
                    opened = opened.replace("\nPRO 126", "")
                self.assert_bonds(read(opened), [("A", "116", "117"), ("A", "125", "126")])

    def test_two_chains(self):
        for name, read in READERS.items():
            with self.subTest(program=name):
                if name in WITHOUT_CHAINS:
                    self.assertIn("--chain", self.fails(name, "two.csv"))
                    self.assert_bonds(read(self.text(name, "two.csv", "--chain", "B")), [("B", "7", "8")])
                    continue
                self.assert_bonds(read(self.text(name, "two.csv")), [("A", "116", "117"), ("B", "7", "8")])
                renamed = self.text(name, "two.csv", "--segid", "A=X", "--chain-as", "B=A")
                self.assert_bonds(read(renamed), [("X", "116", "117"), ("A", "7", "8")])
        self.assertIn("as OLD=NEW", self.fails("cns", "two.csv", "--segid", "X"))
        self.assertIn("no such chain", self.fails("cns", "two.csv", "--segid", "C=X"))

    def test_none_is_cis(self):
        for name, read in READERS.items():
            with self.subTest(program=name):
                text = self.text(name, "trans.csv")
                self.assertEqual(read(text), [])
                self.assertIn("No proline is called cis", text)
        self.put("none.csv", csv(rows("A", "GAGKGAGK", plain(1))))
        self.assertIn("! The chains have no proline", self.text("cns", "none.csv"))

    def test_what_a_format_cannot_hold_is_left_out_by_name(self):
        codes = [*plain(101, 15), "115A", *plain(116, 24)]  # G115A-P116
        for change, cause, names in ((codes, "insertion code of 115A", ("cns", "tbl", "rosetta", "aria", "amber", "cyana-aco")),
                                     (plain(12001), "number 12016", ("cns", "tbl", "rosetta"))):
            self.put("x.csv", csv(rows("A", SEQUENCE, change, cis=[17])))
            for name in names:
                with self.subTest(program=name, cause=cause):
                    text = self.text(name, "x.csv")
                    self.assertEqual(READERS[name](text), [])
                    for place in (text, self.stderr):
                        self.assertIn("left out: no place for the " + cause, place)
        self.put("x.csv", csv(rows("A", SEQUENCE, codes, cis=[17])))
        self.assert_bonds(READERS["nef"](self.text("nef", "x.csv")), [("A", "115A", "116")])
        self.assertIn("115A", self.fails("cyana", "x.csv"))

    def test_chains_that_cannot_be_named(self):
        self.put("x.csv", csv(rows("long one", SEQUENCE, plain(101), cis=[17])))
        for name in ("cns", "tbl", "aria", "rosetta", "nef", "xplor-python"):
            self.assertIn('add --chain-as "long one=A"', self.fails(name, "x.csv"))
        self.put("x.csv", csv(rows("1", SEQUENCE, plain(101), cis=[17])))
        self.assertIn('add --chain-as "1=A"', self.fails("rosetta", "x.csv"))  # 1161 is residue 1161
        lines = [line.split(",", 1)[1] for line in csv(rows("", SEQUENCE, plain(101), cis=[17])).splitlines()]
        self.put("x.csv", "\n".join(lines) + "\n")
        for name in ("aria", "rosetta", "nef"):
            self.assertIn("add --chain-as NAME", self.fails(name, "x.csv"))
        self.assertEqual(READERS["cns"](self.text("cns", "x.csv")), [("", "116", "117")])
        self.assertIn("is given twice", self.fails("cns", "x.csv", "x.csv"))

    def test_what_is_not_sure_is_said(self):
        for name in ("cyana-aco", "cns", "xplor-python", "aria", "rosetta", "amber"):
            self.assertIn("not sure", self.text(name, "one.csv"), name)

    def test_bad_requests(self):
        result = self.restrain("other", "one.csv")
        self.assertNotEqual(result.returncode, 0)
        for name in READERS:
            self.assertIn(name, result.stderr)
        self.put("model.pdb", made.pdb([("A", made.backbone(SEQUENCE))]))
        for message, name, *options in (("--into needs", "cns", "--into", "one.csv"), ("add --structure", "pdb"),
                                        ("--structure needs", "cns", "--structure", "model.pdb"),
                                        ("add --structure", "mmcif"), ("one.csv", "cns", "--output", "one.csv")):
            self.assertIn(message, self.fails(name, "one.csv", *options))


class Atoms(Case):
    """The atoms that a restraint names have the omega with which the model was built."""

    OMEGA = 12.5

    def test_dihedral(self):
        residues = with_hydrogens(made.backbone(SEQUENCE, {16: self.OMEGA}, 101))
        self.put("model.pdb", made.pdb([("B", with_hydrogens(made.backbone(OTHER))), ("A", residues)]))
        positions = {("A", str(r.number), name): position for r in residues for name, position, _, _ in r.atoms}
        with open(self.path("model.pdb"), encoding="utf-8") as file:
            lines = [line for line in file if line.startswith("ATOM")]
        of_lines = [tuple(float(line[i:i + 8]) for i in (30, 38, 46)) for line in lines]
        for name, read in (("tbl", tbl_atoms), ("nef", nef_atoms), ("rosetta", rosetta_atoms)):
            (atoms,) = read(self.text(name, "one.csv"))
            self.assertAlmostEqual(dihedral(*(positions[atom] for atom in atoms)), self.OMEGA, delta=0.1, msg=name)
        (numbers,) = amber_atoms(self.text("amber", "one.csv", "--structure", "model.pdb"))
        self.assertAlmostEqual(dihedral(*(of_lines[number - 1] for number in numbers)), self.OMEGA, delta=0.1)

    def test_every_copy_of_a_dimer(self):
        residues = with_hydrogens(made.backbone(SEQUENCE, {16: self.OMEGA}, 101))
        self.put("model.pdb", made.pdb([("A", residues), ("B", made.moved(residues, 50))]))
        self.put("x.csv", csv(rows("the only", SEQUENCE, plain(101), cis=[17])))
        first, second = amber_atoms(self.text("amber", "x.csv", "--structure", "model.pdb"))
        self.assertEqual([atom + 4 * len(SEQUENCE) for atom in first], second)

    def test_amber_needs_the_atoms_once_and_whole(self):
        residues = made.backbone(SEQUENCE, {16: 0.0})
        for text, message in ((made.pdb([("A", residues)]), "has no hydrogens"),
                              (made.mmcif([("A", residues)]), "is not a PDB file")):
            self.put("model", text)
            self.assertIn(message, self.fails("amber", "one.csv", "--structure", "model"))
        self.put("short.pdb", made.pdb([("A", with_hydrogens(residues[20:]))]))
        self.assertEqual(amber_atoms(self.text("amber", "one.csv", "--structure", "short.pdb")), [])
        self.assertIn("G116-P117, cis", self.stderr)
        self.assertIn("is left out: is not in the model", self.stderr)


class Model(Case):
    """CISPEP and struct_mon_prot_cis: the cis prolines of the model."""

    def setUp(self):
        super().setUp()
        numbers = [*plain(1, 15), "15A", *plain(16, 24)]
        self.cis = numbered(made.backbone(SEQUENCE, {16: -4.25, 25: 3.0}), numbers)
        self.trans = numbered(made.backbone(SEQUENCE, {25: 3.0}), numbers)

    def test_cispep(self):
        self.put("model.pdb", made.pdb([("C", self.cis)], [("C", self.trans)]))
        text = self.text("pdb", "one.csv", "--structure", "model.pdb")
        rows_read = cispep(text)
        self.assertEqual([row["serial"] for row in rows_read], ["1", "2", "3"])
        self.assertEqual(sorted((row["before"], row["proline"], row["model"]) for row in rows_read),
                         [(("C", "ALA", "24"), ("C", "PRO", "25"), "1"), (("C", "ALA", "24"), ("C", "PRO", "25"), "2"),
                          (("C", "GLY", "15A"), ("C", "PRO", "16"), "1")])
        for row in rows_read:  # coordinates have three decimals
            self.assertAlmostEqual(row["omega"], -4.25 if row["proline"][2] == "16" else 3.0, delta=0.1)
        self.assertRegex(text, r"REMARK   6 G116-P117, cis [0-9.]+ by the shifts\nCISPEP   1 GLY C   15A")
        self.assertRegex(self.stderr, r"G116-P117, cis [0-9.]+: not cis in 1 model of 2 \(chain C, PRO 16\)")

    def test_one_model_has_number_0(self):
        self.put("model.pdb", made.pdb([("C", self.cis)]))
        self.assertEqual({row["model"] for row in cispep(self.text("pdb", "one.csv", "--structure", "model.pdb"))}, {"0"})

    def test_what_has_no_column(self):
        self.put("model.cif", made.mmcif([("LONG", self.cis)]))
        self.assertEqual(cispep(self.text("pdb", "one.csv", "--structure", "model.cif")), [])
        self.assertIn("has no place in a CISPEP record", self.stderr)

    def test_mmcif(self):
        text = made.mmcif([("C", self.cis)])
        # The archive's names differ from the author's.
        text = re.sub(r"^(ATOM \d+ \w+ \w+ \. \w+) C (\d+)", r"\1 B \2", text, flags=re.MULTILINE)
        self.put("model.cif", text)
        (loop,) = loops("data_x\n" + self.text("mmcif", "one.csv", "--structure", "model.cif"))
        self.assertEqual([list(row.values())[:-1] for row in loop],
                         ["1 1 B 16 GLY C 15 A B 17 PRO C 16 ? .".split(), "2 1 B 25 ALA C 24 ? B 26 PRO C 25 ? .".split()])
        for row, omega in zip(loop, (-4.25, 3.0)):
            self.assertAlmostEqual(float(row["_struct_mon_prot_cis.pdbx_omega_angle"]), omega, delta=0.1)
        self.assertEqual([tag.split(".")[1] for tag in loop[0]],
                         ["pdbx_id", "pdbx_PDB_model_num", "label_asym_id", "label_seq_id", "label_comp_id", "auth_asym_id",
                          "auth_seq_id", "pdbx_PDB_ins_code", "pdbx_label_asym_id_2", "pdbx_label_seq_id_2",
                          "pdbx_label_comp_id_2", "pdbx_auth_asym_id_2", "pdbx_auth_seq_id_2", "pdbx_PDB_ins_code_2",
                          "label_alt_id", "pdbx_omega_angle"])

    def test_a_model_without_cis(self):
        self.put("model.pdb", made.pdb([("C", made.backbone(SEQUENCE))]))
        for name in ("pdb", "mmcif"):
            self.assertIn("The model has no cis proline", self.text(name, "one.csv", "--structure", "model.pdb"))
            self.assertIn("G116-P117, cis", self.stderr)


class FilesThatAreThere(Case):
    def sequence_file(self, changes=(), end="\n", first=101):
        lines = ["# made by hand" + end]
        for i, letter in enumerate(SEQUENCE):
            name = dict(changes).get(first + i, made.THREE[letter])
            lines.append("%-5s%s%s" % (name, "  %d" % (first + i) if i % 10 == 0 or i == 16 else "", end))
        return "".join(lines) + "PL  201" + end

    def test_cyana_sequence(self):
        for end in ("\n", "\r\n"):
            self.put("in.seq", self.sequence_file(end=end))
            self.text("cyana", "one.csv", "--into", "in.seq", "--output", "out.seq")
            self.assertEqual(self.read("out.seq"), self.sequence_file(end=end).replace("PRO    117", "cPRO    117"))
            self.assertIn("PRO 117 is now cPRO", self.stderr)

    def test_cpro_of_the_author_stays(self):
        before = self.sequence_file({109: "cPRO", 117: "cPRO"})
        self.put("in.seq", before)
        self.assertEqual(self.text("cyana", "one.csv", "--into", "in.seq"), before)
        self.assertRegex(self.stderr, r"A108-P109, trans 0\.[0-9]+: in\.seq has cPRO; it stays")
        self.assertNotIn("P117, cis", self.stderr)

    def test_a_sequence_file_of_something_else(self):
        for text, message in ((self.sequence_file(first=1), "has no G116-P117"),
                              (self.sequence_file({116: "TRP"}), "has no G116-P117"),
                              (self.sequence_file() * 2, "has A108-P109 twice"), ("ALA 1\n117 PRO 3\n", "in.seq:2:")):
            self.put("in.seq", text)
            self.assertIn(message, self.fails("cyana", "one.csv", "--into", "in.seq"))

    def test_a_new_sequence_file(self):
        residues = cyana_sequence(self.text("cyana", "one.csv"))
        self.assertEqual(residues, [("cPRO" if i == 16 else made.THREE[letter], 101 + i) for i, letter in enumerate(SEQUENCE)])

    def test_residues_of_a_new_sequence_file(self):
        sequence = "AcG?PAKPGAPK"  # cystine, a gap, prolines of which the second is cis
        self.put("x.tab", program.full_table(sequence.replace("?", "G"), {(8, "CB"): 34.0, (8, "CG"): 24.0}).replace("AcGG", "AcG?"))
        text = self.text("cyana", "x.tab")
        self.assertEqual([name for name, _ in cyana_sequence(text)],
                         "ALA CYSS GLY PRO ALA LYS cPRO GLY ALA PRO LYS".split())
        self.assertIn("# residue 4 is unknown: add it\n", text)
        self.assertIn("residue 4 is unknown", self.stderr)

    def nef(self, end="\n", more=""):
        lines = ["data_made", "save_nef_molecular_system", "  loop_"]
        lines += ["    _nef_sequence." + tag for tag in ("index", "chain_code", "sequence_code", "residue_name")]
        lines += ["    %d A %d %s" % (i, 100 + i, "'GLY'" if letter == "G" else made.THREE[letter]) for i, letter in enumerate(SEQUENCE, 1)]
        return end.join([*lines, "  stop_", "save_", more]) + end

    def test_nef(self):
        for end in ("\n", "\r\n", "\r"):
            before = self.nef(end)
            self.put("in.nef", before)
            self.text("nef", "one.csv", "--into", "in.nef", "--output", "out.nef")
            after = self.read("out.nef")
            self.assertTrue(after.startswith(before))
            self.assertEqual(re.findall("\r\n|\r|\n", after), [end] * len(after.splitlines()))
            self.assert_bonds(READERS["nef"](after), [("A", "116", "117")])
            self.assertEqual(len(loops(after)), 2)
        self.put("in.nef.gz", gzip.compress(self.nef().encode()))
        self.text("nef", "one.csv", "--into", "in.nef.gz", "--output", "out.nef.gz")
        with open(os.path.join(self.folder, "out.nef.gz"), "rb") as file:
            self.assertTrue(gzip.decompress(file.read()).decode().startswith(self.nef()))

    def test_a_second_list_has_another_name(self):
        self.put("in.nef", self.nef())
        self.put("second.nef", self.text("nef", "one.csv", "--into", "in.nef"))
        text = self.text("nef", "one.csv", "--into", "second.nef")
        self.assertEqual(re.findall(r"^save_(nef_dihedral\S+)", text, re.MULTILINE),
                         ["nef_dihedral_restraint_list_cis", "nef_dihedral_restraint_list_cis_2"])

    def test_nef_without_a_cis_proline_gets_a_comment(self):
        self.put("in.nef", self.nef())
        added = self.text("nef", "trans.csv", "--into", "in.nef").removeprefix(self.nef())
        self.assertEqual([line for line in added.splitlines() if line and not line.startswith("#")], [])

    def test_nef_of_something_else(self):
        self.put("in.nef", self.nef())
        self.assertIn("name its chain by --chain-as", self.fails("nef", "one.csv", "--chain-as", "X", "--into", "in.nef"))
        self.put("other.nef", self.nef().replace("116 'GLY'", "116 TRP"))
        self.assertIn("has no G116-P117 in chain", self.fails("nef", "one.csv", "--into", "other.nef"))
        self.put("short.nef", self.nef().replace("    26 A 126 PRO\n", ""))
        self.assert_bonds(READERS["nef"](self.text("nef", "one.csv", "--into", "short.nef")), [("A", "116", "117")])
        self.assertIn('is left out: the file has no A125-P126 in chain "A"', self.stderr)
        for more, cause in (("save_open", "ends within save_open"), ("data_second", "several data blocks")):
            self.put("bad.nef", self.nef(more=more))
            self.assertIn(cause, self.fails("nef", "one.csv", "--into", "bad.nef"))

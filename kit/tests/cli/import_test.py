"""zorvela-kit import as a whole: tables, notes and exit statuses worked out by hand."""
import gzip
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

from zorvela_tests.program import KIT

FILES = pathlib.Path(__file__).resolve().parent.parent / "files"
IMPORTED = pathlib.Path(__file__).resolve().parent / "imported"
NO_SEQUENCE = "the file has no sequence; it was built from the residues with shifts"
REMEDY = ("give NMR-STAR, NEF, text with a header line (resid,resname,atom,shift) or the program's shift table")


def table(remarks, sequence, rows):
    """The text of a shift table; a row is "resid atom shift"."""
    text = "".join("REMARK " + remark + "\n" for remark in remarks) + "\n"
    for start in range(0, len(sequence) + 1, 55):
        text += "DATA SEQUENCE " + sequence[start:start + 55] + "\n"
    text += "\nVARS   RESID RESNAME ATOMNAME SHIFT \nFORMAT %4d %1s %4s  %8.3f\n\n"
    for row in rows:
        resid, atom, shift = row.split()
        text += "%4s %s %4s  %8s\n" % (resid, sequence[int(resid) - 1], atom, shift)
    return text


class ImportTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_kit(self, *arguments, data=None):
        """Exit status, standard output and standard error of an import in an empty folder."""
        done = subprocess.run([KIT, "import", *map(str, arguments)], cwd=self.folder, input=data,
                              stdin=subprocess.DEVNULL if data is None else None, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, timeout=300, check=False)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def check_error(self, message, *arguments, data=None):
        """One line on standard error, no table, exit status 1."""
        self.assertEqual(self.run_kit(*arguments, data=data), (1, "", "zorvela-kit: " + message + "\n"))

    def written(self):
        return sorted(str(f.relative_to(self.folder)) for f in self.folder.rglob("*") if f.is_file())


class FilesTest(ImportTest):
    def test_files(self):
        """Each file in imported/ has the commands for a file, what they print and write, worked out by hand."""
        for transcript in sorted(IMPORTED.iterdir()):
            text = transcript.read_text()
            with self.subTest(transcript.name):
                expected = text[text.index("$ "):]
                self.assertEqual("".join(map(self.printed, re.findall(r"^\$ (.*)$", expected, re.MULTILINE))), expected)
            for name in self.written():
                self.assertIn("\n$ cat %s\n" % name, text)
                os.remove(self.folder / name)

    def printed(self, command):
        """What a terminal shows of a command of a transcript."""
        program, *arguments = command.split()
        if program == "cat":
            return "$ %s\n%s" % (command, (self.folder / arguments[0]).read_text())
        status, out, err = self.run_kit(FILES / arguments[1], *arguments[2:])
        self.assertEqual(status, 0 if out or "wrote" in err else 1)
        return "$ %s\n%s%s" % (command, err.replace(str(FILES) + "/", ""), out)

    def test_chain_by_any_of_its_names(self):
        expected = self.run_kit(FILES / "star3_entry.str")
        for name in ("A", "a", "B", "1", "peptide", "Example peptide", "the peptide"):
            self.assertEqual(self.run_kit(FILES / "star3_entry.str", "--chain", name), expected)
        for name in ("shifts_1", "1", "all"):
            self.assertEqual(self.run_kit(FILES / "star3_entry.str", "--list", name), expected)


class StarPartsTest(ImportTest):
    """Single rules, on files of a few lines."""
    ROWS = ("loop_ _Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID "
            "_Atom_chem_shift.Val ")

    def imported(self, text):
        status, out, err = self.run_kit("-", data=text.encode())
        self.assertEqual(status, 0, err)
        return out, [line.split(": ", 3)[3] for line in err.splitlines() if ": note: " in line]

    def test_lists_that_share_a_loop(self):
        """The rows of two lists, one after the other: no atom of one fills a place of the other."""
        loop = ("loop_ _Atom_chem_shift.Seq_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID _Atom_chem_shift.Val "
                "_Atom_chem_shift.Assigned_chem_shift_list_ID\n2 LYS CA 56.1 1\n3 PRO CA 63.1 1\n2 LYS CA 56.9 2\n"
                "3 PRO CA 63.9 2\n3 PRO CB 32.9 2\n").encode()
        status, out, err = self.run_kit("-", data=loop)
        self.assertEqual((status, out), (0, table(
            ["Imported from standard input (NMR-STAR 3), shift list 2", "Residue 1 here is residue 2 there"], "KP",
            ["1 CA 56.900", "2 CA 63.900", "2 CB 32.900"])))
        self.assertIn("has several shift lists, with backbone shifts: 1 (2), 2 (3); 2 is used", err)
        self.assertEqual(self.run_kit("-", "--list", "1", data=loop)[1], table(
            ["Imported from standard input (NMR-STAR 3), shift list 1", "Residue 1 here is residue 2 there"], "KP",
            ["1 CA 56.100", "2 CA 63.100"]))
        called_all = loop.replace(b" 1\n", b" all\n")
        self.assertIn(", shift list all\n", self.run_kit("-", "--list", "all", data=called_all)[1])

    def test_bare_loop(self):
        out, notes = self.imported(self.ROWS + "1 ALA CA 52 2 PRO CA 63")
        self.assertEqual(out, table(["Imported from standard input (NMR-STAR 3)", "Residue 1 here is residue 1 there"],
                                    "AP", ["1 CA 52.000", "2 CA 63.000"]))
        self.assertEqual(notes, [NO_SEQUENCE])

    def test_older_tags_and_authors_atoms(self):
        out, _ = self.imported("data_x loop_ _Atom_chem_shift.Seq_ID _Atom_chem_shift.Auth_comp_ID "
                               "_Atom_chem_shift.Auth_atom_ID _Atom_chem_shift.Chem_shift_val 1 ALA HN 8.1 2 PRO CA 63")
        self.assertIn("\n   1 A   HN     8.100\n   2 P   CA    63.000\n", out)

    def test_chain_by_sequence_where_rows_name_none(self):
        entity = "save_%d _Entity.ID %d _Entity.Polymer_type polypeptide(L) _Entity.Polymer_seq_one_letter_code %s save_ "
        out, notes = self.imported("data_x " + entity % (1, 1, "MKTAY") + entity % (2, 2, "GAPGS") + self.ROWS +
                                   "1 GLY CA 45 2 ALA CA 52 3 PRO CA 63")
        self.assertIn("DATA SEQUENCE GAPGS\n", out)
        self.assertEqual(notes, ["shifts without a chain read as chain 2, whose sequence fits them best"])

    def test_rows_that_all_name_the_first_copy(self):
        """The entity decides where it contradicts the copy."""
        entity = "save_%d _Entity.ID %d _Entity.Polymer_type polypeptide(L) _Entity.Polymer_seq_one_letter_code %s save_ "
        out, notes = self.imported("data_x loop_ _Entity_assembly.ID _Entity_assembly.Entity_ID 1 1 2 2 stop_ " +
                                   entity % (1, 1, "MKTAY") + entity % (2, 2, "GAPGS") +
                                   "loop_ _Atom_chem_shift.Entity_assembly_ID _Atom_chem_shift.Entity_ID "
                                   "_Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID "
                                   "_Atom_chem_shift.Val 1 2 3 PRO CA 63 1 2 4 GLY CA 45")
        self.assertIn("DATA SEQUENCE GAPGS\n", out)
        self.assertEqual(notes, ["shift rows of entity 2 name a copy of another entity; read as chain 2"])

    def test_stated_offset(self):
        _, notes = self.imported("data_x save_l " + self.ROWS + "1 ALA CA 52 stop_ loop_ "
                                 "_Systematic_chem_shift_offset.Type _Systematic_chem_shift_offset.Atom_type "
                                 "_Systematic_chem_shift_offset.Val 'TROSY offset' 'amide nitrogens' 0.3 stop_ save_")
        self.assertEqual(notes[0], "the file states a systematic offset of 0.3 ppm (TROSY offset, amide nitrogens); "
                                   "it is not applied")

    NEF_ROWS = ("loop_ _nef_chemical_shift.chain_code _nef_chemical_shift.sequence_code "
                "_nef_chemical_shift.residue_name _nef_chemical_shift.atom_name _nef_chemical_shift.value ")
    NEF_SEQUENCE = ("loop_ _nef_sequence.chain_code _nef_sequence.sequence_code _nef_sequence.residue_name "
                    "A 43 SER A 44 PRO A 45 GLY A 46 ALA stop_ ")

    def test_shifts_kept_under_the_next_residue(self):
        """44 is seen from 45 alone, 43 from 44 as well as by itself; 46+1 is outside the sequence."""
        out, notes = self.imported("data_x " + self.NEF_SEQUENCE + self.NEF_ROWS +
                                   "A 44-1 . CA 58.2 A 43 SER CA 58.4 A 45-1 . CA 63.1 A 45-1 . CB 34.2 "
                                   "A 45-1 . CG 24.5 A 45 GLY HA% 3.9 A 46+0 . CB 19.1 A 46-1 . HA2 4.2 "
                                   "A 46+1 . CA 50 A @46-1 . CA 51")
        self.assertEqual(out, table(
            ["Imported from standard input (NEF), chain A, shift list x", "Residue 1 here is residue 43 there"], "SPGA",
            ["1 CA 58.400", "2 CA 63.100", "2 CB 34.200", "2 CG 24.500", "3 HA2 3.900", "3 HA3 3.900", "4 CB 19.100"]))
        self.assertEqual(notes, [
            "1 shift not assigned to a residue ignored, that of @46",
            "one shift for both alpha protons of glycine, written as HA2 and HA3: 45",
            "4 shifts listed under a neighbour (n-1) used; the residue has none of its own: 44 CA, 44 CB, 44 CG, 46 CB",
            "2 shifts listed under a neighbour (n-1) not used; the residue has its own",
            "1 shift ignored; the sequence has no such residue: 46"])

    def test_sequence_beside_a_list_within_restraints(self):
        """Residues without shifts stay, whatever is between the frames."""
        restraint = " assign (resid 2 and name HN) (resid 3 and name HA) 2.86 1.06 0.29\n"
        rows = "%s PRO CA 63.1\n%s GLY CA 45\nstop_\nsave_\n"
        nef = ("save_nef_molecular_system\n_nef_molecular_system.sf_category nef_molecular_system\n" +
               self.NEF_SEQUENCE.replace(" ", "\n") + "loop_\n_nef_covalent_links.chain_code_1\nA\nstop_\nsave_\n")
        star = ("save_e\n_Entity.Sf_category entity\n_Entity.ID 1\n_Entity.Polymer_type polypeptide(L)\n"
                "_Entity.Polymer_seq_one_letter_code SPGA\nsave_\n")
        for frame, shifts, number in (
                (nef, "save_l\n" + self.NEF_ROWS.replace(" ", "\n") + rows % ("A 44", "A 45"), 43),
                (star, "save_l\n" + self.ROWS.replace(" ", "\n") + rows % (2, 3), 1)):
            out, notes = self.imported(restraint + frame + restraint + shifts + restraint)
            self.assertIn("DATA SEQUENCE SPGA\n", out)
            self.assertIn("REMARK Residue 1 here is residue %d there\n" % number, out)
            self.assertIn("   2 P   CA    63.100\n", out)
            self.assertEqual(notes, ["the file holds more than shifts; the sequence and the shift list in it are read "
                                     "(from line 2)"])

    def test_neighbours_without_a_sequence(self):
        """The residue before has a place, and the name that its own rows give."""
        out, notes = self.imported("data_x " + self.NEF_ROWS + "A 44 PRO HA 4.4 A 45-1 . CG 24.5 A 45 GLY CA 45 "
                                   "A 43-1 . CA 55 A 47-1 PRO CB 33")
        self.assertEqual(out, table(
            ["Imported from standard input (NEF), chain A, shift list x", "Residue 1 here is residue 42 there"], "??PGP?",
            ["1 CA 55.000", "3 HA 4.400", "3 CG 24.500", "4 CA 45.000", "5 CB 33.000"]))
        self.assertEqual(notes, [
            NO_SEQUENCE,
            "3 shifts listed under a neighbour (n-1) used; the residue has none of its own: 42 CA, 44 CG, 46 CB"])

    def test_side_chains_alone(self):
        self.check_error("standard input: holds no backbone shifts of a protein; this NMR-STAR 3 file holds: the "
                         "chain without a name (the list without a name): 1 shift, none that a prediction uses (%s, 1 shift of other atoms (side chain "
                         "and the like) not needed)" % NO_SEQUENCE, "-",
                         data=(self.ROWS + "1 LEU CD1 24.1").encode())


class CsvTest(ImportTest):
    def check_read(self, data, first, sequence, *said):
        """The number of the first residue, the sequence, and parts of the table and the notes."""
        status, out, err = self.run_kit("-", data=data.encode())
        with self.subTest(data):
            self.assertEqual(status, 0, err)
            self.assertIn("REMARK Residue 1 here is residue %s there\n" % first, out)
            self.assertIn("\nDATA SEQUENCE %s\n" % sequence, out)
            for text in said:
                self.assertIn(text, out + err)

    def test_what_is_read(self):
        greek = "\n   1 A   CA    52.000\n   2 P   HA     4.400\n   2 P   CG    27.000\n"
        for data, first, sequence, *said in (
                ("resid,resname,atom,shift\n1,ALA,Cα,52\n2,PRO,Cγ,27\n2,PRO,Hα,4.4\n", 1, "AP", greek),
                ("loop_ _Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID "
                 "_Atom_chem_shift.Val 1 ALA Cα 52 2 PRO Cγ 27 2 PRO Hα 4.4", 1, "AP", greek),
                # Gly-12 beside Pro-13 is residue 12.
                ("Res,CA,CB\nGly-12,45,\nPro-13,63,32\n", 12, "GP"),
                # A letter after some numbers is an insertion code, beside names of their own or within labels.
                ("Res,CA,CB\nS52,58,63\nP52A,63,32\nG53,45,\n", 52, "SPG", "Residue 2 here is residue 52A there"),
                ("resid,aa,CA,CB\n81,S,58,63\n82,P,63,32\n82A,L,55,42\n", 81, "SPL", "Residue 3 here is residue 82A there"),
                # G-2 is residue -2 where the numbers ascend then.
                ("Res,CA,CB\nG-2,45.1,\nS-1,58.3,63.8\nH0,55.9,30.2\nM1,55.4,33.0\nP2,63.1,32.0\nL3,55.0,42.1\n", -2,
                 "GSHMPL", "\n   1 G   CA    45.100\n   2 S   CA    58.300\n", "\n   6 L   CA    55.000\n"),
                # Letters after all numbers name the residues.
                ("Sequence,CA,CB\n81S,58.4,63.9\n82P,63.0,34.2\n", 81, "SP",
                 "\n   1 S   CA    58.400\n   1 S   CB    63.900\n   2 P   CA    63.000\n   2 P   CB    34.200\n"),
                ("num  aa  name  ppm\n 1    A   CA   52.5\n 2    P   CA   63.1\n", 1, "AP",
                 "\n   1 A   CA    52.500\n   2 P   CA    63.100\n"),
                # Cells left away.
                ("Res,N,HN,CA,CB\nS81,116.2,8.2,58.4,63.9\nP82,63.0,34.2\nG83,109.1,8.4,45.3,\n", 81, "S?G",
                 "note: standard input: line 3 ignored: 3 cells for 5 columns\n"),
                # A row that names its atom is in its place: such a value is kept, as in the other formats.
                ("resid,aa,atom,shift\n1,A,N,40\n1,A,CA,52\n2,P,CA,63\n", 1, "AP", "   1 A    N    40.000\n",
                 "N of A1 at 40 ppm"),
                ("Res,CA,CA shift,CB,CO,C'\nS1,58,1,63,174,175\nP2,63,2,32,176,177\n", 1, "SP",
                 "\n   1 S   CA    58.000\n   1 S   CB    63.000\n   2 P   CA    63.000\n",
                 "more than one column for C: none of them is used",
                 "columns of numbers that are not used: CA shift, CO, C'"),
                # First the chains that are not proteins, then those without a shift that is used.
                ("chain,resid,resname,atom,shift\nA,1,ALA,HB,1.2\nB,1,DA,H8,8.2\nC,1,ALA,CA,52.2\n", 1, "A",
                 "ignored: 1 shift of chain B (no amino acids)\n"
                 "zorvela-kit: note: standard input, chain C: ignored: chain A "),
                # A wide column is judged by its atom alone, whether the residues have it or not.
                ("Res,CA,CB,CG,HA2\nS1,58,63,175,45\nP2,63,32,,\n", 1, "SP", "column CG ignored", "column HA2 ignored"),
                # A charge is not the second half of a shift.
                ("resid,aa,atom,shift,charge\n1,A,CA,52,-1\n2,P,CA,63,-1\n3,G,CA,45,-1\n", 1, "APG"),
                # Shifts without a residue are rows too: doubtful labels are few, and not all shifts may be cut.
                ("Res,atom,shift\nG12A,CA,45\nP13A,CA,63\nG14,CA,45\n?,CA,55\n?,CA,55\n", "12A", "GPG"),
                ("resid,aa,atom,shift,error\n1,A,CA,52,4\n2,P,CA,63,1\n3,G,CA,45,3\n?,,CA,55.1,4\n", 1, "APG"),
                # The element of a list of eight words, and the residue of an ABACUS list, may be a mark.
                ("1 1 ALA CA . 52.1 0.1 0\n2 2 PRO CA . 63.1 0.1 0\n", 1, "AP"),
                ("1 - 4 174.1 106\n52.1 CA\n2 P 4 177.1 106\n63.1 CA\n", 1, "?P"),
                # Where all letters are lower case, c is not a sign of a disulfide bond.
                ("resid,aa,atom,shift\n1,c,CA,58\n2,p,CA,63\n", 1, "CP"),
                # Beside a number, "Name" is the name of the residue, and "Label" is left alone.
                ("Name,No,CA,CB\nSER,81,58,63\n", 81, "S"),
                ("Label,Res,No,CA,CB\nx9,SER,81,58,63\n", 81, "S")):
            self.check_read(data, first, sequence, *said)
        # Where no column is called after the residue, "Label", "Name" or "Assignment" is its label.
        for heading in ("Label", "Name", "Assignment"):
            self.check_read(heading + ",CA,CB\nS81,58,63\nP82,63,32\n", 81, "SP")
        for label in ("Pro(82)", "proline 82", "82-Pro"):
            self.check_read("Residue,CA,CB\n%s,63,32\n" % label, 82, "P")
        for name in ("cPRO", "pro_cis", "CPR"):
            self.check_read("resid resname atom shift\n81 SER CA 58.4\n82 %s CA 63\n83 PRO CA 63\n" % name, 81, "SPP",
                            "REMARK The file marks as cis peptide bond: P82\n")
        # In capitals it is a proline at the end of a chain in some force fields.
        self.assertNotIn("cis", self.run_kit("-", data=b"resid resname atom shift\n81 SER CA 58.4\n82 CPRO CA 63\n")[1])
        # Whatever other atoms are called, a table with names or without is read.
        others = "81 SER QQD 1.0\n81 SER HT 2.0\n82 PRO O 999.000\n82 PRO CD1/2 20.0\n82 PRO HB2|HB3 2.1\n"
        for header in ("", "resid resname atom shift\n"):
            self.check_read(header + "81 SER CA 58.4\n82 PRO CA 63.0\n" + others, 81, "SP",
                            "   1 S   CA    58.400\n   2 P   CA    63.000\n")

    def test_what_is_refused(self):
        own = "; give names and numbers of residues in columns of their own"
        form = "NMR-STAR, NEF, the program's shift table, or text with a header line such as resid,resname,atom,shift"
        cells = ("; give every row a cell for each column, an empty one where there is no shift, and numbers with a "
                 "decimal point")
        alone = "; give the list alone, with all its columns"
        needs = "; is this a table of shifts? It needs columns resid, resname, atom and shift"
        for data, message in (
                ("Res,CA,CB\nG-1,45,\nS2,58,63\nP3,63,32\n",
                 ':2: cannot tell whether "-" in "G-1" is a minus sign or a dash' + own),
                # Chain, number and name, or a mutation: not alanine with an insertion code.
                ("Res,CA,CB\nA81S,58,63\nA82P,63,32\nA83G,45,\n", ':2: cannot tell which letter of "A81S" names the residue' + own),
                # Decimal commas without quotes.
                ("Res,N,HN,CA\nS81,116,2,8,2,58,4\nP82,,,63,0\nG83,109,1,8,4,45,3\n",
                 ":2: most rows (3 of 3) do not fit the columns; the first: more than 4 cells for 4 columns" + cells),
                ("resid,resname,atom,shift,error\n1,ALA,CA,52,4\n2,PRO,CA,63,1\n3,GLY,CA,45,3\n",
                 ": the shifts seem to be cut at their decimal commas; write decimal points, or semicolons between the columns"),
                ("resid,aa,atom,shift,x\n1,A,CA,52,4000000000001\n2,P,CA,63,4000000000001\n3,G,CA,45,4000000000001\n",
                 ": the shifts seem to be cut at their decimal commas; write decimal points, or semicolons between the columns"),
                ("A 1 177.1 52.1 19.1 4.3 120.1\nP 2 177.1 63.1 32.1 4.4 9999.0\n? 3 175.1 55.1 30.1 4.3 120.1\n",
                 ':3: is not a row of the Rosetta list: "? 3 175.1 55.1 30.1 4.3 120.1"' + alone),
                ("A 1 177.1 52.1 19.1 4.3 120.1\nP 2 177.1 63.1 32.1 4.4 9999.0\nG 3 175.1 45.1 150.0 4.0 109.1\n",
                 ':3: is not a row of the Rosetta list: "G 3 175.1 45.1 150.0 4.0 109.1"' + alone),
                # The limit is told while the rows are read, whatever else is wrong with them.
                ("chain,resid,aa,atom,shift\n" + "".join("c%d,1,A,CA,1\n" % i for i in range(1001)),
                 ":1002: has more than 1000 chains; check the column of chain names"),
                ("resid,aa,atom,shift\n1,A,CA,0.2\n2,P,CA,-1.1\n",
                 ':2: most values (2 of 2) are out of range for their atoms, such as "0.2" for CA; check that each column has '
                 "the values that its name promises"),
                ("81 SER CA 58.4\n82 PRO CA 63.0\n83 GLY CA no\n84 ALA CA 52\n",
                 ":3: is not like the rows above it, and the table has no column names; correct or remove this row, or add a "
                 "line of column names"),
                (",resname,atom,shift\n1,SER,CA,58\n2,SER,CB,63\n3,PRO,CA,63\n",
                 ": the only column of numbers besides the shifts counts the rows; add a column of residue numbers (resid)"),
                ("##", ':1: is not a known kind of shift file; it begins with "##"; give ' + form),
                ("resid,resname,shift\n1,A,52\n", ":1: the columns lack atom name (atom); give " + form),
                ("resid,aa,atom,shift\nx,A,CA,52\n",
                 ':2: most rows (1 of 1) name no residue: "x" is not a residue number' + needs),
                ("Residue,Shift\nS81,52\n",
                 ':2: most rows (1 of 1) name no residue with its atom: "S81" names no atom' + needs),
                ("resid,atom,shift\n1,CA,52\n", ": the rows have no residue names; give the sequence (--sequence FILE), or a "
                                                "column resname")):
            self.check_error("standard input" + message, "-", data=data.encode())
        # Nothing tells which atoms the numbers belong to, which number is the residue's, or the number of a residue.
        for data in (b"S81 116.2 8.21 58.4\nP82 120.0 8.0 63.0\n", b"1 81 SER CA 58.4\n2 82 PRO CA 63.0\n",
                     b"81 CA 58.4\n82 CA 63.0\n", b"81 SER CA 58.4 0.1\n82 PRO CA 63.0 0.1\n", b"Resname,CA,CB\nSER,58,63\n"):
            status, out, err = self.run_kit("-", data=data)
            self.assertEqual((status, out), (1, ""))
            self.assertIn("is not a known kind of shift file; it begins with", err)
        self.assertEqual(1, self.run_kit("-", data=b"Name,CA,CB\nSER,58,63\nPRO,63,32\n")[0])

    def test_columns_of_the_residue_before(self):
        """CA-1 is of residue i-1; HA-1 is not an older name of an alpha proton."""
        remark = "Residue 1 here is residue 81 there"
        for minus in ("CA-1,CB-1,HA-1", "CA(i-1),CB (i-1),HA[i-1]"):
            _, out, err = self.run_kit("-", data=("Res,N,CA,CB,HA,%s\nS81,116,58.4,63.9,4.5,,,\n"
                                                  "G83,109,45.3,,4.0,63.1,34.2,4.6\n"
                                                  "A84,121,52,19,4.3,45.5,,3.8\n" % minus).encode())
            self.assertEqual(out, table(["Imported from standard input (CSV)", remark], "S?GA", [
                "1 N 116.000", "1 HA 4.500", "1 CA 58.400", "1 CB 63.900", "2 HA 4.600", "2 CA 63.100", "2 CB 34.200",
                "3 N 109.000", "3 HA2 4.000", "3 HA3 4.000", "3 CA 45.300", "4 N 121.000", "4 HA 4.300", "4 CA 52.000",
                "4 CB 19.000"]), err)
            self.assertIn("3 shifts listed under a neighbour (n-1) used; the residue has none of its own: 82 HA, "
                          "82 CA, 82 CB\n", err)
            self.assertIn("2 shifts listed under a neighbour (n-1) not used; the residue has its own\n", err)

    def test_groups_of_neighbours_and_of_no_residue(self):
        """An unassigned group does not stretch the sequence."""
        _, out, err = self.run_kit("-", data=b" Group  Atom  Nuc   Shift  SDev  Assignments\n\n"
                                             b"  S81   CA  13C  58.400 0.000  2\n  G83-1  CG  13C  24.500 0.000  1\n"
                                             b"  P82   CA  13C  63.000 0.000  2\n  G83    CA  13C  45.300 0.000  1\n"
                                             b" X205   CA  13C  55.000 0.000  1\n    ?   HN   1H   8.000 0.000  1\n"
                                             b"  G83  CB-1  13C  34.200 0.000  1\n")
        self.assertEqual(out, table(
            ["Imported from standard input (Sparky)", "Residue 1 here is residue 81 there"], "SPG",
            ["1 CA 58.400", "2 CA 63.000", "2 CB 34.200", "2 CG 24.500", "3 CA 45.300"]), err)
        self.assertIn("2 shifts not assigned to a residue ignored, such as those of X205\n", err)

    def test_chains_in_labels(self):
        for data in (b"residue,atom,shift\nA:SER81,CA,58.4\nA:PRO82,CA,63.0\nB:SER81,CA,58.5\nB:PRO82,CA,63.1\n",
                     b"assignment,shift\nA:SER81:CA,58.4\nA:PRO82:CA,63.0\nB:SER81:CA,58.5\nB:PRO82:CA,63.1\n",
                     b"resid,residue,atom,shift\n81,A:SER81,CA,58.4\n82,A:PRO82,CA,63.0\n81,B:SER81,CA,58.5\n"
                     b"82,B:PRO82,CA,63.1\n"):
            for chain, shift in (("A", "58.400"), ("B", "58.500")):
                _, out, err = self.run_kit("--chain", chain, "-", data=data)
                self.assertIn("residue 81 there\n\nDATA SEQUENCE SP\n", out, err)
                self.assertIn("\n   1 S   CA    %s\n" % shift, out)

    def test_assignments(self):
        expected = ["1 CA 58.400", "1 CB 63.900", "2 CA 63.000", "2 CG 24.600"]
        for data in ("Assignment,Shift\nS81CA,58.4\nS81CB,63.9\nP82CA,63.0\nP82Cγ,24.6\n".encode(),
                     b"S81 CA 58.4\nS81 CB 63.9\nP82 CA 63.0\nP82 CG 24.6\n",
                     b"S81CA\t58.4\nS81CB\t63.9\nP82CA\t63.0\nP82CG\t24.6\n",
                     b"CA,58.4,SER,81\nCB,63.9,SER,81\nCA,63.0,PRO,82\nCG,24.6,PRO,82\n"):
            self.assertEqual(self.run_kit("-", data=data)[1], table(
                ["Imported from standard input (CSV)", "Residue 1 here is residue 81 there"], "SP", expected))


class TableTest(ImportTest):
    def test_table_without_sequence(self):
        _, out, err = self.run_kit("-", data=b"VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %d %s %s %f\n"
                                             b"7 c CA 55\n9 P CA 63\n")
        self.assertEqual(out, table(["Residue 1 here is residue 7 there"], "c?P", ["1 CA 55.000", "3 CA 63.000"]))
        self.assertIn("the table has no DATA SEQUENCE line", err)

    def test_bad_tables(self):
        remedy = "; write VARS RESID RESNAME ATOMNAME SHIFT and FORMAT %4d %1s %4s  %8.3f above the rows"
        self.check_error('standard input:2: Bad format syntax \'%5.1e\'' + remedy, "-",
                         data=b"VARS RESID SHIFT\nFORMAT %4d %5.1e\n1 5\n")
        self.check_error("standard input: the table has no column ATOMNAME" + remedy, "-",
                         data=b"VARS RESID RESNAME SHIFT\nFORMAT %4d %s %f\n1 A 5\n")
        self.check_error("standard input: holds no backbone shifts of a protein; this table holds: 0 rows, 2 residues",
                         "-", data=b"DATA SEQUENCE AP\nVARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %d %s %s %f\n")
        self.check_error("standard input: FIRST_RESID 2147483647 is too large; give the number of the first residue",
                         "-", data=b"DATA FIRST_RESID 2147483647\nDATA SEQUENCE AP\n"
                                   b"VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %d %s %s %f\n")


class OutputTest(ImportTest):
    def test_gzipped_and_standard_input(self):
        plain = (FILES / "star3_entry.str").read_bytes()
        (self.folder / "entry.gz").write_bytes(gzip.compress(plain))
        expected = self.run_kit(FILES / "star3_entry.str")[1]
        self.assertEqual(self.run_kit("entry.gz")[1], expected.replace("star3_entry.str", "entry.gz"))
        for data in (plain, gzip.compress(plain), gzip.compress(plain[:900]) + gzip.compress(plain[900:]),
                     plain.replace(b"\n", b"\r\n"), plain.replace(b"\n", b"\r"), b"\xef\xbb\xbf" + plain):
            status, out, _ = self.run_kit("-", data=data)
            self.assertEqual((status, out), (0, expected.replace("star3_entry.str", "standard input")))

    def test_places(self):
        entry = FILES / "star3_entry.str"
        expected = self.run_kit(entry)[1]
        self.assertEqual(self.run_kit(entry, "--output", "-")[:2], (0, expected))
        self.assertEqual(self.run_kit(entry, "-o", "one.tab")[:2], (0, ""))
        (self.folder / "there").mkdir()
        self.assertEqual(self.run_kit(entry, "-o", "there")[:2], (0, ""))
        self.assertEqual(self.run_kit(entry, "-o", "new/deep/")[:2], (0, ""))
        self.assertEqual(self.run_kit("-", "-o", "new/", data=entry.read_bytes())[:2], (0, ""))
        self.assertEqual(self.written(), ["new/deep/star3_entry_A.tab", "new/stdin_A.tab", "one.tab",
                                          "there/star3_entry_A.tab"])
        self.assertEqual((self.folder / "one.tab").read_text(), expected)

    def check_last_line(self, message, *arguments):
        status, out, err = self.run_kit(*arguments)
        self.assertEqual((status, out), (1, ""))
        self.assertEqual(err.splitlines()[-1], "zorvela-kit: " + message)

    def test_places_that_will_not_do(self):
        dimer = FILES / "star3_dimer.str"
        remedy = "name a folder (with / at the end), or choose one with --chain and --list"
        self.check_last_line("standard output: cannot hold 2 tables; " + remedy, dimer, "-o", "-")
        self.check_last_line("one.tab: cannot hold 2 tables; " + remedy, dimer, "-o", "one.tab")
        choose = "; choose another place with --output, or free disk space"
        self.check_last_line("no/one.tab: cannot be written: No such file or directory" + choose,
                             FILES / "shifts.csv", "-o", "no/one.tab")
        if os.path.exists("/dev/full"):
            self.check_last_line("/dev/full: cannot be written: No space left on device" + choose,
                                 FILES / "shifts.csv", "-o", "/dev/full")
        self.assertEqual(self.written(), [])

    def test_two_files_of_one_name(self):
        for name in ("a", "b"):
            (self.folder / name).mkdir()
            (self.folder / name / "x.csv").write_bytes((FILES / "shifts.csv").read_bytes())
        (self.folder / "X.csv").write_bytes((FILES / "shifts.csv").read_bytes())
        status, _, err = self.run_kit("a/x.csv", "b/x.csv", "X.csv", FILES / "wide.csv", "-o", "out/")
        self.assertEqual(status, 0)
        self.assertIn("zorvela-kit: note: b/x.csv: written as x_2, because a/x.csv has the same name\n"
                      "zorvela-kit: note: X.csv: written as X_3, because a/x.csv has the same name\n", err)
        self.assertEqual(self.written(), ["X.csv", "a/x.csv", "b/x.csv", "out/X_3.tab", "out/wide.tab", "out/x.tab",
                                          "out/x_2.tab"])

    def test_a_second_name_that_is_another_files_own(self):
        """x_2 is taken by x_2.csv, whichever comes first."""
        for name in ("a/x.csv", "b/x.csv", "x_2.csv"):
            (self.folder / name).parent.mkdir(exist_ok=True)
            (self.folder / name).write_bytes((FILES / "shifts.csv").read_bytes())
        status, _, err = self.run_kit("a/x.csv", "b/x.csv", "x_2.csv", "-o", "out/")
        self.assertEqual(status, 0)
        self.assertIn("note: b/x.csv: written as x_3, because", err)
        self.assertIn("from x_2.csv", (self.folder / "out" / "x_2.tab").read_text())

    def test_a_bad_file_changes_no_name_of_the_others(self):
        """What is there from an earlier run is replaced by the table of the same input alone."""
        for name in ("a/x.csv", "b/x.csv", "x_A.csv"):
            (self.folder / name).parent.mkdir(exist_ok=True)
            (self.folder / name).write_bytes((FILES / "shifts.csv").read_bytes())
        (self.folder / "c").mkdir()
        (self.folder / "c" / "x.str").write_bytes((FILES / "star3_entry.str").read_bytes())  # one chain, A
        names = ("a/x.csv", "b/x.csv", "x_A.csv", "c/x.str")
        origin = {"x.tab": "x.csv", "x_2.tab": "x.csv", "x_A.tab": "x_A.csv", "x_3_A.tab": "x.str"}
        for order in (names, ("x_A.csv", "a/x.csv", "b/x.csv", "c/x.str")):
            self.run_kit(*order, "-o", "all/")
            tables = {f.name: f.read_text() for f in (self.folder / "all").iterdir()}
            self.assertEqual({name: text.split("Imported from ")[1].split()[0] for name, text in tables.items()}, origin)
        for bad, own in (("a/x.csv", "x.tab"), ("b/x.csv", "x_2.tab"), ("x_A.csv", "x_A.tab")):
            good = (self.folder / bad).read_bytes()
            (self.folder / bad).write_bytes(b"cut")
            self.assertEqual(self.run_kit(*names, "-o", bad + ".out/")[0], 1)
            self.assertEqual({f.name for f in (self.folder / (bad + ".out")).iterdir()}, set(origin) - {own})
            (self.folder / bad).write_bytes(good)

    def test_one_table_of_two_files_is_named_like_both_would_be(self):
        self.assertEqual(self.run_kit("nowhere.str", FILES / "shifts.csv")[1], "")
        self.assertEqual(self.written(), ["shifts.tab"])

    def test_a_chain_that_has_the_name_of_another_file(self):
        (self.folder / "x.str").write_bytes((FILES / "star3_entry.str").read_bytes())
        (self.folder / "x_A.csv").write_bytes((FILES / "shifts.csv").read_bytes())
        self.run_kit("x.str", "x_A.csv", "-o", "o/")
        self.assertEqual(sorted(f.name for f in (self.folder / "o").iterdir()), ["x-_A.tab", "x_A.tab"])

    def test_a_bad_file_does_not_stop_the_others(self):
        status, _, err = self.run_kit("nowhere.str", FILES / "star3_pdb.str", FILES / "star3_offset.str", "-o", "o/")
        self.assertEqual(status, 1)
        self.assertEqual(err.splitlines()[0], "zorvela-kit: nowhere.str: cannot be read: No such file or directory; "
                                              "check the name and the permissions")
        self.assertEqual(err.splitlines()[-1], "zorvela-kit: 1 of 3 files could not be imported")
        self.assertEqual(self.written(), ["o/star3_offset_1.tab", "o/star3_pdb_H.tab"])


class BadFileTest(ImportTest):
    def test_no_files(self):
        status, out, err = self.run_kit()
        self.assertNotEqual(status, 0)
        self.assertEqual(out, "")
        self.assertIn("FILE or --files-from is required", err)

    def test_folder_and_empty_files(self):
        self.check_error("%s: is a folder without shift files; name the files" % self.folder, self.folder)
        for data in (b"", gzip.compress(b""), b" \n\r\n\t\n"):
            self.check_error("standard input: is empty; give a file with chemical shifts", "-", data=data)

    def test_damaged_gzip(self):
        packed = gzip.compress((FILES / "star3_entry.str").read_bytes())
        self.check_error("standard input: the gzip file ends too early; fetch it again", "-", data=packed[:300])
        self.check_error("standard input: the gzip file is damaged; fetch it again", "-", data=b"\x1f\x8bnonsense" * 9)

    def test_foreign_files(self):
        for data, what in ((b"\0\1\2", ""), (b"%PDF-1.4", "a PDF file"),
                           (b"PK\3\4..", "a zip archive or spreadsheet (xlsx, ods); unpack it, or save the sheet as CSV"),
                           (b"\xff\xfea\0", "text in UTF-16; save it as UTF-8"),
                           (b"d\0a\0t\0a\0", "text in UTF-16; save it as UTF-8"),
                           (b"\0d\0a\0t\0a", "text in UTF-16; save it as UTF-8"),
                           (b"<html>", "an HTML or XML file (an error page of a web server?)"),
                           (b'<?xml version="1.0"?>\n<!DOCTYPE chemical_shift_list SYSTEM "x.dtd">\n<chemical_shift_list>',
                            "an XML shift list of ARIA; export NMR-STAR or a table with column names"),
                           (b'{"a": 1}', "a JSON file"), (b">seq\nMKT\n", "a FASTA sequence"),
                           (b"HEADER    HYDROLASE\n", "a PDB coordinate file")):
            what, _, remedy = what.partition("; ")
            fault = "is %s, not a shift file" % what if what else "is not a text file"
            self.check_error("standard input: %s; %s" % (fault, remedy or REMEDY), "-", data=data)
        give = "give the file with the chemical shifts"
        export = "export NMR-STAR or a table with column names"
        mars = "a MARS file (spin systems without residues)"
        for data, line, what, remedy in (
                (b"! NOEs\n assign (resid 19 and name HN) (resid 20 and name HN) 1.8 0.0 1.7\n", 2,
                 "a restraint list", give),
                (b"assign{1}(resid 19 and name HN) (resid 20 and name HN) 1.8\n", 1, "a restraint list", give),
                (b" 19 GLU HN 20 ALA HN 3.5\n 19 GLU HN 21 ALA HN 3.5 1.0\n", 1, "a restraint list", give),
                (b" 20 ALA PHI -80.0 -40.0\n", 1, "a restraint list", give),
                (b"REMARK 1\nATOM      1  N   MET A   1      27.340  24.430   2.614  1.00  9.67\n", 2,
                 "a list of atom coordinates", give),
                (b"# Number of dimensions 2\n 1 8.2 120.1 1 U 0.0 0.0 e 0 1 2 0\n", 1, "a peak list", give),
                (b"# Number of dimensions: 2\n 1 8.2 120.1 1 U 0.0 0.0 e 0 1 2 0\n", 1, "a peak list", give),
                (b"Assignment  w1  w2\n\n G12N-HN  109.1  8.31\n", 1, "a peak list", give),
                (b"label dataset sw sf\nH1 N15\nhsqc.nv\n", 1, "a peak list", give),
                (b"VARS INDEX X_AXIS Y_AXIS\nFORMAT %5d %9.3f %9.3f\n\n1 300.1 400.2\n", 1, "a peak list", give),
                (b"#,Assign F1,Assign F2,Pos F1,Pos F2\n1,A.12.GLY.H,A.12.GLY.N,8.3,109.1\n", 1, "a peak list", give),
                (b"        H  N  CO-1  CA  CA-1\nPR_2  8.900 123.220 - 55.1 -\n", 2, mars, give),
                (b"Res_12 PR_7 (H)\nRes_13 PR_9 (M)\n", 1, mars, give),
                (b"TYPEDEF ASS_TBL_H2O\nSEPARATOR ,\n", 1, "an OLIVIA table", export),
                (b"#Seq MQIFVKTLTG\n#Res code merit HN N CO-1\nM1 a 1.0 8.1 120.0 170.1\n", 1,
                 "a list of targeted acquisition", export),
                (b"Spin system   HN   HA   Other:\n1: Val-1   3.76   HB: 1.945\n", 1, "a PRONTO table", export)):
            self.check_error("standard input:%d: is %s, not a shift file; %s" % (line, what, remedy), "-", data=data)
        self.check_error('standard input:1: is not a known kind of shift file; it begins with "Dear colleague,"; give '
                         "NMR-STAR, NEF, the program's shift table, or text with a header line such as "
                         "resid,resname,atom,shift", "-", data=b"Dear colleague,\nplease find attached\n")
        entity = b"_entity.id 1\n"
        for data, what in ((b"loop_\n_atom_site.id\n1\n2\n", "atom coordinates (mmCIF)"),
                           (entity + b"loop_\n_atom_site.id\n1\n2\n", "atom coordinates (mmCIF)"),
                           (entity + b"_refln.index_h 1\n", "structure factors (mmCIF)"),
                           (b"loop_\n_Gen_dist_constraint.ID\n1\nstop_\n", "a restraint list (NMR-STAR)"),
                           (b"loop_\n_RDC_constraint.ID\n1\nstop_\nloop_\n_Atom_site.ID\n1\nstop_\n",
                            "a restraint list (NMR-STAR)"),
                           (b"loop_\n_chem_comp_atom.atom_id\nCA\n",
                            "the description of a residue or ligand (mmCIF)")):
            self.check_error("standard input: is %s, not a shift file; %s" % (what, give), "-", data=b"data_1abc\n" + data)
        self.check_error("standard input: holds no backbone shifts of a protein; this NMR-STAR 3 file holds: entity",
                         "-", data=b"data_1\nsave_e\n_Entity.Sf_category entity\n_Entity.ID 1\nloop_\n"
                         b"_Chem_comp_atom.Atom_ID\nCA\nstop_\nsave_\n")
        self.check_error("standard input: holds no backbone shifts of a protein; this STAR file holds: no shifts at "
                         "all", "-", data=b"data_1abc\n_cell.length_a 1\n")

    def test_long_lines(self):
        size = 30000000
        for start in (b"data_x\n_a ", b"resid,resname,atom,shift\n1,A,CA,", b"", b"data_x _a '", b"data_x\n_a\n;"):
            status, out, err = self.run_kit("-", data=start + b"5" * size)
            self.assertEqual((status, out, err.count("\n")), (1, "", 1))
            self.assertLess(len(err), 600)

"""zorvela-kit import as a whole: each file in files/ with the table, notes and exit status worked out by hand."""
import gzip
import os
import pathlib
import subprocess
import tempfile
import unittest

from zorvela_tests.program import KIT

FILES = pathlib.Path(__file__).resolve().parent.parent / "files"
NO_SEQUENCE = "the file gives no sequence: it is put together from the residues with shifts"
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

    def check(self, name, expected, notes, *arguments, chain=""):
        """One table on standard output, with these notes."""
        status, out, err = self.run_kit(FILES / name, *arguments)
        self.assertEqual(out, expected)
        start = "zorvela-kit: note: %s%s: " % (FILES / name, chain and ", chain " + chain)
        lines = [start + note for note in notes]
        if notes:
            lines.append("zorvela-kit: %d note%s on 1 table" % (len(notes), "s" if len(notes) > 1 else ""))
        self.assertEqual(err.splitlines(), lines)
        self.assertEqual(status, 0)

    def check_error(self, message, *arguments, data=None):
        """One line on standard error, no table, exit status 1."""
        self.assertEqual(self.run_kit(*arguments, data=data), (1, "", "zorvela-kit: " + message + "\n"))

    def written(self):
        return sorted(str(f.relative_to(self.folder)) for f in self.folder.rglob("*") if f.is_file())


class StarTest(ImportTest):
    def test_entry(self):
        """Frame names, quotes, text fields, author's numbers, H to HN, glycine, CG of proline."""
        self.check("star3_entry.str", table(
            ["Imported from star3_entry.str (NMR-STAR 3), chain A, Example peptide, shift list shifts_1",
             "Residue 1 here is residue 17 there"],
            "MGAPGS",
            ["1 HA 4.130", "1 CA 55.200", "1 CB 33.010",
             "2 N 110.400", "2 HN 8.515", "2 HA2 4.020", "2 HA3 3.910",
             "3 N 124.050", "3 HN 8.220", "3 C 175.600",
             "4 HA 4.550", "4 CA 63.100", "4 CB 34.200", "4 CG 24.600",
             "6 N 115.900"]),
            [], chain="A")

    def test_chain_by_any_of_its_names(self):
        expected = self.run_kit(FILES / "star3_entry.str")
        for name in ("A", "a", "B", "1", "peptide", "Example peptide", "the peptide"):
            self.assertEqual(self.run_kit(FILES / "star3_entry.str", "--chain", name), expected)
        for name in ("shifts_1", "1", "all"):
            self.assertEqual(self.run_kit(FILES / "star3_entry.str", "--list", name), expected)

    def test_one_letter_sequence(self):
        """X is what the rows say; a bracketed name is one residue."""
        self.check("star3_letters.str", table(
            ["Imported from star3_letters.str (NMR-STAR 3), chain 1, shift list list_1",
             "Residue 1 here is residue 1 there"],
            "ACDSF?M", ["1 CA 52.500", "4 CA 58.100", "4 CB 65.500", "7 N 120.000"]),
            ["modified residue MSE is taken as M: 7", "modified residue SEP is taken as S: 4",
             "residue X has no counterpart among the 20, written ?: 6"], chain="1")

    def test_list_cut_out_of_its_entry(self):
        """No data block and no sequence; residues 7 and 8 of 5 to 10 are missing."""
        self.check("star3_cut.str", table(
            ["Imported from star3_cut.str (NMR-STAR 3), chain 1, shift list assigned_chem_shift_list_1",
             "Residue 1 here is residue 105 there"],
            "LK??PE", ["1 HA 4.310", "2 CA 56.300", "5 CA 62.700", "6 CA 56.800"]),
            ["the sequence has gaps, written ?: 107 to 108", NO_SEQUENCE], chain="1")

    def test_two_copies_and_bonds(self):
        """Disulfide bonds by copy; CB decides where the file is silent; a bond to zinc is none."""
        status, out, err = self.run_kit(FILES / "star3_dimer.str")
        file = "zorvela-kit: note: %s, chain " % (FILES / "star3_dimer.str")
        self.assertEqual((status, out), (0, ""))
        self.assertEqual(err.splitlines(), [
            file[:-1] + "s A, B: cysteines in a disulfide bond by the file, written c: 2",
            file + "A: CB does not fit what the file says of the cysteine, the file's word is kept: 2 (CB 28.4)",
            file + "B: cysteines taken as in a disulfide bond by CB above 33 ppm, written c: 5 (CB 40.1)",
            "zorvela-kit: wrote star3_dimer_A.tab (5 residues, 2 shifts)",
            "zorvela-kit: wrote star3_dimer_B.tab (5 residues, 3 shifts)",
            "zorvela-kit: 3 notes on 2 tables"])
        self.assertEqual(self.written(), ["star3_dimer_A.tab", "star3_dimer_B.tab"])
        remarks = ["Imported from star3_dimer.str (NMR-STAR 3), chain %s, shift list shifts",
                   "Residue 1 here is residue 1 there"]
        self.assertEqual((self.folder / "star3_dimer_A.tab").read_text(), table(
            [remarks[0] % "A", remarks[1]], "GcPAC", ["2 CB 28.400", "5 CB 30.200"]))
        self.assertEqual((self.folder / "star3_dimer_B.tab").read_text(), table(
            [remarks[0] % "B", remarks[1]], "GcPAc", ["2 CB 41.000", "3 CA 63.200", "5 CB 40.100"]))

    def test_thiol_states(self):
        for name, sequence, note in (
                ("bound", "AcDc", ["cysteines in a disulfide bond by the file, written c: 2, 4",
                                   "CB does not fit what the file says of the cysteine, the file's word is kept: "
                                   "4 (CB 33.0)"]),
                ("free", "ACDC", ["CB does not fit what the file says of the cysteine, the file's word is kept: "
                                  "2 (CB 40.5)"]),
                ("mixed", "AcDC", ["cysteines taken as in a disulfide bond by CB above 33 ppm, written c: "
                                   "2 (CB 40.5)"])):
            self.check("star3_thiol_%s.str" % name, table(
                ["Imported from star3_thiol_%s.str (NMR-STAR 3), chain 1, shift list shifts" % name,
                 "Residue 1 here is residue 1 there"], sequence, ["2 CB 40.500", "4 CB 33.000"]), note, chain="1")

    def test_complex_with_rna_and_ligand(self):
        """Only the polypeptide gives a table, of its fullest list."""
        file = "Imported from star3_complex.str (NMR-STAR 3), chain A, RNA-binding domain, shift list pH_%d"
        numbering = "Residue 1 here is residue 1 there"
        caution = ["the file calls RNA-binding domain paramagnetic: shifts near the centre are moved by it"]
        left_out = caution + ["left out: 2 shifts of chain B (polyribonucleotide)", "left out: 1 shift of chain C (non-polymer)"]
        at_7 = table([file % 7, numbering], "KPA", ["1 CA 56.400", "2 CA 63.300", "3 HN 8.100"])
        at_4 = table([file % 4, numbering], "KPA", ["1 CA 56.100"])
        self.check("star3_complex.str", at_7, left_out + [
            "chain A has several shift lists, with backbone shifts: pH_4 (1), pH_7 (3); pH_7 is used, another can "
            "be chosen"], chain="A")
        self.check("star3_complex.str", at_7, caution, "--list", "2", chain="A")
        for name in ("acid", "1", "ph_4"):
            self.check("star3_complex.str", at_4, left_out, "--list", name, chain="A")
        self.check("star3_complex.str", at_4, caution,
                   "--list", "1", "--chain", "A", chain="A")

    def test_all_lists(self):
        status, out, _ = self.run_kit(FILES / "star3_complex.str", "--list", "all")
        self.assertEqual((status, out), (0, ""))
        self.assertEqual(self.written(), ["star3_complex_A_pH_4.tab", "star3_complex_A_pH_7.tab"])

    def test_chain_or_list_that_is_not_there(self):
        file = FILES / "star3_complex.str"
        self.check_error('%s: has no chain "Z"; it has: A, B, C' % file, file, "--chain", "Z")
        self.check_error('%s: has no shift list "x"; it has: pH_4, pH_7' % file, file, "--list", "x")
        self.check_error("%s: chain B is no protein but polyribonucleotide; choose another: A, B, C" % file,
                         file, "--chain", "B")

    def test_no_protein(self):
        file = FILES / "star3_rna.str"
        self.check_error("%s: holds no backbone shifts of a protein; this NMR-STAR 3 file holds: 2 shifts of chain 1 "
                         "(polyribonucleotide), assigned_chemical_shifts, entity" % file, file)

    def test_modified_residues(self):
        """Parents with a note; ? where there is none; ring carbons of hydroxyproline are not proline's."""
        self.check("star3_modified.str", table(
            ["Imported from star3_modified.str (NMR-STAR 3), chain 1, shift list shifts",
             "Residue 1 here is residue 1 there"],
            "?MPTA?M?",
            ["2 CA 55.400", "3 CA 61.900", "4 CB 71.300", "5 HN 8.200", "6 CA 58.400", "7 CB 33.100"]),
            ["modified residue DAL is taken as A: 5", "modified residue HYP is taken as P: 3",
             "modified residue MSE is taken as M: 2, 7", "modified residue TPO is taken as T: 4",
             "residue ACE has no counterpart among the 20, written ?: 1",
             "residue AIB has no counterpart among the 20, written ?: 6",
             "residue NH2 has no counterpart among the 20, written ?: 8",
             "CB and CG of hydroxyproline are unlike those of proline, left out: 3 CB, 3 CG"], chain="1")

    def test_what_is_wrong_is_said(self):
        self.check("star3_messy.str", table(
            ["Imported from star3_messy.str (NMR-STAR 3), chain 1, shift list shifts",
             "Residue 1 here is residue 1 there"],
            "GAPDL", ["1 HA2 3.900", "2 CA 52.900", "2 CB 19.100", "3 CA 163.000", "5 CA 55.100"]),
            ["residue 4 is ASN in 2 shift rows but ASP in the sequence: left out",
             "1 assignment is ambiguous within the residue (code 4), kept: 3 CA",
             "1 assignment is ambiguous between residues (code 5), kept: 2 CB",
             "atoms that the residue type has not, left out: 1 CB, 3 H",
             '2 HA: "abc" is no number; left out',
             "CA of residue 2 is given as 52.9 and 52.1 ppm: 52.9 is used",
             "1 shift left out, the sequence has no such residue: 9",
             "1 row without a value left out",
             "1 mark of a missing shift (0, or 999 and above) left out",
             "1 shift is given twice with the same value",
             "outside the range of the residue type, so perhaps assigned wrongly; kept: CA of P3 at 163.0 ppm "
             "(55.9 to 70.9)"], chain="1")

    def test_sequence_by_copy(self):
        """As the PDB writes it; an inserted residue has a number of its own."""
        self.check("star3_pdb.str", table(
            ["Imported from star3_pdb.str (NMR-STAR 3), chain H, shift list shifts",
             "Residue 1 here is residue 60 there", "Residue 3 here is residue 61A there",
             "Residue 4 here is residue 62 there"], "EPWHV", ["2 CA 63.500", "5 CA 62.000"]), [], chain="H")

    def test_rows_of_a_copy_that_is_not_there(self):
        """The author's chain and number place them; one of an unknown chain or without a number is of no place."""
        status, out, err = self.run_kit(FILES / "star3_stray_copy.str")
        file = "zorvela-kit: note: %s, chain A: " % (FILES / "star3_stray_copy.str")
        self.assertEqual((status, out), (0, ""))
        self.assertEqual(err.splitlines(), [
            file + "3 shift rows name copy 0, which the file does not describe; the author's chain and number place them",
            file + "left out: 2 shifts without a chain that the file describes",
            file + "the file marks as cis peptide bond: P12; this is kept as a remark and not used",
            "zorvela-kit: wrote star3_stray_copy_A.tab (3 residues, 4 shifts)",
            "zorvela-kit: wrote star3_stray_copy_B.tab (3 residues, 2 shifts)",
            "zorvela-kit: 3 notes on 2 tables"])
        origin = "Imported from star3_stray_copy.str (NMR-STAR 3), chain %s, shift list shifts"
        self.assertEqual((self.folder / "star3_stray_copy_A.tab").read_text(), table(
            [origin % "A", "Residue 1 here is residue 11 there", "The file marks as cis peptide bond: P12"], "MPH",
            ["1 CA 55.100", "2 CA 63.300", "3 CA 57.300", "3 CB 30.400"]))
        self.assertEqual((self.folder / "star3_stray_copy_B.tab").read_text(), table(
            [origin % "B", "Residue 1 here is residue 11 there"], "MPH", ["2 CA 63.400", "3 CA 57.500"]))

    def test_rows_of_copies_that_only_they_name(self):
        """One row is no copy of its own; all rows of a molecule with one copy are of that one, but not of two."""
        status, out, err = self.run_kit(FILES / "star3_stray_entity.str")
        file = "zorvela-kit: note: %s, chain A: " % (FILES / "star3_stray_entity.str")
        self.assertEqual((status, out), (0, ""))
        self.assertEqual(err.splitlines(), [
            file + "2 shift rows name copy 7, which the file does not describe; taken as of chain C, the only one of "
            "that molecule",
            file + "1 shift row names copy 0, which the file does not describe; the author's chain and number place it",
            file + "left out: 1 shift without a chain that the file describes",
            file + "one shift for both alpha protons of glycine, written as HA2 and HA3: 1",
            "zorvela-kit: wrote star3_stray_entity_A.tab (4 residues, 4 shifts)",
            "zorvela-kit: wrote star3_stray_entity_B.tab (4 residues, 2 shifts)",
            "zorvela-kit: wrote star3_stray_entity_C.tab (3 residues, 2 shifts)",
            "zorvela-kit: wrote star3_stray_entity_8.tab (3 residues, 1 shift)",
            "zorvela-kit: wrote star3_stray_entity_9.tab (3 residues, 1 shift)",
            "zorvela-kit: 4 notes on 5 tables"])
        origin = "Imported from star3_stray_entity.str (NMR-STAR 3), chain %s, %sshift list shifts"
        for chain, sequence, rows in (("A", "GPHA", ["1 HA2 3.950", "1 HA3 3.950", "2 CA 63.300", "3 CA 57.300"]),
                                      ("B", "GPHA", ["2 CA 63.400", "4 CA 52.500"]),
                                      ("C", "SPT", ["2 CA 62.900", "3 CA 61.800"]),
                                      ("8", "TPS", ["2 CA 62.100"]), ("9", "TPS", ["2 CA 62.200"])):
            self.assertEqual((self.folder / ("star3_stray_entity_%s.tab" % chain)).read_text(), table(
                [origin % (chain, ""), "Residue 1 here is residue 1 there"], sequence, rows))

    def test_authors_numbers_are_kept_and_continued(self):
        """Two residues before the first number, two missing ones, one after the last."""
        self.check("star3_author_numbers.str", table(
            ["Imported from star3_author_numbers.str (NMR-STAR 3), shift list shifts",
             "Residue 1 here is residue 20 there"], "GSMA??PH",
            ["1 CA 45.100", "2 CA 58.300", "3 CA 55.200", "4 CA 52.300", "7 CA 63.300", "8 CA 57.300"]),
            ["the sequence has gaps, written ?: 24 to 25", NO_SEQUENCE])
        self.check("star2_author_numbers.str", table(
            ["Imported from star2_author_numbers.str (NMR-STAR 2.1), chain protein, shift list shift_set_1",
             "Residue 1 here is residue 0 there"], "?MAPS",
            ["1 C 174.100", "2 CA 55.200", "3 CA 52.400", "4 CA 63.000", "4 CB 31.900"]),
            ["line 4: the save frame protein is not closed before save_shift_set_1; it is taken to end there",
             "residue ACE has no counterpart among the 20, written ?: 0"], chain="protein")

    def test_a_list_within_another_file(self):
        self.check("restraints_with_shifts.mr", table(
            ["Imported from restraints_with_shifts.mr (NMR-STAR 2.1)", "Residue 1 here is residue 2 there"], "APS",
            ["1 HN 8.240", "1 CA 52.400", "2 CA 63.000", "3 CB 63.900"]),
            ["the file holds more than shifts; the shift list in it is read (line 6)", NO_SEQUENCE])

    def test_rows_numbered_otherwise_than_the_sequence(self):
        self.check("star3_offset.str", table(
            ["Imported from star3_offset.str (NMR-STAR 3), chain 1, shift list shifts",
             "Residue 1 here is residue 1 there"], "MKTAYPEW",
            ["1 CA 55.100", "2 CA 56.200", "3 CA 61.800", "5 CA 57.900", "6 CA 63.000"]),
            ["the shift rows number the residues differently from the sequence; by the residue names, -100 was added"],
            chain="1")

    def test_several_entries_in_one_file(self):
        text = (FILES / "star3_thiol_free.str").read_text() + (FILES / "star3_letters.str").read_text()
        (self.folder / "two.str").write_text(text)
        status, _, _ = self.run_kit("two.str")
        self.assertEqual(status, 0)
        self.assertEqual(self.written(), ["two.str", "two_letters_1.tab", "two_thiol_1.tab"])
        self.assertIn("DATA SEQUENCE ACDSF?M\n", (self.folder / "two_letters_1.tab").read_text())
        self.assertIn("DATA SEQUENCE ACDC\n", (self.folder / "two_thiol_1.tab").read_text())

    def test_version_2(self):
        """Copies by component name, author's numbers, crosslinks, HA1/HA2 of glycine, two shift sets."""
        status, out, err = self.run_kit(FILES / "star2_entry.str")
        file = "zorvela-kit: note: %s, chain " % (FILES / "star2_entry.str")
        self.assertEqual((status, out), (0, ""))
        self.assertEqual(err.splitlines(), [
            file + "subunit 1: the file calls dimer with peptide partially denatured: predictions are made for folded "
            "proteins",
            file + "subunit 1: HA1 and HA2 of glycine read as HA2 and HA3: 0",
            file + "subunit 1: atoms that the residue type has not, left out: 2 HA1",
            file + "subunit 1: cysteines in a disulfide bond by the file, written c: -1, 3",
            "zorvela-kit: wrote star2_entry_subunit_1.tab (7 residues, 7 shifts)",
            "zorvela-kit: wrote star2_entry_peptide.tab (3 residues, 1 shift)",
            "zorvela-kit: 4 notes on 2 tables"])
        self.assertEqual((self.folder / "star2_entry_subunit_1.tab").read_text(), table(
            ["Imported from star2_entry.str (NMR-STAR 2.1), chain subunit 1, small toxin, shift list shift_set_1",
             "Residue 1 here is residue -2 there"],
            "KcGPTcV", ["2 N 119.800", "2 HN 8.610", "3 HA2 4.210", "3 HA3 3.780", "4 CA 62.900", "4 CG 27.100",
                        "6 CB 40.200"]))
        self.assertEqual((self.folder / "star2_entry_peptide.tab").read_text(), table(
            ["Imported from star2_entry.str (NMR-STAR 2.1), chain peptide, shift list shift_set_2",
             "Residue 1 here is residue 1 there"], "GPG", ["2 CB 31.900"]))

    def test_syntax_errors_tell_the_users_line(self):
        (self.folder / "bad.str").write_text("save_x\n_a $b\n_Entity.Name 'open\nsave_\n")
        self.check_error("bad.str:3: not valid STAR: a quote begins in column 14 and is not closed on its line; mend "
                         "the file there, or fetch it again", "bad.str")


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
        self.assertEqual(notes, ["shifts that name no chain fit the sequence of chain 2 best"])

    def test_rows_that_all_name_the_first_copy(self):
        """The entity decides where it contradicts the copy."""
        entity = "save_%d _Entity.ID %d _Entity.Polymer_type polypeptide(L) _Entity.Polymer_seq_one_letter_code %s save_ "
        out, notes = self.imported("data_x loop_ _Entity_assembly.ID _Entity_assembly.Entity_ID 1 1 2 2 stop_ " +
                                   entity % (1, 1, "MKTAY") + entity % (2, 2, "GAPGS") +
                                   "loop_ _Atom_chem_shift.Entity_assembly_ID _Atom_chem_shift.Entity_ID "
                                   "_Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID "
                                   "_Atom_chem_shift.Val 1 2 3 PRO CA 63 1 2 4 GLY CA 45")
        self.assertIn("DATA SEQUENCE GAPGS\n", out)
        self.assertEqual(notes, ["shift rows of entity 2 name a copy of another one; they are taken as of chain 2"])

    def test_bonds_within_an_entity(self):
        out, _ = self.imported("data_x save_e _Entity.ID 1 _Entity.Polymer_type polypeptide(L) "
                               "_Entity.Polymer_seq_one_letter_code CPC loop_ _Entity_bond.Type "
                               "_Entity_bond.Comp_index_ID_1 _Entity_bond.Comp_index_ID_2 disulfide 1 3 stop_ save_ " +
                               self.ROWS + "2 PRO CA 63")
        self.assertIn("DATA SEQUENCE cPc\n", out)

    def test_authors_numbers_of_the_rows(self):
        """The sequence has none; the rows' are counted on over residues without shifts."""
        out, _ = self.imported("data_x save_e _Entity.ID 1 _Entity.Polymer_type polypeptide(L) "
                               "_Entity.Polymer_seq_one_letter_code MAPG save_ loop_ _Atom_chem_shift.Comp_index_ID "
                               "_Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID _Atom_chem_shift.Val "
                               "_Atom_chem_shift.Auth_seq_ID 3 PRO CA 63 42")
        self.assertIn("REMARK Residue 1 here is residue 40 there\n", out)

    def test_stated_offset(self):
        _, notes = self.imported("data_x save_l " + self.ROWS + "1 ALA CA 52 stop_ loop_ "
                                 "_Systematic_chem_shift_offset.Type _Systematic_chem_shift_offset.Atom_type "
                                 "_Systematic_chem_shift_offset.Val 'TROSY offset' 'amide nitrogens' 0.3 stop_ save_")
        self.assertEqual(notes[0], "the file states a systematic offset of 0.3 ppm (TROSY offset, amide nitrogens); "
                                   "it is not applied")

    def test_side_chains_alone(self):
        self.check_error("standard input: holds no backbone shifts of a protein; this NMR-STAR 3 file holds: the "
                         "chain without a name (the list without a name): 1 shift, none for the table (%s, 1 shift of other atoms (side chain "
                         "and the like) not needed)" % NO_SEQUENCE, "-",
                         data=(self.ROWS + "1 LEU CD1 24.1").encode())


class NefTest(ImportTest):
    def test_entry(self):
        """HA%, HA*, HAx/HAy, links, gaps, insertion code, cis flag, DNA, an ion, unassigned shifts."""
        sequence = "McGGAPG??c" + "?" * 82 + "Pc"
        self.check("nef_entry.nef", table(
            ["Imported from nef_entry.nef (NEF), chain A, shift list nef_chemical_shift_list_main",
             "Residue 1 here is residue 10 there", "Residue 6 here is residue 14A there",
             "Residue 7 here is residue 15 there", "The file marks as cis peptide bond: P14A"],
            sequence,
            ["2 HN 8.412", "3 HA2 3.950", "3 HA3 3.950", "4 HA2 4.050", "4 HA3 3.850", "6 CB 34.100", "6 CG 24.400",
             "7 HA2 3.990", "7 HA3 3.990", "10 CB 40.000", "93 CA 63.000"]),
            ["3 shifts not assigned to a residue left out, such as those of @5",
             "left out: 1 shift of chain B (no amino acids)",
             "the sequence has gaps, written ?: 16 to 17, 19 to 100",
             "one shift for both alpha protons of glycine, written as HA2 and HA3: 12, 15",
             "cysteines in a disulfide bond by the file, written c: 11, 102",
             "cysteines taken as in a disulfide bond by CB above 33 ppm, written c: 18 (CB 40.0)",
             "the file marks as cis peptide bond: P14A; this is kept as a remark and not used"], chain="A")

    def test_numbers_that_jump_within_a_chain(self):
        """Where the file says that residues are bonded, a jump of the numbers is no gap."""
        text = (FILES / "nef_entry.nef").read_text().replace("break ", "middle")
        (self.folder / "jump.nef").write_text(text)
        _, out, _ = self.run_kit("jump.nef")
        self.assertIn("DATA SEQUENCE McGGAPGcPc\n", out)
        self.assertIn("REMARK Residue 8 here is residue 18 there\nREMARK Residue 9 here is residue 101 there\n", out)


    def test_loops_with_values_missing(self):
        """One that nobody needs, and the last row of the shifts."""
        self.check("nef_miscounted.nef", table(
            ["Imported from nef_miscounted.nef (NEF), chain A, shift list nef_chemical_shift_list_1",
             "Residue 1 here is residue 1 there"], "MAPS", ["2 CA 52.400", "2 CB 19.000", "3 CA 63.100"]),
            ["line 12: 2 values for the 3 columns of _nef_program_script; the loop is not used",
             "line 43: 5 values for the 6 columns of _nef_chemical_shift; left out"], chain="A")

    def test_bonded_residues_ions_and_elements(self):
        """Numbers that jump over a bond; calcium in the sequence, and where the element alone says so."""
        self.check("nef_bonded.nef", table(
            ["Imported from nef_bonded.nef (NEF), chain A, shift list nef_chemical_shift_list_1",
             "Residue 1 here is residue 1 there", "Residue 3 here is residue 8 there",
             "Residue 6 here is residue 14 there", "The file marks as cis peptide bond: P8"], "MKPGPS",
            ["2 CA 56.400", "3 CA 63.200", "4 HN 8.100", "5 CB 32.000"]),
            ["the numbers of chain A jump between residues that the file calls bonded, so they are neighbours: "
             "2 to 8, 10 to 14",
             "left out: 1 shift of chain W (no amino acids)",
             "atoms of another element than their name says, left out: 9 CA (CA)",
             "1 shift left out, the sequence has no such residue: 101",
             "1 row without a value left out",
             "the file marks as cis peptide bond: P8; this is kept as a remark and not used"], chain="A")


    def test_rows_of_the_sequence_that_are_lost(self):
        """The residues beside them are not bonded; shift rows may name them. QA is of hydrogen; a haem is no lysine."""
        self.check("nef_row_lost.nef", table(
            ["Imported from nef_row_lost.nef (NEF), chain A, shift list nef_chemical_shift_list_1",
             "Residue 1 here is residue 1 there"], "GK?PSH",
            ["1 HA2 3.950", "1 HA3 3.950", "2 CA 56.400", "4 CA 63.200", "5 CA 58.200"]),
            ["line 15: 5 values for the 6 columns of _nef_sequence; left out",
             "line 17: 5 values for the 6 columns of _nef_sequence; left out",
             "2 shifts not assigned to a residue left out, such as those of @7",
             "the sequence has gaps, written ?: 3",
             "residues that the sequence lacks are named by the shift rows: 5 (SER)",
             "residue 2 is HEM in 1 shift row but LYS in the sequence: left out",
             "one shift for both alpha protons of glycine, written as HA2 and HA3: 1",
             "1 shift left out, the sequence has no such residue: 7"], chain="A")


class CsvTest(ImportTest):
    def test_comma(self):
        self.check("shifts.csv", table(
            ["Imported from shifts.csv (CSV)", "Residue 1 here is residue 5 there"], "Ac??PG",
            ["1 N 123.500", "1 HN 8.250", "1 CA 52.400", "2 CA 55.000", "2 CB 41.300", "5 CA 63.200", "5 CB 32.100",
             "5 CG 27.400", "6 HN 8.300", "6 HA2 3.950", "6 HA3 3.950"]),
            ["the sequence has gaps, written ?: 7 to 8", NO_SEQUENCE,
             "one shift for both alpha protons of glycine, written as HA2 and HA3: 10",
             "cysteines taken as in a disulfide bond by CB above 33 ppm, written c: 6 (CB 41.3)"])

    def test_tab(self):
        """A lower-case c is a disulfide cysteine; of two values the first counts."""
        self.check("shifts.tsv", table(
            ["Imported from shifts.tsv (CSV)", "Residue 1 here is residue 12 there"], "cPCG",
            ["1 CA 55.100", "1 CB 40.000", "2 CA 63.400", "3 CB 28.000", "4 HA2 3.900", "4 HA3 3.900"]),
            ["line 1 above the column names not used", "columns of numbers that are not used: Error", NO_SEQUENCE,
             "one shift for both alpha protons of glycine, written as HA2 and HA3: 15",
             "line 7: CB of residue 14 is given as 28.0 and 41.0 ppm: 28.0 is used",
             "cysteines in a disulfide bond by the file, written c: 12"])

    def test_spreadsheet(self):
        """CR LF, semicolons, quotes, decimal commas, chains, residues such as Gly-1, a title above."""
        status, out, err = self.run_kit(FILES / "excel.csv")
        start = "zorvela-kit: note: %s, chain " % (FILES / "excel.csv")
        self.assertEqual((status, out), (0, ""))
        self.assertEqual(err.splitlines(), [
            start + "L: lines 1 to 2 above the column names not used",
            start + 'L: line 8 left out: "" is no residue number',
            start + "L: decimal commas read as points",
            start[:-1] + "s L, H: " + NO_SEQUENCE,
            start + "L: 1 row without a value left out",
            "zorvela-kit: wrote excel_L.tab (2 residues, 2 shifts)",
            "zorvela-kit: wrote excel_H.tab (2 residues, 2 shifts)",
            "zorvela-kit: 5 notes on 2 tables"])
        self.assertEqual((self.folder / "excel_L.tab").read_text(), table(
            ["Imported from excel.csv (CSV), chain L", "Residue 1 here is residue 3 there"], "AP",
            ["1 CA 52.300", "2 CA 63.100"]))
        self.assertEqual((self.folder / "excel_H.tab").read_text(), table(
            ["Imported from excel.csv (CSV), chain H", "Residue 1 here is residue 1 there"], "GP",
            ["1 HA2 4.000", "2 CA 63.000"]))

    def test_one_column_per_atom(self):
        self.check("wide.csv", table(
            ["Imported from wide.csv (CSV)", "Residue 1 here is residue 1 there"], "MAP?S",
            ["1 C 175.900", "1 CA 55.300", "1 CB 33.000", "2 N 124.100", "2 HN 8.300", "2 CA 52.000", "2 CB 19.200",
             "3 C 176.800", "3 CA 63.300", "3 CB 31.800", "3 CG 27.200", "4 N 120.100", "4 HN 8.000",
             "5 CA 58.400", "5 CB 63.900"]),
            [NO_SEQUENCE, "residue ? has no counterpart among the 20, written ?: 4"])

    def test_blanks_between_columns(self):
        self.check("columns.txt", table(
            ["Imported from columns.txt (CSV)", "Residue 1 here is residue 1 there"], "AP",
            ["1 CA 52.500", "2 CA 63.100"]), [NO_SEQUENCE])

    def test_greek_letters(self):
        self.check("greek.csv", table(
            ["Imported from greek.csv (CSV)", "Residue 1 here is residue 81 there"], "SPG",
            ["1 N 116.200", "1 HN 8.210", "1 C 174.100", "1 CA 58.400", "1 CB 63.900", "2 C 176.000",
             "2 CA 63.000", "2 CB 34.200", "3 N 109.100", "3 HN 8.400", "3 C 173.900", "3 CA 45.300"]),
            [NO_SEQUENCE])
        for data in ("resid,resname,atom,shift\n1,ALA,Cα,52\n2,PRO,Cγ,27\n2,PRO,Hα,4.4\n".encode(),
                     "loop_ _Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID "
                     "_Atom_chem_shift.Val 1 ALA Cα 52 2 PRO Cγ 27 2 PRO Hα 4.4".encode()):
            out = self.run_kit("-", data=data)[1]
            self.assertIn("\n   1 A   CA    52.000\n   2 P   HA     4.400\n   2 P   CG    27.000\n", out)

    def test_letter_that_is_lost(self):
        """A column name with a sign that cannot be read names no atom, least of all C'."""
        for name in ("C?", "C\ufffd", "C\u0394", "\u0394CA"):
            _, out, err = self.run_kit("-", data=("Res,N,HN,%s\nS81,116.2,8.21,58.4\n" % name).encode())
            self.assertIn("DATA SEQUENCE S\n", out)
            self.assertEqual(out.count("   1 S "), 2)
            self.assertIn("columns of numbers that are not used: " + name, err)

    def test_minus_signs(self):
        """G-2 is residue -2 where the numbers ascend then; Gly-12 beside Ala-13 is residue 12."""
        self.check("negative.csv", table(
            ["Imported from negative.csv (CSV)", "Residue 1 here is residue -2 there"], "GSHMPL",
            ["1 CA 45.100", "2 CA 58.300", "2 CB 63.800", "3 CA 55.900", "3 CB 30.200", "4 CA 55.400",
             "4 CB 33.000", "5 CA 63.100", "5 CB 32.000", "6 CA 55.000", "6 CB 42.100"]), [NO_SEQUENCE])
        out = self.run_kit("-", data=b"Res,CA,CB\nGly-12,45,\nPro-13,63,32\n")[1]
        self.assertIn("REMARK Residue 1 here is residue 12 there\n", out)
        self.check_error('standard input: it is open whether "G-1" has a minus sign or a dash; give names and numbers '
                         "of residues in columns of their own", "-", data=b"Res,CA,CB\nG-1,45,\nS2,58,63\nP3,63,32\n")
        # Chain, number and name, or a mutation: not alanine with an insertion code. One such code is none of these.
        self.check_error("standard input:2: it is open which letter of \"A81S\" names the residue; give names and "
                         "numbers of residues in columns of their own", "-",
                         data=b"Res,CA,CB\nA81S,58,63\nA82P,63,32\nA83G,45,\n")
        self.assertIn("Residue 2 here is residue 52A there",
                      self.run_kit("-", data=b"Res,CA,CB\nS52,58,63\nP52A,63,32\nG53,45,\n")[1])

    def test_blank_cells_between_columns(self):
        """Cells belong to the name above them; a row that stands below no names is left out."""
        self.check("gaps.txt", table(
            ["Imported from gaps.txt (CSV)", "Residue 1 here is residue 81 there"], "SPG?L",
            ["1 N 116.200", "1 HN 8.210", "1 HA 4.410", "1 CA 58.400", "1 CB 63.900",
             "2 HA 4.600", "2 CA 63.000", "2 CB 34.200", "2 CG 24.600",
             "3 N 109.100", "3 HN 8.400", "3 HA2 3.950", "3 HA3 3.950", "3 CA 45.300",
             "5 N 121.000", "5 HN 8.100", "5 HA 4.200", "5 CA 55.100", "5 CB 42.000"]),
            ["line 5 left out: its cells do not stand below the column names",
             "rows with gaps read by where the column names stand",
             "the sequence has gaps, written ?: 84", NO_SEQUENCE,
             "one shift for both alpha protons of glycine, written as HA2 and HA3: 83"])

    def test_markdown(self):
        self.check("drawn.md", table(
            ["Imported from drawn.md (CSV)", "Residue 1 here is residue 81 there"], "SP",
            ["1 N 116.200", "1 HN 8.210", "1 CA 58.400", "1 CB 63.900", "2 CA 63.000", "2 CB 34.200",
             "2 CG 24.600"]),
            ["lines 1 to 2 above the column names not used", "line 7 left out: 3 cells for 6 columns", NO_SEQUENCE])

    def test_rows_that_do_not_fit_the_columns(self):
        """Decimal commas without quotes, and cells left away."""
        remedy = ("; give every row a cell for each column, an empty one where there is no shift, and numbers with a "
                  "decimal point")
        self.check_error("standard input:2: most rows (3 of 3) do not fit the columns, the first by more than 4 cells "
                         "for 4 columns" + remedy, "-",
                         data=b"Res,N,HN,CA\nS81,116,2,8,2,58,4\nP82,,,63,0\nG83,109,1,8,4,45,3\n")
        status, out, err = self.run_kit("-", data=b"Res,N,HN,CA,CB\nS81,116.2,8.2,58.4,63.9\nP82,63.0,34.2\n"
                                                  b"G83,109.1,8.4,45.3,\n")
        self.assertEqual(status, 0)
        self.assertIn("DATA SEQUENCE S?G\n", out)
        self.assertIn("note: standard input: line 3 left out: 3 cells for 5 columns\n", err)
        self.check_error("standard input: the shifts seem to be cut at their decimal commas; write decimal points, or "
                         "semicolons between the columns", "-",
                         data=b"resid,aa,atom,shift,error\n1,A,CA,52,4\n2,P,CA,63,1\n3,G,CA,45,2\n")

    def test_zeros(self):
        """A spreadsheet's 0 is a missing shift, that of a proton too."""
        self.check("zeros.csv", table(
            ["Imported from zeros.csv (CSV)", "Residue 1 here is residue 81 there"], "SPG",
            ["1 N 116.200", "1 HN 8.210", "1 HA 4.410", "1 CA 58.400", "1 CB 63.900", "2 CA 63.000",
             "2 CB 34.200", "3 N 109.100", "3 HN 8.400", "3 CA 45.300"]),
            [NO_SEQUENCE,
             "5 marks of missing shifts (0, or 999 and above) left out"])

    def test_units_and_decorations(self):
        """Units, isotopes, CG(Pro), "#", residues written out; a column of numbers that is not used is named."""
        rows = ["1 N 116.200", "1 HN 8.210", "1 HA 4.410", "1 CA 58.400", "1 CB 63.900", "2 HA 4.600",
                "2 CA 63.000", "2 CB 34.200", "2 CG 24.600"]
        numbering = "Residue 1 here is residue 81 there"
        self.check("units.csv", table(["Imported from units.csv (CSV)", numbering], "SP", rows),
                   ["columns of numbers that are not used: Error", NO_SEQUENCE])
        rows = [row for row in rows if " HA " not in row]
        rows += ["3 N 121.000", "3 HN 8.100", "3 CA 55.100", "3 CB 42.000"]
        self.check("spelled.csv", table(["Imported from spelled.csv (CSV)", numbering], "SPL", rows),
                   ["columns of numbers that are not used: CD1", NO_SEQUENCE])

    def test_shifts_of_the_residue_before(self):
        """Lists from triple resonance give CA and CB of the residue and of the one before it."""
        out, err = self.run_kit("-", data=b"resid,resname,CA(i),CB(i),CA(i-1),CB(i-1)\n81,S,58.4,63.9,53.1,20.2\n"
                                b"82,P,63.0,32.0,58.3,63.8\n")[1:]
        self.assertIn("DATA SEQUENCE SP\n", out)
        self.assertIn("   1 S   CA    58.400\n   1 S   CB    63.900\n   2 P   CA    63.000\n   2 P   CB    32.000\n", out)
        self.assertIn("columns of numbers that are not used: CA(i-1), CB(i-1)\n", err)

    def test_columns_that_hold_something_else(self):
        """Secondary shifts are none of the atom's: the column is left out, a single such value too."""
        self.check("secondary.csv", table(
            ["Imported from secondary.csv (CSV)", "Residue 1 here is residue 81 there"], "SPL",
            ["1 CA 58.400", "1 CB 63.900", "2 CA 63.000", "2 CB 34.200", "3 CA 55.000"]),
            ['column dCO left out: 3 of its 3 values can be no C shifts, such as "0.2"',
             "line 4: -1.0 can be no shift of CB of residue 83, so perhaps of another column; left out", NO_SEQUENCE])
        self.check_error('standard input:2: most values (2 of 2) can be no shifts of their atoms: "0.2" for CA; check '
                         "that the columns hold what their names say", "-",
                         data=b"resid,aa,atom,shift\n1,A,CA,0.2\n2,P,CA,-1.1\n")
        # A row that names its atom is in its place: such a value is kept, as in the other formats.
        _, out, err = self.run_kit("-", data=b"resid,aa,atom,shift\n1,A,N,40\n1,A,CA,52\n2,P,CA,63\n")
        self.assertIn("   1 A    N    40.000\n", out)
        self.assertIn("N of A1 at 40 ppm", err)
        status, out, err = self.run_kit("-", data=b"Res,CA,CA shift,CB,CO,C'\nS1,58,1,63,174,175\nP2,63,2,32,176,177\n")
        self.assertEqual(status, 0)
        self.assertIn("\n   1 S   CA    58.000\n   1 S   CB    63.000\n   2 P   CA    63.000\n", out)
        self.assertIn("more than one column for C: none of them is used", err)
        self.assertIn("columns of numbers that are not used: CA shift, CO, C'", err)

    def test_residue_labels(self):
        numbering = "Residue 1 here is residue 81 there"
        self.check("letter_after.csv", table(
            ["Imported from letter_after.csv (CSV)", numbering], "SP",
            ["1 CA 58.400", "1 CB 63.900", "2 CA 63.000", "2 CB 34.200"]), [NO_SEQUENCE])
        # Beside names of their own, letters after some numbers are insertion codes.
        out = self.run_kit("-", data=b"resid,aa,CA,CB\n81,S,58,63\n82,P,63,32\n82A,L,55,42\n")[1]
        self.assertIn("DATA SEQUENCE SPL\n", out)
        self.assertIn("REMARK Residue 3 here is residue 82A there\n", out)
        for label in (b"P82", b"PRO82", b"Pro-82", b"Pro 82", b"proline 82", b"Pro(82)", b"82PRO", b"82 P", b"82-Pro"):
            out = self.run_kit("-", data=b"Residue,CA,CB\n%s,63,32\n" % label)[1]
            self.assertIn("residue 82 there\n\nDATA SEQUENCE P\n", out, label)

    def test_chains_in_labels(self):
        for data in (b"residue,atom,shift\nA:SER81,CA,58.4\nA:PRO82,CA,63.0\nB:SER81,CA,58.5\nB:PRO82,CA,63.1\n",
                     b"assignment,shift\nA:SER81:CA,58.4\nA:PRO82:CA,63.0\nB:SER81:CA,58.5\nB:PRO82:CA,63.1\n",
                     b"resid,residue,atom,shift\n81,A:SER81,CA,58.4\n82,A:PRO82,CA,63.0\n81,B:SER81,CA,58.5\n"
                     b"82,B:PRO82,CA,63.1\n"):
            for chain, shift in (("A", "58.400"), ("B", "58.500")):
                _, out, err = self.run_kit("--chain", chain, "-", data=data)
                self.assertIn("residue 81 there\n\nDATA SEQUENCE SP\n", out, err)
                self.assertIn("\n   1 S   CA    %s\n" % shift, out)
        # Where cells name two chains it is open which of them is meant.
        _, out, err = self.run_kit("-", data=b"chain,residue,CA,CB\nA,A:SER81,58,63\nA,B:PRO82,63,32\nA,LEU83,55,42\n")
        self.assertIn("DATA SEQUENCE S?L\n", out)
        self.assertIn('line 3 left out: "B:PRO82" is of another chain than the row', err)

    def test_labels_of_whole_residues(self):
        """Where no column is called after the residue, "Label", "Name" or "Assignment" is its label."""
        for heading in (b"Label", b"Name", b"Assignment"):
            out = self.run_kit("-", data=b"%s,CA,CB\nS81,58,63\nP82,63,32\n" % heading)[1]
            self.assertIn("residue 81 there\n\nDATA SEQUENCE SP\n", out, heading)
        # Beside a number it is none: a name is the residue's, a label is left alone.
        for heading in (b"Name,No", b"Label,Res,No"):
            cells = heading.replace(b"Name", b"SER").replace(b"Label", b"x9").replace(b"Res", b"SER").replace(b"No", b"81")
            out = self.run_kit("-", data=b"%s,CA,CB\n%s,58,63\n" % (heading, cells))[1]
            self.assertIn("residue 81 there\n\nDATA SEQUENCE S\n", out, heading)
        # A column of names alone does not say which residue.
        self.assertIn("begins with", self.run_kit("-", data=b"Resname,CA,CB\nSER,58,63\n")[2])
        self.assertEqual(1, self.run_kit("-", data=b"Name,CA,CB\nSER,58,63\nPRO,63,32\n")[0])

    def test_assignments(self):
        expected = ["1 CA 58.400", "1 CB 63.900", "2 CA 63.000", "2 CG 24.600"]
        numbering = "Residue 1 here is residue 81 there"
        self.check("assignments.csv", table(["Imported from assignments.csv (CSV)", numbering], "SP", expected),
                   [NO_SEQUENCE])
        self.check("no_names.txt", table(["Imported from no_names.txt (CSV)", numbering], "SP", expected),
                   ["no column names: by what the columns hold, they are residue number, residue name, atom, shift",
                    NO_SEQUENCE])
        for data in (b"S81 CA 58.4\nS81 CB 63.9\nP82 CA 63.0\nP82 CG 24.6\n",
                     b"S81CA\t58.4\nS81CB\t63.9\nP82CA\t63.0\nP82CG\t24.6\n",
                     b"CA,58.4,SER,81\nCB,63.9,SER,81\nCA,63.0,PRO,82\nCG,24.6,PRO,82\n"):
            self.assertEqual(self.run_kit("-", data=data)[1], table(
                ["Imported from standard input (CSV)", numbering], "SP", expected))

    def test_tables_without_names_that_are_not_plain(self):
        """Nobody says which atoms the numbers are of, or which number is the residue's."""
        for data in (b"S81 116.2 8.21 58.4\nP82 120.0 8.0 63.0\n", b"1 81 SER CA 58.4\n2 82 PRO CA 63.0\n",
                     b"81 CA 58.4\n82 CA 63.0\n", b"81 SER CA 58.4 0.1\n82 PRO CA 63.0 0.1\n"):
            status, out, err = self.run_kit("-", data=data)
            self.assertEqual((status, out), (1, ""))
            self.assertIn("is no shift file that is known; it begins with", err)
        self.check_error("standard input: the only column of numbers beside the shifts counts the rows; add a column of "
                         "residue numbers (resid)", "-",
                         data=b",resname,atom,shift\n1,SER,CA,58\n2,SER,CB,63\n3,PRO,CA,63\n")

    def test_nothing_but_number_signs(self):
        self.check_error('standard input:1: is no shift file that is known; it begins with "##"; give NMR-STAR, NEF, the '
                         "program's shift table, or text with a header line such as resid,resname,atom,shift",
                         "-", data=b"##")

    def test_missing_columns_and_names(self):
        self.check_error("standard input:1: the columns lack atom name (atom); give NMR-STAR, NEF, the program's shift "
                         "table, or text with a header line such as resid,resname,atom,shift", "-",
                         data=b"resid,resname,shift\n1,A,52\n")
        self.check_error('standard input:2: most rows (1 of 1) name no residue: "x" is no residue number; is this a '
                         "table of shifts? It needs columns resid, resname, atom and shift", "-",
                         data=b"resid,aa,atom,shift\nx,A,CA,52\n")
        self.check_error('standard input:2: most rows (1 of 1) name no residue with its atom: "S81" names no atom; is '
                         "this a table of shifts? It needs columns resid, resname, atom and shift", "-",
                         data=b"Residue,Shift\nS81,52\n")
        self.check_error("standard input: the rows have no residue names; add a column resname with one- or "
                         "three-letter names", "-", data=b"resid,atom,shift\n1,CA,52\n")

    def test_residue_and_type(self):
        """Whether "residue" holds numbers, names or both is seen from its cells."""
        for data in (b"residue,type,atom,shift\n4,A,CA,52\n5,PRO,CA,63\n",
                     b"residue,type,atom,shift\nA4,13C,CA,52\nP5,13C,CA,63\n",
                     b"res,residue,atom,shift\nALA,4,CA,52\nPRO,5,CA,63\n",
                     b"residue;name;atom;shift\n4;Ala;CA;52\n5;Pro;CA;63\n"):
            self.assertEqual(self.run_kit("-", data=data)[1], table(
                ["Imported from standard input (CSV)", "Residue 1 here is residue 4 there"], "AP",
                ["1 CA 52.000", "2 CA 63.000"]))

    def test_lower_case_names_of_a_whole_file(self):
        """Where all letters are lower case, c is no sign of a disulfide bond."""
        _, out, _ = self.run_kit("-", data=b"resid,aa,atom,shift\n1,c,CA,58\n2,p,CA,63\n")
        self.assertIn("DATA SEQUENCE CP\n", out)

    def test_row_without_shift_still_names_a_residue(self):
        _, out, err = self.run_kit("-", data=b"resid,aa,atom,shift\n1,A,CA,52\n2,G,,\n3,P,CA,63\n")
        self.assertIn("DATA SEQUENCE AGP\n", out)
        self.assertEqual(err.count("note:"), 1)


class TableTest(ImportTest):
    def test_table_of_another_program(self):
        """FIRST_RESID, blanks in the sequence, further columns, H, a bare REMARK, rows that do not fit."""
        self.check("foreign_columns.tab", table(
            ["", "A table of another program", "Residue 1 here is residue 5 there"], "ACGPKEY",
            ["1 CA 52.500", "1 CB 19.100", "2 CB 41.000", "3 HA2 3.910", "3 HA3 4.020", "4 N 135.100", "4 CG 27.200",
             "5 HN 8.200", "6 CA 54.000", "7 C 175.000"]),
            ['line 20 is no row of the table, left out: "9 K CA 56.1"',
             "residue 5 of the table is residue 1 now",
             "1 row left out, the sequence has no such residue: 99",
             "residue names differ from the sequence, which is used: 10 (D, sequence E)",
             "given before, the first is used: 10 CA",
             "further columns of the table are not kept",
             "further DATA lines of the table are not kept",
             "cysteines with CB above 33 ppm stand as reduced (C) in the table, write c for those in a disulfide "
             "bond: 6"])

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

    def test_chain_of_a_table(self):
        file = FILES / "foreign_columns.tab"
        self.check_error("%s: is a shift table, with one chain and one list; leave out the choice of a chain or list for it" % file,
                         file, "--chain", "A")
        self.check_error("%s: is a shift table, with one chain and one list; leave out the choice of a chain or list for it" % file,
                         file, "--list", "1")
        # Its one list is all of them.
        self.assertEqual(self.run_kit(file, "--list", "all"), self.run_kit(file))

    def round_trip(self, files):
        status, _, err = self.run_kit(*files, "--output", "once/")
        self.assertEqual(status, 0, err)
        once = sorted((self.folder / "once").iterdir())
        status, _, err = self.run_kit(*once, "--output", "twice/")
        self.assertEqual(status, 0, err)
        for file in once:
            self.assertEqual(file.read_bytes(), (self.folder / "twice" / file.name).read_bytes())
        return len(once)

    def test_round_trip(self):
        """The import of an imported table is the same table: remarks, numbers, c and ?."""
        files = [f for f in FILES.iterdir() if f.name not in ("star3_rna.str", "shifts.tsv") and ".cif" not in f.name]
        self.assertEqual(self.round_trip(files), len(files) + 8)  # four files have two chains, one has five


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
        choose = "; choose another place with --output, or make room"
        self.check_last_line("no/one.tab: cannot be written: No such file or directory" + choose,
                             FILES / "shifts.csv", "-o", "no/one.tab")
        if os.path.exists("/dev/full"):
            self.check_last_line("/dev/full: cannot be written: No space left on device" + choose,
                                 FILES / "shifts.csv", "-o", "/dev/full")
        self.assertEqual(self.written(), [])

    def test_no_input_is_overwritten(self):
        (self.folder / "own.tab").write_bytes((FILES / "foreign_columns.tab").read_bytes())
        for place in ("own.tab", "./", "./own.tab"):
            self.check_last_line("%s: is an input file; choose another place with --output" %
                                 (place if place != "./" else "./own.tab"), "own.tab", "-o", place)
        self.assertEqual((self.folder / "own.tab").read_bytes(), (FILES / "foreign_columns.tab").read_bytes())

    def test_two_files_of_one_name(self):
        for name in ("a", "b"):
            (self.folder / name).mkdir()
            (self.folder / name / "x.csv").write_bytes((FILES / "shifts.csv").read_bytes())
        (self.folder / "X.csv").write_bytes((FILES / "shifts.csv").read_bytes())
        status, _, err = self.run_kit("a/x.csv", "b/x.csv", "X.csv", FILES / "wide.csv", "-o", "out/")
        self.assertEqual(status, 0)
        self.assertIn("zorvela-kit: note: b/x.csv: its table is named x_2.tab, as a/x.csv has the same name\n"
                      "zorvela-kit: note: X.csv: its table is named X_3.tab, as a/x.csv has the same name\n", err)
        self.assertEqual(self.written(), ["X.csv", "a/x.csv", "b/x.csv", "out/X_3.tab", "out/wide.tab", "out/x.tab",
                                          "out/x_2.tab"])

    def test_a_second_name_that_is_another_files_own(self):
        """x_2 is taken by x_2.csv, whichever comes first."""
        for name in ("a/x.csv", "b/x.csv", "x_2.csv"):
            (self.folder / name).parent.mkdir(exist_ok=True)
            (self.folder / name).write_bytes((FILES / "shifts.csv").read_bytes())
        status, _, err = self.run_kit("a/x.csv", "b/x.csv", "x_2.csv", "-o", "out/")
        self.assertEqual(status, 0)
        self.assertIn("note: b/x.csv: its table is named x_3.tab, as", err)
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
        for data, what in ((b"\0\1\2", None), (b"%PDF-1.4", "a PDF file"),
                           (b"PK\3\4..", "a zip archive or spreadsheet (xlsx, ods); unpack it, or save the sheet as CSV"),
                           (b"\xff\xfea\0", "text in UTF-16; save it as UTF-8"),
                           (b"d\0a\0t\0a\0", "text in UTF-16; save it as UTF-8"),
                           (b"\0d\0a\0t\0a", "text in UTF-16; save it as UTF-8"),
                           (b"<html>", "an HTML or XML file, perhaps the error page of a web server"),
                           (b'{"a": 1}', "a JSON file"), (b">seq\nMKT\n", "a FASTA sequence"),
                           (b"HEADER    HYDROLASE\n", "a PDB coordinate file")):
            fault = "is no shift file but " + what if what else "is no text file"
            self.check_error("standard input: %s; %s" % (fault, REMEDY), "-", data=data)
        remedy = "; give the file with the chemical shifts"
        for data, what in ((b"! NOEs\n assign (resid 19 and name HN) (resid 20 and name HN) 1.8 0.0 1.7\n",
                            "2: is no shift file but a restraint list"),
                           (b" 19 GLU HN 20 ALA HN 3.5\n 19 GLU HN 21 ALA HN 3.5 1.0\n",
                            "1: is no shift file but a restraint list"),
                           (b" 20 ALA PHI -80.0 -40.0\n", "1: is no shift file but a restraint list"),
                           (b"REMARK 1\nATOM      1  N   MET A   1      27.340  24.430   2.614  1.00  9.67\n",
                            "2: is no shift file but a list of atom coordinates")):
            self.check_error("standard input:" + what + remedy, "-", data=data)
        self.check_error('standard input:1: is no shift file that is known; it begins with "Dear colleague,"; give '
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
            self.check_error("standard input: is no shift file but " + what + remedy, "-", data=b"data_1abc\n" + data)
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

    def test_too_many_words(self):
        self.check_error("standard input: has more than 20000000 words; give the part with the sequence and the shifts "
                         "only", "-", data=b"data_x loop_ _a " + b"1 " * 20000000)

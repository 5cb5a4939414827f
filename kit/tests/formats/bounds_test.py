"""Work and memory in proportion to the bytes: small files that once became gigabytes or minutes.

For each of them: memory below 64 MiB plus 24 times the unpacked bytes, time below 1 s plus 1 s for each unpacked
MiB, and an error in one line that names the file where it is beyond what a real file can be.
"""
import gzip
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

from zorvela_tests.program import KIT, SOURCE

ENVIRONMENT = {**os.environ, "ZORVELA_DIR": str(SOURCE)}
MIB = 1 << 20
# A program's peak of memory counts that of the process which starts it, so a small one does.
MEASURE = """
import os, resource, subprocess, sys
status = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL).returncode
usage = resource.getrusage(resource.RUSAGE_CHILDREN)
print(status, usage.ru_maxrss, usage.ru_utime + usage.ru_stime)
"""
# Sanitizers take their own share of both.
IS_SANITIZED = bool(os.environ.get("ZORVELA_SANITIZE"))

ROWS = ("loop_\n_Atom_chem_shift.Entity_assembly_ID\n_Atom_chem_shift.Comp_index_ID\n_Atom_chem_shift.Comp_ID\n"
        "_Atom_chem_shift.Atom_ID\n_Atom_chem_shift.Val\n")
BARE_ROWS = ("loop_ _Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID "
             "_Atom_chem_shift.Val\n")


def entity(letters, name="protein"):
    return ("data_x\nsave_e\n_Entity.ID 1\n_Entity.Name %s\n_Entity.Polymer_type polypeptide(L)\n"
            "_Entity.Polymer_seq_one_letter_code\n;\n%s\n;\nsave_\n" % (name, letters))


def copies(count):
    return ("loop_\n_Entity_assembly.ID\n_Entity_assembly.Entity_ID\n" +
            "".join("%d 1\n" % i for i in range(1, count + 1)) + "stop_\n")


def lists(count, rows):
    return "".join("save_l%d\n%s%sstop_\nsave_\n" % (i, BARE_ROWS, rows) for i in range(count))


class Bounds(unittest.TestCase):
    def run_bounded(self, text, *arguments, name="hostile.str", seconds=None):
        """Exit status and standard error of an import within the bounds."""
        data = text.encode()
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / (name + ".gz")
            path.write_bytes(gzip.compress(data, 6))
            done = subprocess.run([sys.executable, "-S", "-c", MEASURE, KIT, *arguments, str(path)], cwd=folder,
                                  env=ENVIRONMENT, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, timeout=300, check=True)
            status, kilobytes, taken = done.stdout.split()
            if not IS_SANITIZED:
                self.assertLess(int(kilobytes) * 1024, 64 * MIB + 24 * len(data))
                self.assertLess(float(taken), seconds or 1 + len(data) / MIB)
        return int(status), done.stderr.decode()

    def refused(self, text, what, *arguments, name="hostile.str"):
        status, message = self.run_bounded(text, *(arguments or ("import",)), name=name)
        self.assertEqual(status, 1, message[:300])
        self.assertIn(name + ".gz: " + what, message)
        self.assertEqual(message.count("\n"), 1, message[:300])

    def test_lists_times_copies_times_residues(self):
        """Every list against every chain against every residue."""
        self.refused(entity("P" * 1000) + copies(1000) + lists(1000, "2 PRO CA 63\n"),
                     "describes more than 100000 residues")
        self.refused(entity("GP") + copies(1000) + lists(1000, "2 PRO CA 63\n"),
                     "has 1000 shift lists and 1000 chains")

    def test_lists_and_chains_within_the_limits(self):
        status, message = self.run_bounded(entity("GP" * 50) + copies(100) + lists(100, "2 PRO CA 63\n"), "import",
                                           "--list", "all")
        self.assertEqual(status, 1, message[:300])  # no chain is certain
        rows = "".join("%d 2 PRO CA 63\n" % i for i in range(1, 401))
        status, message = self.run_bounded(entity("GP" * 50) + copies(400) + ROWS + rows, "run")
        self.assertEqual(status, 0, message[:300])

    def test_bonds_times_copies(self):
        bonds = ("loop_\n_Entity_bond.Type\n_Entity_bond.Entity_ID\n_Entity_bond.Comp_index_ID_1\n"
                 "_Entity_bond.Comp_index_ID_2\n" + "disulfide 1 1 2\n" * 100000)
        self.refused(entity("CCP") + copies(1000) + bonds, "has more than 100000 ends of disulfide bonds in all copies")

    def test_a_long_name_times_copies(self):
        rows = "1 3 PRO CA 63\n"
        status, message = self.run_bounded(entity("GAP", "n" * 5000000) + copies(1000) + ROWS + rows, "import")
        self.assertEqual(status, 0, message[:300])
        self.assertIn("names of more than 200 characters are cut", message)

    def test_many_entities(self):
        self.refused("data_x loop_ _Entity.ID\n" + "1\n" * 5000000, "describes more than 1000 molecules")

    def test_long_sequences(self):
        self.refused(entity("P" * 5000000) + BARE_ROWS + "2 PRO CA 63\n", "has a sequence of more than 40000 residues")
        comp = "loop_ _Entity_comp_index.ID _Entity_comp_index.Comp_ID\n"
        self.refused("data_x save_e _Entity.ID 1\n" + comp + "".join("%d PRO\n" % i for i in range(200000)) + "save_ " +
                     BARE_ROWS + "2 PRO CA 63\n", "describes more than 100000 residues")
        nef = "data_x loop_ _nef_sequence.chain_code _nef_sequence.sequence_code _nef_sequence.residue_name\n"
        self.refused(nef + "".join("A %d PRO\n" % i for i in range(200000)), "describes more than 100000 residues",
                     name="hostile.nef")
        mol = "save_m _Saveframe_category monomeric_polymer loop_ _Residue_seq_code _Residue_label\n"
        self.refused("data_x " + mol + "".join("%d PRO\n" % i for i in range(200000)) + "save_ ",
                     "describes more than 100000 residues")

    def test_gaps(self):
        """Two rows name residues 1,000 apart, in many chains."""
        rows = "".join("%d %d PRO CA 63\n" % (chain, 1 + 1000 * i) for chain in range(1, 901) for i in range(20))
        self.refused("data_x " + ROWS + rows, "makes more than 40000 residues in all tables together")

    def test_names_of_frames(self):
        self.refused("data_x _a " + "$a " * 5000000, "holds no backbone shifts of a protein")
        self.refused("data_x loop_ _Atom_chem_shift.Val " + "$a " * 5000000, "has more than 300000 shift rows")
        self.refused("save_a _b c\n" * 200000, "has more than 100000 save frames")
        self.refused("data_x " + "a " * 21000000, "has more than 20000000 words")

    def test_all_lists(self):
        """A table for each list, each with the whole sequence."""
        self.refused(entity("GP" * 1000) + lists(900, "2 PRO CA 63\n"),
                     "makes more than 40000 residues in all tables together", "run", "--list", "all")
        rows = "".join("%d PRO CA 63\n" % i for i in range(2, 100, 2))
        status, message = self.run_bounded(entity("GP" * 50) + lists(400, rows), "run", "--list", "all")
        self.assertEqual(status, 0, message[:300])

    def test_many_rows(self):
        """Just below the limit of rows: each kept, each with a reason."""
        status, message = self.run_bounded("data_x " + BARE_ROWS +
                                           "".join("%d PRO CA 63\n" % (i % 39000) for i in range(290000)), "import")
        self.assertEqual(status, 0, message[:300])
        status, message = self.run_bounded(entity("GP" * 19000) + BARE_ROWS +
                                           "".join("%d ALA CA 63\n" % (i % 38000) for i in range(290000)), "import")
        self.assertEqual(status, 1, message[:300])

    def test_entries(self):
        one = "data_x%d _Entity.ID 1 _Entity.Polymer_seq_one_letter_code GP " + BARE_ROWS + "2 PRO CA 63\n"
        self.refused("".join(one % i for i in range(2000)), "holds more than 1000 entries")

    def test_rows_numbered_otherwise(self):
        """Each chain is searched for the offset of its rows."""
        rows = "".join("%d %d GLY CA 45\n" % (chain, 1001 + 2 * i) for chain in range(1, 401) for i in range(5))
        status, message = self.run_bounded(entity("GP" * 50) + copies(400) + ROWS + rows, "import")
        self.assertIn(status, (0, 1), message[:300])

    def test_text_without_shifts(self):
        """20 MB that hold no shifts: refused by the first rows; looking at all of them took seconds."""
        unknown = "1: is no shift file that is known"
        plain = "resid,resname,atom,shift\n"
        # A text of this size may hold 300,000 shifts: as many rows and one more without a residue are most rows,
        # whatever follows, and so are twice as many and one more without their cells.
        no_residues = "2: most rows (300001 of the first 300001) name no residue"
        no_cells = "2: most rows (600001 of the first 600001) do not fit the columns"
        for header, row, what in (("", "1.5 2.5\n", unknown), ("", "some words of text\n", unknown),
                                  ("", "1,2,", unknown), ("w1,w2,w3,int\n", "12.5,8.2,118.1,100000\n", unknown),
                                  (plain, "these are,not shifts,at,all\n", no_residues),
                                  ("resid,resname,CA,CB,N\n", "foo,bar,n,n,n\n", no_residues),
                                  (plain, "some words of text\n", no_cells),
                                  (plain.replace(",", " "), "a b c d e f g\n", no_cells),
                                  ("", "12 GLY CA 45.1\n", "300001: is beyond the first 300000 shifts")):
            with self.subTest(header + row):
                status, message = self.run_bounded(header + row * (20000000 // len(row)), "import", name="long.csv",
                                                   seconds=2.5)
                self.assertEqual(status, 1)
                self.assertIn("long.csv.gz:" + what, message)

    def test_a_table_whose_first_rows_are_bad(self):
        """Titles, units and the like above many good rows are not the end of the file."""
        good = "".join("%d,GLY,CA,45.1\n%d,GLY,N,108.2\n" % (i, i) for i in range(1, 30001))
        for bad, what in (("not,a,residue,1\n", "no residue number"), ("text\n", "1 cell for 4 columns")):
            with self.subTest(bad):
                text = "resid,resname,atom,shift\n" + bad * 59999 + good
                status, message = self.run_bounded(text, "import", name="late.csv")
                self.assertEqual(status, 0, message[:300])
                self.assertIn("and 59949 more lines left out", message)

    def test_a_bad_file_is_named_and_the_others_go_on(self):
        with tempfile.TemporaryDirectory() as folder:
            (pathlib.Path(folder) / "bad.str").write_text("data_x loop_ _Entity.ID\n" + "1\n" * 100000)
            (pathlib.Path(folder) / "good.str").write_text("data_x " + BARE_ROWS + "1 ALA CA 52\n2 PRO CA 63\n")
            done = subprocess.run([KIT, "import", "--output", "o/", "bad.str", "good.str"], cwd=folder, stderr=subprocess.PIPE,
                                  check=False)
            self.assertEqual(done.returncode, 1)
            self.assertIn(b"bad.str: describes more than 1000 molecules", done.stderr)
            self.assertIn(b"wrote o/good.tab", done.stderr)

    def test_a_large_entry_is_fast(self):
        """2 MB of rows in all the columns of a BMRB entry take 0.1 s; five times that would be another algorithm."""
        columns = ("ID Assembly_atom_ID Entity_assembly_ID Entity_ID Comp_index_ID Seq_ID Comp_ID Atom_ID Atom_type "
                   "Atom_isotope_number Val Val_err Assign_fig_of_merit Ambiguity_code Occupancy Resonance_ID "
                   "Auth_entity_assembly_ID Auth_asym_ID Auth_seq_ID Auth_comp_ID Auth_atom_ID Details Entry_ID "
                   "Assigned_chem_shift_list_ID").split()
        names = "GLY ALA SER PRO VAL THR LEU LYS GLU GLN".split()
        atoms = (("H", "H", 1, 8.1), ("HA", "H", 1, 4.2), ("C", "C", 13, 175.1), ("CA", "C", 13, 55.1),
                 ("CB", "C", 13, 30.2), ("N", "N", 15, 120.3))
        rows = []
        for i in range(1, 3501):
            for atom, element, isotope, value in atoms:
                rows.append("%6d . 1 1 %5d %5d %s %-4s %s %2d %8.3f 0.020 . 1 . . . A %5d %s %-4s . 99999 1\n" % (
                    len(rows), i, i, names[i % 10], atom, element, isotope, value, i, names[i % 10], atom))
        letters = "".join("GASPVTLKEQ"[i % 10] for i in range(1, 3501))
        text = (entity(letters) + "loop_\n" + "".join("_Atom_chem_shift.%s\n" % name for name in columns) +
                "".join(rows))
        self.assertGreater(len(text), 1900000)
        status, message = self.run_bounded(text, "import", seconds=0.5)
        self.assertEqual(status, 0, message[:300])

"""Shift lists without residue names, with the sequence beside them."""
import functools
import gzip
import unittest

from zorvela_tests import folder, program

SEQUENCE = "MKAGVPGT"
SHIFTS = ("2,CB,33.1\n4,CA,45.2\n4,HA2,3.9\n5,CA,62.0\n5,CB,32.0\n5,C,175.0\n6,CA,63.2\n6,CB,32.0\n6,CG,27.1\n"
          "7,CA,45.0\n7,HN,8.3\n7,HA3,3.9\n8,CB,69.5\n")


def moved(shifts, by):
    rows = [row.split(",") for row in shifts.splitlines()]
    return "".join(f"{int(number) + by},{atom},{value}\n" for number, atom, value in rows)


class Sequence(folder.InFolder):
    def setUp(self):
        super().setUp()
        self.put("p.csv", "resid,atom,shift\n" + SHIFTS)
        self.put("p.fasta", ">p\n" + SEQUENCE + "\n")

    def run_kit(self, *arguments):
        return program.run("--format", "csv", *arguments, cwd=self.folder)

    def prolines(self, *arguments):
        ended = self.run_kit(*arguments)
        self.assertEqual(ended.returncode, 0, ended.stderr)
        return [(row["file"], row["prev"] + row["resid"] + row["next"]) for row in program.csv_rows(ended.stdout)]

    def test_an_option_or_a_file_beside_it(self):
        for arguments in (["p.csv", "--sequence", "p.fasta"], ["p.csv", "p.fasta"], ["p.fasta", "p.csv"], ["."]):
            self.assertEqual([found for _, found in self.prolines(*arguments)], ["V6G"], arguments)
        table = program.kit("import", "p.csv", "--sequence", "p.fasta", cwd=self.folder).stdout
        self.assertIn("DATA SEQUENCE MKAGVPGT\n", table)
        self.assertIn("   6 P   CG    27.100\n", table)

    def test_gzipped(self):
        for name in ("p.csv", "p.fasta"):
            self.put(name + ".gz", gzip.compress(self.read(name).encode()))
        for arguments in (["p.csv.gz", "p.fasta.gz"], ["p.csv", "p.fasta.gz"], ["p.csv", "--sequence", "p.fasta.gz"]):
            self.assertEqual([found for _, found in self.prolines(*arguments)], ["V6G"], arguments)

    def test_probabilities_are_those_of_the_shift_table(self):
        self.put("t.tab", program.kit("import", "p.csv", "p.fasta", cwd=self.folder).stdout)
        table, given = (list(program.csv_rows(self.run_kit(*files).stdout)) for files in (["t.tab"], ["p.csv", "p.fasta"]))
        self.assertEqual([row["p_cis"] for row in table], [row["p_cis"] for row in given])
        self.assertNotEqual(table[0]["p_cis"], "")

    def test_several_files_by_their_stems(self):
        self.put("q.csv", "resid,atom,shift\n" + moved(SHIFTS, 10))
        self.put("q.seq", "".join(f"{name} {number}\n" for number, name in
                                  enumerate("MET LYS ALA GLY VAL PRO GLY THR".split(), 11)))
        self.put("r.tab", program.full_table("APK"))
        self.assertEqual(self.prolines("p.csv", "q.csv", "r.tab", "p.fasta", "q.seq"),
                         [("p.csv", "V6G"), ("q.csv", "V16G"), ("r.tab", "A2K")])
        ended = self.run_kit("p.csv", "r.tab", "q.seq")
        self.assertEqual((ended.returncode, ended.stderr),
                         (1, "zorvela-kit: q.seq: is a sequence, but no shift file has its name; name it like its "
                             "shift file, or give it with --sequence\n"))

    def test_the_first_residue(self):
        self.put("p.csv", "resid,atom,shift\n" + moved(SHIFTS, 100))
        self.assertEqual(self.prolines("p.csv", "p.fasta", "--first-residue", "101"), [("p.csv", "V106G")])
        for arguments, message in ((["p.fasta", "--first-residue", "x"], '--first-residue: "x" is not a whole number'),
                                   (["--first-residue", "5"], "--first-residue needs a sequence; give one with "
                                                              "--sequence")):
            ended = self.run_kit("p.csv", *arguments)
            self.assertEqual((ended.returncode, ended.stderr), (1, f"zorvela-kit: {message}\n"))

    def test_sequences_that_will_not_do(self):
        self.put("p.seq", "MET\nLYS\nALA\nVAL\nVAL\nPRO\nGLY\nTHR\n")
        for arguments, message in (
                (["p.csv", "p.fasta", "p.seq"], "p.seq: differs from p.fasta: residue 4 is G in one and VAL in the other; give one of the two"),
                (["p.csv", "p.fasta", "--sequence", "p.seq"], "p.fasta: is a second sequence beside that of --sequence; give "
                                                              "one of the two"),
                (["p.fasta"], "p.fasta: is a sequence without shifts; give the file with the chemical shifts too"),
                (["p.csv", "--sequence", "p.csv"], 'p.csv:1: is not a sequence: "resid,atom,shift"; give FASTA, '
                                                   "one-letter text, residue names with numbers (.seq), NMR-STAR or NEF")):
            ended = self.run_kit(*arguments)
            self.assertEqual((ended.returncode, ended.stderr), (1, f"zorvela-kit: {message}\n"), arguments)

    def test_gaps_of_a_list_without_a_sequence(self):
        self.put("g.csv", "resid,resname,atom,shift\n3,ALA,CA,52.0\n6,PRO,CA,63.0\n7,GLY,CA,45.0\n9,ALA,CA,52.0\n")
        said = ("Prolines in gaps cannot be seen: the shifts come without a sequence, and 3 residues have no name. Give "
                "the sequence with --sequence FILE.\n")
        self.assertTrue(program.run("g.csv", cwd=self.folder).stdout.endswith(said))
        self.assertIn(said.strip(), program.run("g.csv", "--format", "html", cwd=self.folder).stdout)
        self.put("g.fasta", ">g\nMKAPPPGPA\n")
        for file, *more in (["g.csv", "g.fasta"], ["p.csv", "p.fasta"]):
            self.assertNotIn("cannot be seen", program.run(file, *more, cwd=self.folder).stdout)

    def test_two_lists_of_one_protein(self):
        rows = SHIFTS.splitlines(keepends=True)
        side = "".join(row for row in rows if ",CB" in row or ",CG" in row)
        self.put("back.csv", "resid,atom,shift\n" + "".join(row for row in rows if row not in side))
        self.put("side.csv", "resid,atom,shift\n" + side)
        files = ["back.csv", "side.csv", "--sequence", "p.fasta", "--first-residue", "1"]
        ended = self.run_kit("--merge", *files)
        whole = program.csv_rows(self.run_kit("p.csv", "p.fasta").stdout)
        merged = program.csv_rows(ended.stdout)
        self.assertEqual([row["cg_shift"] for row in merged], [row["cg_shift"] for row in whole])
        self.assertEqual([row["file"] for row in merged], ["back.csv"])
        self.assertIn("merged into one protein: back.csv, side.csv", ended.stderr)
        self.assertNotIn("look like", ended.stderr)
        self.assertEqual(program.kit("import", "--merge", *files, cwd=self.folder).stdout.count("   6 P   CG    27.100\n"), 1)

    def test_lists_that_look_like_one_protein(self):
        residues = [f"{number},ALA" for number in range(1, 11)] + ["11,PRO"]
        self.put("a.csv", "resid,resname,atom,shift\n" + "".join(f"{one},CA,55.0\n" for one in residues))
        self.put("b.csv", "resid,resname,atom,shift\n" + "".join(f"{one},C,175.0\n" for one in residues))
        note = "note: a.csv and b.csv look like two shift lists of one protein; --merge combines them\n"
        for command in (program.run, functools.partial(program.kit, "import")):
            self.assertIn(note, command("a.csv", "b.csv", cwd=self.folder).stderr)
            self.assertNotIn("look like", command("a.csv", "b.csv", "--merge", cwd=self.folder).stderr)
            self.assertNotIn("look like", command("a.csv", "p.csv", "p.fasta", cwd=self.folder).stderr)

    def test_merging_needs_one_protein_in_each_file(self):
        self.put("two.csv", "chain,resid,resname,atom,shift\nA,1,ALA,CA,52.0\nB,1,ALA,CA,52.0\n")
        self.put("b.csv", "resid,resname,atom,shift\n1,PRO,CA,63.0\n")
        ended = self.run_kit("--merge", "b.csv", "two.csv")
        self.assertEqual(ended.returncode, 1)
        self.assertIn("two.csv: has 2 chains or lists; choose one with --chain or --list to merge it", ended.stderr)

    def test_no_output_takes_the_place_of_the_sequence(self):
        ended = self.run_kit("p.csv", "--sequence", "p.fasta", "--output", "p.fasta")
        self.assertEqual(ended.returncode, 1)
        self.assertIn("p.fasta: is an input file", ended.stderr)


if __name__ == "__main__":
    unittest.main()

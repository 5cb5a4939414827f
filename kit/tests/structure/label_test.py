"""zorvela-kit label: labels from structures that are built from chosen omegas."""
import csv
import os

import made_structure as made
from zorvela_tests import folder, program

#           1234567890123456789012345678901234567890
SEQUENCE = "MLEGSKLAPKWDNHIGPKQFYVTEAPKLSTDHGVAPKMRL"
OTHER = "GSTDKKRMNQRSTVWYPAEDFHIKKLNQWEERTYIDASFG"
COLUMNS = ["entry", "resid", "resid_file", "prev", "next", "label_structure", "votes_cis", "votes_trans", "tier",
           "structure", "label_shift", "cb_minus_cg", "cluster"]


class Label(folder.InFolder):
    def setUp(self):
        super().setUp()
        for name in ("entries", "structures"):
            os.mkdir(self.path(name))
        shifts = {(9, "CB"): 34.0, (9, "CG"): 24.0, (17, "CB"): 31.0, (17, "CG"): 27.0, (26, "CB"): 34.0, (26, "CG"): 27.0}
        self.put("entries/a.tab", program.full_table(SEQUENCE, shifts))
        self.put("entries/b.tab", program.full_table(OTHER))

    def structure(self, name, *models, write=made.pdb):
        self.put("structures/" + name, write(*models))

    def chain(self, cis=(), sequence=SEQUENCE, **omegas):
        return made.backbone(sequence, {p - 1: 0.0 for p in cis})

    def run_label(self, *options):
        return program.kit("label", "--entries", "entries", "--structures", "structures", "--output", "labels.csv",
                           *options, cwd=self.folder)

    def labels(self, *options, status=0):
        result = self.run_label(*options)
        self.assertEqual(result.returncode, status, result.stderr)
        self.stderr = result.stderr
        with open(self.path("labels.csv"), encoding="utf-8") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual(list(rows[0]), COLUMNS)
        return {(row["entry"], row["resid"]): row for row in rows}

    def label(self, rows, resid, entry="a"):
        row = rows[entry, str(resid)]
        return row["label_structure"], row["votes_cis"], row["votes_trans"]

    def test_votes_over_structures(self):
        self.structure("1abc.pdb", [("A", self.chain([9]))])
        self.structure("2abc.cif", [("B", self.chain([9, 17]))], write=made.mmcif)
        self.structure("pdb3abc.ent", [("A", self.chain())])
        rows = self.labels()
        self.assertEqual(self.label(rows, 9), ("cis", "2", "1"))
        self.assertEqual(self.label(rows, 17), ("trans", "1", "2"))
        self.assertEqual(self.label(rows, 26), ("trans", "0", "3"))
        self.assertEqual(self.label(rows, 17, "b"), ("", "", ""))
        self.assertEqual((rows["a", "9"]["tier"], rows["a", "9"]["structure"]), ("ident", "1abcA"))
        self.assertIn("4 of 5 prolines in 2 proteins labelled", self.stderr)

    def test_models_and_chains_of_one_structure_have_one_vote(self):
        self.structure("1abc.pdb", [("A", self.chain([9, 17]))], [("A", self.chain([9]))], [("A", self.chain([9]))])
        self.structure("2abc.pdb", [("A", self.chain()), ("B", made.moved(self.chain([26]), 90))])
        rows = self.labels()
        self.assertEqual(self.label(rows, 9), ("", "1", "1"))
        self.assertEqual(self.label(rows, 17), ("trans", "0", "2"))
        self.assertEqual(self.label(rows, 26), ("trans", "0", "1"))  # 2abc is split

    def test_a_split_vote_is_not_the_same_as_none(self):
        self.structure("2abc.pdb", [("A", self.chain()), ("B", made.moved(self.chain([26]), 90))])
        rows = self.labels()
        self.assertEqual(self.label(rows, 26), ("", "0", "0"))
        self.assertEqual(self.label(rows, 17, "b"), ("", "", ""))

    def test_molecules_of_one_chain_and_structures_that_fit_nothing(self):
        run_on = [made.Residue(r.name, r.number + 40, r.atoms) for r in made.moved(self.chain([9]), 90)]
        stranger = made.moved(self.chain([16], OTHER), 180)
        self.structure("1abc.pdb", [(" ", self.chain([9]) + run_on + stranger)])
        self.structure("2abc.pdb", [("A", self.chain(sequence="GHHTRWCPNNYYDDPLLVVQQKKEEPSSTTRRFF"))])
        rows = self.labels()
        self.assertEqual([self.label(rows, r) for r in (9, 17)], [("cis", "1", "0"), ("trans", "0", "1")])
        self.assertEqual(self.label(rows, 17, "b"), ("trans", "0", "1"))
        self.assertIn("note: structures/2abc.pdb: matches no entry\n", self.stderr)
        self.assertNotIn("1abc", self.stderr)

    def test_shift_labels(self):
        self.structure("1abc.pdb", [("A", self.chain())])
        rows = self.labels()
        self.assertEqual([(rows["a", r]["label_shift"], rows["a", r]["cb_minus_cg"]) for r in ("9", "17", "26", "36")],
                         [("cis", "10.00"), ("trans", "4.00"), ("unclear", "7.00"), ("", "")])

    def test_homologues_count_on_request_and_identical_ones_more(self):
        # Every fifth residue another one: 80 % identity, prolines and their neighbours kept.
        mutated = "".join("W" if i % 5 == 2 and letter != "P" else letter for i, letter in enumerate(SEQUENCE))
        identical = sum(x == y for x, y in zip(mutated, SEQUENCE)) / len(SEQUENCE)
        self.assertTrue(0.75 < identical < 0.9)
        self.structure("1hom.pdb", [("A", self.chain([9], mutated))])
        self.assertEqual(self.label(self.labels(), 9), ("", "", ""))
        rows = self.labels("--identity", "70")
        self.assertEqual((self.label(rows, 9), rows["a", "9"]["tier"]), (("cis", "1", "0"), "homol"))
        self.assertEqual(self.label(self.labels("--identity", "95"), 9), ("", "", ""))
        self.structure("2abc.pdb", [("A", self.chain())])
        rows = self.labels("--identity", "70")
        self.assertEqual((self.label(rows, 9), rows["a", "9"]["tier"]), (("trans", "0", "1"), "ident"))

    def test_short_overlap_does_not_count(self):
        self.structure("1abc.pdb", [("A", self.chain([9])[:24])])
        self.assertEqual(self.label(self.labels(), 9), ("", "", ""))
        self.structure("1abc.pdb", [("A", self.chain([9])[:25])])
        self.assertEqual(self.label(self.labels(), 9), ("cis", "1", "0"))

    def test_the_order_and_number_of_jobs_do_not_matter(self):
        for i in range(8):
            self.structure("%dabc.pdb" % i, [("A", self.chain([9] if i % 3 else []))])
        one = self.labels("--jobs", "1")
        self.assertEqual(one, self.labels("--jobs", "5"))

    def test_evaluate_reads_them(self):
        self.put("entries/a.tab", program.full_table("GAPKGGAPKG", {(3, "CB"): 34.0, (3, "CG"): 24.0}))
        os.remove(os.path.join(self.folder, "entries", "b.tab"))
        self.structure("1abc.pdb", [("A", self.chain([3], "GAPKGGAPKG"))])
        self.labels()
        result = program.kit("evaluate", "--entries", "entries", "--labels", "labels.csv", "--tables",
                             program.MADE_TABLES, "--bootstrap", "0", cwd=self.folder)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("2 prolines labelled by structure", result.stdout)

    def test_bad_files_are_named_and_left_out(self):
        self.structure("1abc.pdb", [("A", self.chain([9]))])
        self.put("structures/bad.pdb", "hello")
        self.put("entries/bad.tab", "hello")
        rows = self.labels(status=1)
        self.assertEqual(self.label(rows, 9), ("cis", "1", "0"))
        self.assertIn("bad.pdb: is neither an mmCIF file nor a PDB file with atoms", self.stderr)
        self.assertIn("bad.tab", self.stderr)
        self.assertIn("2 files were not used", self.stderr)

    def test_nothing_is_half_written(self):
        result = self.run_label()
        self.assertEqual(result.returncode, 1)
        self.assertIn("structures: holds no structures", result.stderr)
        self.put("structures/bad.pdb", "hello")
        self.assertEqual(self.run_label().returncode, 1)
        self.assertFalse(os.path.exists(self.path("labels.csv")))
        result = program.kit("label", "--entries", "none", "--structures", "structures", "--output", "x.csv",
                             cwd=self.folder)
        self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1))

"""zorvela-kit run --structure: shifts against structures that are built from chosen omegas."""
import gzip
import json
import os

import jsonschema

import made_pair
import made_structure as made
from made_pair import OTHER, chain, shifts
from zorvela_tests import program

EXAMPLES = program.SOURCE / "examples"
ENSEMBLE = program.SOURCE / "kit" / "tests" / "files" / "ubiquitin_ensemble.cif.gz"


class Case(made_pair.Case):
    def verdicts(self, *arguments, **options):
        return {resid: row["verdict"] for resid, row in self.rows(*arguments, **options).items()}

    def fails(self, content, name="model.pdb"):
        """The one line that a structure file is refused with."""
        self.put(name, content)
        result = self.run_kit("shifts.tab", "--structure", name)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, "")
        lines = result.stderr.splitlines()
        self.assertEqual(len(lines), 1, result.stderr)
        return lines[0].removeprefix("zorvela-kit: ")


class Verdicts(Case):
    def test_a_model_built_trans_disagrees(self):
        rows = self.rows(made.pdb([("A", chain())]))
        self.assertEqual([row["verdict"] for row in rows.values()], ["agree", "disagree", "agree", "agree"])
        self.assertEqual(rows["17"]["structure_sentence"],
                         "The shifts predict cis (P_CIS_NORM %.3f, CB - CG 10.0 ppm as in cis), the structure is trans in 1 "
                         "of 1 model (|omega| 180 degrees)." % float(rows["17"]["p_cis_norm"]))

    def test_exit_status(self):
        for residues, status, message in ((chain(cis=[17]), 0, ""), (chain(), 1, "1 proline disagrees with the structures"),
                                          (chain(sequence=OTHER), 1, "no call could be compared with the structures")):
            self.put("model.pdb", made.pdb([("A", residues)]))
            self.assertEqual(self.run_kit("shifts.tab", "--structure", "model.pdb").returncode, 0)
            result = self.run_kit("shifts.tab", "--structure", "model.pdb", "--fail-on-disagreement")
            self.assertEqual(result.returncode, status)
            self.assertIn(message, result.stderr)

    def test_bounds_of_omega(self):
        rows = self.rows(made.pdb([("A", chain(omegas={9: 29, 17: -31, 26: -149, 36: 151}))]))
        self.assertEqual([row["structure"] for row in rows.values()], ["cis", "twisted", "twisted", "trans"])
        for resid, omega in (("9", 29), ("17", 31), ("26", 149), ("36", 151)):
            self.assertAlmostEqual(float(rows[resid]["omega"]), omega, delta=0.2)
        self.assertEqual([row["verdict"] for row in rows.values()], ["disagree", "disagree", "disagree", "agree"])

    def test_models_that_disagree(self):
        models = [[("A", chain(cis=[17]))], [("A", chain())], [("A", chain(cis=[17], omegas={9: 140}))]]
        for text in (made.pdb(*models), made.mmcif(*models)):
            rows = self.rows(text)
            self.assertEqual((rows["17"]["verdict"], rows["17"]["omega"]), ("mixed models", ""))
            self.assertEqual([rows["17"][key] for key in ("models_cis", "models_trans", "models_twisted")], ["2", "1", "0"])
            # A twisted model says neither.
            self.assertEqual((rows["9"]["verdict"], rows["9"]["models_twisted"]), ("agree", "1"))

    def test_models_with_other_residues(self):
        # The chain is that of the model with most residues, wherever it is.
        few, all_residues = chain(cis=[17]), chain(cis=[17])
        few = few[:16] + few[17:]
        for models in ([[("A", few)], [("A", all_residues)]], [[("A", all_residues)], [("A", few)]]):
            for text in (made.pdb(*models), made.mmcif(*models)):
                rows = self.rows(text)
                self.assertEqual((rows["17"]["verdict"], rows["17"]["models_cis"]), ("agree", "1"))
                self.assertEqual((rows["9"]["verdict"], rows["9"]["models_trans"]), ("agree", "2"))
                self.assertNotIn("without coordinates", self.stderr)

    def test_not_predicted(self):
        table = shifts(cis=[17])
        table = "\n".join(line for line in table.split("\n") if not line.strip().startswith(("8 A", "9 P")))
        self.put("shifts.tab", table)
        rows = self.rows(made.pdb([("A", chain(cis=[9]))]))
        self.assertEqual(rows["9"]["verdict"], "no prediction")
        self.assertEqual((rows["9"]["reason"], rows["9"]["structure"]), ("too few shifts", "cis"))

    def test_a_proline_between_the_bounds_is_undecided(self):
        # CG between the means says nothing; CB gives odds of 4.75 for cis, a quarter of the 19 for trans.
        self.put("shifts.tab", shifts().replace("  26 P   CB   30.000", "  26 P   CB   31.780")
                 .replace("  26 P   CG   27.000", "  26 P   CG   25.500"))
        row = self.rows(made.pdb([("A", chain())]))["26"]
        self.assertAlmostEqual(float(row["p_cis_norm"]), 0.2, delta=0.01)
        self.assertEqual(row["verdict"], "undecided by shifts")


class Chains(Case):
    def test_homodimer(self):
        for second, models, verdict in ((chain(cis=[17]), "2", "agree"), (chain(), "1", "mixed models")):
            row = self.rows(made.pdb([("A", chain(cis=[17])), ("B", made.moved(second, 80))]))["17"]
            self.assertEqual((row["structure_chain"], row["models_cis"], row["verdict"]), ("A;B", models, verdict))

    def test_chains_without_shifts_and_the_reverse(self):
        self.put("other.tab", shifts(sequence="GGSTKKLMNAPKQRSTVWYAAEDFHIKKLNQ"))
        self.put("model.pdb", made.pdb([("A", chain(cis=[17])), ("C", made.moved(chain(sequence=OTHER), 80))]))
        result = self.run_kit("shifts.tab", "--structure", "model.pdb")
        self.assertIn("note: model.pdb, chain C (28 residues) has no shifts", result.stderr)
        self.put("model.pdb", made.pdb([("A", chain(cis=[17]))]))
        result = self.run_kit("other.tab", "--structure", "model.pdb", "--format", "csv")
        self.assertIn("note: other.tab: no chain of the structures matches this protein\n", result.stderr)
        self.assertIn("not in the structure", result.stdout)

    def test_of_many_chains_without_shifts_some_are_named(self):
        """A virus shell has hundreds; JSON has all of them."""
        self.put("model.cif", made.mmcif([(f"C{i}", made.moved(chain(sequence=OTHER), 80 * i)) for i in range(60)]))
        result = self.run_kit("shifts.tab", "--structure", "model.cif", "--format", "json")
        self.assertEqual(len(json.loads(result.stdout)["chains_without_shifts"]), 60)
        self.assertIn("note: model.cif, chain C49 (28 residues) has no shifts\n", result.stderr)
        self.assertIn("note: and 10 more chains without shifts\n", result.stderr)
        self.assertNotIn("chain C50 ", result.stderr)

    def test_a_structure_counts_once(self):
        """Models and verdicts are counted, so one that is given twice would weigh twice."""
        path = self.put("a.pdb", made.pdb([("A", chain(cis=[17]))]))
        self.put("b.pdb", made.pdb([("A", chain())]))
        os.symlink("a.pdb", os.path.join(self.folder, "link.pdb"))
        for second in ("a.pdb", "./a.pdb", path, "link.pdb"):
            result = self.run_kit("shifts.tab", "--structure", "a.pdb", "b.pdb", second)
            self.assertEqual((result.returncode, result.stdout, result.stderr),
                             (1, "", "zorvela-kit: %s: is given twice; name each structure once\n" % second))
        result = self.run_kit("shifts.tab", "--structure", "none.pdb", "none.pdb", "b.pdb")
        self.assertIn("none.pdb: cannot be read: No such file or directory", result.stderr)

    def test_mutations_and_missing_residues_are_noted(self):
        residues = chain(cis=[17])
        residues[4].name = "ARG"   # S5
        residues[25].name = "ALA"  # P26
        residues = residues[2:11] + residues[15:35]  # without 1-2, 12-15 and 36-40
        rows = self.rows(made.pdb([("A", residues)]))
        self.assertIn("residues that differ from those of the shift file: S5 is ARG 5, P26 is ALA 26", self.stderr)
        self.assertIn("residues of the shift file without coordinates: 1-2, 12-15, 36-40", self.stderr)
        self.assertEqual([row["verdict"] for row in rows.values()],
                         ["agree", "agree", "not in the structure", "not in the structure"])
        self.assertIn("is ALA 26 in the structure", rows["26"]["structure_sentence"])

    def test_proline_after_a_gap_or_at_the_start_has_no_bond(self):
        residues = chain(cis=[17])
        for part, why in ((residues[:13] + residues[16:], "A 17: no bond to ASN 13: C - N "),
                          (residues[16:], "first residue of the chain")):
            row = self.rows(made.pdb([("A", part)]))["17"]
            self.assertEqual(row["verdict"], "not in the structure")
            self.assertIn(why, row["structure_sentence"])

    def test_insertion_codes(self):
        residues = chain(cis=[17])
        residues[16].number, residues[16].code = 16, "A"
        for write in (made.pdb, made.mmcif):
            row = self.rows(write([("A", residues)]))["17"]
            self.assertEqual((row["structure_resid"], row["verdict"]), ("16A", "agree"))

    def test_modified_residues_are_their_parents(self):
        residues = chain(cis=[17])[:36]
        residues[0].name, residues[25].name = "MSE", "HYP"
        residues[0].het = residues[16].het = residues[25].het = True
        for text in (made.pdb([("A", residues)]), made.mmcif([("A", residues)])):
            rows = self.rows(text)
            self.assertEqual([row["verdict"] for row in rows.values()], ["agree"] * 4)
            self.assertEqual(rows["26"]["structure_residue"], "HYP")
            self.assertNotIn("other residues", self.stderr)

    def test_shift_files_after_the_structures(self):
        self.put("model.pdb", made.pdb([("A", chain(cis=[17]))]))
        self.put("shifts.csv", "resid,resname,atom,shift\n16,LYS,CA,55.2\n17,PRO,CA,63.1\n18,GLN,CA,56.0\n")
        for name in ("shifts.tab", "shifts.csv"):
            result = self.run_kit("--structure", "model.pdb", name, "shifts.tab")
            self.assertEqual(result.returncode, 1)
            self.assertIn("zorvela-kit: %s: has shifts, not a structure; name shift files before --structure, or "
                          "after --\n" % name, result.stderr)
        for arguments in (("shifts.tab", "--structure", "model.pdb"), ("--structure", "model.pdb", "--", "shifts.tab")):
            self.assertEqual(self.run_kit(*arguments).returncode, 0, arguments)

    def test_a_free_proline_is_no_residue_of_the_chain(self):
        loose = made.moved(chain()[8:9], 200)
        loose[0].het, loose[0].number = True, 301
        rows = self.rows(made.pdb([("A", chain(cis=[17]) + loose)]))
        self.assertEqual([row["verdict"] for row in rows.values()], ["agree"] * 4)

    def test_alternate_conformations_do_not_mix(self):
        for occupancy, main in ((0.7, "cis"), (0.3, "trans")):
            cis, trans = chain(cis=[17]), chain()
            for i in range(16, len(cis)):
                cis[i].atoms = [a for pair in zip(
                    [(n, p, "A", occupancy) for n, p, _, _ in cis[i].atoms],
                    [(n, p, "B", 1 - occupancy) for n, p, _, _ in trans[i].atoms]) for a in pair]
            for text in (made.pdb([("A", cis)]), made.mmcif([("A", cis)])):
                rows = self.rows(text)
                self.assertEqual(rows["17"]["structure"], main)
                self.assertIn("Less occupied conformation %s of A 17 is %s" %
                              (("B", "trans") if main == "cis" else ("A", "cis")), rows["17"]["structure_sentence"])
                self.assertEqual([rows[r]["structure"] for r in ("26", "36")], ["trans", "trans"])

    def test_ca_trace(self):
        for write in (made.pdb, made.mmcif):
            rows = self.rows(write([("A", made.trace(chain(cis=[17], omegas={26: 80})))]))
            self.assertEqual([row["structure"] for row in rows.values()], ["trans", "cis", "twisted", "trans"])
            self.assertEqual([row["omega"] for row in rows.values()], [""] * 4)
            self.assertAlmostEqual(float(rows["17"]["ca_distance"]), 2.91, delta=0.02)
            self.assertAlmostEqual(float(rows["9"]["ca_distance"]), 3.82, delta=0.02)

    def test_rows_in_another_order(self):
        """Models row by row, and the atoms of a residue far from one another."""
        models = [[("A", chain(cis=[17])), ("B", made.moved(chain(sequence=OTHER), 80))],
                  [("A", chain(cis=[17], omegas={26: 100})), ("B", made.moved(chain(sequence=OTHER), 80))]]
        lines = made.mmcif(*models).split("\n")
        first = next(i for i, line in enumerate(lines) if line.startswith("ATOM"))
        atoms = [line for line in lines if line.startswith("ATOM")]
        plain = self.rows("\n".join(lines))
        by_atom = sorted(atoms, key=lambda line: line.split()[3])  # all C of A, all of B ...
        half = len(atoms) // 2
        in_turn = [atoms[i] for i in range(half) for i in (i, i + half)]
        for order in (by_atom, in_turn):
            rows = self.rows("\n".join(lines[:first] + order))
            self.assertEqual(rows.keys(), plain.keys())
            for number, row in rows.items():
                self.assertEqual((row["verdict"], row["omega"]), (plain[number]["verdict"], plain[number]["omega"]))

    def test_an_insertion_code_with_the_number(self):
        """Old mmCIF files write 17A in the column of numbers."""
        residues = chain(cis=[17])
        residues[16].code = "A"
        own = made.mmcif([("A", residues)])
        old = "\n".join(" ".join(words[:8] + ["?"] + words[9:14] + ["17A"] + words[15:]) if words[8:9] == ["A"] else line
                        for line in own.split("\n") for words in [line.split()])
        self.assertNotEqual(old, own)
        rows = self.rows(own)
        self.assertEqual(rows["17"]["verdict"], "agree")
        self.assertEqual(self.rows(old), rows)

    def test_an_atom_that_is_given_twice(self):
        for make, atom, following in ((made.mmcif, " CA . PRO A 17 ", " C . PRO A 17 "),
                                      (made.pdb, " CA  PRO A  17 ", " C   PRO A  17 ")):
            with self.subTest(make.__name__):
                lines = make([("A", chain(cis=[17]))]).split("\n")
                plain = self.rows("\n".join(lines))
                self.assertNotIn("twice", self.stderr)
                ca = next(line for line in lines if atom in line)
                at = next(i for i, line in enumerate(lines) if following in line)
                moved = " ".join(ca.split()[:9] + ["0"] * 3 + ca.split()[12:]) if make is made.mmcif else (
                    ca[:30] + "   0.000" * 3 + ca[54:])
                self.assertEqual(self.rows("\n".join(lines[:at] + [moved, moved] + lines[at:])), plain)
                self.assertIn("atoms given twice; the first is used: residue PRO 17 of chain A\n",
                              self.stderr)


class Output(Case):
    def test_table(self):
        self.put("model.pdb", made.pdb([("B", chain(first=1001))]))
        result = self.run_kit("shifts.tab", "--structure", "model.pdb")
        lines = result.stdout.splitlines()
        self.assertEqual(lines[0].split()[-6:], ["Call", "Structure", "Models", "|omega|", "Residue", "Verdict"])
        self.assertEqual(lines[1].split()[-8:], ["trans", "trans", "1", "trans", "180", "B", "PRO1009", "agree"])
        self.assertTrue(lines[2].startswith("!  shifts.tab "), lines[2])
        self.assertEqual(lines[2].split()[-8:], ["cis", "trans", "1", "trans", "180", "B", "PRO1017", "disagree"])
        self.assertTrue(lines[6].startswith("!  shifts.tab P17: The shifts predict cis (P_CIS_NORM "), lines[6])
        self.assertEqual(lines[7:8], [""])
        self.assertEqual(lines[-2:], ["1 structure: 3 agree, 1 disagree (!)",
                                      "cis: |omega| up to 30 degrees; trans: at least 150 degrees; twisted: between"])

    def test_each_structure_has_its_line(self):
        self.put("a.pdb", made.pdb([("A", chain(cis=[17]))]))
        self.put("b.pdb", made.pdb([("B", chain(cis=[17]))], [("B", chain())]))
        lines = self.run_kit("shifts.tab", "--structure", "a.pdb", "b.pdb").stdout.splitlines()
        at = next(i for i, line in enumerate(lines) if " P17 " in line)
        self.assertIn("mixed      1 trans, 2 cis  -  ", lines[at])
        self.assertEqual([line.split() for line in lines[at + 1:at + 3]],
                         [["cis", "1", "cis", "0", "a.pdb", "A", "PRO17"],
                          ["mixed", "1", "trans,", "1", "cis", "-", "b.pdb", "B", "PRO17"]])

    def test_json_follows_the_schema(self):
        self.put("model.pdb", made.pdb([("A", chain(cis=[9])), ("B", made.moved(chain(sequence=OTHER), 80))]))
        self.put("trace.pdb", made.pdb([("A", made.trace(chain()))]))
        result = self.run_kit("shifts.tab", "none.tab", "--structure", "model.pdb", "trace.pdb", "--format", "json")
        self.assertEqual(result.returncode, 1)
        document = json.loads(result.stdout)
        schema = json.loads(program.SCHEMA.read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)
        jsonschema.validate(document, schema)
        self.assertEqual([error["file"] for error in document["errors"]], ["none.tab"])
        self.assertEqual(document["chains_without_shifts"], ["model.pdb, chain B (28 residues) has no shifts"])
        self.assertEqual(document["structures"][1]["chains"], [{"chain": "A", "residues": 40, "ca_only": True}])

class BadInput(Case):
    def test_no_structure(self):
        neither = "is neither an mmCIF file nor a PDB file with atoms"
        for content, message in (
                ("hello\n", neither), ("HEADER    HYDROLASE\nMODEL        1\nENDMDL\nEND\n", neither),
                ("Atoms of a molecule\n", neither), ("", "is empty"), (b"PK\x03\x04abc", "zip archive"),
                ("data_x\n_cell.length_a 1\n", "has no atoms"),
                ("HETATM    1  O   HOH A   1       0.000   0.000   0.000  1.00  0.00           O\nEND\n", "no protein")):
            self.assertIn(message, self.fails(content))
        for name in ("nuclease.tab", "nuclease.str"):
            self.assertEqual(self.fails((program.SOURCE / "examples" / name).read_bytes()),
                             "model.pdb: has shifts, not a structure; name shift files before --structure, or after --")

    def test_cut(self):
        text = made.pdb([("A", chain())])
        lines = text.splitlines()
        message = self.fails("\n".join(lines[:50]) + "\n" + lines[50][:40])
        self.assertTrue(message.startswith("model.pdb:51: the atom line is cut off after column 40"), message)
        packed = gzip.compress(text.encode())
        self.assertIn("ends too early", self.fails(packed[:len(packed) // 2], "model.pdb.gz"))
        cif = made.mmcif([("A", chain())])
        lines = cif.split("\n")
        remedy = "; give each row one value for each column, or fetch the file again"
        self.assertEqual(self.fails("\n".join(lines[:60]) + "\n" + " ".join(lines[60].split()[:5])),
                         "model.pdb:61: 5 values for the 17 columns of _atom_site" + remedy)
        words = lines[60].split()
        lines[60] += " 1"
        self.assertEqual(self.fails("\n".join(lines)), "model.pdb:61: 18 values for the 17 columns of _atom_site" + remedy)
        lines[60] = " ".join(words[:4] + ["AB"] + words[5:])
        self.assertEqual(self.fails("\n".join(lines)), "model.pdb:61: this atom cannot be read: Not a single character: AB; "
                         "fix the file there, or fetch it again")
        self.assertIn("not valid CIF: ", self.fails(cif + "'open\n"))
        models = made.pdb([("A", chain())], [("A", chain())]).split("\n")
        self.assertIn("ends within a model", self.fails("\n".join(models[:200]) + "\n"))

    def test_coordinates_that_are_no_numbers(self):
        lines = made.pdb([("A", chain(cis=[17]))]).split("\n")
        at = next(i for i, line in enumerate(lines) if " CA  PRO A  17 " in line)
        lines[at] = lines[at][:30] + "     nan     nan     nan" + lines[at][54:]
        rows = self.rows("\n".join(lines))
        self.assertIn("coordinates that are not numbers; atoms not used: residue PRO 17 of chain A, line %d" % (at + 1),
                      self.stderr)
        self.assertEqual(rows["17"]["verdict"], "not in the structure")
        every = [line[:30] + "     nan     nan     nan" + line[54:] if line.startswith("ATOM") else line for line in lines]
        self.assertIn("no residue of a protein can be used", self.fails("\n".join(every)))
        cif = made.mmcif([("A", chain(cis=[17]))]).split("\n")
        cif = [" ".join(line.split()[:9] + ["nan", "?", "."] + line.split()[12:]) if " CA . PRO A 17 " in line else line
               for line in cif]
        rows = self.rows("\n".join(cif))
        self.assertIn("residue PRO 17 of chain A", self.stderr)
        self.assertEqual(rows["17"]["verdict"], "not in the structure")

    def test_atoms_on_one_point_are_no_bond(self):
        lines = [line[:30] + "   0.000   0.000   0.000" + line[54:] if line.startswith("ATOM") else line
                 for line in made.pdb([("A", chain())]).split("\n")]
        self.assertEqual(set(self.verdicts("\n".join(lines)).values()), {"not in the structure"})

    def test_columns_out_of_place(self):
        lines = made.pdb([("A", chain())]).split("\n")
        lines[3] = lines[3].replace("A   2", "A   2 x")
        self.assertIn("model.pdb:4: columns 31 to 54 do not hold three coordinates", self.fails("\n".join(lines)))

    def test_too_large(self):
        path = self.put("model.pdb", "")
        os.truncate(path, 300 * 2**20)
        result = self.run_kit("shifts.tab", "--structure", "model.pdb")
        self.assertEqual(result.returncode, 1)
        self.assertIn("is larger than 256 MiB", result.stderr)
        self.assertNotIn("shifts only", result.stderr)

    def test_a_bad_structure_leaves_no_output(self):
        self.put("good.pdb", made.pdb([("A", chain())]))
        self.put("bad.pdb", "hello\n")
        result = self.run_kit("--output", "out.tab", "shifts.tab", "--structure", "good.pdb", "bad.pdb")
        self.assertEqual((result.returncode, os.path.exists(self.path("out.tab"))), (1, False))


class RealStructures(Case):
    """Nuclease (1STN, proline 117 cis) and ubiquitin as X-ray structure (1UBQ) and as ensemble (1D3Z, backbone)."""

    def rows_of(self, shift_file, *models):
        result = program.run("--format", "csv", shift_file, "--structure", *models, tables=program.TABLES)
        return program.csv_rows(result.stdout)

    def test_nuclease(self):
        rows = self.rows_of(EXAMPLES / "nuclease.tab", EXAMPLES / "nuclease.pdb.gz")
        self.assertEqual([(row["resid"], row["structure_resid"], row["structure"]) for row in rows],
                         [(resid, resid, "cis" if resid == "117" else "trans") for resid in "11 31 42 47 117".split()])
        self.assertEqual({row["verdict"] for row in rows}, {"agree"})

    def test_ubiquitin(self):
        rows = self.rows_of(EXAMPLES / "ubiquitin.tab", EXAMPLES / "ubiquitin.pdb.gz", ENSEMBLE)
        self.assertEqual([(row["resid"], row["models_trans"], row["verdict"]) for row in rows],
                         [(resid, "11", "agree") for resid in ("19", "37", "38")])


class Document(Case):
    def test_names_every_verdict(self):
        document = (program.SOURCE / "doc" / "structures.md").read_text(encoding="utf-8")
        proline = json.loads(program.SCHEMA.read_text(encoding="utf-8"))["$defs"]["proline"]["properties"]
        for name in proline["verdict"]["enum"]:
            self.assertIn("\n| `%s`" % name, document)

"""zorvela-kit run as a whole program: streams, exit statuses, formats, order, interruption, terminals."""
import contextlib
import gzip
import json
import math
import os
import pathlib
import pty
import select
import shutil
import signal
import subprocess
import time

import jsonschema

from zorvela_tests import folder, program

CIS = {(2, "CB"): 34.0, (2, "CG"): 24.0}    # on the cis side of both means: +4 ppm from random coil, CG of cis
TRANS = {(2, "CB"): 30.0, (2, "CG"): 27.0}  # on the means of trans
HEADER = ",".join(program.COLUMNS)


class InFolder(folder.InFolder):
    def cis(self, name="cis.tab"):
        return self.put(name, program.full_table("APK", CIS))

    def trans(self, name="trans.tab"):
        return self.put(name, program.full_table("APK", TRANS))


class Formats(InFolder):
    def test_csv(self):
        result = program.run("--format", "csv", self.cis())
        self.assertEqual(result.stderr, "")
        self.assertEqual(result.stdout.split("\n")[0], HEADER)
        (row,) = program.csv_rows(result.stdout)
        expected = {"file": self.path("cis.tab"), "chain": "", "resid": "2", "position": "2",
                    "prev": "A", "next": "K", "cs_cnt_prev": "6", "cs_cnt": "4", "cs_cnt_next": "6", "cg_shift": "24",
                    "call": "cis", "reason": "", "to_correct": ""}
        self.assertEqual({name: row[name] for name in expected}, expected)
        # CB: +4 is 2 ppm from cis and 4 from trans; CG: 0 and 3: odds exp(6 + 4.5).
        odds = 36315.502674
        self.assertAlmostEqual(float(row["p_cis"]), odds / (1 + odds), delta=1e-6)
        self.assertAlmostEqual(float(row["p_cis_norm"]), odds / 19 / (1 + odds / 19), delta=1e-6)

    def test_json_follows_its_schema(self):
        with open(program.SCHEMA, encoding="utf-8") as file:
            schema = json.load(file)
        jsonschema.Draft202012Validator.check_schema(schema)
        far_off = self.put("x.tab", program.full_table("APK", {(2, "CG"): 500}))
        ends = self.put("ends.tab", program.full_table("PAP") + "\n")
        bare = self.put("bare.tab", program.shift_table("APA", [(1, "CA", 53.0)]))
        result = program.run("--format", "json", self.cis(), far_off, ends, bare, "missing.tab")
        document = json.loads(result.stdout)
        jsonschema.Draft202012Validator(schema).validate(document)
        self.assertEqual([p["reason"] for protein in document["proteins"] for p in protein["prolines"]],
                         [None, "neither class fits", "first residue", "last residue", "too few shifts"])
        self.assertEqual([e["file"] for e in document["errors"]], ["missing.tab"])
        self.assertEqual(document["tables"], str(program.MADE_TABLES))

    def test_the_schema_refuses_what_is_wrong(self):
        with open(program.SCHEMA, encoding="utf-8") as file:
            validator = jsonschema.Draft202012Validator(json.load(file))
        document = json.loads(program.run("--format", "json", self.cis()).stdout)
        self.assertTrue(validator.is_valid(document))
        for change in ({"call": "maybe"}, {"p_cis": 1.5}, {"p_cis": None}, {"reason": "too few shifts"}, {"resid": 2},
                       {"cs_cnt": 7}, {"extra": 1}):
            with self.subTest(change=change):
                wrong = json.loads(json.dumps(document))
                wrong["proteins"][0]["prolines"][0].update(change)
                self.assertFalse(validator.is_valid(wrong))


class ShiftFiles(InFolder):
    """Other files than shift tables; how each format is read is tested beside its reader."""

    TWO_CHAINS = "chain,resid,resname,atom,shift\n" + "".join(
        "%s,%d,%s,%s,%s\n" % (chain, resid + start, {"A": "ALA", "P": "PRO", "K": "LYS"}["APK"[resid - 1]], atom, shift)
        for chain, start in (("A", 100), ("B", 0))
        for resid in (1, 2, 3) for _, atom, shift in program.full_residue("APK", resid))

    def test_an_nmr_star_file_gives_the_same_as_the_shift_table(self):
        star = program.SOURCE / "examples" / "nuclease.str"
        with open(star, "rb") as file:
            packed = self.path("no_ending")
            with gzip.open(packed, "wb") as out:
                out.write(file.read())
        table = program.SOURCE / "examples" / "nuclease.tab"
        expected, plain, unpacked = program.proteins(table, star, packed)
        for protein in (plain, unpacked):
            self.assertEqual(protein["prolines"], expected["prolines"])
            self.assertEqual(protein["referencing"], expected["referencing"])
            self.assertEqual(protein["length"], expected["length"])

    def test_every_chain_is_predicted_in_its_own_numbering(self):
        file = self.put("two.csv", self.TWO_CHAINS)
        rows = program.csv_rows(program.run("--format", "csv", file).stdout)
        self.assertEqual([(r["chain"], r["resid"], r["position"], r["cs_cnt_prev"], r["cs_cnt"], r["call"])
                          for r in rows], [("A", "102", "2", "6", "4", "trans"), ("B", "2", "2", "6", "4", "trans")])
        self.assertAlmostEqual(float(rows[0]["p_cis"]), 1 / (1 + math.exp(2)), delta=1e-6)  # CB on the mean of trans

    def test_other_atoms_are_said_in_json_alone(self):
        file = self.put("side_chain.csv", "resid,resname,atom,shift\n1,ALA,CA,52\n2,PRO,CA,63\n2,PRO,CD,50\n")
        result = program.run("--format", "json", file)
        self.assertEqual(json.loads(result.stdout)["proteins"][0]["notes"][1:],
                         ["1 shift of other atoms (side chain and the like) not needed"])
        self.assertEqual(result.stderr.count("note:"), 1)
        self.assertNotIn("not needed", result.stderr)

    def test_of_many_notes_five_are_said(self):
        rows = self.TWO_CHAINS + "".join("A,101,ALA,%s,1.5\n" % atom for atom in ("N", "HN", "HA", "C", "CA", "CB"))
        file = self.put("many.csv", rows)
        result = program.run("--format", "json", "--chain", "A", file)
        (protein,) = json.loads(result.stdout)["proteins"]
        notes = protein["notes"]
        self.assertGreater(len(notes), 6)
        start = "zorvela-kit: note: %s, chain A: " % file
        self.assertEqual(result.stderr.splitlines(),
                         [start + note for note in notes[:5]] +
                         ["zorvela-kit: note: %s: %d more notes; run --format json has them all" % (file, len(notes) - 5)])


class Errors(InFolder):
    def test_one_bad_file_does_not_stop_the_others(self):
        bad = self.put("bad.tab", "nothing here\n")
        for fmt in ("table", "csv", "json"):
            with self.subTest(format=fmt):
                result = program.run("--format", fmt, self.cis(), bad, "none.tab", self.trans())
                self.assertEqual(result.returncode, 1)
                lines = result.stderr.splitlines()
                self.assertEqual(len(lines), 3)
                self.assertTrue(lines[0].startswith("zorvela-kit: " + bad + ":1: "), lines)
                self.assertTrue(lines[1].startswith("zorvela-kit: none.tab: "), lines)
                self.assertEqual(lines[2], "zorvela-kit: 2 of 4 files could not be predicted")
                messages = [line[len("zorvela-kit: "):] for line in lines[:2]]
                if fmt == "table":
                    self.assertIn("\nNot predicted\n   %s\n   %s\n" % tuple(messages), result.stdout)
                    self.assertIn("2 prolines in 2 chains of 2 files", result.stdout)
                elif fmt == "csv":
                    rows = program.csv_rows(result.stdout)
                    self.assertEqual([row["call"] for row in rows], ["cis", "trans", "error", "error"])
                    self.assertEqual([row["reason"] for row in rows[2:]], messages)
                    self.assertTrue(all(len(row) == len(program.COLUMNS) and None not in row.values() for row in rows))
                else:
                    self.assertEqual([e["message"] for e in json.loads(result.stdout)["errors"]], messages)

    def test_missing_tables_are_one_line_with_a_remedy(self):
        result = program.run(self.cis(), tables=self.path("none"))
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, "")
        self.assertEqual(result.stderr, "zorvela-kit: %s/none: there is no such folder; name the folder of the seven "
                         "reference tables with --tables or its parent with ZORVELA_DIR\n" % self.folder)

    def test_tables_are_found_in_the_main_directory_or_the_working_directory(self):
        file = self.cis()
        os.symlink(program.MADE_TABLES, self.path("tab"))
        by_variable = program.kit("run", "--format", "json", file, env=program.environment(ZORVELA_DIR=self.folder))
        self.assertEqual(json.loads(by_variable.stdout)["tables"], self.folder + "/tab")
        here = program.kit("run", "--format", "json", file, cwd=self.folder)
        self.assertEqual(json.loads(here.stdout)["tables"], "./tab")

    def test_an_installed_program_finds_its_tables(self):
        file = self.cis()
        os.makedirs(self.path("bin"))
        shutil.copy(program.KIT, os.path.join(self.folder, "bin", "zorvela-kit"))
        installed = pathlib.Path(self.folder, "share", "zorvela", "tab")
        shutil.copytree(os.path.join(program.SOURCE, "tab"), installed)

        def run():
            return subprocess.run([os.path.join(self.folder, "bin", "zorvela-kit"), "run", "--format", "json", file],
                                  cwd="/", env=program.environment(), capture_output=True, check=False, timeout=60)

        result = run()
        self.assertEqual(result.returncode, 0)
        report = json.loads(result.stdout)
        self.assertEqual(os.path.realpath(report["tables"]), os.path.realpath(installed))
        previous = (installed / "rcprev.tab").read_bytes()
        (installed / "rcprev.tab").write_bytes((installed / "rcnext.tab").read_bytes())
        (installed / "rcnext.tab").write_bytes(previous)
        result = run()
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b") are not those of this program (%s); install it again" %
                      report["tables_fingerprint"].encode(), result.stderr)

    def test_no_file_and_no_job_are_usage_errors(self):
        for arguments in ([], ["--jobs", "0", "a"], ["--jobs", "-1", "a"], ["--jobs", "two", "a"], ["--bogus", "a"]):
            with self.subTest(arguments=arguments):
                result = program.kit("run", *arguments)
                self.assertNotEqual(result.returncode, 0)
                self.assertEqual(result.stdout, "")
                self.assertIn("--help", result.stderr)

    def test_flag_of_the_file_that_differs_is_a_warning(self):
        """Full shifts of trans prolines in NEF; the file calls the first cis, the second trans, the third nothing."""
        sequence = "APKAPKAPK"
        names = {"A": "ALA", "P": "PRO", "K": "LYS"}
        flags = {2: "true", 5: "false"}
        text = "data_x loop_ _nef_sequence.chain_code _nef_sequence.sequence_code _nef_sequence.residue_name "
        text += "_nef_sequence.cis_peptide\n"
        rows = ("stop_ loop_ _nef_chemical_shift.chain_code _nef_chemical_shift.sequence_code "
                "_nef_chemical_shift.residue_name _nef_chemical_shift.atom_name _nef_chemical_shift.value\n")
        for resid, letter in enumerate(sequence, 1):
            text += "A %d %s %s\n" % (resid, names[letter], flags.get(resid, "."))
            shifts = {atom: shift for _, atom, shift in program.full_residue(sequence, resid)}
            if letter == "P":
                shifts.update({atom: shift for (_, atom), shift in TRANS.items()})
            rows += "".join("A %d %s %s %.3f\n" % (resid, names[letter], *item) for item in shifts.items())
        self.put("flags.nef", text + rows)
        result = program.run("--format", "csv", "flags.nef", cwd=self.folder)
        self.assertEqual([(row["resid"], row["call"], row["cis_flag"]) for row in program.csv_rows(result.stdout)],
                         [("2", "trans", "yes"), ("5", "trans", "no"), ("8", "trans", "")])
        self.assertEqual([line for line in result.stderr.splitlines() if "marked" in line],
                         ["zorvela-kit: warning: flags.nef, chain A: P2 is marked cis in the file but predicted trans "
                          "(0.000)"])
        result = program.run("--format", "json", "flags.nef", cwd=self.folder)
        protein = json.loads(result.stdout)["proteins"][0]
        self.assertEqual([p["cis_flag"] for p in protein["prolines"]], [True, False, None])
        self.assertEqual(protein["warnings"], ["P2 is marked cis in the file but predicted trans (0.000)"])

    def off(self, carbon):
        """32 residues without secondary shifts, except ppm added to CA and CB."""
        sequence = "A" * 30 + "PA"
        shifts = [(resid, atom, shift + (carbon if atom in ("CA", "CB") else 0))
                  for resid in range(1, 33) for _, atom, shift in program.full_residue(sequence, resid)]
        cg = 27.0 + carbon
        return self.put("off%g.tab" % carbon, program.shift_table(sequence, [*shifts, (31, "CG", cg)]))

    # Where CA - CB is 0, CA is at -0.090 ppm in chains without an offset, within 0.620 ppm for a residue
    # and 0.090 ppm for a chain.
    OFFSET = -3 + 0.090
    ERROR = math.sqrt((1.2533 * 0.620) ** 2 / 32 + 0.090 ** 2)

    def test_referencing_that_calls_for_a_correction_is_a_warning(self):
        file = self.off(-3)
        result = program.run("--as-referenced", "--format", "csv", file)
        self.assertEqual(result.returncode, 0)
        (row,) = program.csv_rows(result.stdout)
        self.assertEqual(row["to_correct"], "CA CB")
        self.assertEqual([row["corrected_" + atom] for atom in ("ca", "cb", "ha", "c")], ["", "", "", ""])
        self.assertAlmostEqual(float(row["offset_ca"]), self.OFFSET, delta=1e-5)
        self.assertEqual(row["offset_cb"], row["offset_ca"])
        self.assertEqual(result.stderr.splitlines(), [
            "zorvela-kit: warning: %s: %s shifts seem 2.91 ppm too low (error %.2f ppm, 32 residues) and "
            "are not corrected" % (file, atom, self.ERROR) for atom in ("CA", "CB")])
        self.assertRegex(program.run("--as-referenced", file).stdout,
                         r"; ! a correction is recommended\n.*\n   \S+tab +- +32 +[0-9]+ +-2\.910! +-2\.910! +-0")

    def test_a_certain_referencing_offset_is_taken_away(self):
        file = self.off(-3)
        result = program.run("--format", "json", file)
        note = "13C is 2.91 ppm too low; corrected before predicting (--as-referenced keeps it)"
        self.assertEqual(result.stderr, "zorvela-kit: note: %s: %s\n" % (file, note))
        (protein,) = json.loads(result.stdout)["proteins"]
        self.assertEqual(protein["notes"], [note])
        ca, cb, ha, c = protein["referencing"]
        for offset in (ca, cb):
            self.assertAlmostEqual(offset["corrected_by"], self.OFFSET, delta=1e-5)
            self.assertAlmostEqual(offset["error"], self.ERROR, delta=1e-5)
            self.assertEqual(offset["residues"], 32)
        self.assertEqual([ha["corrected_by"], c["corrected_by"]], [None, None])
        self.assertEqual(protein["prolines"][0]["cg_shift"], 24)  # as observed
        # What is left is 0.090 ppm too low. Deviations of 1 ppm (CB 1.5): cis means CB +2, CG 24; trans CB 0, CG 27.
        plain = json.loads(program.run("--format", "json", self.off(-0.090)).stdout)["proteins"][0]
        self.assertAlmostEqual(protein["prolines"][0]["p_cis"], plain["prolines"][0]["p_cis"], delta=1e-4)
        kept = json.loads(program.run("--as-referenced", "--format", "json", file).stdout)["proteins"][0]["prolines"][0]
        self.assertNotAlmostEqual(protein["prolines"][0]["p_cis"], kept["p_cis"], delta=0.05)
        self.assertEqual(protein["prolines"][0]["p_cis_norm_as_referenced"], kept["p_cis_norm"])
        self.assertEqual(protein["prolines"][0]["call_as_referenced"], kept["call"])
        self.assertNotIn("call_as_referenced", kept)
        cb = protein["prolines"][0]["evidence"]["shifts"]["CB"]
        self.assertEqual(cb["observed"], kept["evidence"]["shifts"]["CB"]["observed"])
        self.assertAlmostEqual(cb["corrected"], cb["observed"] - self.OFFSET, delta=1e-4)
        table = program.run(file)
        self.assertEqual(table.stdout.splitlines()[0], note)
        self.assertIn("; ! subtracted before predicting\n", table.stdout)
        self.assertEqual(table.stderr, "")  # a terminal would show it twice
        saved = program.run(file, "--output", self.path("saved.txt"))
        self.assertEqual(saved.stderr, "zorvela-kit: note: %s: %s\n" % (file, note))

    def test_import_writes_corrected_shifts_with_a_remark(self):
        file = self.off(-3)
        table = program.kit("import", "--rereference", "--tables", program.MADE_TABLES, file).stdout
        self.assertIn("REMARK Corrected: 2.91 ppm added to CA, CB and CG of proline\n", table)
        again = json.loads(program.run("--format", "json", self.put("again.tab", table)).stdout)["proteins"][0]
        first = json.loads(program.run("--format", "json", file).stdout)["proteins"][0]
        self.assertEqual([o["corrected_by"] for o in again["referencing"]], [None] * 4)
        self.assertAlmostEqual(again["prolines"][0]["p_cis"], first["prolines"][0]["p_cis"], delta=1e-3)

    REMARK = "REMARK Deuterated: 100 % of the hydrogens on carbon\n"
    NOTE = "carbon is deuterated (100 %), which lowers it; corrected before predicting (--as-referenced keeps it)"
    # 1, 3 and 0 deuterons one, two and three bonds away from CA of A: 0.29 + 3 x 0.13 ppm; and so on.
    LOWER = {("A", "CA"): 0.68, ("A", "CB"): 1.00, ("P", "CA"): 0.69, ("P", "CB"): 1.11, ("P", "CG"): 1.17}

    def deuterated(self, name, remark):
        """The shifts of off(0) as they are in a deuterated protein."""
        rows = []
        for line in pathlib.Path(self.off(0)).read_text(encoding="ascii").splitlines():
            words = line.split()
            lower = self.LOWER.get((words[1], words[2])) if len(words) == 4 else None
            rows.append(line if lower is None else f"{words[0]:>4} {words[1]} {words[2]:>4} {float(words[3]) - lower:8.3f}")
        return self.put(name, remark + "\n".join(rows) + "\n")

    def test_deuterated_proteins(self):
        stated = self.deuterated("stated.tab", self.REMARK)
        silent = self.deuterated("silent.tab", "")

        def results(*arguments):
            protein = json.loads(program.run("--format", "json", *arguments).stdout)["proteins"][0]
            return protein.get("deuteration"), protein["prolines"][0]["p_cis_norm"]

        protonated = results(self.off(0))
        self.assertEqual(program.run(stated).stdout.splitlines()[0], self.NOTE)
        for arguments in ((stated,), (silent, "--deuterated"), (silent, "--deuterated", "--as-referenced")):
            self.assertEqual(results(*arguments), (1, protonated[1]), arguments)
        kept = results(silent, "--as-referenced")
        self.assertGreater(kept[1], 2 * protonated[1])
        self.assertEqual(results(stated, "--as-referenced"), kept)
        self.assertEqual(results(stated, "--protonated"), results(silent))
        both = program.run(stated, "--deuterated", "--protonated")
        self.assertNotEqual(both.returncode, 0)
        self.assertIn("--protonated", both.stderr)

    def test_import_of_deuterated_proteins(self):
        stated = self.deuterated("stated.tab", self.REMARK)
        silent = self.deuterated("silent.tab", "")
        self.assertIn(self.REMARK, program.kit("import", stated).stdout)
        remark = "REMARK Corrected: isotope shifts of deuterium (100 %) subtracted from CA, CB and CG of proline\n"
        for arguments in (("--rereference", stated), ("--deuterated", silent)):
            table = program.kit("import", "--tables", program.MADE_TABLES, *arguments).stdout
            self.assertIn(remark, table)
            self.assertNotIn(self.REMARK, table)
            self.assertIn("\n  31 P   CB    30.000\n", table)

    def test_without_an_offset_the_option_changes_nothing(self):
        file = self.off(-0.5)  # certain, but too small to matter
        for form in ("csv", "json", "table"):
            plain = program.run("--format", form, file)
            self.assertEqual(program.run("--as-referenced", "--format", form, file).stdout, plain.stdout)
            self.assertEqual(plain.stderr, "")

    def test_a_wrong_residue_moves_no_offset_and_is_named(self):
        with open(program.SOURCE / "examples" / "nuclease.tab", encoding="ascii") as file:
            text = file.read()
        self.assertIn("\n   1 A   CA    51.800\n   1 A   CB    19.370\n", text)
        wrong = self.put("wrong.tab", text.replace("   1 A   CA    51.800\n   1 A   CB    19.370\n",
                                                   "   1 A   CA    73.500\n   1 A   CB    76.000\n"))
        without = self.put("without.tab", text.replace("   1 A   CA    51.800\n   1 A   CB    19.370\n", ""))
        first, second = program.proteins(wrong, without)
        self.assertEqual(first["referencing"], second["referencing"])
        self.assertIn("out of range for the residue type, so check the assignment; used all the same: "
                      "CA of A1 at 73.500 ppm (44.8 to 61.0), CB of A1 at 76.000 ppm (10.9 to 30.0)", first["notes"])


class Jobs(InFolder):
    def test_results_and_order_do_not_depend_on_the_number_of_jobs(self):
        files = []
        for i in range(60):
            sequence = "AKPA" * (1 + (i * 7) % 40) + "PK"  # long and short in turn
            files.append(self.put("f%02d.tab" % i, program.full_table(sequence)))
            if i % 10 == 5:
                files.append(self.put("bad%02d.tab" % i, "no table\n"))
        for fmt in ("csv", "json", "table"):
            results = [program.run("--jobs", jobs, "--format", fmt, *files) for jobs in (1, 2, 8)]
            self.assertEqual([r.returncode for r in results], [1, 1, 1])
            self.assertEqual(results[0].stdout, results[1].stdout)
            self.assertEqual(results[0].stdout, results[2].stdout)
            self.assertEqual(results[0].stderr, results[2].stderr)
            if fmt == "csv":
                rows = program.csv_rows(results[0].stdout)
                order = list(dict.fromkeys(row["file"] for row in rows))
                good, bad = ([f for f in files if ("bad" in f) == is_bad] for is_bad in (False, True))
                self.assertEqual(order, good + bad)


class Output(InFolder):
    def test_a_file_holds_what_standard_output_would(self):
        file = self.cis()
        for fmt in ("table", "csv", "json"):
            out = os.path.join(self.folder, "out." + fmt)
            result = program.run("--format", fmt, "--output", out, file)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
            self.assertEqual(self.read("out." + fmt), program.run("--format", fmt, file).stdout)
        self.assertEqual(sorted(os.listdir(self.folder)), ["cis.tab", "out.csv", "out.json", "out.table"])

    def test_a_closed_pipe_ends_the_run_quietly(self):
        for ignored in (False, True):
            with self.subTest(ignored=ignored):
                reader, writer = os.pipe()
                os.close(reader)
                result = program.run(self.cis(), stdout=writer,
                                     preexec_fn=(lambda: signal.signal(signal.SIGPIPE, signal.SIG_IGN)) if ignored
                                     else None)
                os.close(writer)
                if ignored:
                    self.assertEqual((result.returncode, result.stderr),
                                     (1, "zorvela-kit: standard output: cannot be written: Broken pipe; choose another "
                                      "place with --output, or free disk space\n"))
                else:
                    self.assertEqual((result.returncode, result.stderr), (-signal.SIGPIPE, ""))

    def test_closed_standard_streams_do_not_end_up_in_the_output(self):
        out = self.path("out.csv")
        result = program.kit("run", "--tables", program.MADE_TABLES, "--format", "csv", "--output", out, self.cis(),
                             "none.tab", preexec_fn=lambda: os.closerange(0, 3))
        self.assertEqual(result.returncode, 1)
        self.assertEqual([row["call"] for row in program.csv_rows(self.read("out.csv"))], ["cis", "error"])

    def test_closed_standard_output_is_an_error(self):
        result = program.run(self.cis(), preexec_fn=lambda: os.close(1))
        self.assertEqual((result.returncode, result.stderr),
                         (1, "zorvela-kit: standard output: cannot be written: Bad file descriptor; choose another "
                          "place with --output, or free disk space\n"))


class Waiting:
    """A run that has done everything but standard input, which is held open."""

    def __init__(self, *arguments, **options):
        options.setdefault("env", program.environment())
        options.setdefault("stdout", subprocess.PIPE)
        options.setdefault("stderr", subprocess.PIPE)
        self.process = subprocess.Popen([program.KIT, "run", "--tables", str(program.MADE_TABLES),
                                         *map(str, arguments), "-"], stdin=subprocess.PIPE, **options)

    def until_reading(self):
        """Waits until the program sleeps in a read of standard input (a pipe)."""
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline:
            for task in os.listdir("/proc/%d/task" % self.process.pid):
                with contextlib.suppress(OSError), open(
                        "/proc/%d/task/%s/wchan" % (self.process.pid, task), encoding="ascii") as wchan:
                    if "pipe" in wchan.read():
                        return
            if self.process.poll() is not None:
                return
            time.sleep(0.02)
            if deadline - time.monotonic() < 59:  # no wchan on this system: a second must do
                return


class StandardInput(InFolder):
    def test_standard_input_is_a_file_like_any_other(self):
        result = program.run("--format", "csv", "-", input=program.full_table("APK", CIS))
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        (row,) = program.csv_rows(result.stdout)
        self.assertEqual((row["file"], row["call"]), ("-", "cis"))


def open_terminal(test):
    """A pseudo-terminal; the test is skipped where the system gives none (a bare chroot)."""
    try:
        return pty.openpty()
    except OSError as reason:
        return test.skipTest("no pseudo-terminal: %s" % reason)


class Terminal(InFolder):
    """Runs with standard output, or standard error, on a pseudo-terminal."""

    def on_terminal(self, *arguments, env):
        master, slave = open_terminal(self)
        process = subprocess.Popen([program.KIT, "run", "--tables", str(program.MADE_TABLES), *map(str, arguments)],
                                   stdin=subprocess.DEVNULL, stdout=slave, stderr=subprocess.PIPE, env=env)
        os.close(slave)
        text = read_terminal(master)
        _, stderr = process.communicate(timeout=60)
        self.assertEqual((process.returncode, stderr), (0, b""))
        return text

    def test_cis_rows_are_coloured_on_a_terminal(self):
        text = self.on_terminal(self.cis(), self.trans(), env=program.environment(TERM="xterm"))
        coloured = [line for line in text.splitlines() if "\033" in line]
        self.assertEqual(len(coloured), 1)
        self.assertTrue(coloured[0].startswith("\033[1;35m*  ") and coloured[0].endswith("cis\033[0m"), coloured)

    def test_no_colour_where_it_is_not_wanted_or_not_understood(self):
        plain = program.run(self.cis()).stdout
        self.assertNotIn("\033", plain)
        for env in ({"TERM": "xterm", "NO_COLOR": "1"}, {"TERM": "dumb"}, {}):
            with self.subTest(env=env):
                self.assertEqual(self.on_terminal(self.cis(), env=program.environment(**env)), plain)

    def test_an_empty_no_color_does_not_count(self):
        self.assertIn("\033[1;35m", self.on_terminal(self.cis(), env=program.environment(TERM="xterm", NO_COLOR="")))

    def test_csv_and_json_are_never_coloured(self):
        for fmt in ("csv", "json"):
            text = self.on_terminal("--format", fmt, self.cis(), env=program.environment(TERM="xterm"))
            self.assertNotIn("\033", text)

    def progress(self, term, wait):
        master, slave = open_terminal(self)
        run = Waiting("--jobs", "1", self.cis(), stderr=slave, env=program.environment(TERM=term))
        os.close(slave)
        if wait > 0:
            run.until_reading()
        time.sleep(wait)
        stdout, _ = run.process.communicate(program.full_table("APK", CIS).encode(), timeout=60)
        self.assertEqual(run.process.returncode, 0)
        self.assertIn(b"2 prolines in 2 chains of 2 files", stdout)
        return read_terminal(master)

    def test_work_above_a_second_has_a_progress_bar_that_goes_away(self):
        text = self.progress("xterm", 1.1)
        self.assertEqual(text, "\rPredicting 2/2\033[K\r\033[K")

    def test_short_work_and_plain_terminals_have_none(self):
        # A machine under load may take a second even for this; not three times.
        self.assertIn("", [self.progress("xterm", 0) for _ in range(3)])
        self.assertEqual(self.progress("dumb", 1.1), "")


def read_terminal(master):
    """All that is written to a pseudo-terminal until its other side is closed, line ends as written."""
    parts = []
    while True:
        ready, _, _ = select.select([master], [], [], 60)
        if not ready:
            break
        try:
            part = os.read(master, 65536)
        except OSError:
            break
        if not part:
            break
        parts.append(part)
    os.close(master)
    return b"".join(parts).decode().replace("\r\n", "\n")

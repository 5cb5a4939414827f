"""zorvela-kit annotate: flags of decided prolines in a NEF file, and not a byte besides."""
import gzip
import os
import re

from zorvela_tests import folder, program

THREE = {"A": "ALA", "G": "GLY", "K": "LYS", "P": "PRO", "T": "THR"}
SEQUENCE = "GAPKGAPKGAPKT"
# Proline 3: on the cis side of the made tables; 7: on the means of trans; 11: no CG, CB at odds of 4.75, a quarter of the 19 for trans: undecided.
SHIFTS = {3: {"CB": 34.0, "CG": 24.0}, 7: {"CB": 30.0, "CG": 27.0}, 11: {"CB": 31.78}}


def nef(flags=None, linked="middle", break_line="\n", last=""):
    """A NEF file; flags: {residue: text} for a file with the column."""
    rows = []
    for number, letter in enumerate(SEQUENCE, 1):
        flag = "" if flags is None else "   " + flags.get(number, ".")
        rows.append("     %2d  A  %-3d %s  %s  .%s  # residue %d" % (number, number + 100, THREE[letter], linked, flag, number))
    shifts = []
    for number, letter in enumerate(SEQUENCE, 1):
        atoms = {"HA": 4.0, "C": 175.0, "CA": 53.0 if SEQUENCE[number:number + 1] == "P" else 55.0, "CB": 30.0}
        if letter != "P":
            atoms.update({"N": 120.0, "H": 8.0})
        if letter == "G":
            atoms["HA2"] = atoms["HA3"] = atoms.pop("HA")
            atoms.pop("CB")
        atoms.update(SHIFTS.get(number, {}))
        shifts += ["      A %d %s %s %.3f" % (number + 100, THREE[letter], atom, value) for atom, value in atoms.items()]
    tags = ["index", "chain_code", "sequence_code", "residue_name", "linking", "residue_variant"]
    tags += [] if flags is None else ["cis_peptide"]
    lines = ["data_made  # a comment; with 'quotes", "save_nef_nmr_meta_data",
             "   _nef_nmr_meta_data.sf_category nef_nmr_meta_data", "   _nef_nmr_meta_data.format_version 1.1", "save_",
             "save_nef_molecular_system", "   loop_", *("      _nef_sequence." + tag for tag in tags), "", *rows, "   stop_",
             "save_", "save_nef_chemical_shift_list_x", "   loop_",
             *("      _nef_chemical_shift." + tag for tag in ("chain_code", "sequence_code", "residue_name", "atom_name", "value")),
             *shifts, "   stop_", "save_" + last]
    return break_line.join(lines) + break_line


class Annotate(folder.InFolder):
    def annotate(self, content, *options, name="in.nef", output="out.nef"):
        self.put(name, content)
        result = program.kit("annotate", "--tables", program.MADE_TABLES, name, "--output", output, *options,
                             cwd=self.folder)
        path = os.path.join(self.folder, output)
        self.output = None
        if os.path.isfile(path):
            with open(path, "rb") as file:
                self.output = file.read()
        return result

    def test_decided_prolines_alone_are_set(self):
        result = self.annotate(nef({}))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.output.decode(), nef({3: "true"}))
        self.assertIn("cis: P103; undecided, left open: P111; trans: 1", result.stderr)
        self.assertIn("1 flag written, 0 correct before", result.stderr)
        self.annotate(nef({}), "--trans")
        self.assertEqual(self.output.decode(), nef({3: "true", 7: "false"}))

    def test_a_second_run_changes_nothing(self):
        result = self.annotate(nef({3: "true", 7: "false"}))
        self.assertEqual(self.output.decode(), nef({3: "true", 7: "false"}))
        self.assertIn("0 flags written, 2 correct before", result.stderr)

    def test_a_flag_that_differs_is_noted_and_kept_or_replaced(self):
        flags = {3: "false", 7: "'true'", 11: "true"}
        result = self.annotate(nef(flags))
        self.assertEqual(self.output.decode(), nef(flags))
        self.assertIn("note: in.nef, chain A: cis_peptide of PRO 103 was false, the shifts predict cis; left as it was", result.stderr)
        self.assertIn("cis_peptide of PRO 107 was true, the shifts predict trans; left as it was", result.stderr)
        self.assertNotIn("PRO 111", result.stderr)
        for options, trans in (((), "."), (("--trans",), "false")):
            result = self.annotate(nef(flags), "--replace", *options)
            self.assertEqual(self.output.decode(), nef({3: "true", 7: trans, 11: "true"}))
            self.assertIn("was false, the shifts predict cis; replaced", result.stderr)

    def other_chain(self, text, name="B", first=501):
        """The text with a second chain of the same sequence, without shifts."""
        rows = [line for line in text.split("\n") if "# residue" in line]
        copies = [line.replace("  A  %-3d" % (i + 100), "  %s  %-3d" % (name, first - 1 + i)) for i, line in enumerate(rows, 1)]
        return text.replace(rows[-1], "\n".join([rows[-1], *copies]))

    def test_the_copies_of_a_homodimer_get_the_same_flags(self):
        result = self.annotate(self.other_chain(nef({})))
        self.assertEqual(self.output.decode(), self.other_chain(nef({3: "true"})))
        self.assertIn("note: in.nef, chain B: flags by the sequence, from in.nef, chain A", result.stderr)

    def test_shifts_of_another_file(self):
        bare = nef({}).split("save_nef_chemical_shift_list_x")[0]
        self.put("shifts.nef", nef().replace(" A ", " X "))
        self.assertEqual(self.annotate(bare).returncode, 1)
        result = self.annotate(bare, "--shifts", "shifts.nef")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.output.decode(), nef({3: "true"}).split("save_nef_chemical_shift_list_x")[0])
        self.assertIn("note: in.nef, chain A: flags by the sequence, from shifts.nef, chain X", result.stderr)
        self.put("tagged.tab", program.full_table("GSHM" + SEQUENCE, {(7, "CB"): 34.0, (7, "CG"): 24.0}))
        result = self.annotate(bare, "--shifts", "tagged.tab")
        self.assertEqual(self.output.decode(), nef({3: "true"}).split("save_nef_chemical_shift_list_x")[0])
        self.put("other.tab", program.full_table("MKLVWFYTREDPQHHW"))
        result = self.annotate(bare, "--shifts", "other.tab")
        self.assertEqual(result.returncode, 1)
        self.assertIn("in.nef: has no chain with the sequence of the shifts", result.stderr)

    def test_the_column_is_added(self):
        for line_end in ("\n", "\r\n"):
            text = nef(break_line=line_end)
            result = self.annotate(text)
            self.assertEqual(result.returncode, 0, result.stderr)
            expected = text.replace("residue_variant" + line_end,
                                    "residue_variant" + line_end + "      _nef_sequence.cis_peptide" + line_end)
            for number in range(1, len(SEQUENCE) + 1):
                expected = expected.replace("  .  # residue %d" % number + line_end, "  . %s  # residue %d%s" % (
                    {3: "true"}.get(number, "."), number, line_end))
            self.assertEqual(self.output.decode(), expected)

    def test_gzip_in_gives_gzip_out(self):
        self.annotate(gzip.compress(nef({}).encode()), name="in.nef.gz", output="out.nef.gz")
        self.assertEqual(gzip.decompress(self.output).decode(), nef({3: "true"}))

    def test_the_result_gives_the_same_shifts(self):
        self.annotate(nef(), "--trans")
        tables = [program.kit("import", name, "--output", "-", cwd=self.folder).stdout for name in ("in.nef", "out.nef")]
        rows = [re.sub(r"REMARK.*\n", "", table) for table in tables]
        self.assertIn("SHIFT", rows[0])
        self.assertEqual(rows[0], rows[1])
        runs = [program.csv_rows(program.run(name, "--format", "csv", cwd=self.folder).stdout)
                for name in ("in.nef", "out.nef")]
        self.assertEqual([row.pop("cis_flag") for row in runs[0]], ["", "", ""])
        self.assertEqual([row.pop("cis_flag") for row in runs[1]], ["yes", "no", ""])
        for row in runs[0] + runs[1]:
            row.pop("file")
        self.assertEqual(runs[0], runs[1])

    def test_standard_streams(self):
        result = program.kit("annotate", "--tables", program.MADE_TABLES, "-", "--output", "-", input=nef({}))
        self.assertEqual(result.stdout, nef({3: "true"}))

    def test_bad_input(self):
        cut = nef({}).replace("PRO  middle  .   .  # residue 3", "PRO  middle  .  # residue 3")
        result = self.annotate(cut)
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr, r"^zorvela-kit: in\.nef:[0-9]+: ")
        self.assertEqual(len(result.stderr.splitlines()), 1)
        self.assertIsNone(self.output)
        for name, content in (("x.tab", program.full_table("APK")), ("x.csv", "resid,resname,atom,shift\n1,ALA,CA,50\n"),
                              ("x.zip", b"PK\x03\x04"), ("empty.nef", "")):
            result = self.annotate(content, name=name)
            self.assertEqual(result.returncode, 1)
            self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
            self.assertIsNone(self.output)

    def test_a_miscounted_row_is_named_by_its_line(self):
        lines = nef({}).split("\n")
        third = next(i for i, line in enumerate(lines) if "# residue 3" in line)
        missing = lines[third].replace("middle", "")
        more = lines[third + 2].replace("middle", "middle 'x'")
        for changes, line, values in (({third: missing}, third, 6), ({third + 2: more}, third + 2, 8),
                                      ({third: missing, third + 2: more}, third, 6)):  # the one makes up for the other
            text = "\n".join(changes.get(i, line) for i, line in enumerate(lines))
            result = self.annotate(text)
            self.assertEqual((result.returncode, self.output), (1, None))
            self.assertEqual(result.stderr, "zorvela-kit: in.nef:%d: %d values for the 7 columns of _nef_sequence; give each "
                             "row one value for each column, or fetch the file again\n" % (line + 1, values))

    def test_input_is_not_replaced_and_a_full_disk_is_said(self):
        self.assertEqual(self.annotate(nef({}), output="in.nef").returncode, 1)
        self.assertEqual(self.output.decode(), nef({}))
        result = self.annotate(nef({}), output="/dev/full")
        self.assertEqual(result.returncode, 1)

"""Working files of assignment programs: the examples in every layout give the shifts of their tables."""
import csv
import io
import re

import layouts
from zorvela_tests import folder, program

PROTEINS = {file.stem: layouts.of_table(file.read_text()) for file in program.EXAMPLES}

# With a sequence beside them: (text, sequence).
NAMELESS = {
    "prot": lambda p: (layouts.xeasy(p), layouts.seq(p)),
    "prot and FASTA": lambda p: (layouts.xeasy(p), layouts.fasta(p)),
    "prot of a chain": lambda p: (layouts.xeasy(p, chain="A"), layouts.seq_of_chain(p)),
    "ppm.out": lambda p: (layouts.nmrview(p), layouts.seq_lower(p)),
    "ppm.out of a chain": lambda p: (layouts.nmrview(p, chain="A:", tab=True), layouts.seq_lower(p)),
    "CNS": lambda p: (layouts.cns(p), layouts.seq(p)),
    "columns": lambda p: (layouts.without_names(p), layouts.seq(p)),
    "shift table": lambda p: (layouts.shift_table(p), layouts.seq(p)),
}
NAMED = {
    "prot with names": lambda p: layouts.xeasy(p, names=True),
    "Sparky": layouts.sparky,
    "Sparky without header": lambda p: layouts.sparky(p, header=False),
    "Sparky, prolines from the next residue": lambda p: layouts.sparky(p, neighbours=True),
    "CcpNmr 3": layouts.ccpnmr3,
    "CcpNmr 3, tabs": lambda p: layouts.ccpnmr3(p, delimiter="\t"),
    "CcpNmr 3, NmrAtom alone": lambda p: layouts.ccpnmr3(p, hidden=True),
    "CcpNmr 3, older": lambda p: layouts.ccpnmr3(p, older=True),
    "NEF": layouts.nef,
    "CcpNmr 2 measurements": layouts.ccpnmr2_measurements,
    "CcpNmr 2 measurements, commas": lambda p: layouts.ccpnmr2_measurements(p, delimiter=","),
    "CcpNmr 2 table": layouts.ccpnmr2_table,
    "pynmrstar": layouts.star_csv,
    "database dump": layouts.database_dump,
    "data frame": layouts.frame_csv,
    "printed data frame": layouts.frame_printed,
    "NMR-STAR without entity": layouts.star_without_entity,
    "eight words": layouts.eight_words,
    "GARRET": layouts.garret,
    "PIPP": layouts.pipp,
    "ABACUS": layouts.abacus,
    "one row per residue": layouts.one_row_per_residue,
}

SOME_ATOMS = {"Rosetta": layouts.rosetta, "AutoAssign": layouts.autoassign}
# All as (text, sequence), None where the text has names.
EVERY = {**NAMELESS, **{layout: lambda p, write=write: (write(p), None) for layout, write in {**NAMED, **SOME_ATOMS}.items()}}


class Imports(folder.InFolder):
    """Runs the import, and compares what it gives."""

    def run_import(self, text, sequence=None):
        """Exit status, table and messages."""
        self.put("list", text)
        beside = []
        if sequence is not None:
            self.put("sequence", sequence)
            beside = ["--sequence", "sequence"]
        done = program.kit("import", "list", *beside, "-o", "-", cwd=self.folder)
        return done.returncode, done.stdout, done.stderr

    def imported(self, text, sequence=None):
        """The protein with the numbers of the file, and the messages."""
        status, out, err = self.run_import(text, sequence)
        self.assertEqual(status, 0, err)
        return self.as_in_the_file(out), err

    def as_in_the_file(self, table):
        numbers = re.findall(r"(?m)^REMARK Residue (\d+) here is residue (-?\d+) there$", table)
        self.assertEqual(len(numbers), 1, table[:300])
        return layouts.of_table(table).renumbered(int(numbers[0][1]) - int(numbers[0][0]))

    @staticmethod
    def rows(protein):
        return sorted((n, atom, float(value)) for n, atom, value in protein.shifts)

    def check(self, protein, found):
        """Value for value; residues without shifts may be open where no sequence was given."""
        self.assertEqual(self.rows(found), self.rows(protein))
        self.assertTrue(all(found.letters[n] == protein.letters[n] for n, _, _ in found.shifts))


class WorkingFiles(Imports):
    def test_lists_with_a_sequence_beside_them(self):
        for name, protein in PROTEINS.items():
            for layout, write in NAMELESS.items():
                with self.subTest(protein=name, layout=layout):
                    found, _ = self.imported(*write(protein))
                    self.check(protein, found)
                    first, last = min(protein.known()), max(protein.known())
                    self.assertEqual({n: found.letters[n] for n in range(first, last + 1)},
                                     {n: protein.letters[n] for n in range(first, last + 1)})

    def test_lists_with_names(self):
        for name, protein in PROTEINS.items():
            for layout, write in NAMED.items():
                with self.subTest(protein=name, layout=layout):
                    text = write(protein)
                    # Without a name of its own, a proline that only its neighbour shows needs the sequence.
                    found, _ = self.imported(text, layouts.seq(protein) if "next" in layout or "CcpNmr 3" in layout else None)
                    self.check(protein, found)

    def test_a_shift_table_with_a_sequence_of_its_own(self):
        for name, protein in PROTEINS.items():
            with self.subTest(protein=name):
                sequence = "DATA SEQUENCE %s\n" % "".join(protein.letters.values())
                status, out, err = self.run_import(layouts.shift_table(protein, sequence))
                self.assertEqual(status, 0, err)
                self.check(protein, layouts.of_table(out))
                self.assertNotIn("differ", err)

    def test_lists_without_some_atoms(self):
        for protein in PROTEINS.values():
            self.check(protein.only(lambda n, atom: atom in "C CA CB HA N".split()), self.imported(layouts.rosetta(protein))[0])
            found, _ = self.imported(layouts.autoassign(protein), layouts.seq(protein))
            self.check(layouts.seen_by_autoassign(protein), found)


class Mutations(Imports):
    """Faults of such files give an error or a note."""
    def setUp(self):
        super().setUp()
        self.protein = PROTEINS["nuclease"]

    def fails(self, text, sequence, message):
        status, out, err = self.run_import(text, sequence)
        self.assertEqual((status, out), (1, ""), err)
        self.assertIn(message, err)

    def test_another_sequence(self):
        for layout, write in EVERY.items():
            with self.subTest(layout=layout):
                sequence = write(PROTEINS["ubiquitin"])[1] or layouts.seq(PROTEINS["ubiquitin"])
                self.fails(write(self.protein)[0], sequence, "does not fit the sequence of sequence")

    def test_shifted_numbers(self):
        """The message has the number that fits."""
        for layout, write in EVERY.items():
            with self.subTest(layout=layout):
                self.fails(write(self.protein.renumbered(3))[0], write(self.protein)[1] or layouts.seq(self.protein),
                           "it fits with 4 as the number of the first residue; give --first-residue 4")

    def test_no_sequence(self):
        for layout, write in NAMELESS.items():
            with self.subTest(layout=layout):
                self.fails(write(self.protein)[0], None, "the rows have no residue names")

    def test_any_column_gone(self):
        """An error where the rest is not certain; elsewhere an error, or no other shifts than those that are left."""
        needed = {"prot": (0, 1, 2, 3, 4), "ppm.out": (0, 1), "CNS": (4, 8, 11), "Sparky": (0, 1, 3),
                  "Sparky without header": (0, 1, 2, 3), "eight words": (1, 2, 3, 5), "CcpNmr 3": (1, 4, 6),
                  "CcpNmr 3, NmrAtom alone": (3,), "pynmrstar": (4, 6), "database dump": (1, 3, 4), "data frame": (4,)}
        # One column of a CcpNmr 2 table is two words apart in the titles and the rows; STAR has no columns.
        for layout in sorted(set(EVERY) - {"CcpNmr 2 table", "NEF", "NMR-STAR without entity"}):
            text = EVERY[layout](self.protein)[0]
            sep = next((sep for sep in "\t," if text.count(sep) > len(self.protein.shifts)), None)
            table = list(csv.reader(io.StringIO(text), delimiter=sep)) if sep else [l.split() for l in text.splitlines()]
            for column in range(max(map(len, table[:30]))):
                cut = [row[:column] + row[column + 1:] for row in table if row]
                with self.subTest(layout=layout, column=column):
                    status, out, err = self.run_import(
                        layouts.written(cut, sep) if sep else "".join(" ".join(row) + "\n" for row in cut),
                        layouts.seq(self.protein))
                    if column in needed.get(layout, ()):
                        self.assertEqual((status, out), (1, ""), err)
                        self.assertRegex(err, "is not a known kind of shift file|the columns lack|name no residue with its atom")
                    elif status == 0:
                        self.assertLessEqual(set(self.rows(self.as_in_the_file(out))), set(self.rows(self.protein)))
                    else:
                        self.assertRegex(err, r"^zorvela-kit: list(:\d+)?: .+; .+\n$")

    def test_a_peak_list(self):
        for layout, text in layouts.PEAK_LISTS.items():
            with self.subTest(layout=layout):
                self.fails(text, layouts.seq(self.protein), "nef_nmr_spectrum" if layout == "NEF" else "is a peak list, not a shift file")

    def test_a_line_that_is_not_a_row(self):
        """It is named; the others are read."""
        for layout in ("prot", "ppm.out", "CNS"):
            text, sequence = NAMELESS[layout](self.protein)
            with self.subTest(layout=layout):
                found, err = self.imported(text + "end of list\n", sequence)
                self.check(self.protein, found)
                self.assertIn('line %d is not a row of the list, ignored: "end of list"' % (text.count("\n") + 1), err)
                self.fails(text + "end of list\n" * 200, sequence, ":%d: is not a row of the " % (text.count("\n") + 1))

    def test_a_comment_is_no_header(self):
        text, sequence = NAMELESS["prot"](self.protein)
        found, _ = self.imported("# residue atom shift\n#resid,resname,atom,shift\n" + text, sequence)
        self.check(self.protein, found)

    def test_spin_systems_that_are_not_assigned(self):
        """Numbers of spin systems instead of residues fit no sequence; labels of spin systems are recognised."""
        order = sorted({n for n, _, _ in self.protein.shifts}, key=lambda n: n * 37 % 149)
        system = {n: i for i, n in enumerate(order, 1)}
        shuffled = self.protein.with_rows([(system[n], atom, value) for n, atom, value in self.protein.shifts])
        for layout, write in EVERY.items():
            with self.subTest(layout=layout):
                self.fails(write(shuffled)[0], write(self.protein)[1] or layouts.seq(self.protein),
                           "does not fit the sequence of sequence")
        groups = re.sub(r"(?m)^( *)[A-Z](\d+) ", r"\1X\2 ", layouts.sparky(self.protein))
        self.fails(groups, layouts.seq(self.protein), "not assigned to a residue")

"""Whole proteins written as NMR-STAR 3, NMR-STAR 2.1, NEF and CSV come back as the tables that they were."""
import pathlib
import random
import re
import subprocess
import tempfile
import unittest

from zorvela_tests.program import KIT, real_entries

EVERY = 20
NAMES = dict(zip("ACcDEFGHIKLMNPQRSTVWY?",
                 "ALA CYS CYS ASP GLU PHE GLY HIS ILE LYS LEU MET ASN PRO GLN ARG SER THR VAL TRP TYR UNK".split()))


class Entry:
    """A shift table as plain lists."""

    def __init__(self, path):
        text = path.read_text()
        self.name = path.stem
        self.sequence = "".join(re.findall(r"^DATA SEQUENCE (.*)", text, re.MULTILINE))
        self.first = int(re.search(r"1 here is residue (\S+) there", text)[1])
        self.rows = [line.split() for line in text.split("%8.3f", 1)[1].splitlines() if line.strip()]

    def same_as(self, other):
        return (self.sequence, self.first, self.rows) == (other.sequence, other.first, other.rows)

    def number(self, resid):
        return int(resid) - 1 + self.first


def star3(entry):
    yield "data_x save_e _Entity.ID 1 _Entity.Polymer_type polypeptide(L) loop_ _Entity_comp_index.ID"
    yield "_Entity_comp_index.Auth_seq_ID _Entity_comp_index.Comp_ID _Entity_comp_index.Comp_label"
    for i, letter in enumerate(entry.sequence, 1):
        yield "%d %d %s $comp_%s" % (i, entry.number(i), NAMES[letter], NAMES[letter])
    yield "stop_ save_ save_list loop_ _Atom_chem_shift.Entity_ID _Atom_chem_shift.Comp_index_ID"
    yield "_Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID _Atom_chem_shift.Val"
    for resid, letter, atom, shift in entry.rows:
        yield "1 %s %s %s %s" % (resid, NAMES[letter], "H" if atom == "HN" else atom, shift)
    yield "stop_ save_"


def star2(entry):
    yield "data_x save_s _Saveframe_category molecular_system loop_ _Mol_system_component_name _Mol_label"
    yield "'the protein' $prot stop_ save_ save_prot _Saveframe_category monomeric_polymer"
    yield "_Mol_polymer_class protein loop_ _Residue_seq_code _Residue_author_seq_code _Residue_label"
    for i, letter in enumerate(entry.sequence, 1):
        yield "%d %d %s" % (i, entry.number(i), NAMES[letter])
    yield "stop_ save_ save_list _Saveframe_category assigned_chemical_shifts"
    yield "_Mol_system_component_name 'the protein' loop_ _Residue_seq_code _Residue_label _Atom_name"
    yield "_Chem_shift_value"
    for resid, letter, atom, shift in entry.rows:
        yield "%s %s %s %s" % (resid, NAMES[letter], "H" if atom == "HN" else atom, shift)
    yield "stop_ save_"


def nef(entry):
    yield "data_x save_nef_molecular_system loop_ _nef_sequence.index _nef_sequence.chain_code"
    yield "_nef_sequence.sequence_code _nef_sequence.residue_name _nef_sequence.linking"
    for i, letter in enumerate(entry.sequence, 1):
        yield "%d A %d %s middle" % (i, entry.number(i), NAMES[letter])
    yield "stop_ save_ save_nef_chemical_shift_list_1 loop_ _nef_chemical_shift.chain_code"
    yield "_nef_chemical_shift.sequence_code _nef_chemical_shift.residue_name _nef_chemical_shift.atom_name"
    yield "_nef_chemical_shift.value"
    renamed = {"HN": "H", "HA2": "HAx", "HA3": "HAy"}
    for resid, letter, atom, shift in entry.rows:
        yield "A %d %s %s %s" % (entry.number(resid), NAMES[letter], renamed.get(atom, atom), shift)
    yield "stop_ save_"


def csv(entry):
    """In random order, with a row for each residue so that those without shifts are there too."""
    letters = {"?": "X", "c": "C"}
    rows = ["%d,%s,%s,%s" % (entry.number(resid), letters.get(letter, letter), atom, shift)
            for resid, letter, atom, shift in entry.rows]
    rows += ["%d,%s,," % (entry.number(i), letters.get(letter, letter))
             for i, letter in enumerate(entry.sequence, 1)]
    random.Random(entry.name).shuffle(rows)
    yield "Residue,Type,Atom,Shift"
    yield from rows


class RoundTrip(unittest.TestCase):
    def setUp(self):
        self.paths = real_entries()[::EVERY]
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def import_files(self, files, output):
        """The tables that come of the files, sorted by name."""
        done = subprocess.run([KIT, "import", *map(str, files), "-o", str(self.folder / output) + "/"],
                              stderr=subprocess.PIPE, timeout=300, check=False)
        self.assertEqual(done.returncode, 0, done.stderr.decode()[-2000:])
        tables = sorted((self.folder / output).iterdir())
        self.assertEqual(len(tables), len(files))
        return tables

    def test_every_format_gives_the_same_table(self):
        entries = {path.stem: Entry(path) for path in self.paths}
        for write in (star3, star2, nef, csv):
            with self.subTest(format=write.__name__):
                files = [self.folder / (name + ".txt") for name in entries]
                for file, entry in zip(files, entries.values()):
                    file.write_text("\n".join(write(entry)) + "\n")
                for table in self.import_files(files, write.__name__):
                    self.assertTrue(entries[table.stem.split("_")[0]].same_as(Entry(table)), table.name)

    def test_tables_stay_as_they_are(self):
        once = self.import_files(self.paths, "once")
        twice = self.import_files(once, "twice")
        for path, first, second in zip(self.paths, once, twice):
            self.assertEqual(first.read_bytes(), second.read_bytes())
            # The layout has no blank after the last format, and a last line of sequence even if it is empty.
            original = path.read_text().replace("%8.3f \n", "%8.3f\n")
            if len(Entry(path).sequence) % 55:
                self.assertEqual(first.read_text(), original)

"""Shift tables as Python objects: independent of the package's own readers."""
import re


def table_of(path):
    """The sequence of a shift table, and its rows as (residue number, atom, ppm)."""
    sequence, rows = "", []
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("DATA SEQUENCE"):
            sequence += "".join(line.split()[2:])
        elif re.match(r"\s*\d+\s+\S\s+\S+\s+-?\d", line):
            number, _, atom, ppm = line.split()
            rows.append((int(number), atom, float(ppm)))
    return sequence, rows


def mapping_of(path):
    sequence, rows = table_of(path)
    return sequence, {(number, atom): ppm for number, atom, ppm in rows}


class Entry:
    """The parts of a pynmrstar entry that zorvela uses: its loops of shifts, and its text."""

    entry_id = "16585"

    def __init__(self, text, rows=()):
        self.text = text
        self.rows = rows

    def __str__(self):
        return self.text

    def get_loops_by_category(self, category):
        assert category == "_Atom_chem_shift"
        return [self]

    def get_tag(self, tags):
        assert tags == ["Entity_ID", "Comp_index_ID", "Atom_ID", "Val", "Assigned_chem_shift_list_ID"]
        return [["1", str(number), atom, str(ppm), "1"] for number, atom, ppm in self.rows]

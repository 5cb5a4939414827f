"""Shift tables as Python objects: independent of the package's own readers."""
from zorvela_tests.tables import shifts_of


def table_of(path):
    """The sequence of a shift table, and its rows as (residue number, atom, ppm)."""
    sequence, rows = shifts_of(path.read_text(encoding="utf-8"))
    return sequence, [(number, atom, float(ppm)) for number, atom, ppm in rows]


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

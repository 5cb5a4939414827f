"""Shift tables made for tests, and what tables hold, read apart from the programs."""
import re


def shift_table(sequence, rows, remark="made for a test"):
    """A shift table; rows: (residue number, atom, shift)."""
    lines = ["REMARK " + remark, "", "DATA SEQUENCE " + sequence, "", "VARS   RESID RESNAME ATOMNAME SHIFT",
             "FORMAT %4d %1s %4s %8.3f", ""]
    lines += ["%4d %s %4s %8.3f" % (resid, sequence[resid - 1], atom, shift) for resid, atom, shift in rows]
    return "\n".join(lines) + "\n"


def full_residue(sequence, resid):
    """All backbone shifts of a residue as the made tables have them, with no secondary shift."""
    name = sequence[resid - 1]
    alpha = (63.0 if name == "P" else 55.0) - (2.0 if sequence[resid:resid + 1] == "P" else 0.0)
    atoms = [] if name == "P" else [("N", 120.0), ("HN", 8.0)]
    atoms += [("HA", 4.0), ("C", 175.0), ("CA", alpha), ("CB", 30.0)]
    return [(resid, atom, shift) for atom, shift in atoms]


def full_table(sequence, changes=()):
    """A shift table with all shifts; changes: {(residue number, atom): shift}."""
    shifts = {(r, a): s for resid in range(1, len(sequence) + 1) for r, a, s in full_residue(sequence, resid)}
    shifts.update(changes)
    return shift_table(sequence, sorted((r, a, s) for (r, a), s in shifts.items()))


def shifts_of(text):
    """The sequence of a shift table, and its rows as (residue number, atom, ppm as text)."""
    sequence = "".join(re.findall(r"(?m)^DATA SEQUENCE (.*)$", text)).replace(" ", "")
    rows = re.findall(r"(?m)^ *(\d+) [A-Za-z?] +(\w+) +(-?[\d.]+)\s*$", text)
    return sequence, [(int(number), atom, ppm) for number, atom, ppm in rows]


def rows_of(path):
    """The rows of a table file, each a dictionary of texts."""
    columns, rows = [], []
    with open(path, encoding="utf-8") as file:
        for line in file:
            cells = line.split()
            if not cells or cells[0] in ("REMARK", "FORMAT", "DATA"):
                continue
            if cells[0] == "VARS":
                columns = cells[1:]
            else:
                rows.append(dict(zip(columns, cells)))
    return rows

"""Shifts from Python objects: mappings, pandas frames, pynmrstar entries."""
import numbers
from typing import Any, Iterable, List, Tuple

from zorvela.errors import Error

Shifts = List[Tuple[int, str, float]]

# Names of columns in shift tables, in small letters.
NUMBER_COLUMNS = ("resid", "residue", "number", "seq_id", "comp_index_id", "seq", "position")
ATOM_COLUMNS = ("atom", "atomname", "atom_id", "atom_name")
VALUE_COLUMNS = ("shift", "val", "value", "ppm", "cs")
_LARGEST_NUMBER = 10 ** 8


def whole_number(value: Any) -> int:
    """Checks and returns a residue number."""
    if isinstance(value, bool) or not isinstance(value, numbers.Integral):
        raise TypeError(f"the residue number {value!r} is not a whole number: give an int")
    if abs(int(value)) > _LARGEST_NUMBER:
        raise Error(f"residue {value}: is not in the sequence; give the number of the first residue as first")
    return int(value)


def _atom(value: Any, number: int) -> str:
    if not isinstance(value, str):
        raise TypeError(f"the atom {value!r} of residue {number} is not a text: give a name such as \"CA\"")
    return value.encode(errors="replace").decode()


def _ppm(value: Any, number: int, atom: str) -> float:
    if isinstance(value, bool) or not isinstance(value, numbers.Real):
        raise TypeError(f"the shift {value!r} of {atom} of residue {number} is not a number: give a float in ppm")
    return float(value)


def _checked(rows: Iterable[Tuple[Any, Any, Any]]) -> Shifts:
    shifts = []
    for number, atom, ppm in rows:
        number = whole_number(number)
        atom = _atom(atom, number)
        shifts.append((number, atom, _ppm(ppm, number, atom)))
    if not shifts:
        raise Error("there are no shifts: give at least one")
    return shifts


def _of_mapping(mapping: Any) -> Iterable[Tuple[Any, Any, Any]]:
    for key, ppm in mapping.items():
        if not isinstance(key, tuple) or len(key) != 2:
            raise TypeError(f"the key {key!r} is not a residue number and an atom: write it as (12, \"CA\")")
        yield key[0], key[1], ppm


def _column(frame: Any, names: Tuple[str, ...], what: str) -> Any:
    found = [column for name in names for column in frame.columns if str(column).lower() == name]
    if not found:
        raise Error(f"the frame has no column with {what}: call it {names[0]}")
    return frame[found[0]].tolist()


def _of_frame(frame: Any) -> Iterable[Tuple[Any, Any, Any]]:
    return zip(_column(frame, NUMBER_COLUMNS, "residue numbers"), _column(frame, ATOM_COLUMNS, "atoms"),
               _column(frame, VALUE_COLUMNS, "shifts"))


def _of_entry(entry: Any) -> Iterable[Tuple[Any, Any, Any]]:
    rows = [row for loop in entry.get_loops_by_category("_Atom_chem_shift")
            for row in loop.get_tag(["Entity_ID", "Comp_index_ID", "Atom_ID", "Val", "Assigned_chem_shift_list_ID"])]
    if len({(row[0], row[4]) for row in rows}) > 1:
        raise Error("the entry has several molecules or shift lists: give it to predict, with chain and list")
    for _, number, atom, value, _ in rows:
        try:
            yield int(number), atom, float(value)
        except (TypeError, ValueError):
            raise Error(f"the entry has a row of residue {number}, atom {atom}, shift {value}: remove it, or give "
                        "the entry to predict") from None


def is_entry(source: Any) -> bool:
    """Tells whether it is an entry of pynmrstar, without importing pynmrstar."""
    return hasattr(source, "get_loops_by_category")


def gathered(shifts: Any) -> Shifts:
    """Checks and returns residue number, atom and ppm of each shift."""
    if is_entry(shifts):
        return _checked(_of_entry(shifts))
    if hasattr(shifts, "columns") and hasattr(shifts, "iloc"):
        return _checked(_of_frame(shifts))
    if hasattr(shifts, "items"):
        return _checked(_of_mapping(shifts))
    raise TypeError(f"shifts cannot be of type {type(shifts).__name__}: give {{(12, \"CA\"): 63.2}}, a pandas frame or "
                    "an entry of pynmrstar")

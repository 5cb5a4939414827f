"""Cis/trans prediction for prolines from chemical shifts.

    import zorvela

    results = zorvela.predict("bmr16585.str")     # NMR-STAR, NEF, CSV or a shift table
    for proline in results.prolines:
        print(proline.resid, proline.call, proline.p_cis_norm)

Shifts are in ppm, angles in degrees, distances in angstrom. `p_cis_norm` is the probability that the peptide bond
before a proline is cis, if 1 proline in 20 is. From 0.5 the proline is called cis, up to 0.05 trans.

Every error is an `Error` or one of its classes. `Results.notes` tells what was renamed, left out or guessed. Nothing is
printed. All functions may run in several threads; they release the interpreter's lock while they compute.
"""
import collections
import functools
import os
from typing import (IO, TYPE_CHECKING, Any, Deque, Iterable, Iterator, List, Literal, Mapping, Optional, Sequence,
                    Tuple, Union, overload)

from zorvela import _shifts, _zorvela
from zorvela._frames import to_frame
from zorvela._zorvela import (Bond, Evidence, Match, NeighbourContribution, NextShift, Proline, Protein,
                              ReferencingOffset, Results, ShiftContribution, Site, Structure, StructureChain)
from zorvela.errors import ChoiceError, Error, FileError, TableError

if TYPE_CHECKING:
    import concurrent.futures

    import pandas

__version__ = _zorvela.version

__all__ = [
    "predict", "predict_shifts", "predict_many", "read_structure", "to_frame",
    "Results", "Protein", "Proline", "ReferencingOffset", "Evidence", "ShiftContribution", "NeighbourContribution",
    "NextShift", "Structure", "StructureChain", "Match", "Site", "Bond",
    "Error", "FileError", "ChoiceError", "TableError",
]

Source = Union[str, bytes, "os.PathLike[str]", IO[str], IO[bytes]]
"""A path, the bytes of a file, an open file, or a text (a str with a line end in it)."""

Names = Union[str, Sequence[str], None]
StructureSource = Union[Source, Structure, Sequence[Union[Source, Structure]], None]


@functools.lru_cache(maxsize=None)
def _engine() -> _zorvela.Engine:
    """Returns the predictor with the tables of the package, which are read once."""
    return _zorvela.Engine(os.path.join(os.path.dirname(__file__), "tab"))


# --- Arguments ------------------------------------------------------------------------------------

def _names(names: Names, what: str) -> List[str]:
    wanted = [] if names is None else [names] if isinstance(names, str) else names
    if isinstance(wanted, bytes) or not isinstance(wanted, collections.abc.Iterable):
        raise TypeError(f"{what} cannot be of type {type(names).__name__}: give a name or several")
    checked = []
    for name in wanted:
        if not isinstance(name, str):
            raise TypeError(f"{what} {name!r} is not a text: give {str(name)!r}")
        checked.append(name.encode(errors="replace").decode())
    return checked


def _path(source: Any) -> Optional[str]:
    """Returns the path if the source is one, or None."""
    if isinstance(source, os.PathLike) or (isinstance(source, str) and "\n" not in source):
        path = os.fspath(source)
        if "\0" in path:
            raise Error(f"{path!r} is not a path: give the content of a file as bytes")
        return path
    return None


def _content(source: Any) -> Tuple[bytes, str]:
    """Returns the bytes of a source that is not a path, and its name in messages."""
    name = "input"
    if _shifts.is_entry(source):
        name = f"entry {getattr(source, 'entry_id', '')}".strip()
        source = str(source)
    elif hasattr(source, "read"):
        name = source.name if isinstance(getattr(source, "name", None), str) else name
        source = source.read()
    if isinstance(source, str):
        return source.encode(errors="replace"), name
    if isinstance(source, (bytes, bytearray, memoryview)):
        return bytes(source), name
    raise TypeError(f"a file cannot be of type {type(source).__name__}: give a path, bytes, an open file or text")


def _structures(structure: Any) -> List[Structure]:
    if structure is None:
        return []
    several = structure if isinstance(structure, (list, tuple)) else [structure]
    return [one if isinstance(one, Structure) else read_structure(one) for one in several]


def _sequence(sequence: Any) -> str:
    if not isinstance(sequence, str):
        raise TypeError(f"the sequence cannot be of type {type(sequence).__name__}: give a text of one-letter codes")
    return "".join(sequence.encode(errors="replace").decode().split())


def _sequence_file(sequence: Any) -> Optional[Tuple[bytes, str]]:
    """Returns the bytes of a sequence, and its name in messages. A str is its text, never a path."""
    if sequence is None:
        return None
    if isinstance(sequence, str):
        return sequence.encode(errors="replace"), "the text given"
    if isinstance(sequence, os.PathLike):
        name = os.fsencode(sequence).decode(errors="replace")
        try:
            with open(sequence, "rb") as file:
                return file.read(), name
        except OSError as error:
            raise FileError(f"{name}: cannot be read: {error.strerror}; check the path") from None
    return _content(sequence)


def _request(structure: Any, chain: Names, names_of_lists: Names, as_referenced: bool, deuterated: Optional[bool],
             sequence: Any = None, first_residue: Any = None) -> _zorvela.Request:
    return _zorvela.Request(_names(chain, "chain"), _names(names_of_lists, "list"), _sequence_file(sequence),
                            None if first_residue is None else _shifts.whole_number(first_residue),
                            _structures(structure), bool(as_referenced),
                            None if deuterated is None else bool(deuterated))


def _predict(source: Any, request: _zorvela.Request) -> Results:
    path = _path(source)
    if path is not None:
        return _engine().predict_file(os.fsencode(path), request)
    return _engine().predict_bytes(*_content(source), request)


# --- Functions ------------------------------------------------------------------------------------

def predict(source: Source, *, sequence: Optional[Source] = None, first_residue: Optional[int] = None,
            structure: StructureSource = None, chain: Names = None,
            list: Names = None,  # pylint: disable=redefined-builtin
            as_referenced: bool = False, deuterated: Optional[bool] = None) -> Results:
    """Predicts every proline of a shift file: NMR-STAR, NEF, CSV, TSV or a shift table, plain or gzipped.

    source         a path, the bytes of a file, an open file, its text, or a pynmrstar entry
    sequence       for a file without a sequence, or with a part of it: one-letter codes or other text of a sequence
                   file (FASTA, .seq), or such a file as a pathlib.Path, bytes or an open file
    first_residue  number of the first residue of the sequence; default: the number in the sequence file, or 1
    structure      PDB or mmCIF files to compare with: paths, bytes, open files, or results of `read_structure`
    chain          names of the chains to predict; default: all chains of proteins
    list           names of the shift lists to use, or "all"; default: the list with most shifts
    as_referenced  use the shifts without corrections; default: certain referencing offsets are corrected, and isotope
                   shifts of samples that the file calls deuterated
    deuterated     whether the sample is deuterated; default: as in the file

    Raises FileError if the source is not a shift file or the sequence does not fit, and ChoiceError if the file does
    not have the chain or list.
    """
    return _predict(source, _request(structure, chain, list, as_referenced, deuterated, sequence, first_residue))


def predict_shifts(sequence: str, shifts: "Union[Mapping[Tuple[int, str], float], pandas.DataFrame, Any]", *,
                   first: int = 1, structure: StructureSource = None, as_referenced: bool = False,
                   deuterated: Optional[bool] = None, name: str = "shifts") -> Results:
    """Predicts every proline of a sequence from shifts in memory.

    sequence     one-letter codes; c is a cysteine in a disulfide bond, X an unknown residue
    shifts       {(residue number, atom): ppm}; or a pandas frame with a row for each shift and the columns resid,
                 atom and shift (or Comp_index_ID, Atom_ID and Val); or a pynmrstar entry with one molecule
    first        number of the first residue of the sequence
    name         name of the file in the results

    Uses N, HN (or H), HA, HA2 and HA3 of glycine, C, CA, CB, and CG of proline; ignores other atoms. Computes in single
    precision. Raises Error or TypeError for a shift that does not belong to the sequence.
    """
    letters = _sequence(sequence)
    called = _names(name, "name")[0]
    return _engine().predict_shifts(letters, _shifts.gathered(shifts), _shifts.whole_number(first), called,
                                    _request(structure, None, None, as_referenced, deuterated))


@overload
def predict_many(sources: Iterable[Source], *, jobs: Optional[int] = None, progress: bool = False,
                 errors: Literal["raise"] = "raise", structure: StructureSource = None, chain: Names = None,
                 list: Names = None, as_referenced: bool = False,
                 deuterated: Optional[bool] = None) -> Iterator[Results]: ...


@overload
def predict_many(sources: Iterable[Source], *, jobs: Optional[int] = None, progress: bool = False,
                 errors: Literal["return"], structure: StructureSource = None, chain: Names = None,
                 list: Names = None, as_referenced: bool = False,
                 deuterated: Optional[bool] = None) -> Iterator[Union[Results, Error]]: ...


def predict_many(sources: Iterable[Source], *, jobs: Optional[int] = None, progress: bool = False,
                 errors: Literal["raise", "return"] = "raise", structure: StructureSource = None, chain: Names = None,
                 list: Names = None,  # pylint: disable=redefined-builtin
                 as_referenced: bool = False,
                 deuterated: Optional[bool] = None) -> Iterator[Union[Results, Error]]:
    """Predicts many shift files in several threads. Returns an iterator over the results, in the order of the sources.

    jobs      number of threads; default: one for each core
    progress  show a progress bar if tqdm is installed
    errors    "raise" stops at the first file with an error; "return" gives the error instead of the results of a file
    The other arguments are those of `predict`.
    """
    if isinstance(sources, (str, bytes)) or not isinstance(sources, collections.abc.Iterable):
        raise TypeError(f"sources cannot be of type {type(sources).__name__}: give a list of files")
    if errors not in ("raise", "return"):
        raise Error(f"errors is {errors!r}: give \"raise\" or \"return\"")
    workers = len(os.sched_getaffinity(0)) if jobs is None else jobs
    if isinstance(workers, bool) or not isinstance(workers, int) or not 1 <= workers <= 256:
        raise Error(f"jobs is {jobs!r}: give a whole number from 1 to 256")
    request = _request(structure, chain, list, as_referenced, deuterated)
    return _many(_shown(sources, progress), workers, errors == "return", request)


def _shown(sources: Iterable[Any], progress: bool) -> Iterable[Any]:
    if not progress:
        return sources
    try:
        import tqdm  # pylint: disable=import-outside-toplevel  # only needed for a bar
    except ImportError:
        return sources
    shown: Iterable[Any] = tqdm.tqdm(sources, unit=" files")
    return shown


def _many(sources: Iterable[Any], jobs: int, keep_errors: bool,
          request: _zorvela.Request) -> Iterator[Union[Results, Error]]:
    import concurrent.futures  # pylint: disable=import-outside-toplevel  # half the time of importing this module

    def result(source: Any) -> Union[Results, Error]:
        try:
            return _predict(source, request)
        except Error as error:
            if keep_errors:
                return error
            raise

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        waiting: Deque["concurrent.futures.Future[Union[Results, Error]]"] = collections.deque()
        try:
            for source in sources:
                waiting.append(pool.submit(result, source))
                if len(waiting) > 4 * jobs:
                    yield waiting.popleft().result()
            while waiting:
                yield waiting.popleft().result()
        finally:
            for future in waiting:
                future.cancel()


def read_structure(source: Source) -> Structure:
    """Reads a PDB or mmCIF file, plain or gzipped, to compare several shift files with it.

    Raises FileError if it is not a structure of a protein.
    """
    path = _path(source)
    if path is not None:
        return _zorvela.structure_of_file(os.fsencode(path))
    content, name = _content(source)
    if content[:2] == b"\x1f\x8b":
        import gzip  # pylint: disable=import-outside-toplevel  # rarely needed
        try:
            content = gzip.decompress(content)
        except (OSError, EOFError) as error:
            raise FileError(f"{name}: cannot be unpacked: {error}; fetch it again") from None
    return _zorvela.structure_of_bytes(content, name)

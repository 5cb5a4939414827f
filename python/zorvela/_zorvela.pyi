"""Types of the compiled module. help(zorvela) describes its classes."""
from typing import TYPE_CHECKING, Any, Dict, Final, List, Literal, Optional, Sequence, Tuple

if TYPE_CHECKING:
    import pandas

version: str

class ShiftContribution:
    observed: Final[Optional[float]]
    corrected: Final[Optional[float]]
    reference: Final[Optional[float]]
    used: Final[Optional[float]]
    clipped: Final[bool]
    cis_mean: Final[float]
    cis_deviation: Final[float]
    trans_mean: Final[float]
    trans_deviation: Final[float]
    nats: Final[Optional[float]]

class NeighbourContribution:
    name: Final[str]
    cis_share: Final[float]
    trans_share: Final[float]
    nats: Final[Optional[float]]

class NextShift:
    shift: Final[str]
    bits: Final[float]
    decides: Final[Optional[float]]

class Evidence:
    prior: Final[float]
    prev: Final[NeighbourContribution]
    next: Final[NeighbourContribution]
    shifts: Final[Dict[str, ShiftContribution]]
    log_odds: Final[Optional[float]]

class Bond:
    model: Final[str]
    conformation: Final[Optional[str]]
    omega: Final[Optional[float]]
    ca_distance: Final[Optional[float]]
    state: Final[Literal["cis", "trans", "twisted"]]

class Site:
    file: Final[str]
    chain: Final[Optional[str]]
    resid: Final[str]
    residue: Final[str]
    models: Final[int]
    bonds: Final[List[Bond]]
    alternatives: Final[List[Bond]]
    reason: Final[Optional[str]]

class Match:
    file: Final[str]
    chain: Final[Optional[str]]
    aligned: Final[int]
    identical: Final[int]
    residues: Final[Optional[str]]
    mismatches: Final[List[str]]
    missing: Final[List[str]]

class StructureChain:
    chain: Final[Optional[str]]
    residues: Final[int]
    ca_only: Final[bool]

class Structure:
    file: Final[str]
    format: Final[Literal["PDB", "mmCIF"]]
    models: Final[int]
    chains: Final[List[StructureChain]]
    notes: Final[List[str]]

class Proline:
    resid: Final[str]
    position: Final[int]
    prev: Final[Optional[str]]
    next: Final[Optional[str]]
    prev_resid: Final[Optional[str]]
    next_resid: Final[Optional[str]]
    cs_cnt_prev: Final[Optional[int]]
    cs_cnt: Final[Optional[int]]
    cs_cnt_next: Final[Optional[int]]
    cg_shift: Final[Optional[float]]
    p_cis: Final[Optional[float]]
    p_cis_norm: Final[Optional[float]]
    p_cis_norm_as_referenced: Final[Optional[float]]
    call: Final[Literal["cis", "trans", "undecided", "none"]]
    call_as_referenced: Final[Optional[Literal["cis", "trans", "undecided", "none"]]]
    reason: Final[Optional[str]]
    cis_flag: Final[Optional[bool]]
    evidence: Final[Optional[Evidence]]
    next_shifts: Final[List[NextShift]]
    structure: Final[Optional[Literal["cis", "trans", "twisted", "mixed", "none"]]]
    verdict: Final[Optional[Literal["agree", "disagree", "undecided by shifts", "mixed models", "no prediction",
                                    "not in the structure"]]]
    models_cis: Final[Optional[int]]
    models_trans: Final[Optional[int]]
    models_twisted: Final[Optional[int]]
    omega: Final[Optional[float]]
    ca_distance: Final[Optional[float]]
    structure_sentence: Final[Optional[str]]
    sites: Final[List[Site]]

class ReferencingOffset:
    atom: Final[Literal["CA", "CB", "HA", "C"]]
    offset: Final[Optional[float]]
    error: Final[Optional[float]]
    residues: Final[int]
    correction_recommended: Final[bool]
    corrected_by: Final[Optional[float]]

class Protein:
    file: Final[str]
    chain: Final[Optional[str]]
    list: Final[Optional[str]]
    length: Final[int]
    shifts: Final[int]
    referencing: Final[List[ReferencingOffset]]
    correction: Final[Optional[str]]
    deuteration: Final[Optional[float]]
    prolines: Final[List[Proline]]
    warnings: Final[List[str]]
    notes: Final[List[str]]
    matches: Final[List[Match]]
    structure_notes: Final[List[str]]

class Results:
    file: Final[str]
    proteins: Final[List[Protein]]
    prolines: Final[List[Proline]]
    structures: Final[List[Structure]]
    chains_without_shifts: Final[List[str]]
    notes: Final[List[str]]
    def report(self, format: Literal["html", "table", "csv", "json"] = "html") -> str: ...
    def to_frame(self) -> "pandas.DataFrame": ...
    def _rows(self) -> List[List[Any]]: ...
    def _repr_html_(self) -> str: ...

class Request:
    def __init__(self, chains: List[str], lists: List[str], sequence: Optional[Tuple[bytes, str]],
                 first_residue: Optional[int], structures: Sequence[Structure], as_referenced: bool,
                 deuterated: Optional[bool]) -> None: ...

class Engine:
    def __init__(self, tables: str) -> None: ...
    def predict_file(self, path: bytes, request: Request) -> Results: ...
    def predict_bytes(self, content: bytes, name: str, request: Request) -> Results: ...
    def predict_shifts(self, sequence: str, shifts: List[Tuple[int, str, float]], first: int, name: str,
                       request: Request) -> Results: ...

def structure_of_file(path: bytes) -> Structure: ...
def structure_of_bytes(content: bytes, name: str) -> Structure: ...
def csv_columns(with_structures: bool) -> List[str]: ...

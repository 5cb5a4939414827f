"""Results as pandas frames and in notebooks."""
from typing import TYPE_CHECKING, Iterable

from zorvela import _zorvela

if TYPE_CHECKING:
    import pandas

# Counts and numbers may be missing; all other columns are text.
_COUNTS = {"position", "cs_cnt_prev", "cs_cnt", "cs_cnt_next", "models_cis", "models_trans", "models_twisted"}
_NUMBERS = {"cg_shift", "p_cis", "p_cis_norm", "offset_ca", "offset_cb", "offset_ha", "offset_c",
            "corrected_ca", "corrected_cb", "corrected_ha", "corrected_c",
            "p_cis_norm_as_referenced", "omega", "ca_distance"}
_YES_OR_NO = {"cis_flag"}


def _type_of(column: str) -> str:
    if column in _COUNTS:
        return "Int64"
    if column in _NUMBERS:
        return "float64"
    return "boolean" if column in _YES_OR_NO else "object"


def to_frame(results: "Iterable[_zorvela.Results]") -> "pandas.DataFrame":
    """Returns the prolines of many results in one pandas frame, a row each, with the columns of the CSV report.

    Shifts and offsets are in ppm, omega in degrees, distances in angstrom. A missing value is NaN for a number, NA for
    a count, None for a text.
    """
    import pandas  # pylint: disable=import-outside-toplevel  # only needed for a frame

    rows = [row for one in results for row in one._rows()]
    columns = _zorvela.csv_columns(True)
    columns = columns[:max(map(len, rows), default=len(_zorvela.csv_columns(False)))]
    frame = pandas.DataFrame([row + [None] * (len(columns) - len(row)) for row in rows], columns=columns, dtype=object)
    return frame.astype({column: _type_of(column) for column in columns})


def notebook_html(results: "_zorvela.Results") -> str:
    """Returns the report in an HTML frame, which keeps its styles apart from those of the notebook."""
    import html  # pylint: disable=import-outside-toplevel  # only needed in notebooks

    page = html.escape(results.report("html"))
    return (f'<iframe srcdoc="{page}" sandbox title="{html.escape(repr(results))}" '
            'style="width: 100%; height: 40em; border: 0; resize: vertical"></iframe>')

"""Runs the programs under test; finds the checkout and the shared data."""
import csv
import io
import json
import os
import pathlib
import struct
import subprocess

KIT = os.environ.get("ZORVELA_KIT", "zorvela-kit")
ZORVELA = os.environ.get("ZORVELA", "zorvela")
SOURCE = pathlib.Path(os.environ.get("ZORVELA_SOURCE", pathlib.Path(__file__).resolve().parents[3]))
MADE_TABLES = SOURCE / "kit" / "tests" / "predict" / "tables"
TABLES = SOURCE / "tab"
EXAMPLES = sorted(f for f in (SOURCE / "examples").glob("*.tab") if not f.name.endswith(".pred.tab"))
SCHEMA = SOURCE / "kit" / "report" / "run.schema.json"

COLUMNS = ("file,chain,list,resid,position,prev,next,cs_cnt_prev,cs_cnt,cs_cnt_next,cg_shift,p_cis,p_cis_norm,"
           "call,reason,offset_ca,offset_cb,offset_ha,offset_c,to_correct").split(",")


def shared_entries():
    """The shift tables of the shared data; none where the folder is not there."""
    data = pathlib.Path(os.environ.get("ZORVELA_SHARED_DATA", SOURCE.parent / "shared" / "data"))
    return sorted((data / "entries").glob("*.tab"))


def environment(**changes):
    """A plain environment: no colour settings, no tables but those named."""
    env = {k: v for k, v in os.environ.items() if k not in ("NO_COLOR", "ZORVELA_DIR", "TERM")}
    env.update({k: str(v) for k, v in changes.items()})
    return env


def kit(*arguments, **options):
    """Runs zorvela-kit; text in, text out."""
    options.setdefault("env", environment())
    options.setdefault("stdout", subprocess.PIPE)
    options.setdefault("stderr", subprocess.PIPE)
    if "input" not in options:
        options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.run([KIT, *map(str, arguments)], text=True, timeout=300, check=False, **options)


def run(*arguments, tables=MADE_TABLES, **options):
    """zorvela-kit run with the made tables."""
    return kit("run", "--tables", tables, *arguments, **options)


def csv_rows(text):
    return list(csv.DictReader(io.StringIO(text)))


def proteins(*files, tables=TABLES):
    """The proteins of zorvela-kit run --format json."""
    result = run("--format", "json", *files, tables=tables)
    assert result.returncode == 0, result.stderr
    return json.loads(result.stdout)["proteins"]


def single(value):
    """The nearest single-precision number."""
    return struct.unpack("f", struct.pack("f", value))[0]


def shift_table(sequence, rows, remark="made for a test"):
    """A shift table; rows: (residue number, atom, shift)."""
    lines = ["REMARK " + remark, "", "DATA SEQUENCE " + sequence, "", "VARS   RESID RESNAME ATOMNAME SHIFT",
             "FORMAT %4d %1s %4s %8.3f", ""]
    lines += ["%4d %s %4s %8.3f" % (resid, sequence[resid - 1], atom, shift) for resid, atom, shift in rows]
    return "\n".join(lines) + "\n"


def full_residue(sequence, resid):
    """All backbone shifts of a residue as the made tables have them, with no secondary shift."""
    name = sequence[resid - 1]
    before_proline = sequence[resid:resid + 1] == "P"
    atoms = [] if name == "P" else [("N", 120.0), ("HN", 8.0)]
    atoms += [("HA", 4.0), ("C", 175.0), ("CA", 53.0 if before_proline else 55.0), ("CB", 30.0)]
    return [(resid, atom, shift) for atom, shift in atoms]


def full_table(sequence, changes=()):
    """A shift table with all shifts; changes: {(residue number, atom): shift}."""
    shifts = {}
    for resid in range(1, len(sequence) + 1):
        shifts.update({(r, a): s for r, a, s in full_residue(sequence, resid)})
    shifts.update(changes)
    return shift_table(sequence, sorted((r, a, s) for (r, a), s in shifts.items()))

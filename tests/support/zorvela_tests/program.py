"""The programs under test and how to run them, the checkout, and the folder of real proteins."""
import atexit
import csv
import functools
import io
import json
import os
import pathlib
import shutil
import struct
import subprocess
import tarfile
import tempfile
import unittest

from zorvela_tests.tables import full_residue, full_table, shift_table  # noqa: F401  (for tests, as program.full_table)

KIT = os.environ.get("ZORVELA_KIT", "zorvela-kit")
ZORVELA = os.environ.get("ZORVELA_PROGRAM", "zorvela")
SOURCE = pathlib.Path(os.environ.get("ZORVELA_SOURCE", pathlib.Path(__file__).resolve().parents[3]))
MADE_TABLES = SOURCE / "kit" / "tests" / "predict" / "tables"
TABLES = SOURCE / "tab"
EXAMPLES = sorted(f for f in (SOURCE / "examples").glob("*.tab") if not f.name.endswith(".pred.tab"))
SCHEMA = SOURCE / "kit" / "report" / "run.schema.json"

COLUMNS = ("file,chain,list,resid,position,prev,next,cs_cnt_prev,cs_cnt,cs_cnt_next,cg_shift,p_cis,p_cis_norm,"
           "call,reason,offset_ca,offset_cb,offset_ha,offset_c,to_correct,"
           "corrected_ca,corrected_cb,corrected_ha,corrected_c,strongest,next_shift,cis_flag,"
           "p_cis_norm_as_referenced,call_as_referenced").split(",")


@functools.lru_cache(maxsize=None)
def data_folder():
    """The real proteins of data/, unpacked for this process; ZORVELA_DATA names a folder with others."""
    if os.environ.get("ZORVELA_DATA"):
        return pathlib.Path(os.environ["ZORVELA_DATA"])
    target = tempfile.mkdtemp()
    atexit.register(shutil.rmtree, target)
    with tarfile.open(SOURCE / "data" / "zorvela-data.tar.xz") as archive:
        archive.extractall(target)
    return pathlib.Path(target, "zorvela-data")


def real_entries():
    """The shift tables of the real proteins."""
    return sorted((data_folder() / "entries").glob("*.tab"))


def environment(**changes):
    """A plain environment: no colour settings, and only the tables that are named."""
    env = {k: v for k, v in os.environ.items() if k not in ("NO_COLOR", "ZORVELA_DIR", "TERM")}
    env.update({k: str(v) for k, v in changes.items()})
    return env


def decimal_commas(folder):
    """Changes of the environment for a locale with decimal commas, made in `folder`; skips the test without localedef."""
    made = subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", pathlib.Path(folder, "de_DE.UTF-8")],
                          capture_output=True, check=False)
    comma = {"LOCPATH": folder, "LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}
    number = subprocess.run(["bash", "-c", "printf %.1f 1,5"], capture_output=True, text=True, check=False,
                            env=environment(**comma)).stdout
    if number != "1,5":
        raise unittest.SkipTest(f"no locale with a decimal comma can be made here: {made.stderr}")
    return comma


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

"""The result of `script/web build`, and whether it is there."""
import atexit
import functools
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

from zorvela_tests import program, tables

WEB = pathlib.Path(os.environ.get("ZORVELA_WEB", program.SOURCE / "build" / "web"))
SITE = WEB / "site"
NPM = WEB / "npm"


def needs_module(test):
    """Skips a class of tests where the module has not been built."""
    return unittest.skipUnless((NPM / "zorvela.wasm").exists(), f"no {NPM}: script/web build makes it")(test)


@functools.lru_cache
def formats():
    """The report formats, as the program's help names them."""
    text = program.kit("run", "--help").stdout
    return re.search(r"--format FORMAT [^[]*\[values: ([^]]*)\]", " ".join(text.split()))[1].split(", ")


def shifted(table, ppm):
    """A shift table with wrong referencing: CA and CB are moved."""
    lines = []
    for line in table.splitlines(keepends=True):
        cells = line.split()
        if len(cells) == 4 and cells[2] in ("CA", "CB"):
            line = "%4s %s %4s %8.3f\n" % (*cells[:3], float(cells[3]) + ppm)
        lines.append(line)
    return "".join(lines)


def nef_of_two_cis_prolines():
    """NEF whose prolines have the shifts of cis; the file calls the first of them trans and says nothing of the second."""
    names = {"A": "ALA", "K": "LYS", "P": "PRO"}
    values = {"A": {"CA": 52.5, "CB": 19.0}, "K": {"CA": 56.5, "CB": 33.0}, "P": {"CA": 62.8, "CB": 34.6, "CG": 24.3}}
    sequence = list(enumerate("AKPAAKPA", 1))
    shifts = [(resid, letter, atom, value) for resid, letter in sequence
              for atom, value in {"C": 176.5, "HA": 4.4, **values[letter]}.items()]
    return "\n".join([
        "data_x", "save_nef_molecular_system", "loop_",
        *(f"_nef_sequence.{tag}" for tag in ("chain_code", "sequence_code", "residue_name", "cis_peptide")),
        *(f"A {resid} {names[letter]} {'false' if resid == 3 else '.'}" for resid, letter in sequence), "stop_", "save_",
        "save_nef_chemical_shift_list_1", "loop_",
        *(f"_nef_chemical_shift.{tag}" for tag in ("chain_code", "sequence_code", "residue_name", "atom_name", "value")),
        *(f"A {resid} {names[letter]} {atom} {value}" for resid, letter, atom, value in shifts), "stop_", "save_", ""]).encode()


UBIQUITIN = b""">ubiquitin
MQIFVKTLTGKTITLEVEPSDTIENVKAKIQDKEGIPPDQQRLIFAGKQLEDGRTLSDYNIQKESTLHLVLRLRGG
"""


def resonance_list(moved=0):
    """The shifts of ubiquitin with numbers of residues and no names of them; the numbers may be moved."""
    _, rows = tables.shifts_of((program.SOURCE / "examples" / "ubiquitin.tab").read_text())
    return "".join(f"{number:5} {shift:>8} 0.000 {atom:5} {resid + moved:4}\n"
                   for number, (resid, atom, shift) in enumerate(rows, 1)).encode()


@functools.lru_cache
def installed(*packages):
    """A folder with npm packages, for all tests of this process; None where they cannot be fetched."""
    folder = tempfile.TemporaryDirectory()
    atexit.register(folder.cleanup)
    path = pathlib.Path(folder.name)
    (path / "package.json").write_text('{"private": true, "type": "module"}')
    fetched = subprocess.run(["npm", "install", "--no-audit", "--no-fund", *packages], cwd=path, capture_output=True,
                             timeout=600, check=False)
    return path if fetched.returncode == 0 else None


def node(code, *arguments, **options):
    return subprocess.run(["node", "--input-type=module", "-e", code, *arguments], capture_output=True, text=True,
                          timeout=300, check=False, **options)

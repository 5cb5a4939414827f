"""Helpers of the tests of the whole program: tables, a run in a folder of its own, and the comparison."""

import os
import re
import resource
import subprocess
import tempfile
import threading
import time

import reference
from zorvela_tests import folder

PROGRAM = os.environ.get("ZORVELA_PROGRAM", "")
MEMORY_LIMIT_MIB = int(os.environ.get("ZORVELA_MEMORY_LIMIT_MIB", "512"))
PATIENCE = 100  # seconds after which a run counts as hung

RESIDUES = "ACDEFGHIKLMNPQRSTVWY"
COIL = {"N": 120.0, "HA": 4.5, "C": 175.0, "CA": 55.0, "CB": 35.0, "HN": 8.0}
INPUT_COLUMNS = "RESID RESNAME ATOMNAME SHIFT"
INPUT_FORMATS = "%4d %1s %4s  %8.3f"
TABLE_HEAD = ("\n\nVARS   RESID RESNAME_PREV RESNAME RESNAME_NEXT CS_CNT1 CS_CNT2 CS_CNT3 CG_SHIFT P_CIS P_CIS_NORM \n"
              "FORMAT %2d %1s %1s %1s %2d %2d %2d %8.3f %8.3f %8.3f \n\n")
LISTING_HEAD = "\nZorvela Predictions:\n\n  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n\n"
NAN = reference.print_real(0, 3, "f", reference.default_nan())  # what 0/0 prints
TABLE_NAMES = ("randcoil.tab", "rcadj.tab", "rcprev.tab", "rcnext.tab", "sslimit.tab", "Pro.cs.tab", "Pro.seq.tab")
PROGRESS_TEXTS = ("Random Coil Shifts", "RC Adjustments", "Previous Residue RC Adjustments",
                  "Next Residue RC Adjustments", "Secondary Shift Limits")

resource.setrlimit(resource.RLIMIT_CORE, (0, 0))  # a run that ends abnormally leaves no core file


def progress(directory="./tab/", names=TABLE_NAMES[:5]):
    """Returns the progress lines of a run with tables in that folder."""
    return "".join("Reading %s from %s%s\n" % (text, directory, name) for text, name in zip(PROGRESS_TEXTS, names))


def finished(name, lines="", directory="./tab/"):
    """Standard output of a whole run, with these lines in its listing."""
    return progress(directory) + "Analyzing " + name + ":\n" + LISTING_HEAD + lines + reference.TIME_LINE


def answer(number=2, before="A", after="G", pair=("0.500", "0.050"), counts=(6, 5, 5), cg="9999.000"):
    """The line of a proline in the listing, and its row in the table.

    Glycine has no CB, proline no HN. Where the evidence is even P_CIS is 1/2 and P_CIS_NORM 1 / (1 + 19).
    """
    return ("   %s%-3d P%-3d %s%-3d %-6s %-6s\n" % (before, number - 1, number, after, number + 1, *pair),
            "%2d %s P %s %2d %2d %2d %8s %8s %8s \n" % (number, before, after, *counts, cg, *pair))


def table(columns, formats, rows, head=""):
    """A table file's text."""
    return head + "VARS   " + columns + "\nFORMAT " + formats + "\n\n" + "".join(
        " ".join(str(cell) for cell in row) + "\n" for row in rows)


def protein(sequence, shifts, first=None, head=""):
    """An input table: a sequence and rows of (residue number, name, atom, shift)."""
    pairs = head
    if first is not None:
        pairs += "DATA FIRST_RESID %d\n" % first
    pairs += "".join("DATA SEQUENCE " + sequence[at:at + 55] + "\n" for at in range(0, len(sequence), 55))
    return table(INPUT_COLUMNS, INPUT_FORMATS, shifts, pairs + "\n")


def coil_shifts(sequence, changes=None, first=1):
    """A shift for each atom of each residue: its random-coil value plus what `changes` says for (number, atom).

    Proline has no HN, glycine has no CB and has HA2 and HA3 for HA.
    """
    rows = []
    for number, name in enumerate(sequence, first):
        atoms = {"P": ["N", "HA", "C", "CA", "CB"], "G": ["N", "HA2", "HA3", "C", "CA", "HN"]}.get(name, COIL)
        for atom in atoms:
            coil = COIL["HA" if atom in ("HA2", "HA3") else atom]
            rows.append((number, name, atom, "%.3f" % (coil + (changes or {}).get((number, atom), 0.0))))
    return rows


def plain_tables():
    """Tables with round numbers: one coil value for each atom, no corrections, the same odds for all neighbours.

    Limits: 10 ppm either way, 1 ppm for HA, 2 ppm for HN. Statistics: means 0 and deviations 1 for cis and trans alike;
    CG 24.5 +- 1 for cis, 27 +- 1 for trans. So a shift tells nothing, unless it is the CG.
    """
    atoms = reference.ATOMS
    zero = table("RESNAME " + " ".join(atoms), "%s" + " %8.3f" * 6, [[name] + [0] * 6 for name in RESIDUES])
    bounds = {"HA": 1, "HN": 2}
    limits = [[name] + [sign * bounds.get(atom, 10) for atom in atoms for sign in (-1, 1)] for name in RESIDUES]
    return {
        "randcoil.tab": table("RESNAME " + " ".join(atoms), "%s" + " %8.3f" * 6,
                              [[name] + [COIL[atom] for atom in atoms] for name in RESIDUES]),
        "rcadj.tab": zero, "rcprev.tab": zero, "rcnext.tab": zero,
        "sslimit.tab": table("RESNAME " + " ".join(atom + end for atom in atoms for end in ("_MIN", "_MAX")),
                             "%s" + " %8.3f" * 12, limits),
        "Pro.cs.tab": statistics_table({}),
        "Pro.seq.tab": table("resname cis_prev cis_next trans_prev trans_next", "%s" + " %8.5f" * 4,
                             [[name] + [0.05] * 4 for name in RESIDUES]),
    }


def statistics_table(changes):
    """Pro.cs.tab with the plain values except for some indices: {index: (avg_cis, std_cis, avg_trans, std_trans)}."""
    plain = {index: (0, 1, 0, 1) for index in range(18)}
    plain[18] = (24.5, 1, 27, 1)
    plain.update(changes)
    return table("index avg_cis std_cis avg_trans std_trans", "%4d" + " %8.3f" * 4,
                 [(index,) + values for index, values in sorted(plain.items())])


def mask(text):
    """Masks the running time if it is a number of seconds with at most six digits."""
    def masked(found):
        return reference.TIME_LINE if "%g" % float(found.group(1)) == found.group(1) else found.group()
    return re.sub(r"(?m)^ Running time: ([0-9][0-9.e-]*) seconds\n", masked, text)


def mask_credit(text):
    """Masks the author credit after the version."""
    return re.sub(r"(?m)^(Version 1\.01 \(build 2009\.1102\.12\)).*$", r"\1<credit>", text)


class Result:
    """The end of a run; the streams as bytes."""

    def __init__(self, stdout, stderr, status, seconds=0.0, peak_mib=0.0):
        self.stdout = mask(stdout.decode("latin-1"))
        self.stderr = mask_credit(stderr.decode("latin-1"))
        self.status = status
        self.seconds = seconds
        self.peak_mib = peak_mib


class ProgramTest(folder.InFolder):
    """Runs the program in a folder of its own, with nothing of the caller's environment."""

    @classmethod
    def setUpClass(cls):
        if not os.access(PROGRAM, os.X_OK):
            raise RuntimeError("ZORVELA_PROGRAM must name the program to test")

    # -- files

    def write(self, name, text):
        """A file in the test's folder; a text stands for its latin-1 bytes."""
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        self.put(name, text if isinstance(text, bytes) else text.encode("latin-1"))

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read().decode("latin-1")

    def write_tables(self, changes=None, place="tab/"):
        """The plain tables in that place, with some of them replaced."""
        for name, text in {**plain_tables(), **(changes or {})}.items():
            self.write(place + name, text)

    def files(self):
        return {os.path.relpath(os.path.join(place, name), self.folder)
                for place, _, names in os.walk(self.folder) for name in names}

    # -- runs

    def environment(self, changes=None):
        kept = {name: value for name, value in os.environ.items() if name in ("ASAN_OPTIONS", "UBSAN_OPTIONS")}
        result = {"PATH": "/usr/bin:/bin", **(changes or {})}
        return {**kept, **{name: value for name, value in result.items() if value is not None}}

    def run_program(self, *arguments, environment=None, directory=None, **streams):
        """One run. Its streams are caught unless `streams` gives other targets."""
        streams = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "stdin": subprocess.DEVNULL, **streams}
        done = subprocess.run([PROGRAM, *arguments], cwd=directory or self.folder, timeout=PATIENCE,
                              env=self.environment(environment), check=False, **streams)
        return Result(done.stdout or b"", done.stderr or b"", done.returncode)

    def measure(self, *arguments):
        """One run with its processor time and its peak memory."""
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            start = time.monotonic()
            process = subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, env=self.environment(),
                                       stdin=subprocess.DEVNULL, stdout=out, stderr=err)
            timer = threading.Timer(PATIENCE, process.kill)
            timer.start()
            _, status, usage = os.wait4(process.pid, 0)
            timer.cancel()
            process.returncode = os.waitstatus_to_exitcode(status)
            out.seek(0)
            err.seek(0)
            return Result(out.read(), err.read(), process.returncode, time.monotonic() - start, usage.ru_maxrss / 1024)

    # -- comparisons

    def expect(self, arguments, stdout, stderr="", status=0, written=None, environment=None):
        """Compares everything that a run leaves behind; `written` maps file names to texts."""
        written = written or {}
        before = self.files()
        result = self.run_program(*arguments, environment=environment)
        self.assertEqual(result.stderr, stderr)
        self.assertEqual(result.stdout, stdout)
        self.assertEqual(result.status, status)
        self.assertEqual(self.files() - before, set(written) - before)
        for name, text in written.items():
            self.assertEqual(self.read(name), text)
        return result

    def expect_answers(self, *answers, arguments=("-in", "in.tab"), name="in.tab", stderr="", out="pred.tab",
                       directory="./tab/"):
        """Compares a run on this file that gives these answers."""
        self.expect(arguments, finished(name, "".join(line for line, _ in answers), directory), stderr,
                    written={out: TABLE_HEAD + "".join(row for _, row in answers)})

    def expect_reference(self, *arguments, environment=None):
        """Compares a run with the one worked out by `reference`; returns the latter."""
        clean = self.environment(environment)
        expected = reference.Run([os.fsencode(text).decode("latin-1") for text in arguments], clean, self.folder)
        written = {} if expected.table_text is None else {os.path.normpath(expected.table_name): expected.table_text}
        self.expect(arguments, expected.stdout, expected.stderr, expected.status, written, environment)
        return expected

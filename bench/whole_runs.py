#!/usr/bin/env python3
"""Times whole runs of zorvela: ubiquitin against `cat` over the same eight files, and made proteins of 50 to
50,000 residues against a pass of mawk that only splits the same lines into words.

    bench/whole_runs.py build/bench/zorvela

Prints the best of several runs: everything else that the machine does can only add to a time.
"""

import os
import random
import resource
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
TABLES = ["randcoil", "rcadj", "rcprev", "rcnext", "sslimit", "Pro.cs", "Pro.seq"]
SHIFTS = {"N": 119.0, "HN": 8.2, "HA": 4.4, "C": 175.5, "CA": 56.0, "CB": 33.0}


def write_protein(path, residues):
    """A repeated sequence with all shifts and a proline in every 20 residues."""
    rng = random.Random(20)
    unit = "ACDEFGHIKLPMNQRSTVWY"
    sequence = (unit * (residues // 20 + 1))[:residues]
    with open(path, "w") as out:
        for at in range(0, residues, 55):
            out.write("DATA SEQUENCE %s\n" % sequence[at : at + 55])
        out.write("\nVARS   RESID RESNAME ATOMNAME SHIFT \nFORMAT %4d %1s %4s  %8.3f \n\n")
        for resid, name in enumerate(sequence, 1):
            for atom, shift in SHIFTS.items():
                for label in ("HA2", "HA3") if (name, atom) == ("G", "HA") else (atom,):
                    out.write("%4d %s %4s  %8.3f\n" % (resid, name, label, shift + rng.random()))
            extra = ("CG", 27.0) if name == "P" else ("HB", 2.0)
            out.write("%4d %s %4s  %8.3f\n" % (resid, name, extra[0], extra[1] + rng.random()))


def best_time(command, runs):
    """Shortest wall time in seconds."""
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        pid = os.posix_spawn(
            command[0],
            command,
            dict(os.environ, ZORVELA_DIR=ROOT + "/"),
            file_actions=[(os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0)],
        )
        _, status = os.waitpid(pid, 0)
        times.append(time.perf_counter() - start)
        if status:
            sys.exit("%s ended with status %d" % (command[0], status))
    return min(times)


def program(name):
    for folder in ("/usr/bin", "/bin"):
        if os.path.exists(folder + "/" + name):
            return folder + "/" + name
    sys.exit(name + " is not there: apt-get install " + name)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    zorvela = os.path.abspath(sys.argv[1])
    cat, mawk = program("cat"), program("mawk")

    with tempfile.TemporaryDirectory() as folder:
        output = folder + "/pred.tab"
        ubiquitin = ROOT + "/examples/ubiquitin.tab"
        files = [ubiquitin] + ["%s/tab/%s.tab" % (ROOT, name) for name in TABLES]
        run = best_time([zorvela, "-in", ubiquitin, "-sum", output], 1000)
        read = best_time([cat] + files, 1000)
        print("ubiquitin, 76 residues: zorvela %.2f ms, cat %.2f ms, ratio %.2f" % (run * 1e3, read * 1e3, run / read))

        print("\nresidues     rows   zorvela ms   mawk ms   ratio   growth")
        before = None
        for residues in (50, 500, 5000, 50000):
            path = "%s/%d.tab" % (folder, residues)
            write_protein(path, residues)
            with open(path) as table:
                rows = sum(line[:1] == " " or line[:1].isdigit() for line in table)
            runs = 200 if residues <= 500 else 20
            run = best_time([zorvela, "-in", path, "-last", str(residues), "-sum", output], runs)
            read = best_time([mawk, "{n+=NF} END{print n}", path], runs)
            growth = "%8.1f" % (run / before) if before else ""
            print("%8d %8d %12.2f %9.2f %7.1f %s" % (residues, rows, run * 1e3, read * 1e3, run / read, growth))
            before = run
        memory = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
        print("\nmost memory of a run: %.0f MiB" % (memory / 1024))


if __name__ == "__main__":
    main()

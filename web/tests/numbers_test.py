"""The module in Node writes the same reports as the program, byte for byte, also for real proteins."""
import json
import pathlib
import subprocess
import unittest

import web
from zorvela_tests import program

COUNT = 300


def module_report(files):
    """The JSON report that the module writes about files, in Node."""
    result = subprocess.run(["node", str(pathlib.Path(__file__).with_name("run.mjs")), str(web.NPM), "json",
                             *map(str, files)], cwd=program.SOURCE, capture_output=True, timeout=600, check=True)
    return result.stdout.decode(errors="surrogateescape")


def native_report(files):
    result = program.run("--format", "json", *files, tables="tab", cwd=program.SOURCE, errors="surrogateescape")
    assert result.returncode in (0, 1), result.stderr
    return result.stdout


def numbers_of(report):
    """The numbers of a report that are not whole, in its order."""
    found = []
    json.loads(report, parse_float=found.append)
    return found


@web.needs_module
class SameAsTheProgram(unittest.TestCase):
    maxDiff = 2000

    def compare(self, files):
        ours, theirs = module_report(files), native_report(files)
        differing = [pair for pair in zip(numbers_of(ours), numbers_of(theirs)) if pair[0] != pair[1]]
        self.assertEqual(differing[:10], [], f"{len(differing)} numbers differ")
        self.assertEqual(ours, theirs)

    def test_odd_files(self):
        """Files that are cut, mixed up or not shift files: the same proteins, notes and errors."""
        files = sorted(path.relative_to(program.SOURCE) for folder in ("kit/tests/files", "kit/tests/fuzz/corpus_star")
                       for path in (program.SOURCE / folder).iterdir())
        self.assertGreater(len(files), 50)
        self.compare(files)

    def test_real_proteins(self):
        entries = program.real_entries()
        self.assertGreaterEqual(len(entries), COUNT)
        step = len(entries) / COUNT
        self.compare([entries[int(index * step)] for index in range(COUNT)])

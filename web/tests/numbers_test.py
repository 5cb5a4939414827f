"""The module in Node writes the same reports as the program, byte for byte, also for real proteins."""
import json
import pathlib
import subprocess
import unittest

import web
from zorvela_tests import program

COUNT = 300


def module_report(format_name, files):
    """The report that the module writes about files, in Node."""
    result = subprocess.run(["node", str(pathlib.Path(__file__).with_name("run.mjs")), str(web.NPM), format_name,
                             *map(str, files)], cwd=program.SOURCE, capture_output=True, timeout=600, check=True)
    return result.stdout.decode(errors="surrogateescape")


def native_report(format_name, files):
    result = program.run("--format", format_name, *files, tables="tab", cwd=program.SOURCE, errors="surrogateescape")
    assert result.returncode in (0, 1), result.stderr
    return result.stdout


def numbers_of(value, path=""):
    """Every number of a JSON value with its place."""
    if isinstance(value, dict):
        for name, member in value.items():
            yield from numbers_of(member, f"{path}.{name}")
    elif isinstance(value, list):
        for index, item in enumerate(value):
            yield from numbers_of(item, f"{path}[{index}]")
    elif isinstance(value, (int, float)) and not isinstance(value, bool):
        yield path, value


@web.needs_module
class SameAsTheProgram(unittest.TestCase):
    maxDiff = 2000

    def compare(self, format_name, files):
        ours, theirs = module_report(format_name, files), native_report(format_name, files)
        if ours != theirs and format_name == "json":
            pairs = zip(numbers_of(json.loads(ours)), numbers_of(json.loads(theirs)))
            differing = [(place, a, b) for (place, a), (_, b) in pairs if a != b]
            self.fail(f"{len(differing)} numbers differ: {differing[:10]}")
        self.assertEqual(ours, theirs)

    def test_odd_files(self):
        """Files that are cut, mixed up or not shift files: the same proteins, notes and errors."""
        files = sorted(path.relative_to(program.SOURCE) for folder in ("kit/tests/files", "kit/tests/fuzz/corpus_star")
                       for path in (program.SOURCE / folder).iterdir())
        self.assertGreater(len(files), 50)
        self.compare("json", files)

    def test_real_proteins(self):
        entries = program.real_entries()
        self.assertGreaterEqual(len(entries), COUNT)
        step = len(entries) / COUNT
        self.compare("json", [entries[int(index * step)] for index in range(COUNT)])

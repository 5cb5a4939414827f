"""The npm package: packed, installed into an empty folder, and used there as in its README."""
import json
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

import web
from zorvela_tests import program


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, timeout=300, check=False, **options)


@web.needs_module
class InstalledPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        packed = run("npm", "pack", "--json", "--pack-destination", cls.folder, cwd=web.NPM)
        assert packed.returncode == 0, packed.stderr
        cls.packed = json.loads(packed.stdout)[0]
        (cls.folder / "package.json").write_text('{"private": true, "type": "module"}')
        installed = run("npm", "install", "--offline", "--no-audit", "--no-fund", cls.folder / cls.packed["filename"],
                        cwd=cls.folder)
        assert installed.returncode == 0, installed.stderr
        shutil.copy(program.SOURCE / "examples" / "nuclease.str", cls.folder)

    def test_has_these_files_and_no_others(self):
        self.assertEqual(sorted(file["path"] for file in self.packed["files"]), [
            "LICENSE", "README.md", "gzip.js", "index.d.ts", "index.js", "library.js", "node.js", "package.json",
            "require.cjs", "run.schema.json", "third-party-licences.txt", "zorvela.js", "zorvela.wasm"])
        self.assertEqual(list((self.folder / "node_modules").glob("[!.]*")), [self.folder / "node_modules" / "zorvela"])

    def test_with_the_test_runner_of_node(self):
        for name in ("package.test.mjs", "gzip.test.mjs"):
            shutil.copy(pathlib.Path(__file__).with_name(name), self.folder)
        (self.folder / "tab").symlink_to(program.TABLES)
        shutil.copy(program.SOURCE / "examples" / "nuclease.pdb.gz", self.folder)
        (self.folder / "flagged.nef").write_bytes(web.nef_of_two_cis_prolines())

        def kit(*arguments):
            result = program.kit(*arguments, cwd=self.folder)
            self.assertEqual(result.returncode, 0, result.stderr)

        for format_name in web.formats():
            for name, structure in (("native", ()), ("compared", ("--structure", "nuclease.pdb.gz"))):
                kit("run", "--tables", "tab", "--format", format_name, "--output", f"{name}.{format_name}", *structure, "--",
                    "nuclease.str")
        kit("import", "--rereference", "--tables", "tab", "--output", "native.tab", "nuclease.str")
        kit("restrain", "--tables", "tab", "--for", "rosetta", "--chain-as", "A", "--output", "native.cst", "nuclease.str")
        kit("annotate", "--tables", "tab", "--output", "flags.nef", "flagged.nef")
        kit("annotate", "--tables", "tab", "--replace", "--output", "replaced.nef", "flagged.nef")
        (self.folder / "list.prot").write_bytes(web.resonance_list(moved=16))
        (self.folder / "list.fasta").write_bytes(web.UBIQUITIN)
        kit("run", "--tables", "tab", "--sequence", "list.fasta", "--first-residue", "17", "--format", "json",
            "--output", "list.json", "list.prot")
        result = run("node", "--test", "--test-reporter=tap", cwd=self.folder)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertRegex(result.stdout, r"# pass [1-9]")

    def test_example_of_the_readme(self):
        readme = (web.NPM / "README.md").read_text()
        code, printed = re.search(r"```js\n(.*?)```.*?```text\n(.*?)```", readme, re.DOTALL).groups()
        (self.folder / "prolines.mjs").write_text(code)
        result = run("node", "prolines.mjs", "nuclease.str", cwd=self.folder)
        self.assertEqual((result.stdout, result.stderr), (printed, ""))
        self.assertTrue((self.folder / "report.html").read_text().startswith("<!DOCTYPE html>"))

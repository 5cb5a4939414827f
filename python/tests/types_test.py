"""mypy --strict knows every member, each has a description, and help() shows it."""
import os
import pathlib
import pydoc
import re
import subprocess
import unittest

import zorvela
from zorvela_tests import folder, program

TYPED = unittest.skipIf(os.environ.get("ZORVELA_SANITIZE"), "mypy does not run the module")
STUBS = program.SOURCE / "python" / "zorvela" / "_zorvela.pyi"
CLASSES = [getattr(zorvela, name) for name in zorvela.__all__ if isinstance(getattr(zorvela, name), type)]
RESULTS = [cls for cls in CLASSES if not issubclass(cls, Exception)]


def members(cls):
    return sorted(name for name, value in vars(cls).items() if isinstance(value, property))


def reading_everything():
    """A program that reads every member of every class, each into a variable of the type that its text names."""
    lines = ["import zorvela", "from typing import *"]
    for cls in RESULTS:
        lines.append(f"def read_{cls.__name__.lower()}(one: zorvela.{cls.__name__}) -> None:")
        for name in members(cls):
            declared = re.match(r"([\w\[\], |]+?)(?:, \d|:)", getattr(cls, name).__doc__).group(1)
            for known in RESULTS:
                declared = re.sub(rf"\b{known.__name__}\b", "zorvela." + known.__name__, declared)
            declared = re.sub(r"^(.*) \| None$", r"Optional[\1]", declared)
            lines.append(f"    v_{name}: {declared} = one.{name}")
    lines += ["for one in zorvela.predict_many(['a', b'b'], jobs=2, progress=True, structure='c'):",
              "    frame = one.to_frame()", "    text: str = one.report('csv')",
              "for other in zorvela.predict_many(['a'], errors='return'):",
              "    if isinstance(other, zorvela.Error):", "        where: Tuple[Optional[str], Optional[int]] = "
              "(other.file, other.line)",
              "made: zorvela.Results = zorvela.predict_shifts('MQP', {(1, 'CA'): 55.1}, first=1)",
              "with open('x', 'rb') as file:", "    zorvela.predict(file, chain=['A'], list='all', sequence='M')"]
    return "\n".join(lines) + "\n"


class Types(folder.InFolder):
    @TYPED
    def test_a_program_that_reads_every_member(self):
        package = pathlib.Path(zorvela.__file__).parent
        self.put("program.py", reading_everything())
        done = subprocess.run(["mypy", "--strict", "--cache-dir", self.path("cache"), self.path("program.py")],
                              env={**os.environ, "MYPYPATH": str(package.parent)}, cwd=self.folder,
                              capture_output=True, text=True, check=False)
        self.assertEqual(done.stdout, "Success: no issues found in 1 source file\n")

    @TYPED
    def test_the_package_itself(self):
        done = subprocess.run(["mypy", "--strict", "--ignore-missing-imports", "--cache-dir", self.path("cache"),
                               "-p", "zorvela"], cwd=program.SOURCE / "python", capture_output=True, text=True,
                              check=False)
        self.assertIn("Success", done.stdout)

    def test_the_types_are_those_of_the_module(self):
        stubs = STUBS.read_text(encoding="utf-8")
        for cls in RESULTS:
            body = re.search(rf"^class {cls.__name__}:\n((?:    .*\n|\n)*)", stubs, re.MULTILINE).group(1)
            self.assertEqual(sorted(re.findall(r"^    (\w+): Final", body, re.MULTILINE)), members(cls), cls.__name__)

    def test_every_member_has_a_text_with_its_type(self):
        for cls in RESULTS:
            for name in members(cls):
                self.assertRegex(getattr(cls, name).__doc__, r"^[\w\[\], |]+: .*\.$", f"{cls.__name__}.{name}")

    def test_help(self):
        text = pydoc.plain(pydoc.render_doc(zorvela))
        for words in ("predict(source", "Raises FileError", "probability of cis (0 to 1)", "class Proline"):
            self.assertIn(words, text)
        self.assertNotIn("zorvela._zorvela.", text)

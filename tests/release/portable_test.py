"""A folder that runs from any place, as its users have it: ZORVELA_FOLDER names it, unpacked.

ZORVELA_RUNNER holds the words of a command that runs its programs, such as an emulator of their processor or system.
ZORVELA_PROGRAM and ZORVELA_KIT are the programs of a native build, whose bytes count.
"""
import json
import os
import pathlib
import shlex
import shutil
import subprocess
import unittest

from zorvela_tests import folder, program

FOLDER = pathlib.Path(os.environ["ZORVELA_FOLDER"])
RUNNER = shlex.split(os.environ.get("ZORVELA_RUNNER", ""))
WINDOWS = (FOLDER / "zorvela-kit.exe").exists()
SUFFIX = ".exe" if WINDOWS else ""
PROTEINS = 300


def bytes_of(*command, **options):
    done = subprocess.run([*map(str, command)], capture_output=True, timeout=1200, check=False,
                          **{"env": program.environment(), **options})
    return done.returncode, done.stdout, done.stderr


def kit(*arguments, place=FOLDER, **options):
    return bytes_of(*RUNNER, place / ("zorvela-kit" + SUFFIX), *arguments, **options)


def zorvela(*arguments, place=FOLDER, **options):
    return bytes_of(*RUNNER, place / ("zorvela" + SUFFIX), *arguments, **options)


def numbers_and_rest(text):
    """The numbers of a JSON text that are not whole, in its order, and its value without them."""
    numbers = []
    rest = json.loads(text, parse_float=lambda digits: numbers.append(float(digits)) or 0.0)
    return numbers, rest


class SameNumbers(folder.InFolder):
    def test_both_examples(self):
        for name in ("nuclease", "ubiquitin"):
            status, out, _ = zorvela("-in", f"examples/{name}.tab", "-sum", self.path("pred.tab"), cwd=FOLDER)
            self.assertEqual(status, 0)
            if WINDOWS:  # the program takes the separator of its tables from PATH
                out = out.replace(b".\\tab\\", b"./tab/")
            expected = (program.SOURCE / "examples" / f"{name}.out").read_bytes()
            self.assertEqual(out.rsplit(b" Running time", 1)[0], expected.rsplit(b" Running time", 1)[0])
            table = (program.SOURCE / "examples" / f"{name}.pred.tab").read_bytes()
            self.assertEqual(pathlib.Path(self.path("pred.tab")).read_bytes(), table)

    def test_table_csv_and_html_of_real_proteins(self):
        entries = program.real_entries()[:PROTEINS]
        self.assertEqual(len(entries), PROTEINS)
        for way in ("table", "csv", "html"):
            arguments = ("run", "--tables", program.TABLES, "--format", way, *entries)
            self.assertEqual(kit(*arguments), bytes_of(program.KIT, *arguments), way)

    def test_json_of_real_proteins(self):
        """Its last digits are those of exp and log, which differ in the last bit from one C library to another."""
        arguments = ("run", "--tables", program.TABLES, "--format", "json", *program.real_entries()[:PROTEINS])
        here, rest_here = numbers_and_rest(kit(*arguments)[1])
        native, rest_native = numbers_and_rest(bytes_of(program.KIT, *arguments)[1])
        self.assertEqual(rest_here, rest_native)
        pairs = list(zip(here, native))
        different = [pair for pair in pairs if pair[0] != pair[1]]
        print(f"{len(different)} of {len(pairs)} numbers differ", *different[:3])
        for one, other in different:
            self.assertAlmostEqual(one, other, delta=1e-12 * max(1, abs(other)))


class AnyPlace(folder.InFolder):
    """The examples' answer stays the same wherever the folder and the files are."""

    def setUp(self):
        super().setUp()
        self.place = pathlib.Path(self.folder)
        shutil.copy(program.SOURCE / "examples" / "nuclease.tab", self.folder)
        self.expected = self.csv("nuclease.tab")
        self.assertIn(b",117,117,K,N,", self.expected)

    def csv(self, file, **options):
        status, out, err = kit("run", "--format", "csv", file, **{"cwd": self.folder, **options})
        self.assertEqual((status, err), (0, b""))
        return out

    def test_the_demonstration_from_another_folder(self):
        status, out, err = kit("demo", cwd=self.folder)
        self.assertEqual((status, err), (0, b""))
        self.assertIn(b"K116    P117     N118", out)

    def test_a_folder_that_nobody_may_write_with_blanks_in_its_name(self):
        place = self.place / "my own programs" / "zorvela 1"
        shutil.copytree(FOLDER, place)
        for path in [place, *place.rglob("*")]:
            path.chmod(path.stat().st_mode & ~0o222)
        self.addCleanup(lambda: [path.chmod(0o755) for path in [place, *place.rglob("*")]])
        self.place.chmod(0o755)
        # Root may write everywhere. Wine needs a folder of the user's own.
        nobody = {"user": "nobody"} if os.geteuid() == 0 and not WINDOWS else {}
        self.assertEqual(self.csv("nuclease.tab", place=place, **nobody), self.expected)

    def test_the_program_with_its_tables_named(self):
        status, _, _ = zorvela("-in", "nuclease.tab", cwd=self.folder, env=program.environment(ZORVELA_DIR=FOLDER))
        self.assertEqual(status, 0)
        self.assertEqual(self.read("pred.tab"), (program.SOURCE / "examples" / "nuclease.pred.tab").read_text())

    def test_names_of_files_in_other_scripts(self):
        for name in ("Нуклеаза.tab", "核酸酶.tab", "a b.tab"):
            shutil.copy(self.path("nuclease.tab"), self.path(name))
            self.assertEqual(self.csv(name), self.expected.replace(b"nuclease.tab", name.encode()))
            status, _, _ = kit("run", "--output", "Ответ.html", "--format", "html", name, cwd=self.folder)
            self.assertEqual((status, (self.place / "Ответ.html").exists()), (0, True))

    def test_line_ends_of_windows(self):
        self.put("crlf.tab", self.read("nuclease.tab").replace("\n", "\r\n"))
        self.assertEqual(self.csv("crlf.tab"), self.expected.replace(b"nuclease.tab", b"crlf.tab"))

    def test_a_language_with_decimal_commas(self):
        comma = program.environment(**program.decimal_commas(self.folder))
        self.assertEqual(self.csv("nuclease.tab", env=comma), self.expected)

    @unittest.skipUnless(WINDOWS, "for Windows alone")
    def test_names_as_windows_has_them(self):
        self.place.joinpath("inner").mkdir()
        shutil.copy(self.path("nuclease.tab"), self.path("inner"))
        drive = "Z:" + self.folder.replace("/", "\\")
        for name in ("inner\\nuclease.tab", drive + "\\inner\\nuclease.tab"):
            self.assertEqual(self.csv(name), self.expected.replace(b"nuclease.tab", name.encode()))
        status, _, err = kit("run", "--output", drive + "\\inner\\answer.csv", "--format", "csv", "nuclease.tab",
                             cwd=self.folder)
        self.assertEqual((status, err), (0, b""))
        self.assertEqual((self.place / "inner" / "answer.csv").read_bytes(), self.expected)

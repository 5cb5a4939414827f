"""The help of the program and of every sub-command: one voice, 80 columns, and examples that work as written."""
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

from zorvela_tests import program

COMMANDS = list(dict.fromkeys(line.split("\t")[0] for line in program.kit("--list-options").stdout.splitlines()))
VALUES = {"FILE", "DIR", "DIR|FILE", "N", "NAME", "[OLD=]NEW", "FORMAT", "PROGRAM", "MODE"}
ROW = re.compile(r"^  (?=\S)(.*?)(?:  +|\n {26})(\S.*(?:\n {26}\S.*)*)", re.MULTILINE)


def help_of(*command):
    return program.kit(*command, "--help").stdout


def rows(text):
    """Names of options and arguments, and their texts on one line."""
    table = text.split("\n\n", 2)[2].split("\nExamples:")[0]
    table = re.sub(r"^(Programs|Formats|Calls|Flags):(.|\n)*", "", table, flags=re.MULTILINE)
    return [(name, " ".join(words.split())) for name, words in ROW.findall(table)]


def flags_of(name):
    """["-o", "--output"] of "-o, --output FILE"."""
    return [word.strip(",") for word in name.split() if word.startswith("-")]


def examples(text):
    """The command lines at the end of a help text."""
    end = text.replace("\\\n", " ").split("\nExamples:\n", 1)[1]
    return re.findall(r"^  (zorvela-kit .+)$", end, re.MULTILINE)


class Help(unittest.TestCase):
    def test_every_option_is_a_row_in_one_voice(self):
        listed = [line.split("\t")[:2] for line in program.kit("--list-options").stdout.splitlines()]
        self.assertGreater(len(listed), 50)
        for command in COMMANDS:
            found = rows(help_of(command))
            flags = [",".join(flags_of(name)) for name, _ in found if name.startswith("-")]
            self.assertEqual(flags, ["-h,--help", *(names for owner, names in listed if owner == command)])
            for name, text in found:
                with self.subTest(command=command, option=name):
                    self.assertRegex(text, r"^[A-Z]")
                    self.assertNotRegex(text, r"\.$|\.( \[| [A-Z])|[Dd]efault(?!: [^\]]+\]$)")
                    self.assertLessEqual(set(name.replace("...", "").split()[len(flags_of(name)):]), VALUES)

    def test_the_shape(self):
        for command in [[], *([name] for name in COMMANDS)]:
            with self.subTest(command=command):
                lines = help_of(*command).splitlines()
                self.assertRegex(lines[0], r"^[A-Z].*[^.]$")
                self.assertEqual(lines[1], "")
                self.assertTrue(lines[2].startswith("Usage: zorvela-kit"), lines[2])
                self.assertEqual([line for line in lines if len(line) > 80 or re.search(r"[a-z)]\.$|\s$", line)], [])

    def test_defaults_and_values(self):
        text = dict(rows(help_of("run")))
        self.assertRegex(text["--format FORMAT"], r" \[values: table, csv, json, html\] \[default: table\]$")
        self.assertRegex(text["--output FILE"], r" \[default: standard output\]$")
        self.assertRegex(text["--jobs N"], r" \[values: 1 to 256\] \[default: one for each core\]$")
        self.assertRegex(text["--residue N"], r" \[needs --explain\]$")
        self.assertRegex(text["--protonated"], r" \[not with --deuterated\]$")
        self.assertRegex(dict(rows(help_of("annotate")))["--output FILE"], r" \[required\]$")
        self.assertRegex(dict(rows(help_of("train")))["--trim N"], r" \[values: 0 or 1 to 100\] \[default: 4\]$")

    def test_wrong_arguments_are_one_line(self):
        for arguments, wrong, command in ((["frobnicate"], "frobnicate", "zorvela-kit"), (["--"], "required", "zorvela-kit"),
                                          (["run"], "FILE or --files-from is required", "zorvela-kit run"),
                                          *((["evaluate", "--entries", "a", "--labels", "b", option, value],
                                             option + " requires --cross-validate", "zorvela-kit evaluate")
                                            for option, value in (("--trim", "3"), ("--pool", "equal"), ("--neighbours", "x"))),
                                          (["run", "--format", "x\x1b[31m", "a"], "--format: x?[31m not in", "zorvela-kit run"),
                                          (["run", "--jobs", "0", "a"], '--jobs: "0" is not 1 to 256', "zorvela-kit run")):
            with self.subTest(arguments=arguments):
                done = program.kit(*arguments)
                self.assertNotEqual(done.returncode, 0)
                self.assertEqual(done.stdout, "")
                self.assertRegex(done.stderr, f"^zorvela-kit: .*{re.escape(wrong)}.*; see {command} --help\n$")


class Examples(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for source, name in ((program.SOURCE / "examples", "examples"), (program.TABLES, "tab")):
            (self.folder / name).symlink_to(source)
        for kind, names in (("tables", ["nuclease.tab", "ubiquitin.tab"]), ("pdb", ["nuclease.pdb.gz", "ubiquitin.pdb.gz"])):
            (self.folder / kind).mkdir()
            for name in names:
                (self.folder / kind / name).symlink_to(program.SOURCE / "examples" / name)
        (self.folder / "zorvela-kit").symlink_to(pathlib.Path(program.KIT).resolve())

    def check(self, commands, folder):
        path = f"{self.folder}:{os.environ['PATH']}"
        for command in commands:
            lines = examples(help_of(command))
            self.assertEqual(len(lines), 2, command)
            for line in lines:
                with self.subTest(line):
                    self.assertTrue(line.startswith(f"zorvela-kit {command}"))
                    done = subprocess.run(line, shell=True, cwd=folder, env=program.environment(PATH=path), timeout=300,
                                          capture_output=True, text=True, check=False)
                    self.assertEqual(done.returncode, 0, done.stderr)

    def test_each_works_as_written(self):
        self.check([name for name in COMMANDS if name not in ("train", "evaluate")], self.folder)
        self.assertIn("117", (self.folder / "omega.tbl").read_text())
        self.assertIn("true", (self.folder / "annotated.nef").read_text())
        self.assertIn("ubiquitin,", (self.folder / "labels.csv").read_text())

    def test_those_of_training_work_on_the_data(self):
        for name in ("entries", "prolines.csv", "proline_neighbour_counts.csv", "random_coil"):
            (self.folder / name).symlink_to(program.data_folder() / name)
        self.check(["train", "evaluate"], self.folder)
        for name in program.TABLES.glob("*"):
            self.assertEqual((self.folder / "tables" / name.name).read_bytes(), name.read_bytes())

"""The first minutes with zorvela-kit: without arguments, the demonstration, where the tables are found."""
import os
import pathlib
import shutil
import subprocess

from zorvela_tests import folder, program


class WithoutArguments(folder.InFolder):
    def test_shows_three_commands_that_work(self):
        result = program.kit(cwd=self.folder)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        commands = [line.strip() for line in result.stdout.splitlines() if line.startswith("  zorvela-kit ")]
        self.assertEqual(len(commands), 3)
        shutil.copy(program.SOURCE / "examples" / "nuclease.str", self.path("your.str"))
        for command in commands:
            shown = program.kit(*command.split()[1:], cwd=self.folder, env=program.environment(ZORVELA_DIR=program.SOURCE))
            self.assertEqual(shown.returncode, 0, command + shown.stderr)

    def test_an_unknown_word_is_still_an_error(self):
        self.assertNotEqual(program.kit("your.str").returncode, 0)
        self.assertNotEqual(program.kit("").returncode, 0)


class Demo(folder.InFolder):
    def test_predicts_the_example_as_run_does(self):
        result = program.kit("demo", "--tables", program.TABLES, cwd=self.folder)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(os.listdir(self.folder), [])
        shutil.copy(program.SOURCE / "examples" / "nuclease.str", self.folder)
        by_run = program.run("nuclease.str", tables=program.TABLES, cwd=self.folder)
        self.assertIn(by_run.stdout, result.stdout)
        # What it says of the crystal structure: proline 117 is cis.
        self.assertRegex(result.stdout, r"(?m)^\* .* K116 +P117 +N118 .* cis$")

    def test_says_what_to_read(self):
        text = program.kit("demo", "--tables", program.TABLES).stdout
        for column in ("P_CIS_NORM", "Call", "Shifts", "CG"):
            self.assertRegex(text, rf"(?m)^  {column} +\w")
        self.assertLessEqual(max(map(len, text.split("How to read it")[1].splitlines())), 80)


class Tables(folder.InFolder):
    """A copy of the program finds the tables that lie with it, from any folder and by no variable."""

    def test_beside_the_program_in_an_installation_and_by_a_link(self):
        place = pathlib.Path(self.folder)
        for program_file, tables in ((place / "one folder" / "zorvela-kit", place / "one folder" / "tab"),
                                     (place / "usr/bin/zorvela-kit", place / "usr/share/zorvela/tab")):
            program_file.parent.mkdir(parents=True)
            tables.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(program.KIT, program_file)
            shutil.copytree(program.TABLES, tables)
            link = place / ("link to " + tables.parent.name)
            link.symlink_to(program_file)
            for path in (program_file, link):
                result = subprocess.run([path, "demo"], cwd="/", env=program.environment(), capture_output=True, text=True,
                                        timeout=60, check=False)
                self.assertEqual(result.returncode, 0, result.stderr)

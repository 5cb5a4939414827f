"""run with structures, annotate and label: a full device and a reader that went away."""
import os
import shutil
import signal
import subprocess
import unittest

from zorvela_tests import folder, program

EXAMPLES = program.SOURCE / "examples"
NEF = program.SOURCE / "kit" / "tests" / "files" / "nef_entry.nef"


class Streams(folder.InFolder):
    def setUp(self):
        super().setUp()
        for name in ("entries", "models"):
            os.mkdir(self.path(name))
        shutil.copy(EXAMPLES / "nuclease.tab", self.path("entries"))
        shutil.copy(EXAMPLES / "nuclease.pdb.gz", self.path("models"))
        shifts, model = "entries/nuclease.tab", "models/nuclease.pdb.gz"
        self.commands = [
            *(["run", shifts, "--structure", model, "--format", form] for form in ("table", "csv", "json", "html")),
            ["annotate", NEF, "--output", "-"],
            ["label", "--entries", "entries", "--structures", "models", "--output", "-"]]

    def kit(self, command, **options):
        tables = [] if command[0] == "label" else ["--tables", program.TABLES]
        return program.kit(*command, *tables, cwd=self.folder, **options)

    def test_a_full_device_is_an_error(self):
        for command in self.commands:
            with open("/dev/full", "w", encoding="utf-8") as full:
                result = self.kit(command, stdout=full)
            self.assertEqual(result.returncode, 1, command)
            *notes, error = result.stderr.splitlines()
            self.assertEqual(error, "zorvela-kit: standard output: cannot be written: No space left on device; choose another "
                             "place with --output, or make room", command)
            self.assertTrue(all(line.startswith("zorvela-kit: note: ") for line in notes), result.stderr)

    def test_a_reader_that_went_away(self):
        for command in self.commands:
            reading, writing = os.pipe()
            os.close(reading)
            result = self.kit(command, stdout=writing, stderr=subprocess.PIPE)
            os.close(writing)
            self.assertEqual(result.returncode, -signal.SIGPIPE, command)
            self.assertTrue(all(line.startswith("zorvela-kit: note: ") for line in result.stderr.splitlines()), result.stderr)


if __name__ == "__main__":
    unittest.main()

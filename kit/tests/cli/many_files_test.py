"""Many files: lists of them, folders, choices without a name, and what is said when some fail."""
import os
import subprocess

from zorvela_tests import folder, hostile, program


class ManyFiles(folder.InFolder):
    def put(self, name, content):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        return super().put(name, content)

    def tables(self, *names):
        for name in names:
            self.put(name, program.full_table("APK"))

    def run_csv(self, *arguments, **options):
        ended = program.run("--format", "csv", *arguments, cwd=self.folder, **options)
        return ended, [row["file"] for row in program.csv_rows(ended.stdout)]

    def test_a_list_of_files(self):
        self.tables("a.tab", "b c.tab", "d.tab")
        self.put("list", "\ufeffb c.tab\r\n\na.tab\n")
        for arguments, options in ((["--files-from", "list"], {}),
                                   (["--files-from", "-"], {"input": "b c.tab\na.tab"}),
                                   (["--files-from", "-", "--null"], {"input": "b c.tab\0a.tab\0"})):
            ended, files = self.run_csv(*arguments, **options)
            self.assertEqual((ended.returncode, files), (0, ["b c.tab", "a.tab"]), ended.stderr)
            self.assertEqual(self.run_csv("d.tab", *arguments, **options)[1], ["d.tab", "b c.tab", "a.tab"])
        ended = program.kit("import", "--files-from", "list", "--output", "out/", cwd=self.folder)
        self.assertEqual(sorted(os.listdir(self.path("out"))), ["a.tab", "b c.tab"], ended.stderr)

    def test_lists_that_will_not_do(self):
        self.tables("a.tab")
        for name, content, message in (("zero", "a.tab\0", "zero: has names that end with a zero byte; add --null"),
                                       ("empty", "\n\n", "empty: names no files; write one name on each line")):
            self.put(name, content)
            ended = program.run("--files-from", name, cwd=self.folder)
            self.assertEqual((ended.returncode, ended.stderr), (1, "zorvela-kit: %s\n" % message))
        self.put("list", "a.tab\n")
        ended = program.run("--files-from", "list", "--output", "list", cwd=self.folder)
        self.assertIn("list: is an input file", ended.stderr)
        ended = program.run(cwd=self.folder)
        self.assertIn("FILE or --files-from is required", ended.stderr)
        self.assertNotEqual(ended.returncode, 0)

    def test_a_folder_gives_its_shift_files(self):
        self.tables("f/b.tab", "f/a.tab", "f/.hidden.tab", "f/sub/c.tab", "z.tab")
        self.put("f/model.pdb", hostile.pdb_file(10))
        self.put("f/notes.txt", "Dear colleague,\n")
        os.mkfifo(self.path("f/pipe"))
        ended, files = self.run_csv("z.tab", "f")
        self.assertEqual((ended.returncode, files), (0, ["z.tab", "f/a.tab", "f/b.tab"]), ended.stderr)
        self.assertEqual(ended.stderr, "zorvela-kit: note: f: 2 files have no shifts and are ignored: model.pdb, "
                                       "notes.txt\n")
        self.put("none/notes.txt", "Dear colleague,\n")
        ended = program.run("none", cwd=self.folder)
        self.assertEqual((ended.returncode, ended.stderr),
                         (1, "zorvela-kit: none: is a folder without shift files; name the files\n"))

    def test_a_file_that_fails_alone_has_one_line_and_no_summary(self):
        ended = program.run("none.tab", cwd=self.folder)
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr.count("\n")), (1, "", 1))
        ended = program.run("none.tab", "--output", "out", cwd=self.folder)
        self.assertNotIn("0 prolines", self.read("out"))
        self.assertIn("none.tab: cannot be read", self.read("out"))

    def test_many_failures_are_grouped_by_reason(self):
        self.tables("good.tab")
        empty = ["e%d.tab" % i for i in range(8)]
        for name in empty:
            self.put(name, "")
        other = ["o%d.tab" % i for i in range(3)]
        for i, name in enumerate(other):
            self.put(name, "\n" * i + "Dear %d colleague\n" % i)
        for command, what in (("run", "predicted"), ("import", "imported")):
            options = ["--tables", program.MADE_TABLES] if command == "run" else ["--output", "out/"]
            ended = program.kit(command, "good.tab", *other, *empty, *options, cwd=self.folder)
            last = ended.stderr.splitlines()[-3:]
            self.assertEqual(last[:2], [
                "zorvela-kit: 11 of 12 files could not be " + what,
                "zorvela-kit: 8 files, such as e0.tab: is empty; give a file with chemical shifts"])
            self.assertTrue(last[2].startswith("zorvela-kit: 3 files, such as o0.tab: is not a known kind of shift file"))

    def test_few_failures_of_many_files_are_named_at_the_end(self):
        good = ["g%02d.tab" % i for i in range(10)]
        self.tables(*good)
        self.put("e1.tab", "")
        self.put("e2.tab", "")
        ended = program.run("e1.tab", "e2.tab", "none.tab", *good, cwd=self.folder)
        self.assertEqual(ended.stderr.splitlines()[-3:], [
            "zorvela-kit: 3 of 13 files could not be predicted",
            "zorvela-kit: 2 files, such as e1.tab: is empty; give a file with chemical shifts",
            "zorvela-kit: none.tab: cannot be read: No such file or directory; check the name and the permissions"])

    def test_label_passes_pipes_over(self):
        self.tables("entries/a.tab")
        self.put("models/a.pdb", hostile.pdb_file(40))
        os.mkfifo(self.path("models/pipe"))
        os.mkfifo(self.path("entries/p.tab"))
        try:
            ended = subprocess.run([program.KIT, "label", "--entries", "entries", "--structures", "models", "--output",
                                    "labels.csv"], cwd=self.folder, timeout=20, check=False, capture_output=True)
        except subprocess.TimeoutExpired:
            self.fail("it waits for a pipe")
        self.assertEqual(ended.returncode, 0, ended.stderr)

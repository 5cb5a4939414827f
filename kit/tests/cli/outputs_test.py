"""No sub-command of zorvela-kit loses an input or an earlier file, whatever path its output has."""
import os
import resource
import shutil
import sys
import unittest

from zorvela_tests import folder, hostile, program

sys.path.insert(0, str(program.SOURCE / "kit" / "tests" / "train"))
import made_data  # noqa: E402

REFUSED = "zorvela-kit: %s: is an input file; choose another place with --output\n"
UNWRITABLE = "zorvela-kit: %s: cannot be written: %s; choose another place with --output, or free disk space\n"


class InFolder(folder.InFolder):
    def setUp(self):
        super().setUp()
        self.input = self.put("in.tab", program.full_table("APK"))
        self.csv = program.run("--format", "csv", self.input).stdout
        self.assertEqual(len(self.csv.splitlines()), 2)

    def run_to(self, output, *arguments, **options):
        return program.run("--format", "csv", "--output", output, *(arguments or [self.input]), **options)

    def check_written(self, ended, name):
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (0, "", ""))
        self.assertEqual(self.read(name), self.csv)


class TwoOutputs(InFolder):
    """Each would cut or mix the other."""

    def setUp(self):
        super().setUp()
        self.put("labels.csv", "entry,resid,label_structure,cluster\nin,2,cis,1\n")
        self.command = ["evaluate", "--entries", self.folder, "--labels", self.path("labels.csv"), "--tables",
                        program.MADE_TABLES]

    def test_standard_output_twice(self):
        os.makedirs(self.path("out"))
        both = ["--roc", "-", "--calibration", "-", "--output", self.path("f")]
        with open(self.path("out/x"), "w", encoding="utf-8") as stdout:
            for ended in (program.kit(*self.command, *both), program.kit(*self.command, *both, stdout=stdout),
                          program.kit(*self.command, "--roc", "/dev/stdout"),
                          program.kit(*self.command, "--roc", self.path("out/x"), stdout=stdout)):
                self.assertEqual(ended.returncode, 1)
                self.assertIn("would hold two outputs; give each its own file", ended.stderr)

    def test_devices_take_any_number(self):
        ended = program.kit(*self.command, "--roc", "/dev/null", "--calibration", "/dev/null")
        self.assertNotIn("two outputs", ended.stderr)

    def test_the_file_of_the_messages(self):
        with open(self.path("x"), "w", encoding="utf-8") as stderr:
            ended = self.run_to(self.path("x"), self.input, stderr=stderr)
        self.assertEqual(ended.returncode, 1)
        self.assertIn("x: receives the messages (standard error); choose another place with --output", self.read("x"))


class Words(InFolder):
    def test_a_message_never_holds_a_whole_cell(self):
        long = "x" * 1000000
        for labels in ("entry,resid,label_structure,cluster\n%s,2,cis,1\n" % long,
                       "entry,resid,label_structure,cluster\nin,%s,cis,1\n" % long,
                       "entry,resid,label_structure,cluster\nin,2,%s,1\n" % long):
            ended = program.kit("evaluate", "--entries", self.folder, "--labels", self.put("labels.csv", labels),
                                "--tables", program.MADE_TABLES)
            self.assertEqual((ended.returncode, ended.stderr.count("\n")), (1, 1))
            self.assertLess(len(ended.stderr), 2500)

    def test_labels_have_names_that_are_read_back(self):
        for name in ("good", "=f", "two\nlines", "esc\x1b", " blank", "a,b;c"):
            self.put_in("entries", name + ".tab", program.full_table("APK"))
        self.put_in("models", "m.pdb", hostile.pdb_file(40))
        ended = program.kit("label", "--entries", self.path("entries"), "--structures", self.path("models"),
                            "--output", self.path("labels.csv"))
        self.assertEqual(ended.returncode, 1)
        self.assertEqual(ended.stderr.count("has a name that cannot be read back"), 3)
        text = self.read("labels.csv").replace(",,,,,,", ",cis,1,0,,,")
        self.put("labels.csv", text)
        ended = program.kit("evaluate", "--entries", self.path("entries"), "--labels", self.path("labels.csv"),
                            "--tables", program.MADE_TABLES)
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))
        self.assertIn("3 prolines labelled by structure", ended.stdout)
        self.assertEqual({row["entry"] for row in program.csv_rows(text)}, {"good", "'=f", "a,b;c"})

    def put_in(self, place, name, content):
        os.makedirs(self.path(place), exist_ok=True)
        return self.put(os.path.join(place, name), content)


class Inputs(InFolder):
    def check_refused(self, ended, output, kept):
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (1, "", REFUSED % output))
        for name, text in kept.items():
            self.assertEqual(self.read(name), text)

    def test_standard_input(self):
        text = self.read("in.tab")
        for command in (["run", "--tables", program.MADE_TABLES], ["import"]):
            with self.subTest(command=command[0]), open(self.input, encoding="utf-8") as stdin:
                ended = program.kit(*command, "--output", self.input, "-", stdin=stdin)
                self.check_refused(ended, self.input, {"in.tab": text})

    def test_standard_output(self):
        """As cat does: else the results would end up after the shifts."""
        text = self.read("in.tab")
        for command in (["run", "--tables", program.MADE_TABLES], ["import"]):
            with self.subTest(command=command[0]), open(self.input, "a", encoding="utf-8") as stdout:
                ended = program.kit(*command, self.input, stdout=stdout)
                self.assertEqual((ended.returncode, ended.stderr), (1, REFUSED % "standard output"))
                self.assertEqual(self.read("in.tab"), text)

    def test_every_other_command_asks_the_same(self):
        """None of the files needs to be what it should: outputs are checked before anything is read."""
        shutil.copytree(program.MADE_TABLES, self.path("tab"))
        os.mkdir(self.path("entries"))
        os.mkdir(self.path("models"))
        entry, model = self.put("entries/a.tab", "entry\n"), self.put("models/a.pdb", "model\n")
        table = self.path("tab/rcadj.tab")
        label = ["label", "--entries", self.path("entries"), "--structures", self.path("models")]
        run = ["run", entry, "--structure", model, "--tables", self.path("tab")]
        annotate = ["annotate", entry, "--tables", self.path("tab")]
        for command, outputs in ((label, (entry, model)), (run, (entry, model, table)), (annotate, (entry, table))):
            for output in outputs:
                with self.subTest(command=command, output=output):
                    kept = os.path.relpath(output, self.folder)
                    self.check_refused(program.kit(*command, "--output", output), output, {kept: self.read(kept)})

    def test_standard_input_twice_is_refused(self):
        for command in (["run", "--tables", program.MADE_TABLES], ["import"]):
            ended = program.kit(*command, "-", self.input, "-", input="")
            self.assertEqual((ended.returncode, ended.stdout, ended.stderr),
                             (1, "", "zorvela-kit: standard input: is given twice as -; give - once, and other files "
                              "by name\n"))

    def test_import_writes_no_two_tables_into_one_file(self):
        """Tables of the day before that are links: to one that is there, to one that is not."""
        files = [self.put(name, self.read("in.tab")) for name in ("a.tab", "b.tab")]
        for links in ({"b.tab": "a.tab"}, {"a.tab": "both", "b.tab": "both"}):
            with self.subTest(links=links):
                os.mkdir(self.path("out"))
                for name, target in links.items():
                    os.symlink(target, self.path("out/" + name))
                ended = program.kit("import", *files, "--output", self.path("out"))
                self.assertEqual((ended.returncode, ended.stderr),
                                 (1, "zorvela-kit: %s: would hold two outputs; give each its own file\n"
                                  % self.path("out/b.tab")))
                self.assertEqual(sorted(os.listdir(self.path("out"))), sorted(links))
                shutil.rmtree(self.path("out"))


class TrainingInputs(InFolder):
    def setUp(self):
        super().setUp()
        os.mkdir(self.path("data"))
        self.data = made_data.Data(self.path("data"))
        for i in range(4):
            self.data.add(f"c{i}", made_data.sequence(i), "cis", 1.0 + i, 24.0 + i)
            self.data.add(f"t{i}", made_data.sequence(50 + i), "trans", -1.0 - i, 27.0 + i)
        self.data.write_labels()

    def check_refused(self, arguments, output):
        before = self.snapshot()
        ended = program.kit(*arguments)
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (1, "", REFUSED % output))
        self.assertEqual(self.snapshot(), before)

    def snapshot(self):
        texts = {}
        for folder, _, names in os.walk(self.folder):
            for name in names:
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    texts[os.path.join(folder, name)] = file.read()
        return texts

    def test_train_keeps_an_entry_of_a_table_s_name(self):
        self.put("data/entries/randcoil.tab", program.full_table("APK"))
        self.check_refused(self.data.train("entries"), self.data.path("entries/randcoil.tab"))

    def test_evaluate_keeps_labels_entries_tables_and_sources(self):
        shutil.copytree(program.MADE_TABLES, self.path("tab"))
        evaluate = ["evaluate", *self.data.proteins(), "--tables", self.path("tab")]
        for option in ("--predictions", "--roc", "--calibration", "--output"):
            for output in (self.data.path("labels.csv"), self.data.path("entries/c0.tab"), self.path("tab/rcadj.tab")):
                with self.subTest(option=option, output=output):
                    self.check_refused([*evaluate, option, output], output)
        folds = ["evaluate", *self.data.proteins(), *self.data.sources(), "--cross-validate", "2"]
        self.check_refused([*folds, "--roc", self.data.path("coil.csv")], self.data.path("coil.csv"))

    def test_evaluate_writes_no_two_results_into_one_file(self):
        evaluate = ["evaluate", *self.data.proteins(), "--tables", program.MADE_TABLES]
        new, alias = self.path("new.csv"), self.folder + "/./new.csv"
        ended = program.kit(*evaluate, "--roc", new, "--calibration", alias)
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr),
                         (1, "", "zorvela-kit: %s: would hold two outputs; give each its own file\n" % alias))
        self.assertFalse(os.path.exists(new))

    def test_options_without_sense_are_refused(self):
        for option, value in (("--limit-percent", "nan"), ("--limit-percent", "1e-300"), ("--trim", "nan"),
                              ("--trim", "1e-9"), ("--trim", "inf"), ("--widen-proline", "nan"),
                              ("--widen-neighbours", "1e-30"), ("--trim", "-1"), ("--pseudocount", "nan")):
            with self.subTest(option=option, value=value):
                ended = program.kit(*self.data.train("tab", option + "=" + value))
                self.assertNotEqual(ended.returncode, 0)
                self.assertIn(option, ended.stderr)
                self.assertFalse(os.path.exists(self.data.path("tab")))
        evaluate = ["evaluate", *self.data.proteins(), "--tables", program.MADE_TABLES]
        label = ["label", "--entries", self.data.path("entries"), "--structures", self.folder, "--output", "-"]
        for command, option, values in ((evaluate, "--bootstrap", ("nan", "-1")),
                                        (label, "--identity", ("nan", "inf", "49"))):
            for value in values:
                with self.subTest(option=option, value=value):
                    ended = program.kit(*command, option + "=" + value)
                    self.assertNotEqual(ended.returncode, 0)
                    self.assertEqual(ended.stdout, "")
                    self.assertIn(option, ended.stderr)

    def test_no_table_is_written_that_could_not_be_used(self):
        path = "data/entries/t0.tab"
        text = self.read(path)
        row = next(line for line in text.splitlines(True) if line.split()[2:3] == ["CB"])
        huge = row.rsplit(None, 1)[0] + " 1e38\n"
        self.put(path, text.replace(row, huge))
        os.mkdir(self.data.path("tab"))
        ended = program.kit(*self.data.train("tab", "--limit-percent", "0", "--trim", "0"))
        if ended.returncode == 0:
            check = program.run(self.input, tables=self.data.path("tab"))
            self.assertEqual(check.returncode, 0, check.stderr)
        else:
            self.assertRegex(ended.stderr, "^zorvela-kit: .*the data make no usable table: ")
            self.assertEqual(os.listdir(self.data.path("tab")), [])


class Links(InFolder):
    def test_what_standard_output_holds_stays(self):
        os.symlink("/dev/stdout", self.path("link"))
        for output in ("/dev/stdout", "/dev/fd/1", self.path("link")):
            with self.subTest(output=output):
                log = self.put("log", "earlier\n")
                with open(log, "r+", encoding="utf-8") as stdout:
                    stdout.seek(0, os.SEEK_END)
                    ended = self.run_to(output, stdout=stdout)
                self.assertEqual((ended.returncode, ended.stderr), (0, ""))
                self.assertEqual(self.read("log"), "earlier\n" + self.csv)

    def test_a_dangling_link_gets_its_target(self):
        os.mkdir(self.path("sub"))
        os.symlink("sub/second", self.path("first"))
        os.symlink("../target", self.path("sub/second"))
        self.check_written(self.run_to(self.path("first")), "target")
        self.assertTrue(os.path.islink(self.path("first")) and os.path.islink(self.path("sub/second")))


class Names(InFolder):
    def test_no_name(self):
        for option in ("--output", "--tables", "--structure", "--sequence", "--files-from", "--chain", "--list"):
            ended = program.kit("run", self.input, option, "")
            self.assertNotEqual(ended.returncode, 0)
            self.assertEqual((ended.stdout, ended.stderr),
                             ("", f"zorvela-kit: {option}: is empty; give a name; see zorvela-kit run --help\n"))


class FullDevice(unittest.TestCase):
    def test_help_and_version(self):
        for arguments in (["--help"], ["run", "--help"], ["--version"]):
            with self.subTest(arguments=arguments), open("/dev/full", "w", encoding="ascii") as full:
                ended = program.kit(*arguments, stdout=full)
                self.assertEqual((ended.returncode, ended.stderr),
                                 (1, UNWRITABLE % ("standard output", "No space left on device")))


class FullDisk(InFolder):
    def test_a_disk_that_is_full_in_the_middle_keeps_the_old_file(self):
        output = self.put("out.csv", "old")
        ended = self.run_to(output, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100)))
        self.assertEqual((ended.returncode, ended.stderr), (1, UNWRITABLE % (output, "File too large")))
        self.assertEqual(self.read("out.csv"), "old")
        self.assertEqual(sorted(os.listdir(self.folder)), ["in.tab", "out.csv"])


class ReadErrors(InFolder):
    """A process's own memory is a file that opens and whose first read fails."""

    def test_of_an_input_is_no_end_of_file(self):
        ended = program.run("/proc/self/mem")
        self.assertEqual((ended.returncode, ended.stderr),
                         (1, "zorvela-kit: /proc/self/mem: cannot be read: Input/output error; check the name and the "
                          "permissions\n"))

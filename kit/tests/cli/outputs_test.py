"""No sub-command of zorvela-kit loses an input or an earlier file, whatever path its output has."""
import os
import resource
import shutil
import subprocess
import unittest

from zorvela_tests import folder, hostile, program

REFUSED = "zorvela-kit: %s: is an input file; choose another place with --output\n"
UNWRITABLE = "zorvela-kit: %s: cannot be written: %s; choose another place with --output, or free disk space\n"


class InFolder(folder.InFolder):
    def setUp(self):
        super().setUp()
        self.input = self.put("in.tab", program.full_table("APK"))
        self.csv = program.run("--format", "csv", self.input).stdout
        self.assertEqual(len(self.csv.splitlines()), 2)

    def put(self, name, content):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        return super().put(name, content)

    def run_to(self, output, *arguments, **options):
        return program.run("--format", "csv", "--output", output, *(arguments or [self.input]), **options)

    def check_written(self, ended, name):
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (0, "", ""))
        self.assertEqual(self.read(name), self.csv)


class TwoOutputs(InFolder):
    """Each would cut or mix the other."""

    def test_in_one_place(self):
        self.put("labels.csv", "entry,resid,label_structure,cluster\nin,2,cis,1\n")
        command = ["evaluate", "--entries", self.folder, "--labels", self.path("labels.csv"), "--tables",
                   program.MADE_TABLES]
        both = ["--roc", "-", "--calibration", "-", "--output", self.path("f")]
        new, alias = self.path("new.csv"), self.folder + "/./new.csv"
        os.mkdir(self.path("out"))
        with open(self.path("out/x"), "w", encoding="utf-8") as stdout:
            for ended, name in ((program.kit(*command, *both), "standard output"),
                                (program.kit(*command, *both, stdout=stdout), "standard output"),
                                (program.kit(*command, "--roc", "/dev/stdout"), "standard output"),
                                (program.kit(*command, "--roc", self.path("out/x"), stdout=stdout), self.path("out/x")),
                                (program.kit(*command, "--roc", new, "--calibration", alias), alias)):
                self.assertEqual((ended.returncode, ended.stderr),
                                 (1, "zorvela-kit: %s: would hold two outputs; give each its own file\n" % name))
        self.assertFalse(os.path.exists(new))
        ended = program.kit(*command, "--roc", "/dev/null", "--calibration", "/dev/null")  # devices take any number
        self.assertNotIn("two outputs", ended.stderr)

    def test_the_file_of_the_messages(self):
        for stdout in (subprocess.DEVNULL, None):  # None: standard output is the same file
            with open(self.path("x"), "w", encoding="utf-8") as stderr:
                ended = self.run_to(self.path("x"), self.input, stdout=stdout or stderr, stderr=stderr)
            self.assertEqual(ended.returncode, 1)
            self.assertIn("x: receives the messages (standard error); choose another place with --output",
                          self.read("x"))


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
            self.put("entries/" + name + ".tab", program.full_table("APK"))
        self.put("models/m.pdb", hostile.pdb_file(40))
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


class Inputs(InFolder):
    def test_standard_streams(self):
        """Standard output as cat does: else the results would end up after the shifts."""
        text = self.read("in.tab")
        for command in (["run", "--tables", program.MADE_TABLES], ["import"]):
            with self.subTest(command=command[0]), open(self.input, "a+", encoding="utf-8") as file:
                into = program.kit(*command, self.input, stdout=file)
                file.seek(0)
                out_of = program.kit(*command, "--output", self.input, "-", stdin=file)
                self.assertEqual((into.returncode, into.stderr), (1, REFUSED % "standard output"))
                self.assertEqual((out_of.returncode, out_of.stderr), (1, REFUSED % self.input))
                self.assertEqual(self.read("in.tab"), text)

    def test_every_other_command_asks_the_same(self):
        """None of the files needs to be what it should: outputs are checked before anything is read."""
        shutil.copytree(program.MADE_TABLES, self.path("tab"))
        entry, model, table = self.put("entries/a.tab", "entry\n"), self.put("models/a.pdb", "model\n"), self.path("tab/rcadj.tab")
        labels, coil = self.put("labels.csv", "labels\n"), self.put("coil.csv", "coil\n")
        of_train = self.put("entries/randcoil.tab", "an entry of a table's name\n")
        data = ["--entries", self.path("entries"), "--labels", labels]
        tables = ["--tables", self.path("tab")]
        label = ["label", "--entries", self.path("entries"), "--structures", self.path("models")]
        cases = [([*label, "--output"], (entry, model)), (["annotate", entry, *tables, "--output"], (entry, table)),
                 (["run", entry, "--structure", model, *tables, "--output"], (entry, model, table)),
                 (["evaluate", *data, "--random-coil", coil, "--cross-validate", "2", "--roc"], (coil,))]
        cases += [(["evaluate", *data, *tables, option], (labels, entry, table))
                  for option in ("--predictions", "--roc", "--calibration", "--output")]
        for command, outputs in cases:
            for output in outputs:
                with self.subTest(command=command, output=output):
                    kept = self.read(os.path.relpath(output, self.folder))
                    ended = program.kit(*command, output)
                    self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (1, "", REFUSED % output))
                    self.assertEqual(self.read(os.path.relpath(output, self.folder)), kept)
        ended = program.kit("train", *data, "--output", self.path("entries"))
        self.assertEqual((ended.returncode, ended.stderr), (1, REFUSED % of_train))

    def test_standard_input_twice_is_refused(self):
        for command in (["run", "--tables", program.MADE_TABLES, "-"], ["import", "-"], ["import", "--files-from", "-"]):
            ended = program.kit(*command, self.input, "-", input="a.tab\n")
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


class Values(unittest.TestCase):
    def test_options_without_sense_are_refused(self):
        train = ["train", "--entries", "none", "--labels", "none", "--output", "none"]
        evaluate = ["evaluate", "--entries", "none", "--labels", "none"]
        label = ["label", "--entries", "none", "--structures", "none", "--output", "-"]
        for command, option, values in ((train, "--limit-percent", ("nan", "1e-300")),
                                        (train, "--trim", ("nan", "1e-9", "inf", "-1")),
                                        (train, "--widen-proline", ("nan",)), (train, "--widen-neighbours", ("1e-30",)),
                                        (train, "--pseudocount", ("nan",)), (evaluate, "--bootstrap", ("nan", "-1")),
                                        (label, "--identity", ("nan", "inf", "49"))):
            for value in values:
                with self.subTest(option=option, value=value):
                    ended = program.kit(*command, option + "=" + value)
                    self.assertNotEqual(ended.returncode, 0)
                    self.assertEqual(ended.stdout, "")
                    self.assertRegex(ended.stderr, option + ": .* is not ")

    def test_empty_values_are_refused(self):
        for command, options in (("run", ("--output", "--tables", "--structure", "--sequence", "--files-from", "--chain")),
                                 ("import", ("--list", "--chain")), ("restrain", ("--chain", "--into")),
                                 ("annotate", ("--list",))):
            for option in options:
                ended = program.kit(command, "in.tab", option, "")
                self.assertNotEqual(ended.returncode, 0)
                self.assertEqual((ended.stdout, ended.stderr), (
                    "", f"zorvela-kit: {option}: is empty; give a name; see zorvela-kit {command} --help\n"))


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

"""zorvela-kit where calls of the system fail: what it wrote is whole or not there, and it says what happened."""
import errno
import os
import resource
import signal
import stat
import unittest

from zorvela_tests import folder, program

LIBRARY = os.environ["ZORVELA_FAULTS"]
OLD = "the result of the day before\n"
FEW = 12  # reads and writes of a small run


def faults(**calls):
    """The environment in which these calls fail: write="28@1" is ENOSPC at the first write."""
    changes = {"ZORVELA_FAULT_" + name.upper(): value for name, value in calls.items()}
    return program.environment(LD_PRELOAD=LIBRARY, **changes)


def limited(**limits):
    """For a child: RLIMIT_* by name, in small letters."""
    def limit():
        for name, value in limits.items():
            resource.setrlimit(getattr(resource, "RLIMIT_" + name.upper()), (value, value))
    return limit


class Faults(folder.InFolder):
    def setUp(self):
        super().setUp()
        self.inputs = [self.put("in%d.tab" % i, program.full_table("AKPA" * (i + 1))) for i in range(3)]
        self.output = self.path("out.csv")
        self.expected = program.run("--format", "csv", *self.inputs).stdout
        self.assertEqual(len(self.expected.splitlines()), 1 + 6)

    def put_old(self):
        with open(self.output, "w", encoding="ascii") as file:
            file.write(OLD)

    def result(self):
        with open(self.output, encoding="ascii") as file:
            return file.read()

    def names(self):
        return sorted(os.listdir(self.folder))

    def run_into_file(self, **options):
        """A run that replaces a file; afterwards the file is the new one or, after a failure, the old one."""
        self.put_old()
        names = self.names()
        ended = program.run("--format", "csv", "--jobs", "2", "--output", self.output, *self.inputs, **options)
        self.assertEqual(self.names(), names)
        if ended.returncode == 0:
            self.assertEqual(self.result(), self.expected)
        return ended

    def check_refused(self, ended, cause):
        self.assertEqual(ended.returncode, 1, ended.stderr)
        self.assertEqual(ended.stderr, "zorvela-kit: %s: cannot be written: %s; choose another place with --output, "
                         "or make room\n" % (self.output, os.strerror(cause)))
        self.assertEqual(self.result(), OLD)

    def check_right(self, ended):
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))
        self.assertEqual(self.result(), self.expected)


class Reads(Faults):
    def test_short_reads_change_nothing(self):
        self.check_right(self.run_into_file(env=faults(read="short+1")))

    def test_an_interrupted_read_is_tried_again(self):
        for call in range(1, 2 * FEW + 8):
            with self.subTest(call=call):
                self.check_right(self.run_into_file(env=faults(read="%d@%d" % (errno.EINTR, call))))

    def test_a_read_error_is_never_the_end_of_a_file(self):
        struck = 0
        for call in range(1, 2 * FEW + 8):
            with self.subTest(call=call):
                ended = self.run_into_file(env=faults(read="%d@%d" % (errno.EIO, call)))
                if ended.returncode == 0:
                    continue
                struck += 1
                self.assertEqual(ended.returncode, 1)
                self.assertIn(os.strerror(errno.EIO), ended.stderr)
        self.assertGreater(struck, 9)  # seven tables and three inputs, two reads each

    def test_a_table_that_cannot_be_read_to_its_end_gives_no_prediction(self):
        self.run_into_file(env=faults(read="%d+2" % errno.EIO))
        self.assertEqual(self.result(), OLD)


class Writes(Faults):
    def test_short_and_interrupted_writes_change_nothing(self):
        for fault in ("short+1", "%d@1" % errno.EINTR, "%d@2" % errno.EINTR):
            with self.subTest(fault=fault):
                self.check_right(self.run_into_file(env=faults(write=fault)))

    def test_a_full_disk_keeps_the_old_file(self):
        for cause in (errno.ENOSPC, errno.EIO, errno.EDQUOT):
            for way in ({}, {"tmpfile": "%d+1" % errno.EOPNOTSUPP}):
                with self.subTest(cause=cause, way=way):
                    self.check_refused(self.run_into_file(env=faults(write="%d@1" % cause, **way)), cause)

    def test_data_that_do_not_reach_the_disk_get_no_name(self):
        self.check_refused(self.run_into_file(env=faults(fsync="%d@1" % errno.EIO)), errno.EIO)

    def test_a_file_system_without_fsync_is_none_the_worse(self):
        self.check_right(self.run_into_file(env=faults(fsync="%d@1" % errno.EINVAL)))

    def test_a_name_that_is_refused_keeps_the_old_file(self):
        for way in ({}, {"tmpfile": "%d+1" % errno.EOPNOTSUPP}):
            with self.subTest(way=way):
                self.check_refused(self.run_into_file(env=faults(rename="%d+1" % errno.EACCES, **way)), errno.EACCES)

    def test_file_systems_without_nameless_files(self):
        for way in ({"tmpfile": "%d+1" % errno.EOPNOTSUPP}, {"link": "%d+1" % errno.EPERM}):
            with self.subTest(way=way):
                self.put_old()
                os.chmod(self.output, 0o4640)
                ended = program.run("--format", "csv", "--output", self.output, *self.inputs, env=faults(**way))
                self.check_right(ended)
                self.assertEqual(stat.S_IMODE(os.stat(self.output).st_mode), 0o640)
                self.assertEqual(self.names(), ["in0.tab", "in1.tab", "in2.tab", "out.csv"])

    def test_a_file_size_limit_has_a_message(self):
        ended = self.run_into_file(preexec_fn=limited(fsize=100))
        self.check_refused(ended, errno.EFBIG)


class Signals(Faults):
    ENDING = [signal.SIGHUP, signal.SIGINT, signal.SIGQUIT, signal.SIGTERM, signal.SIGALRM, signal.SIGPIPE,
              signal.SIGXCPU, signal.SIGUSR1, signal.SIGUSR2, signal.SIGVTALRM, signal.SIGPROF, signal.SIGKILL]

    def test_nothing_is_left_by_any_signal_in_the_middle_of_writing(self):
        for number in self.ENDING:
            with self.subTest(signal=number):
                ended = self.run_into_file(env=faults(write="signal%d@1" % number), preexec_fn=limited(core=0))
                self.assertEqual(ended.returncode, -number)
                self.assertEqual(self.result(), OLD)

    def test_nor_where_the_temporary_file_has_a_name(self):
        for number in self.ENDING[:-1]:  # nothing can be done about SIGKILL there
            with self.subTest(signal=number):
                ended = self.run_into_file(env=faults(write="signal%d@1" % number, tmpfile="95+1"),
                                           preexec_fn=limited(core=0))
                self.assertEqual(ended.returncode, -number)
                self.assertEqual(self.result(), OLD)


def rows_without_errors(ended):
    return "".join(line for line in ended.stdout.splitlines(True) if ",error," not in line)


class Memory(Faults):
    def check_ended_in_words(self, ended):
        self.assertIn(ended.returncode, (0, 1), ended.stderr)
        for line in ended.stderr.splitlines():
            self.assertTrue(line.startswith("zorvela-kit: "), ended.stderr)
        if ended.returncode == 1:
            self.assertIn("memory", ended.stderr)

    def test_an_allocation_that_fails_is_an_error_of_a_file_or_of_the_run(self):
        failed = 0
        for allocation in [*range(1, 40, 3), *(round(40 * 1.13 ** i) for i in range(60))]:
            with self.subTest(allocation=allocation):
                ended = self.run_into_file(env=faults(new="12@%d" % allocation))
                self.check_ended_in_words(ended)
                failed += ended.returncode
        self.assertGreater(failed, 20)

    def test_a_file_that_finds_no_memory_beside_others_comes_again_alone(self):
        for allocation in (round(4000 * 1.02 ** i) for i in range(90)):  # the tables take some 9,000
            with self.subTest(allocation=allocation):
                ended = self.run_into_file(env=faults(new="12@%d" % allocation))
                self.assertNotIn("does not fit into memory", ended.stderr)

    def test_a_file_too_large_for_the_memory_is_named_and_the_others_are_done(self):
        self.inputs.insert(1, self.put("large.csv", "resid,resname,atom,shift\n" + "# nothing\n" * (12 << 20)))
        for jobs in (1, 2):
            with self.subTest(jobs=jobs):
                ended = program.run("--jobs", jobs, "--format", "csv", *self.inputs,
                                    preexec_fn=limited(**{"as": 100 << 20}))
                self.assertEqual(ended.returncode, 1)
                self.assertEqual(rows_without_errors(ended), self.expected)
                self.assertEqual(ended.stderr, "zorvela-kit: %s: does not fit into memory; give a smaller file\n"
                                 "zorvela-kit: 1 of 4 files could not be predicted\n" % self.inputs[1])

    def test_standard_input_that_does_not_fit_is_not_read_on_from_its_middle(self):
        # What has no room above 32 MiB; the rest would have.
        large = "resid,resname,atom,shift\n" + "# nothing\n" * (5 << 20) + "1,ALA,CA,52\n2,PRO,CA,63\n3,ALA,CA,52\n"
        ended = program.run("--jobs", 2, "--format", "csv", "-", *self.inputs, input=large,
                            preexec_fn=limited(**{"as": 100 << 20}))
        self.assertEqual(ended.returncode, 1)
        self.assertEqual(rows_without_errors(ended), self.expected)
        self.assertIn("zorvela-kit: standard input: does not fit into memory; give a smaller file\n", ended.stderr)

    def test_a_long_line_is_whole_or_an_error(self):
        """A line that finds no room is not the end of its file."""
        letters = 9000
        self.inputs = [self.put("long.tab", program.full_table("AKPA").replace("AKPA", "AKPA" * (letters // 4)))]
        self.expected = program.run("--format", "csv", *self.inputs).stdout
        self.assertEqual(len(self.expected.splitlines()), 1 + letters // 4)
        failed = 0
        for allocation in range(1, 30):
            with self.subTest(allocation=allocation):
                ended = self.run_into_file(env=faults(new="12+%d" % allocation, new_from=letters))
                self.check_ended_in_words(ended)
                failed += ended.returncode
        self.assertGreater(failed, 5)

    def test_allocations_that_fail_from_some_moment_on(self):
        for allocation in (1, 50, 500, 2000, 5000, 10000):
            with self.subTest(allocation=allocation):
                self.check_ended_in_words(self.run_into_file(env=faults(new="12+%d" % allocation)))

    def test_import_too(self):
        for allocation in (round(10 * 1.3 ** i) for i in range(24)):
            with self.subTest(allocation=allocation):
                self.check_ended_in_words(program.kit("import", self.inputs[0], "--output", self.output,
                                                      env=faults(new="12@%d" % allocation)))

    def test_structures_too(self):
        examples = program.SOURCE / "examples"
        for allocation in (round(4000 * 1.06 ** i) for i in range(50)):
            with self.subTest(allocation=allocation):
                ended = program.kit("run", "--tables", program.TABLES, examples / "nuclease.tab", "--structure",
                                    examples / "nuclease.pdb.gz",
                                    env=faults(new="12@%d" % allocation))
                self.check_ended_in_words(ended)
                self.assertNotIn("bad_alloc", ended.stderr)

    def test_little_memory_and_many_jobs(self):
        """A few MB more than one job needs are enough for eight: what finds none beside others comes again alone."""
        self.inputs = [self.put("in%d.tab" % i, program.full_table("AKPA" * (100 + i))) for i in range(3)]
        for kilobytes in (46000, 60000, 300000):
            with self.subTest(kilobytes=kilobytes):
                limits = {"as": kilobytes * 1024}
                arguments = ("--format", "csv", *(20 * self.inputs))
                alone = program.run("--jobs", "1", *arguments, preexec_fn=limited(**limits))
                if alone.returncode == 127:
                    continue  # the system could not even load the program
                ended = program.run("--jobs", "8", *arguments, preexec_fn=limited(**limits))
                self.assertEqual((ended.returncode, ended.stderr, ended.stdout), (0, "", alone.stdout))

    def test_little_memory_and_far_too_many_jobs(self):
        for kilobytes in (30000, 40000, 60000, 100000):
            with self.subTest(kilobytes=kilobytes):
                self.put_old()
                ended = program.run("--jobs", "64", "--format", "csv", "--output", self.output, *(20 * self.inputs),
                                    preexec_fn=limited(**{"as": kilobytes * 1024}))
                if ended.returncode == 127:
                    continue  # the system could not even load the program
                self.check_ended_in_words(ended)


class Scarcity(Faults):
    def test_without_threads_the_run_goes_on(self):
        for fault in ("%d+1" % errno.EAGAIN, "%d+2" % errno.EAGAIN):
            with self.subTest(fault=fault):
                self.put_old()
                self.check_right(program.run("--jobs", "3", "--format", "csv", "--output", self.output, *self.inputs,
                                             env=faults(thread=fault)))

    def test_eight_descriptors_are_enough(self):
        self.check_right(self.run_into_file(preexec_fn=limited(nofile=8)))

    def test_a_file_without_a_descriptor_comes_again_alone(self):
        for call in range(8, 11):  # after the seven tables
            with self.subTest(call=call):
                self.check_right(self.run_into_file(env=faults(open="%d@%d" % (errno.EMFILE, call))))

    def test_too_few_descriptors_are_named(self):
        ended = self.run_into_file(preexec_fn=limited(nofile=4))
        self.assertEqual(ended.returncode, 1)
        self.assertIn(os.strerror(errno.EMFILE), ended.stderr)
        self.assertEqual(self.result(), OLD)


if __name__ == "__main__":
    unittest.main(verbosity=2)

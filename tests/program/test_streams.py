"""Standard output, standard error and the output file: their order, and a run that cannot write to one of them."""

import os
import signal
import subprocess

from reference import TIME_LINE
from support import (LISTING_HEAD, PATIENCE, PROGRAM, TABLE_HEAD, ProgramTest, answer, coil_shifts, mask, progress,
                     protein)

HEAD = progress() + "Analyzing in.tab:\n"
LISTING = LISTING_HEAD + answer()[0]
WARNING = "WARNING: Unmatched name for residue 4 between header (A) and chemical shift table (K)\n"
TABLE = TABLE_HEAD + answer()[1]


class Streams(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write_tables()
        # The rows of residue 4 call it K: one warning for each.
        rows = coil_shifts("APGA")
        rows = [row for row in rows if row[0] < 4] + [(4, "K", "CA", "55.000"), (4, "K", "CB", "35.000")]
        self.write("in.tab", protein("APGA", rows))


class Order(Streams):
    def both(self, *arguments):
        """Standard output and standard error on one pipe."""
        result = self.run_program(*arguments, stderr=subprocess.STDOUT)
        return mask(result.stdout)

    def test_warnings_are_between_the_analyzing_line_and_the_listing(self):
        self.assertEqual(self.both("-in", "in.tab"), HEAD + WARNING * 2 + LISTING + TIME_LINE)

    def test_warnings_precede_the_check_report(self):
        text = self.both("-in", "in.tab", "-check")
        self.assertTrue(text.startswith(HEAD + WARNING * 2 + "\nChemical shift outlier checking...\n"
                                        "\nChemical shift referencing checking...\n  Estimated CA"), text)

    def test_the_error_of_a_bad_format_follows_its_progress_line(self):
        self.write("tab/sslimit.tab", "VARS RESNAME\nFORMAT %x\n")
        self.assertEqual(self.both("-in", "in.tab"), progress() + "\tBad format syntax '%x'\n")

    def test_the_error_of_an_output_file_follows_the_listing(self):
        self.assertEqual(self.both("-in", "in.tab", "-sum", "no/pred.tab"), HEAD + WARNING * 2 + LISTING
                         + "\tCan't save file no/pred.tab\n" + TIME_LINE)


class Unwritable(Streams):
    def test_a_table_that_cannot_be_saved(self):
        for name in ("nowhere/pred.tab", "tab", ".", "in.tab/pred.tab", "x" * 5000, "/dev/full"):
            for option in ("-sum", "-out"):
                with self.subTest(option=option, name=name[:20]):
                    self.expect(["-in", "in.tab", option, name], HEAD + LISTING + TIME_LINE,
                                WARNING * 2 + "\tCan't save file " + name + "\n")

    def test_nowhere(self):
        self.expect(["-in", "in.tab", "-out", "/dev/null"], HEAD + LISTING + TIME_LINE, WARNING * 2)

    def test_standard_output(self):
        self.expect(["-in", "in.tab", "-out", "/dev/stdout"], HEAD + LISTING + TABLE + TIME_LINE, WARNING * 2)


class BrokenStreams(Streams):
    """The table is written even if the listing cannot be."""

    def shell(self, redirection, options="-in in.tab"):
        return subprocess.run(["/bin/sh", "-c", '"$0" ' + options + " " + redirection, PROGRAM], cwd=self.folder,
                              env=self.environment(), capture_output=True, timeout=PATIENCE, check=False)

    def test_closed_and_full_streams(self):
        listing, warnings = (HEAD + LISTING + TIME_LINE), WARNING * 2
        for redirection, stdout, stderr in ((">&-", "", warnings), (">&- 2>&-", "", ""), ("<&- >&- 2>&-", "", ""),
                                            ("2>&-", listing, ""), (">/dev/full", "", warnings),
                                            ("2>/dev/full", listing, "")):
            with self.subTest(redirection):
                self.write("pred.tab", "")
                done = self.shell(redirection)
                self.assertEqual((mask(done.stdout.decode()), done.stderr.decode(), done.returncode),
                                 (stdout, stderr, 0))
                self.assertEqual(self.read("pred.tab"), TABLE)
                self.assertEqual(self.read("in.tab").count("SEQUENCE"), 1)

    def test_early_ends_with_closed_or_full_streams(self):
        for redirection in (">&- 2>&-", ">/dev/full 2>/dev/full"):
            for options, status in (("-in in.tab -check", 255), ("-help", 0), ("", 0), ("-bogus", 0), ("-in no", 0)):
                with self.subTest(redirection=redirection, options=options):
                    done = self.shell(redirection, options)
                    self.assertEqual((done.stdout, done.stderr, done.returncode), (b"", b"", status))
        self.assertNotIn("pred.tab", self.files())

    def test_a_pipe_that_is_read_no_more(self):
        reader, writer = os.pipe()
        os.close(reader)
        result = self.run_program("-in", "in.tab", stdout=writer)
        os.close(writer)
        self.assertEqual(result.status, -signal.SIGPIPE)

"""Files with faults. Each run ends as the file format says, and leaves no incomplete file.

The input table and the reference tables go through one reader, so most cases are tried as input and as a reference
table alike.
"""

import os
import random
import signal

import reference
from support import (MEMORY_LIMIT_MIB, NAN, TABLE_HEAD, TABLE_NAMES, ProgramTest, answer, coil_shifts, finished,
                     progress, protein, statistics_table)

LISTED, ROW = answer()
MEBIBYTE = 1 << 20


class BadInput(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write_tables()
        self.text = protein("APGA", coil_shifts("APGA"))

    def expect_as_before(self, text):
        """The input gives the prediction of the untouched table."""
        self.write("in.tab", text)
        self.expect_answers(answer())

    def expect_abort(self, stdout, *arguments):
        """The run ends abnormally, after what it printed so far."""
        result = self.run_program(*arguments)
        self.assertEqual(result.status, -signal.SIGABRT)
        self.assertEqual(result.stdout, stdout)
        self.assertIn("out_of_range", result.stderr)
        self.assertNotIn("pred.tab", self.files())

    def each_table(self, text):
        """Puts this text in the place of each reference table in turn: its name, and its place in the order."""
        for count, name in enumerate(TABLE_NAMES):
            kept = self.read("tab/" + name)
            self.write("tab/" + name, text)
            with self.subTest(name):
                yield name, min(count + 1, 5)
            self.write("tab/" + name, kept)


class Files(BadInput):
    def test_a_folder_or_device_reads_as_an_empty_table(self):
        for name in ("tab", "/dev/null"):
            self.expect_answers(arguments=["-in", name], name=name)

    def test_a_folder_as_reference_table(self):
        self.write("in.tab", self.text)
        os.mkdir(self.path("folder"))
        for option in ("-adj", "-prev", "-next"):
            result = self.run_program("-in", "in.tab", option, "folder")
            self.assertEqual((result.stderr, result.status), ("", 0))
            self.assertEqual(self.read("pred.tab"), TABLE_HEAD + ROW)

    def test_an_empty_reference_table(self):
        self.write("in.tab", self.text)
        for name, _ in self.each_table(""):
            result = self.run_program("-in", "in.tab")
            self.assertEqual((result.stderr, result.status), ("", 0))
            # Without any one of the corrections, or of limits for shifts of 0, nothing changes. Without random-coil
            # shifts all 18 are missing, which leaves the even odds of the neighbours. Without statistics the
            # deviations are 0, without neighbours' odds both products: 0/0.
            wanted = answer(pair=(NAN, NAN)) if name.startswith("Pro") else answer()
            self.assertEqual(self.read("pred.tab"), TABLE_HEAD + wanted[1])

    def test_binary_noise_in_a_table(self):
        for seed in range(20):
            with self.subTest(seed):
                noise = random.Random(seed)
                data = bytearray(self.text.encode())
                for _ in range(30):
                    data[noise.randrange(len(data))] = noise.getrandbits(8)
                self.write("in.tab", bytes(data))
                if reference.Run(["-in", "in.tab"], self.environment(), self.folder).status is None:
                    self.assertEqual(self.run_program("-in", "in.tab").status, -signal.SIGABRT)
                else:
                    self.expect_reference("-in", "in.tab")

    def test_a_reference_table_of_noise(self):
        self.write("in.tab", self.text)
        noise = bytes(random.Random(5).getrandbits(8) for _ in range(20000))
        for _ in self.each_table(noise):
            self.expect_reference("-in", "in.tab")

    def test_a_byte_order_mark_hides_the_first_line_only(self):
        self.expect_as_before(b"\xef\xbb\xbfREMARK x\n" + self.text.encode())

    def test_a_pipe(self):
        # Its size is not known beforehand.
        self.write("in.tab", self.text)
        reader, writer = os.pipe()
        os.write(writer, self.text.encode())
        os.close(writer)
        result = self.run_program("-in", "/dev/stdin", stdin=reader)
        os.close(reader)
        self.assertEqual((result.stdout, result.stderr, result.status), (finished("/dev/stdin", LISTED), "", 0))


class Lines(BadInput):
    def test_carriage_returns(self):
        self.expect_as_before("REMARK\r\n" + self.text.replace("\n", "\r\n"))

    def test_carriage_returns_in_reference_tables(self):
        for name in TABLE_NAMES:
            self.write("tab/" + name, self.read("tab/" + name).replace("\n", "\r\n"))
        self.expect_as_before(self.text)

    def test_a_bare_remark_ends_the_run_abnormally(self):
        self.write("in.tab", "REMARK\n" + self.text)
        self.expect_abort("", "-in", "in.tab")

    def test_bare_lines_in_reference_tables(self):
        self.write("in.tab", self.text)
        for text in ("REMARK \nREMARK\n", "DATA \nDATA\n"):
            for _, count in self.each_table(text):
                self.expect_abort("".join(progress().splitlines(True)[:count]), "-in", "in.tab")


class Cells(BadInput):
    def expect_pair(self, rows, cg, pair):
        self.write("in.tab", protein("APGA", rows))
        self.expect_answers(answer(cg=cg, pair=pair))

    def test_numbers_out_of_the_ordinary(self):
        # CA statistics: cis -10 +- 1, trans -9 +- 1; clipped to -10 the odds are exp(1/2), at 10 (0/0 after an
        # underflow) nothing; as infinity the shift is missing.
        self.write("tab/Pro.cs.tab", statistics_table({9: (-10, 1, -9, 1)}))
        low, missing = ("0.622", "0.080"), ("0.500", "0.050")
        for text, wanted in (("0x10", low), ("-5", low), ("x", low), ("1e-400", low), ("-1e400", low), ("-inf", low),
                             ("-INFINITY", low), ("1e400", missing), ("inf", missing), ("Infinity", missing),
                             ("1e39", missing), ("4.5e1", low), ("45", low), ("+45.", low), ("0x2d", low),
                             ("0x1.68p5", low), ("1e5", missing), ("9999", missing), ("1,5", low), ("--5", low)):
            with self.subTest(text):
                rows = [row[:3] + (text,) if row[:3:2] == (2, "CA") else row for row in coil_shifts("APGA")]
                self.expect_pair(rows, "9999.000", wanted)

    def test_a_CG_that_is_no_number(self):
        for text, cell, pair in (("nan", "     nan", ("nan", "nan")), ("inf", "     inf", ("0.500", "0.050")),
                                 ("1e400", "     inf", ("0.500", "0.050")), ("-1e400", "    -inf", (NAN, NAN)),
                                 ("0x1p10", "1024.000", ("0.500", "0.050")), ("x", "   0.000", (NAN, NAN)),
                                 ("1e10", "10000000000.000", ("0.500", "0.050"))):
            with self.subTest(text):
                self.expect_pair(coil_shifts("APGA") + [(2, "P", "CG", text)], cell, pair)

    def test_first_residue_numbers_beyond_32_bits(self):
        for text in ("2147483647", "2147483646", "2147483648", "-2147483648", "4294967297", "9999999999999999999999",
                     "-99999999999999999999", "x", "1e5", "-1", "007"):
            with self.subTest(text):
                self.write("in.tab", "DATA FIRST_RESID " + text + "\n" + self.text)
                self.expect_reference("-in", "in.tab")


class Sizes(BadInput):
    """Large and far-off things cost no more than reading them."""

    def write_large(self, chunk, count, head="", tail=""):
        with open(self.path("in.tab"), "wb") as file:
            file.write(head.encode())
            for _ in range(count):
                file.write(chunk.encode() * (MEBIBYTE // len(chunk)))
            file.write(tail.encode())

    def expect_bounded(self, lines, pred, stderr="", arguments=(), mebibytes=MEMORY_LIMIT_MIB, seconds=60):
        result = self.measure("-in", "in.tab", *arguments)
        self.assertEqual((result.stderr, result.stdout, result.status), (stderr, finished("in.tab", lines), 0))
        self.assertEqual(self.read("pred.tab"), TABLE_HEAD + pred)
        self.assertLess(result.peak_mib, mebibytes)
        self.assertLess(result.seconds, seconds)
        return result

    def test_a_line_of_100_megabytes_of_words(self):
        self.write_large("2 P CA 10 ", 100, self.text.rsplit("\n\n", 1)[0] + "\n", self.text.rsplit("\n\n", 1)[1])
        # The row at the end of the long line is lost with it; it is the first of residue 1.
        rows = self.text.rsplit("\n\n", 1)[1]
        self.assertTrue(rows.startswith("1 A N "))
        self.expect_bounded(LISTED, ROW.replace("  6  5  5", "  5  5  5"))

    def test_two_residue_numbers_far_apart(self):
        self.write("in.tab", self.text + "-2147483648 K CA 56\n2147483647 K CA 56\n")
        warning = "WARNING: Unmatched name for residue %s between header () and chemical shift table (K)\n"
        self.expect_bounded(LISTED, ROW, warning % -2147483648 + warning % 2147483647, ["-last", "2147483647"],
                            MEMORY_LIMIT_MIB / 4, 5)

    def test_twenty_thousand_residues(self):
        sequence = "APGA" * 5000
        self.write("in.tab", protein(sequence, coil_shifts(sequence)))
        # Without -last the range ends at 9999.
        for arguments, last in (([], 9999), (["-last", "20000"], 20000)):
            prolines = range(2, last + 1, 4)
            lines = "".join("   A%-3d P%-3d G%-3d 0.500  0.050 \n" % (at - 1, at, at + 1) for at in prolines)
            rows = "".join("%2d A P G  6  5  5 9999.000    0.500    0.050 \n" % at for at in prolines)
            result = self.measure("-in", "in.tab", *arguments)
            self.assertEqual((result.stderr, result.status), ("", 0))
            self.assertTrue(result.stdout == finished("in.tab", lines), result.stdout[-500:])
            self.assertTrue(self.read("pred.tab") == TABLE_HEAD + rows)
            self.assertLess(result.peak_mib, MEMORY_LIMIT_MIB)
            self.assertLess(result.seconds, 60)

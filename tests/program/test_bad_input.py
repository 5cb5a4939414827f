"""Files that are not what they should be. Each run ends as the file format says, and leaves nothing half done.

The input table and the reference tables go through one reader, so most cases are tried as input and as a reference
table alike.
"""

import os
import random
import signal

import reference
from support import (MEMORY_LIMIT_MIB, NAN, TABLE_HEAD, TABLE_NAMES, ProgramTest, coil_shifts, finished, progress,
                     protein, statistics_table, table)

LISTED = "   A1   P2   G3   0.500  0.050 \n"
ROW = " 2 A P G  6  5  5 9999.000    0.500    0.050 \n"
MEBIBYTE = 1 << 20


class BadInput(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write_tables()
        self.text = protein("APGA", coil_shifts("APGA"))

    def expect_as_before(self, text, stderr=""):
        """The input gives the prediction of the untouched table."""
        self.write("in.tab", text)
        self.expect(["-in", "in.tab"], finished("in.tab", LISTED), stderr, written={"pred.tab": TABLE_HEAD + ROW})

    def expect_nothing(self, text, stderr=""):
        """The input gives no prediction, and the run goes through."""
        self.write("in.tab", text)
        self.expect(["-in", "in.tab"], finished("in.tab"), stderr, written={"pred.tab": TABLE_HEAD})

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
    def test_missing(self):
        self.expect(["-in", "in.tab"], "", "\tCan't open file in.tab for reading\n")

    def test_a_folder_as_input_reads_as_an_empty_table(self):
        self.expect(["-in", "tab"], finished("tab"), written={"pred.tab": TABLE_HEAD})
        self.expect(["-in", "/"], finished("/"), written={"pred.tab": TABLE_HEAD})

    def test_a_folder_as_reference_table(self):
        self.write("in.tab", self.text)
        os.mkdir(self.path("folder"))
        for option in ("-adj", "-prev", "-next"):
            result = self.run_program("-in", "in.tab", option, "folder")
            self.assertEqual((result.stderr, result.status), ("", 0))
            self.assertEqual(self.read("pred.tab"), TABLE_HEAD + ROW)

    def test_an_empty_file(self):
        self.expect_nothing("")

    def test_an_empty_reference_table(self):
        self.write("in.tab", self.text)
        for name, _ in self.each_table(""):
            result = self.run_program("-in", "in.tab")
            self.assertEqual((result.stderr, result.status), ("", 0))
            # Without any one of the corrections, or of limits for shifts of 0, nothing changes. Without random-coil
            # shifts all 18 are missing, which leaves the even odds of the neighbours. Without statistics the
            # deviations are 0, without neighbours' odds both products: 0/0.
            answer = NAN if name.startswith("Pro") else None
            wanted = ROW if answer is None else ROW.replace("   0.500    0.050", NAN.rjust(8) + " " + NAN.rjust(8))
            self.assertEqual(self.read("pred.tab"), TABLE_HEAD + wanted)

    def test_bytes_of_zero(self):
        for size in (1, 100, 70000):
            with self.subTest(size):
                self.expect_nothing(b"\0" * size)

    def test_zeros_between_lines(self):
        self.expect_as_before("\0\0\n" + self.text.replace("\n\n", "\n\0\n"))

    def test_a_zero_in_a_cell_ends_its_number(self):
        # 55 and a zero byte and more: the number is 55.
        self.expect_as_before(self.text.replace("55.000\n", "55.\0009\n"))

    def test_binary_noise(self):
        for seed in range(20):
            with self.subTest(seed):
                noise = random.Random(seed)
                self.write("in.tab", bytes(noise.getrandbits(8) for _ in range(5000)))
                self.expect_reference("-in", "in.tab")

    def test_binary_noise_in_a_table(self):
        for seed in range(20):
            with self.subTest(seed):
                noise = random.Random(seed)
                data = bytearray(self.text.encode())
                for _ in range(30):
                    data[noise.randrange(len(data))] = noise.getrandbits(8)
                self.write("in.tab", bytes(data))
                self.expect_reference_or_abort("-in", "in.tab")

    def expect_reference_or_abort(self, *arguments):
        if reference.predict(arguments, self.environment(), self.directory).status is None:
            self.assertEqual(self.run_program(*arguments).status, -signal.SIGABRT)
        else:
            self.expect_reference(*arguments)

    def test_a_reference_table_of_noise(self):
        self.write("in.tab", self.text)
        noise = bytes(random.Random(5).getrandbits(8) for _ in range(20000))
        for _ in self.each_table(noise):
            self.expect_reference("-in", "in.tab")

    def test_a_byte_order_mark_hides_the_first_line_only(self):
        self.expect_as_before(b"\xef\xbb\xbfREMARK x\n" + self.text.encode())

    def test_utf_16_is_noise(self):
        self.expect_nothing(self.text.encode("utf-16"))

    def test_an_empty_device(self):
        self.expect(["-in", "/dev/null"], finished("/dev/null"), written={"pred.tab": TABLE_HEAD})

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

    def test_carriage_returns_alone_make_one_line(self):
        # One line, whose first word is DATA: no columns, no rows, and a sequence of its other letters.
        self.expect_nothing(self.text.replace("\n", "\r"))

    def test_no_final_line_feed(self):
        self.expect_as_before(self.text.rstrip("\n"))

    def test_no_final_line_feed_and_a_missing_shift(self):
        # The last row is read: without it residue 4 would lack HN, which changes nothing; proline's CA would.
        rows = [row for row in coil_shifts("APGA") if row[:3:2] != (2, "CA")] + [(2, "P", "CA", "56")]
        self.write("tab/Pro.cs.tab", statistics_table({9: (1, 1, 0, 1)}))
        self.write("in.tab", protein("APGA", rows).rstrip("\n"))
        # P_CIS = 1/(1 + exp(-1/2)).
        self.expect(["-in", "in.tab"], finished("in.tab", "   A1   P2   G3   0.622  0.080 \n"), written={
            "pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000    0.622    0.080 \n"})

    def test_tabs_and_other_white_space(self):
        head, rows = self.text.split("\n\n", 1)[0], self.text.split("\n\n", 1)[1]
        vars_and_format, cells = rows.split("\n\n", 1)
        self.expect_as_before(head + "\n\t\n \v\f\n" + vars_and_format + "\n"
                              + cells.replace(" ", "\t \v\f").replace("\n", " \t\n\t"))

    def test_rows_that_are_too_short_or_too_long(self):
        bad = ("2 P CA\n2 P CA 10 x\n2\n2 P CA 1 0\nx y z\n2 P CA10\n"
               "# a comment of words\n2P CA 10\n")
        head, rows = self.text.rsplit("\n\n", 1)
        self.expect_as_before(head + "\n\n" + bad + rows + bad)

    def test_rows_before_the_format(self):
        head, rows = self.text.rsplit("\n\n", 1)
        self.expect_as_before("2 P CA 10\n" + head.replace("FORMAT", "2 P CA 10\nFORMAT") + "\n" + rows)

    def test_no_format(self):
        # Residues without shifts: nothing is predicted.
        self.expect_nothing("".join(line for line in self.text.splitlines(True) if not line.startswith("FORMAT")))

    def test_no_columns(self):
        self.expect_nothing("".join(line for line in self.text.splitlines(True) if not line.startswith("VARS")))

    def test_format_before_the_columns(self):
        # Without columns its items are not checked; the rows after both are read.
        head, rows = self.text.rsplit("\n\n", 1)
        data, columns, formats = head.replace("\n\n", "\n").split("\n")
        self.expect_as_before("\n".join([data, formats.replace("%1s", "%1x"), columns, "", rows]))

    def test_a_second_columns_line_discards_the_rows(self):
        head, rows = self.text.rsplit("\n\n", 1)
        self.expect_as_before(head + "\n2 P CA 10\n1 A CA 10\nVARS RESID RESNAME ATOMNAME SHIFT\n" + rows)
        self.expect_nothing(self.text + "VARS RESID RESNAME ATOMNAME SHIFT\n")

    def test_a_second_format_line_discards_the_rows(self):
        head, rows = self.text.rsplit("\n\n", 1)
        self.expect_as_before(head + "\n2 P CA 10\nFORMAT %d %s %s %f\n" + rows)
        self.expect_nothing(self.text + "FORMAT %d %s %s %f\n")

    def test_fewer_formats_than_columns(self):
        self.expect_as_before(self.text.replace("FORMAT %4d %1s %4s  %8.3f", "FORMAT %4d %1s %4s"))
        self.expect_as_before(self.text.replace("FORMAT %4d %1s %4s  %8.3f", "FORMAT"))

    def test_more_formats_than_columns(self):
        self.expect_as_before(self.text.replace("FORMAT %4d", "FORMAT %x %4d"))

    def test_a_bare_remark_ends_the_run_abnormally(self):
        self.write("in.tab", "REMARK\n" + self.text)
        self.expect_abort("", "-in", "in.tab")

    def test_a_bare_data_line_ends_the_run_abnormally(self):
        self.write("in.tab", self.text + "DATA")
        self.expect_abort("", "-in", "in.tab")

    def test_bare_lines_in_reference_tables(self):
        self.write("in.tab", self.text)
        for _, count in self.each_table("REMARK \nREMARK\n"):
            self.expect_abort("".join(progress().splitlines(True)[:count]), "-in", "in.tab")
        for _, count in self.each_table("DATA \nDATA\n"):
            self.expect_abort("".join(progress().splitlines(True)[:count]), "-in", "in.tab")

    def test_keyword_lines_with_one_more_character_are_fine(self):
        for line in ("REMARK ", "REMARK\r", " REMARK", "\tREMARK", "DATA ", "DATA\r", " DATA", "VARS2", "FORMAT2",
                     "remark", "data", "REMARKS", "DATABASE", "END"):
            with self.subTest(line):
                self.expect_as_before(line + "\n" + self.text)

    def test_keywords_alone_that_take_everything_away(self):
        self.expect_nothing("VARS\n" + self.text.replace("VARS ", "# "))
        self.expect_nothing(self.text + "VARS\n")

    def test_a_columns_line_behind_a_blank_loses_its_first_letters(self):
        # " VARS   RESID ..." cut after four characters: "S   RESID ...", five columns.
        self.expect_nothing(self.text.replace("VARS", " VARS"))

    def test_a_row_that_begins_with_a_keyword_is_row_and_keyword(self):
        # Four words: a row called REMARK, whose residue number is 0, and a remark.
        warning = "WARNING: Unmatched name for residue 0 between header () and chemical shift table (P)\n"
        self.expect_as_before(self.text + "REMARK P CA 56\n", warning)
        # A pair that adds to the sequence: A P G A S T.
        self.expect_as_before(self.text + "DATA SEQUENCE S T\n",
                              warning.replace("(P)", "(SEQUENCE)"))

    def test_data_lines_behind_the_rows_count(self):
        lines = self.text.splitlines(True)
        self.expect_as_before("".join(lines[1:] + lines[:1]))

    def test_a_column_twice(self):
        # The later cell wins.
        rows = [(number, name, "HA", shift, atom) for number, name, atom, shift in coil_shifts("APGA")]
        self.expect_as_before(table("RESID RESNAME ATOMNAME SHIFT ATOMNAME", "%d %s %s %f %s", rows,
                                    "DATA SEQUENCE APGA\n"))


class Formats(BadInput):
    HEAD = "DATA SEQUENCE APGA\nVARS RESID RESNAME ATOMNAME SHIFT\nFORMAT "

    def bad(self, formats, item):
        self.write("in.tab", self.HEAD + formats + "\n2 P CA 56\n")
        self.expect(["-in", "in.tab"], "", "\tBad format syntax '" + item + "'\n")

    def test_items_that_are_bad(self):
        for item in ("%5.1e", "%+5d", "%4dx", "%ld", "%5 d", "%", "%5", "%c", "%x", "%dd", "%sd", "%d,", "%#d", "%*d",
                     "%n", "%1$s", "%D", "%.3F", "%hs", "%d\0", "% d", "%ds", "%fd", "%8.3g"):
            with self.subTest(item):
                self.bad(item + " %1s %4s %8.3f", item + " ")

    def test_the_item_is_shown_with_its_blanks(self):
        self.bad("%4d %1s   %4q\t %8.3f", "%4q\t ")
        self.bad("%4d %1s %4s %8.3q   ", "%8.3q   ")

    def test_the_first_bad_item_is_said(self):
        self.bad("%4d %y %z %8.3f", "%y ")

    def test_a_percent_sign_without_a_piece(self):
        self.bad("%%4d %1s %4s", "%")

    def test_a_carriage_return_is_no_fault(self):
        self.bad("%4d %1s %4s %q\r", "%q\r")
        self.expect_as_before(self.text.replace("%8.3f\n", "%8.3f\r\n"))

    def test_items_that_are_good(self):
        for item in ("%d", "%s", "%f", "%-4d", "%--5d", "%8.3.3f", "%.f", "%0008d", "%-s", "%-.5.-d", "%90000d",
                     "%99999999999999999999d", "%.99999999999f", "%" + "9" * 100000 + "s"):
            with self.subTest(item[:30]):
                self.expect_as_before(self.text.replace("%4d", item))

    def test_text_before_the_first_item(self):
        self.expect_as_before(self.text.replace("FORMAT %4d", "FORMAT x y z %4d"))
        # Glued to the keyword it makes another word of it: no format, no rows.
        self.expect_nothing(self.text.replace("FORMAT %4d", "FORMATxyz%4d"))


class Cells(BadInput):
    def test_a_cell_of_10000_characters(self):
        long = "x" * 10000
        warning = "WARNING: Unmatched name for residue 2 between header (P) and chemical shift table (%s)\n" % long
        self.expect_as_before(self.text + "2 %s CA 56\n" % long, warning)
        self.expect_as_before(self.text + "2 P %s 56\n" % long)
        self.expect_as_before(self.text + "2 P CA %s\n" % long)

    def test_a_number_of_10000_digits(self):
        self.expect_as_before(self.text.replace("55.000\n", "55." + "0" * 10000 + "\n"))
        self.expect_as_before(self.text.replace(" 55.000\n", " " + "0" * 10000 + "55\n"))

    def test_a_residue_number_of_10000_digits(self):
        # Held in 64 bits as the largest number there is, of which 32 bits are kept: -1.
        warning = "WARNING: Unmatched name for residue -1 between header () and chemical shift table (P)\n"
        self.expect_as_before(self.text + "9" * 10000 + " P CA 56\n", warning)

    def test_a_column_name_of_10000_characters(self):
        long = "X" * 10000
        rows = [row + (1,) for row in coil_shifts("APGA")]
        self.expect_as_before(table("RESID RESNAME ATOMNAME SHIFT " + long, "%d %s %s %f %d", rows,
                                    "DATA SEQUENCE APGA\n"))

    def test_ten_thousand_columns(self):
        names = " ".join("X%d" % number for number in range(10000))
        rows = [row + ("1 " * 10000,) for row in coil_shifts("APGA")]
        self.expect_as_before(table("RESID RESNAME ATOMNAME SHIFT " + names, "%d %s %s %f" + " %d" * 10000, rows,
                                    "DATA SEQUENCE APGA\n"))

    def shift_of_the_proline(self, text, options=()):
        """The CA of the proline as this text."""
        rows = [row[:3] + (text,) if row[:3:2] == (2, "CA") else row for row in coil_shifts("APGA")]
        self.write("in.tab", protein("APGA", rows))
        return ["-in", "in.tab", *options]

    def expect_pair(self, arguments, cis, norm):
        self.expect(arguments, finished("in.tab", "   A1   P2   G3   %-6s %-6s\n" % (cis, norm)), written={
            "pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 9999.000 %8s %8s \n" % (cis, norm)})

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
                self.expect_pair(self.shift_of_the_proline(text), *wanted)

    def test_a_shift_that_is_no_number(self):
        for text in ("nan", "NAN", "nan(5)", "NaN"):
            with self.subTest(text):
                self.expect_pair(self.shift_of_the_proline(text), "nan", "nan")

    def test_minus_infinity_without_clipping(self):
        # exp(-infinity) is 0 for both.
        self.expect_pair(self.shift_of_the_proline("-inf", ["-noclip"]), NAN, NAN)

    def test_a_CG_that_is_no_number(self):
        for text, cell, pair in (("nan", "     nan", ("nan", "nan")), ("inf", "     inf", ("0.500", "0.050")),
                                 ("1e400", "     inf", ("0.500", "0.050")), ("-1e400", "    -inf", (NAN, NAN)),
                                 ("0x1p10", "1024.000", ("0.500", "0.050")), ("x", "   0.000", (NAN, NAN)),
                                 ("1e10", "10000000000.000", ("0.500", "0.050"))):
            with self.subTest(text):
                self.write("in.tab", protein("APGA", coil_shifts("APGA") + [(2, "P", "CG", text)]))
                self.expect(["-in", "in.tab"], finished("in.tab", "   A1   P2   G3   %-6s %-6s\n" % pair), written={
                    "pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 %s %8s %8s \n" % ((cell,) + pair)})

    def test_a_CG_as_large_as_a_number_can_be(self):
        # 3.40282e+38 has 39 digits before its decimal point: the double nearest to the six digits.
        self.write("in.tab", protein("APGA", coil_shifts("APGA") + [(2, "P", "CG", "3.4028234e38")]))
        self.expect(["-in", "in.tab"], finished("in.tab", LISTED), written={
            "pred.tab": TABLE_HEAD + " 2 A P G  6  5  5 %.3f    0.500    0.050 \n" % 3.40282e38})

    def test_residue_numbers_below_0_and_beyond_32_bits(self):
        # A number is held in 64 bits and its lower 32 are kept: 4294967298 becomes 2.
        for text, number in (("-5", -5), ("0", 0), ("2147483647", 2147483647), ("2147483648", -2147483648),
                             ("-2147483648", -2147483648), ("-2147483649", 2147483647), ("4294967299", 3),
                             ("99999999999", 1215752191), ("9223372036854775807", -1), ("9223372036854775808", -1),
                             ("-9223372036854775809", 0), ("1e3", 1), ("0x10", 0), ("nan", 0)):
            with self.subTest(text):
                header = "APGA"[number - 1] if 1 <= number <= 4 else ""
                self.expect_as_before(self.text + text + " K CA 56\n", "WARNING: Unmatched name for residue %d between "
                                      "header (%s) and chemical shift table (K)\n" % (number, header))

    def test_first_residue_numbers_beyond_32_bits(self):
        for text in ("2147483647", "2147483646", "2147483648", "-2147483648", "4294967297", "9999999999999999999999",
                     "-99999999999999999999", "x", "1e5", "-1", "007"):
            with self.subTest(text):
                self.write("in.tab", "DATA FIRST_RESID " + text + "\n" + self.text)
                self.expect_reference("-in", "in.tab")

    def test_a_sequence_without_shifts(self):
        self.expect_nothing(protein("APGAPGA", []))
        self.expect_nothing("DATA SEQUENCE APGAPGA\n")

    def test_shifts_without_a_sequence(self):
        rows = coil_shifts("APGA")
        warning = "WARNING: Unmatched name for residue %d between header () and chemical shift table (%s)\n"
        self.expect_nothing(protein("", rows), "".join(warning % row[:2] for row in rows))

    def test_a_table_of_another_kind(self):
        self.expect_nothing(self.read("tab/sslimit.tab"), "".join(
            "WARNING: Unmatched name for residue 0 between header () and chemical shift table (%s)\n" % name
            for name in "ACDEFGHIKLMNPQRSTVWY"))

    def test_its_own_output_as_input(self):
        self.expect_as_before(self.text)
        self.write("old.tab", self.read("pred.tab"))
        self.expect(["-in", "old.tab"], finished("old.tab"), "WARNING: Unmatched name for residue 2 between header () "
                    "and chemical shift table (P)\n", written={"pred.tab": TABLE_HEAD})


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

    def test_a_line_of_100_megabytes_of_one_word(self):
        self.write_large("x", 100, tail="\n" + self.text)
        self.expect_bounded(LISTED, ROW)

    def test_a_line_of_100_megabytes_of_words(self):
        self.write_large("2 P CA 10 ", 100, self.text.rsplit("\n\n", 1)[0] + "\n", self.text.rsplit("\n\n", 1)[1])
        # The last row that stands on the long line is lost with it; it is the first of residue 1.
        rows = self.text.rsplit("\n\n", 1)[1]
        self.assertTrue(rows.startswith("1 A N "))
        self.expect_bounded(LISTED, ROW.replace("  6  5  5", "  5  5  5"))

    def test_a_line_of_100_megabytes_of_blanks(self):
        self.write_large(" \t", 100, tail="\n" + self.text)
        self.expect_bounded(LISTED, ROW)

    def test_a_remark_of_100_megabytes(self):
        self.write_large("x", 100, "REMARK ", "\n" + self.text)
        self.expect_bounded(LISTED, ROW)

    def test_zeros_of_100_megabytes(self):
        self.write_large("\0", 100)
        self.expect_bounded("", "")

    def test_a_cell_of_100_megabytes(self):
        self.write_large("7", 100, self.text + "2 P CA ", "\n")
        self.expect_bounded(LISTED, ROW)

    def test_a_residue_number_far_off(self):
        # One stray row, and the range opened to reach it: nothing is made for the numbers in between.
        for number in ("2000000000", "2147483647"):
            with self.subTest(number):
                self.write("in.tab", self.text + number + " K CA 56\n")
                warning = ("WARNING: Unmatched name for residue %s between header () and chemical shift table (K)\n"
                           % number)
                self.expect_bounded(LISTED, ROW, warning, ["-last", number], MEMORY_LIMIT_MIB / 4, 5)

    def test_a_residue_number_far_below(self):
        self.write("in.tab", self.text + "-2147483648 K CA 56\n")
        warning = ("WARNING: Unmatched name for residue -2147483648 between header () and chemical shift table (K)\n")
        self.expect_bounded(LISTED, ROW, warning, ["-first", "0"], MEMORY_LIMIT_MIB / 4, 5)

    def test_two_residue_numbers_far_apart(self):
        self.write("in.tab", self.text + "-2147483648 K CA 56\n2147483647 K CA 56\n")
        warning = "WARNING: Unmatched name for residue %s between header () and chemical shift table (K)\n"
        self.expect_bounded(LISTED, ROW, warning % -2147483648 + warning % 2147483647, ["-last", "2147483647"],
                            MEMORY_LIMIT_MIB / 4, 5)

    def test_a_sequence_numbered_far_off(self):
        self.write("in.tab", "DATA FIRST_RESID 2000000000\n" + protein("APGA", coil_shifts("APGA", first=2000000000)))
        self.expect_bounded("", "", "", ["-last", "2100000000"], MEMORY_LIMIT_MIB / 4, 5)

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

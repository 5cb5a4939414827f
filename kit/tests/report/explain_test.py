"""zorvela-kit run --explain: a block of text below each proline."""

from zorvela_tests import folder, program

UNDECIDED = {(2, "CB"): 31.7}  # 1.7 ppm: 0.3 from cis and 1.7 from trans, (2.89 - 0.09) / 2 = +1.4 nats


class Explain(folder.InFolder):
    def explain(self, *arguments, sequence="APK", changes=UNDECIDED):
        return program.run("--explain", *arguments, self.put("p.tab", program.full_table(sequence, changes)))

    def block(self, *arguments, **options):
        """The lines that are set in, without the rest of the report."""
        return [line for line in self.explain(*arguments, **options).stdout.split("\n\n", 1)[0].split("\n")
                if line.startswith("     ")]

    def test_numbers_and_bars(self):
        # A mark is half a nat. Prior -2.94: 6 marks. A before: ln 2 = 0.69: 1. CB: 1.4: 3; the class means are 32 and
        # 30 ppm, random coil 30. K after: -0.69. Sum: -1.54: 3.
        lines = self.block()
        self.assertEqual(lines[0].strip(), "undecided: CB and the A before favour cis, the K after favours trans; CG")
        table = {line[5:21].strip(): line[21:] for line in lines}
        self.assertEqual(table["1 in 20 is cis"], " " * 25 + "    -2.9  " + "     ######|")
        self.assertEqual(table["A before"].split(), ["+0.7", "|#"])
        self.assertEqual(table["CB"].split(), ["31.7", "32.0", "30.0", "+1.4", "|###"])
        self.assertEqual(table["K after"].split(), ["-0.7", "#|"])
        self.assertEqual(table["sum"].split(), ["-1.5", "###|"])

    def test_what_is_missing_is_offered(self):
        text = " ".join(" ".join(self.block()).split())
        self.assertIn("Missing shifts, with their expected information in bits: CG 0.", text)
        self.assertIn("(chance of a clear call ", text)
        self.assertIn("CG would be worth 0.", text)

    def test_fits_80_columns(self):
        for example in [*program.EXAMPLES, *program.real_entries()[::80]]:
            lines = program.run("--explain", example, tables=program.TABLES).stdout.split("\n")
            for line in lines:
                if line.startswith("     "):
                    self.assertLessEqual(len(line), 80, line)

    def test_one_residue(self):
        result = program.run("--explain", "--residue", "117", program.EXAMPLES[0], tables=program.TABLES)
        self.assertEqual(result.stdout.count("1 in 20 is cis"), 1)
        self.assertEqual(result.stderr, "")

    def test_residue_that_is_nowhere(self):
        result = self.explain("--residue", "99")
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stderr, "zorvela-kit: warning: --residue 99: no file has a proline of this number\n")

    def test_not_with_other_formats(self):
        for name in ("csv", "json", "html"):
            result = self.explain("--format", name)
            self.assertEqual((result.returncode, result.stdout), (1, ""))
            self.assertIn("--explain needs --format table", result.stderr)

    def test_residue_needs_explain(self):
        self.assertNotEqual(program.run("--residue", "2", program.EXAMPLES[0]).returncode, 0)

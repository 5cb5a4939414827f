"""zorvela-kit(1) and its pages have the thresholds, columns and reasons of the program and of its schema."""
import json
import re
import unittest

from zorvela_tests import program

MAN_PAGE = (program.SOURCE / "doc" / "zorvela-kit.1").read_text(encoding="utf-8")
DOCUMENT = "".join((program.SOURCE / "doc" / page).read_text(encoding="utf-8") for page in ("run.md", "structures.md"))
SCHEMA = json.loads(program.SCHEMA.read_text(encoding="utf-8"))
# Columns of the CSV file that are elsewhere in the JSON file: beside the proline or in its protein.
OF_THE_PROTEIN = {"file", "chain", "list"}
OF_REFERENCING = {"offset_ca", "offset_cb", "offset_ha", "offset_c", "to_correct", "corrected_ca", "corrected_cb",
                  "corrected_ha", "corrected_c"}
OF_CORRECTED = {"p_cis_norm_as_referenced", "call_as_referenced"}  # in JSON where the referencing was corrected
IN_SHORT = {"strongest", "next_shift"}  # in JSON whole: evidence and next_shifts


def sub_commands():
    return re.findall(r"^  ([a-z]+) +\S", program.kit("--help").stdout.split("Sub-commands:", 1)[1], re.MULTILINE)


def help_of(command):
    return program.kit(command, "--help").stdout


class ManPage(unittest.TestCase):
    def test_thresholds(self):
        least, most = re.search(r"at least ([0-9.]+[0-9]),.*at most ([0-9.]+[0-9]),", help_of("run")).groups()
        self.assertIn(f".It cis\nat least {least};\n.It trans\nat most {most};\n", MAN_PAGE)


class Document(unittest.TestCase):
    def test_names_every_column_reason_and_threshold(self):
        reasons = [reason for reason in SCHEMA["$defs"]["proline"]["properties"]["reason"]["enum"] if reason]
        self.assertEqual(len(reasons), 5)
        for name in [*program.COLUMNS, *reasons]:
            self.assertIn(f"`{name}`", DOCUMENT)
        for value in re.findall(r"is at (?:least|most) ([0-9.]+[0-9])", help_of("run")):
            self.assertIn(f" {value} |", DOCUMENT)

    def test_names_every_sub_command(self):
        for command in sub_commands():
            self.assertIn(f"\n| `{command}` |", DOCUMENT)


class Schema(unittest.TestCase):
    def test_a_proline_has_the_columns_of_the_csv_file(self):
        columns = set(program.COLUMNS) - OF_THE_PROTEIN - OF_REFERENCING - IN_SHORT - OF_CORRECTED
        properties = set(SCHEMA["$defs"]["proline"]["required"])
        self.assertEqual(columns - properties, set())
        self.assertEqual(properties - columns, {"prev_resid", "next_resid", "evidence", "next_shifts"})
        self.assertEqual(OF_THE_PROTEIN - set(SCHEMA["$defs"]["protein"]["properties"]), set())

    def test_a_call_is_one_that_the_document_explains(self):
        for call in SCHEMA["$defs"]["proline"]["properties"]["call"]["enum"]:
            self.assertRegex(DOCUMENT, rf"\n\| {call}\b")

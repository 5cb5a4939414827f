"""The page in a real browser: results, saved files, requests to the network, and files with errors."""
import gzip
import http.server
import io
import json
import pathlib
import re
import shutil
import tempfile
import threading
import unittest
import zipfile

import browser
import web
from zorvela_tests import program

FILES = program.SOURCE / "kit" / "tests" / "files"
NUCLEASE = program.SOURCE / "examples" / "nuclease.str"
DIMER = FILES / "star3_dimer.str"
MODEL = program.SOURCE / "examples" / "nuclease.pdb.gz"
UBIQUITIN = program.SOURCE / "examples" / "ubiquitin.tab"


def ubiquitins(count):
    return {f"{n}.tab": UBIQUITIN.read_bytes() for n in range(1, count + 1)}


class Folder:
    """A folder with files to give to the page and to the program alike, and the reference tables."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self._folder.name)
        (self.path / "tab").symlink_to(program.TABLES)

    def add(self, name, content):
        (self.path / name).write_bytes(content)
        return self.path / name

    def copy(self, path):
        return pathlib.Path(shutil.copy(path, self.path))

    def program(self, format_name, *names, choices=()):
        """The bytes that the program writes about files of the folder."""
        self.kit("run", "--format", format_name, "--output", "output", *choices, "--", *names)
        return (self.path / "output").read_bytes()

    def kit(self, command, *arguments):
        return program.kit(command, *(() if command == "import" else ("--tables", "tab")), *arguments, cwd=self.path)

    def remove(self):
        self._folder.cleanup()


@browser.needs_browser
class Page(unittest.TestCase):
    """A server and a browser for all tests of a class, the page fresh for each."""
    maxDiff = 2000

    @classmethod
    def setUpClass(cls):
        cls.server = browser.Server()
        cls.addClassCleanup(cls.server.stop)
        cls.page = browser.Page(cls.server.address)
        cls.addClassCleanup(cls.page.close)

    def setUp(self):
        self.folder = Folder()
        self.addCleanup(self.folder.remove)
        self.page.open()
        self.page.console()

    def tearDown(self):
        self.assertEqual(self.page.console(), [], "the console has errors")

    def check_saved(self, *names, choices=()):
        for format_name in web.formats():
            if format_name == "table":
                continue
            with self.subTest(format=format_name):
                _, saved = self.page.save(format_name)
                self.assertEqual(saved.decode(), self.folder.program(format_name, *names, choices=choices).decode())

    def errors(self):
        return self.page.texts("#errors li")


class SavedFiles(Page):
    """Saved files have the bytes of those that the program writes."""

    def test_formats(self):
        for source in (NUCLEASE, FILES / "star2_entry.str", FILES / "nef_entry.nef", FILES / "shifts.csv",
                       FILES / "excel.csv", UBIQUITIN):
            with self.subTest(file=source.name):
                path = self.folder.copy(source)
                self.page.choose(path)
                self.check_saved(path.name)

    def test_gzipped(self):
        content = NUCLEASE.read_bytes()
        for name, packed in (("one.str.gz", gzip.compress(content)),
                             ("two.parts.str.gz", gzip.compress(content[:9000]) + gzip.compress(content[9000:]))):
            with self.subTest(name):
                self.folder.add(name, packed)
                self.page.drop({name: packed})
                self.check_saved(name)
                self.assertEqual(self.page.save("csv")[0], name.replace(".str.gz", ".csv"))

    def test_shift_table(self):
        path = self.folder.copy(DIMER)
        self.page.choose(path)
        chains = [protein["chain"] for protein in json.loads(self.folder.program("json", path.name))["proteins"]]
        self.assertGreater(len(chains), 1)
        for index, chain in enumerate(chains):
            browser.Select(self.page.element("table")).select_by_index(index)
            name, saved = self.page.save("tab")
            wanted = self.folder.kit("import", "--chain", chain, "-o", "-", path.name)
            self.assertEqual(saved.decode(), wanted.stdout)
            self.assertEqual(name, f"star3_dimer_{chain}.tab")

    def test_the_result_on_show_is_saved_while_other_files_are_read(self):
        path = self.folder.copy(NUCLEASE)
        self.page.choose(path)
        self.page.clear_status()
        self.page.ask("""
            const transfer = new DataTransfer();
            transfer.items.add(new File(["no shifts\\n"], "other.txt"));
            dispatchEvent(new DragEvent("drop", {dataTransfer: transfer, cancelable: true}));
            document.querySelector("[data-save=csv]").click();""")
        saved = self.page.wait(self.page.saved)[0]
        self.assertEqual(saved.name, "nuclease.csv")
        self.assertEqual(saved.read_bytes(), self.folder.program("csv", path.name))
        saved.unlink()
        self.page.wait(lambda: len(self.errors()) == 1)
        self.assertEqual(self.page.text("result-title"), "other.txt")

    def test_referencing(self):
        path = self.folder.add("shifted.tab", web.shifted(UBIQUITIN.read_text(), 3).encode())
        self.page.choose(path)
        self.check_saved(path.name)
        corrected = self.page.save("csv")[1]
        self.assertIn(b"REMARK Corrected: ", self.page.save("tab")[1])
        self.page.click("as-referenced")
        self.check_saved(path.name, choices=("--as-referenced",))
        self.assertNotEqual(self.page.save("csv")[1], corrected)
        self.page.select("deuteration", "deuterated")
        self.check_saved(path.name, choices=("--as-referenced", "--deuterated"))

    def test_chain_and_list(self):
        path = self.folder.copy(DIMER)
        self.page.choose(path)
        self.page.wait(lambda: len(self.page.texts("#chain option")) > 1)
        chains = self.page.texts("#chain option")
        self.assertEqual(chains[0], "all")
        for chain in chains[1:]:
            self.page.select("chain", chain)
            self.check_saved(path.name, choices=("--chain", chain))
        self.page.select("chain", "all")
        self.check_saved(path.name)


class FlagsAndRestraints(Page):
    def test_warnings_are_those_of_the_program(self):
        path = self.folder.add("flagged.nef", web.nef_of_two_cis_prolines())
        self.page.choose(path)
        said = self.folder.kit("run", path.name).stderr
        warnings = [line.split("warning: ")[1] for line in said.splitlines() if "warning: " in line]
        self.assertEqual([warning.split(" (")[0] for warning in warnings],
                         ["flagged.nef, chain A: P3 is marked trans in the file but predicted cis"])
        self.assertEqual(self.page.texts("#warnings li"), warnings)
        self.assertTrue(self.page.element("warnings").is_displayed())
        self.page.choose(NUCLEASE)
        self.assertFalse(self.page.element("warnings").is_displayed())

    def test_nef_file_with_flags(self):
        path = self.folder.add("flagged.nef", web.nef_of_two_cis_prolines())
        self.page.choose(path, NUCLEASE)
        self.assertTrue(self.page.find("[data-save=nef]").is_displayed())
        name, saved = self.page.save("nef")
        said = self.folder.kit("annotate", "--output", "out.nef", path.name).stderr
        self.assertEqual((name, saved), ("flagged_flags.nef", (self.folder.path / "out.nef").read_bytes()))
        self.assertEqual(saved.decode(), web.nef_of_two_cis_prolines().decode().replace("A 7 PRO .", "A 7 PRO true"))
        note = "flagged.nef, chain A: cis_peptide of PRO 3 was false, the shifts predict cis; left as it was"
        self.assertIn(note, said)
        self.assertEqual(self.page.status(), f"Saved flagged_flags.nef. {note}.")
        browser.Select(self.page.element("table")).select_by_index(1)
        self.assertFalse(self.page.find("[data-save=nef]").is_displayed())
        archive = zipfile.ZipFile(io.BytesIO(self.page.save("zip")[1]))
        self.assertEqual(archive.read("flagged_flags.nef"), saved)

    def programs(self):
        if not self.page.element("restraints").get_property("open"):
            self.page.find("#restraints summary").click()
        return [option.get_attribute("value") for option in browser.Select(self.page.element("program")).options]

    def check_restraints(self, programs, *choices):
        self.page.element("chain-as").clear()
        self.page.element("chain-as").send_keys("A")
        for program_name in programs:
            with self.subTest(program_name):
                self.page.ask("document.getElementById('program').value = arguments[0]", program_name)
                name, saved = self.page.save("restraints")
                wanted = self.folder.kit("restrain", "--chain-as", "A", "--for", program_name, *choices, "--", "nuclease.str")
                self.assertEqual(saved.decode(), wanted.stdout)
                self.assertIn("117", saved.decode())
                self.assertTrue(name.startswith(f"nuclease_{program_name}."), name)
                self.assertTrue(self.page.status().startswith(f"Saved {name}."), self.page.status())

    def test_restraints(self):
        help_text = " ".join(program.kit("restrain", "--help").stdout.split())
        every = re.search(r"--for PROGRAM .*?\[values: ([^]]*)\]", help_text)[1].split(", ")
        self.page.choose(self.folder.copy(NUCLEASE))
        self.assertEqual(self.programs(), every[:-2])
        self.check_restraints(every[:-2])
        self.page.choose(self.folder.copy(MODEL))
        self.assertEqual(self.programs(), every)
        self.check_restraints(["pdb", "mmcif"], "--structure", MODEL.name)

    def test_restraints_that_cannot_be_written(self):
        self.page.drop({name: NUCLEASE.read_bytes() for name in ("a.str", "b.str")})
        self.programs()
        self.page.clear_status()
        self.page.find("[data-save=restraints]").click()
        self.page.wait(lambda: self.page.status() != "")
        said = self.folder.add("a.str", NUCLEASE.read_bytes()), self.folder.add("b.str", NUCLEASE.read_bytes())
        wanted = self.folder.kit("restrain", "--for", "cyana", *said)
        self.assertEqual(wanted.returncode, 1)
        message = wanted.stderr.splitlines()[-1].removeprefix("zorvela-kit: ")
        for option, field in (("--for ", ""), ("--chain-as", '"Chain name in the restraints"'), ("--chain", '"Chain"'),
                              ("--into FILE", "zorvela-kit restrain --into")):
            message = message.replace(option, field)
        self.assertEqual(self.page.status(), message)
        self.assertEqual(self.page.saved(), [])


class Structures(Page):
    def setUp(self):
        super().setUp()
        self.shifts = self.folder.copy(NUCLEASE)
        self.model = self.folder.copy(MODEL)

    def check_compared(self):
        self.check_saved(self.shifts.name, choices=("--structure", self.model.name))
        self.assertIn("agrees", self.page.report())

    def test_dropped_with_the_shifts(self):
        self.page.choose(self.shifts, self.model)
        self.check_compared()
        self.assertEqual(self.page.text("result-title"), self.shifts.name)
        self.page.click("as-referenced")
        self.check_saved(self.shifts.name, choices=("--as-referenced", "--structure", self.model.name))

    def test_dropped_after_the_shifts(self):
        self.page.choose(self.shifts)
        self.page.choose(self.model)
        self.check_compared()
        self.page.choose(self.shifts)
        self.check_saved(self.shifts.name)

    def test_dropped_before_the_shifts(self):
        self.assertEqual(self.page.choose(self.model),
                         "nuclease.pdb.gz: no shifts yet. Drop the chemical shifts too.")
        self.page.choose(self.shifts)
        self.check_compared()

    def test_choices_stay(self):
        dimer = self.folder.copy(DIMER)
        self.page.choose(dimer)
        self.page.wait(lambda: len(self.page.texts("#chain option")) > 1)
        self.page.select("chain", "B")
        self.page.choose(self.model)
        self.assertTrue(self.page.element("chain-choice").is_displayed())
        self.check_saved(dimer.name, choices=("--chain", "B", "--structure", self.model.name))
        self.page.choose(self.shifts)
        self.assertFalse(self.page.element("chain-choice").is_displayed())
        self.check_saved(self.shifts.name)

    def test_mmcif(self):
        self.page.choose(self.folder.copy(UBIQUITIN), self.folder.copy(FILES / "ubiquitin_ensemble.cif.gz"))
        self.check_saved("ubiquitin.tab", choices=("--structure", "ubiquitin_ensemble.cif.gz"))

    def test_that_cannot_be_read(self):
        cut = self.folder.add("cut.pdb", b"ATOM      1  CA  PRO A   1      27.340  24\n")
        self.page.choose(self.shifts, cut)
        said = self.folder.kit("run", self.shifts.name, "--structure", cut.name).stderr
        self.assertEqual([f"zorvela-kit: {error}" for error in self.errors()], said.splitlines())
        self.assertIn("is cis: P117", self.page.status())


class Sequences(Page):
    """A resonance list has only numbers of residues; their names are in the sequence."""

    def add_list(self, name, moved=0):
        return self.folder.add(name, web.resonance_list(moved))

    def field(self):
        return self.page.element("sequence-choice")

    def check_saved_with(self, *choices):
        """The text of the field is a file called "the text given" to the program."""
        self.folder.add("the text given", web.UBIQUITIN)
        self.assertIn("list.prot: None of 3 prolines is called cis.", self.page.status())
        self.check_saved("list.prot", choices=("--sequence", "the text given", *choices))

    def test_dropped_with_the_shifts(self):
        paths = self.add_list("list.prot"), self.folder.add("list.seq", web.UBIQUITIN)
        self.assertEqual(self.page.drop_from_disk(*paths), "list.prot: None of 3 prolines is called cis.")
        self.check_saved("list.prot", "list.seq")
        self.assertFalse(self.field().get_property("open"))

    def test_dropped_after_the_shifts(self):
        self.page.drop_from_disk(self.add_list("list.prot"))
        self.assertEqual(self.page.status(), "1 file could not be predicted.")
        self.page.drop_from_disk(self.folder.add("other.fasta", web.UBIQUITIN))
        self.check_saved("list.prot", "other.fasta")

    def test_lists_of_two_proteins_with_a_sequence_each(self):
        names = [name for stem in "ab" for name in (f"{stem}.prot", f"{stem}.seq")]
        paths = [self.add_list(name) if name.endswith("prot") else self.folder.add(name, web.UBIQUITIN) for name in names]
        self.page.drop_from_disk(*paths)
        self.assertEqual(self.errors(), [])
        self.check_saved(*names)

    def test_field_opens_where_a_sequence_is_needed(self):
        self.page.choose(NUCLEASE)
        self.assertFalse(self.field().get_property("open"))
        path = self.add_list("list.prot")
        self.page.drop_from_disk(path)
        error = json.loads(self.folder.program("json", path.name))["errors"][0]
        self.assertIs(error["needs_sequence"], True)
        # The page names its field instead of the option of the program.
        wanted = error["message"].replace("--sequence FILE", 'the field "Sequence of the protein"')
        self.assertEqual(self.errors(), [wanted])
        self.assertNotIn("--", wanted)
        self.assertEqual(self.field().find_element(browser.By.TAG_NAME, "summary").text, "Sequence of the protein")
        self.assertTrue(self.page.element("sequence").is_displayed())
        self.page.element("sequence").click()
        self.page.paste(web.UBIQUITIN.decode())
        self.assertEqual(self.page.element("sequence").get_property("value"), web.UBIQUITIN.decode())
        self.assertEqual(self.page.text("result-title"), "list.prot", "the pasted text was taken for a shift file")
        self.page.click("use-sequence")
        self.check_saved_with()

    def test_first_residue(self):
        self.page.choose(self.add_list("list.prot", moved=16))
        self.page.element("sequence").send_keys(web.UBIQUITIN.decode())
        self.page.click("use-sequence")
        self.assertIn("17", self.errors()[0])
        self.page.element("first-residue").send_keys("17")
        self.page.click("use-sequence")
        self.check_saved_with("--first-residue", "17")
        self.assertEqual([p["resid"] for p in json.loads(self.page.save("json")[1])["proteins"][0]["prolines"]], ["35", "53", "54"])

    def test_sequence_stays_when_a_structure_comes(self):
        self.page.choose(self.add_list("list.prot"))
        self.page.element("sequence").send_keys(web.UBIQUITIN.decode())
        self.page.click("use-sequence")
        model = self.folder.copy(program.SOURCE / "examples" / "ubiquitin.pdb.gz")
        self.page.drop_from_disk(model)
        self.check_saved_with("--structure", model.name)
        self.page.choose(NUCLEASE)
        self.assertEqual(self.page.element("sequence").get_property("value"), "")

    def test_sequence_that_cannot_be_read(self):
        path = self.folder.copy(NUCLEASE)
        self.page.choose(path)
        self.page.find("#sequence-choice summary").click()
        self.page.element("sequence").send_keys("17")
        self.page.click("use-sequence")
        self.assertEqual([error.split(";")[0] for error in self.errors()], ['the text given:1: is not a sequence: "17"'])


class Report(Page):
    def test_report_is_that_of_the_library(self):
        path = self.folder.copy(NUCLEASE)
        self.page.choose(path)
        shown = self.page.element("report").get_property("srcdoc")
        self.assertEqual(shown, self.folder.program("html", path.name).decode())

    def test_report_is_shown_whole(self):
        self.page.choose(NUCLEASE)
        self.page.wait(lambda: self.page.ask("""
            const frame = document.getElementById("report");
            return frame.clientHeight > 100 && frame.clientHeight >= frame.contentDocument.documentElement.scrollHeight;"""))
        self.assertIn("P117", self.page.report())

    def test_notes_and_summary(self):
        self.page.choose(NUCLEASE)
        self.assertEqual(self.page.status(), "nuclease.str: 1 of 5 prolines is cis: P117.")
        self.assertEqual(self.page.texts("#notes li"), [
            "nuclease.str, chain 1: UNK is not a standard residue; written as ?: 53, 56"])

    def test_trans_prolines_can_be_left_out(self):
        self.page.choose(NUCLEASE)
        shown = "const d = document.getElementById('report').contentDocument;" \
                "return [...d.querySelectorAll('.line, .prolines tbody tr')].filter((e) => e.getClientRects().length).length"
        self.page.wait(lambda: self.page.ask(shown) == 9)
        every = self.page.ask(shown)
        height = self.page.element("report").size["height"]
        browser.Select(self.page.element("prolines")).select_by_visible_text("cis and undecided")
        self.page.wait(lambda: self.page.ask(shown) == every - 8)  # four lines, four rows
        self.page.settle()
        self.assertLess(self.page.element("report").size["height"], height)

    def test_two_files_of_one_protein_are_side_by_side(self):
        changed = NUCLEASE.read_bytes().replace(b"117 PRO CG  C  23.700", b"117 PRO CG  C  27.400")
        self.page.drop({"free.str": NUCLEASE.read_bytes(), "bound.str": changed})
        rows = self.page.ask("""
            const tables = [...document.getElementById("report").contentDocument.querySelectorAll("table")];
            const beside = tables.find((table) => /Side by side/.test(table.parentElement.getAttribute("aria-label")));
            return [...beside.tBodies[0].rows].map((row) => [...row.cells].map((cell) => cell.textContent));""")
        self.assertEqual(len(rows), 5)
        differing = next(row for row in rows if "P117" in row[0])
        self.assertRegex(" ".join(differing), "cis.*(trans|undecided)")

    def test_pasted_text(self):
        self.page.element("paste").click()
        self.page.ask("document.getElementById('pasted').value = arguments[0]", NUCLEASE.read_text())
        self.assertIn("pasted text: 1 of 5 prolines", self.page.click("predict"))

    def test_files_of_one_name_are_told_apart(self):
        self.page.drop([("a.csv", b""), ("a.csv", b"x")])
        self.assertEqual([error.split(":")[0] for error in self.errors()], ["a.csv", "a.csv (2)"])


class ReadingPlace(Page):
    """A click in the report, or a window that changes, leaves readers where they are or leads where they want to go."""

    def setUp(self):
        super().setUp()
        self.page.drop(ubiquitins(20))
        self.page.settle()

    def top_of(self, selector, index):
        """Where an element of the report is on the screen."""
        return self.page.ask("""
            const frame = document.getElementById("report");
            const target = frame.contentDocument.querySelectorAll(arguments[0])[arguments[1]];
            return frame.getBoundingClientRect().top + 1 + target.getBoundingClientRect().top;""", selector, index)

    def test_links_lead_to_open_folds(self):
        for index in (3, 12):
            self.page.click_in_report("tbody a", index)
            self.assertAlmostEqual(self.top_of(".chain", index), 0, delta=20)
            self.assertTrue(self.page.ask(
                f"return document.getElementById('report').contentDocument.querySelectorAll('.chain')[{index}].open"))

    def test_folds_open_and_close_in_place(self):
        for _ in range(2):
            self.page.click_in_report(".chain > summary", 9)
            self.assertAlmostEqual(self.top_of(".chain > summary", 9), 450, delta=30)

    def test_narrower_window(self):
        self.page.click_in_report("tbody a", 15)
        before = self.page.scrolled()
        self.assertGreater(before, 1000)
        self.page.resize(700, 900)
        self.addCleanup(self.page.resize, 1200, 900)
        self.assertGreaterEqual(self.page.scrolled(), before - 50)


class Printing(Page):
    def setUp(self):
        super().setUp()
        self.page.drop({**ubiquitins(7), "nuclease.str": NUCLEASE.read_bytes()})

    def check_whole(self, pages):
        """The card and the lines of trans prolines are printed, and no title is the last of its page."""
        self.assertEqual(sum(len(re.findall(r"\bSum\b", page)) for page in pages), 1)
        for page in pages:
            self.assertNotRegex(page.rstrip().splitlines()[-1], r"\.tab$|\.str|All prolines|Trans prolines|How to read|sum$")
        text = "\n".join(pages)
        self.assertEqual(len(re.findall(r"% trans .*(?:supports? |decides?;|19 in 20)", text)), 7 * 3 + 4)
        self.assertTrue(text.lstrip().startswith("Prolines of 8 chains in 8 files"), text[:200])
        for absent in ("Nothing leaves this computer", "Choose files", "works without a network"):
            self.assertNotIn(absent, text)
        self.assertIn("Tested on", text)  # a column that narrow screens leave out

    def test_page_prints_the_report_alone_and_whole(self):
        height = self.page.element("report").size["height"]
        self.check_whole(browser.printed(self.page.driver))
        self.assertEqual(self.page.element("report").size["height"], height)
        self.assertEqual(self.page.driver.find_elements(browser.By.ID, "paper"), [])

    def test_prolines_that_are_left_out_are_not_printed(self):
        browser.Select(self.page.element("prolines")).select_by_visible_text("cis and undecided")
        text = "".join(browser.printed(self.page.driver))
        self.assertIn("P117 98.7", text)
        self.assertNotIn("Trans prolines", text)

    def test_page_without_a_result(self):
        self.page.open()
        self.assertIn("Which prolines are cis?", browser.printed(self.page.driver)[0])


class ManyFiles(Page):
    def test_files_are_read_once(self):
        path = self.folder.add("mine.str", NUCLEASE.read_bytes())
        other = self.folder.copy(DIMER)
        self.page.choose(path, other)
        wanted = self.page.save("json")[1]
        path.write_bytes(b"edited\n")
        other.unlink()
        self.page.wait(lambda: len(self.page.texts("#chain option")) > 2)
        self.page.select("chain", "1 (in 1 of 2 files)")
        self.page.select("chain", "all")
        self.assertEqual(self.page.save("json")[1], wanted)
        self.assertEqual(self.errors(), [])
        self.assertIn(b"VARS", self.page.save("tab")[1])

    def test_all_in_one_archive(self):
        paths = [self.folder.copy(NUCLEASE), self.folder.copy(DIMER)]
        self.page.choose(*paths)
        name, content = self.page.save("zip")
        self.assertEqual(name, "zorvela.zip")
        archive = zipfile.ZipFile(io.BytesIO(content))
        self.assertIsNone(archive.testzip())
        self.assertEqual(archive.namelist(), ["zorvela.html", "zorvela.csv", "zorvela.json", "nuclease_1.tab",
                                              "star3_dimer_A.tab", "star3_dimer_B.tab"])
        for format_name in ("html", "csv", "json"):
            self.assertEqual(archive.read(f"zorvela.{format_name}"),
                             self.folder.program(format_name, *(path.name for path in paths)))
        wanted = self.folder.kit("import", "--chain", "B", "-o", "-", paths[1].name).stdout
        self.assertEqual(archive.read("star3_dimer_B.tab").decode(), wanted)

    def test_table_is_copied(self):
        self.page.driver.execute_cdp_cmd("Browser.grantPermissions", {
            "permissions": ["clipboardReadWrite", "clipboardSanitizedWrite"]})
        self.page.choose(NUCLEASE, DIMER)
        self.assertEqual(self.page.click("copy"), "Copied the table.")
        text = self.page.driver.execute_async_script("navigator.clipboard.readText().then(arguments[0])")
        lines = [line.split("\t") for line in text.splitlines()]
        self.assertEqual(lines[0][:3], ["Chain", "Proline", "Before"])
        self.assertEqual([line[1] for line in lines[1:6]], ["P11", "P31", "P42", "P47", "P117"])
        self.assertEqual((lines[5][0], lines[5][6:8]), ("nuclease.str, chain 1", ["0.987", "cis"]))
        self.assertEqual(len(lines), 8)

    def test_progress_moves_and_can_be_stopped(self):
        said = self.page.driver.execute_async_script("""
            const [table, done] = arguments;
            const transfer = new DataTransfer();
            for (let n = 0; n < 200; ++n) transfer.items.add(new File([table], `${n}.tab`));
            const status = document.getElementById("status");
            const said = [];
            new MutationObserver(() => {
              said.push(status.textContent);
              if (said.length === 20) document.getElementById("stop").click();
              if (status.textContent === "Stopped.") setTimeout(() => done(said), 300);
            }).observe(status, { childList: true });
            dispatchEvent(new DragEvent("drop", { dataTransfer: transfer, cancelable: true }));""", UBIQUITIN.read_text())
        self.assertEqual(said[1:20], [f"{n} of 200 files predicted …" for n in range(1, 20)])
        self.assertEqual(said[-1], "Stopped.")
        self.assertFalse(self.page.element("working").is_displayed())

    def test_chain_that_few_files_have(self):
        dimer = self.folder.copy(DIMER)
        self.page.drop({**ubiquitins(24), dimer.name: dimer.read_bytes()})
        self.page.wait(lambda: len(self.page.texts("#chain option")) > 1)
        self.assertEqual(self.page.texts("#chain option"), ["all", "A (in 1 of 25 files)", "B (in 1 of 25 files)"])
        status = self.page.select("chain", "B (in 1 of 25 files)")
        self.assertTrue(status.startswith("star3_dimer.str: "), status)
        self.assertTrue(status.endswith(" 24 files do not have the chosen chain or shift list."), status)
        self.check_saved(dimer.name, choices=("--chain", "B"))

    def test_choices_that_fit_no_file_are_errors_with_the_names_that_do(self):
        self.page.choose(DIMER, NUCLEASE)
        self.page.wait(lambda: len(self.page.texts("#chain option")) > 2)
        self.page.select("chain", "B (in 1 of 2 files)")
        self.page.select("list", "assigned_chem_shift_list_1 (in 1 of 2 files)")
        self.assertEqual(len(self.errors()), 2)
        self.assertIn("it has", self.errors()[0])


class BadFiles(Page):
    def test_errors_are_those_of_the_program(self):
        archive = io.BytesIO()
        with zipfile.ZipFile(archive, "w") as out:
            out.writestr("a.str", "data_x")
        packed = gzip.compress(NUCLEASE.read_bytes())
        bad = {"empty.csv": b"", "blank.csv": b" \n\n", "archive.zip": archive.getvalue(), "text.txt": b"no shifts\n",
               "zero.str": b"data_x\0", "cut.gz": packed[:-50], "head.gz": packed[:6],
               "damaged.gz": packed[:2000] + b"\xff" * 40 + packed[2040:], "page.html": b"<!DOCTYPE html>"}
        for name, content in bad.items():
            self.folder.add(name, content)
        self.page.drop(bad)
        wanted = [error["message"] for error in json.loads(self.folder.program("json", *bad))["errors"]]
        self.assertEqual(len(wanted), len(bad))
        self.assertEqual(self.errors(), wanted)
        self.assertEqual(self.page.status(), f"{len(bad)} files could not be predicted.")
        self.check_saved(*bad)

    def test_large_file_that_holds_no_shifts(self):
        path = self.folder.add("large.txt", b"no shifts in here\n" * (100_000_000 // 18))
        self.page.clear_status()
        self.page.element("files").send_keys(str(path))
        ticks = self.page.driver.execute_async_script("""
            const done = arguments[0]; let ticks = 0; const start = performance.now();
            (function tick() { ++ticks; performance.now() - start > 500 ? done(ticks) : setTimeout(tick, 10); })();""")
        self.assertGreater(ticks, 5, "the page does not answer while it reads")
        self.assertEqual(self.page.wait_for_result(300), "1 file could not be predicted.")
        self.assertEqual(self.errors(), [json.loads(self.folder.program("json", path.name))["errors"][0]["message"]])
        self.page.choose(NUCLEASE)
        self.assertIn("is cis: P117", self.page.status())

    def test_hostile_names_and_contents_are_text(self):
        script = "<img src=x onerror=document.title=1><script>document.title=1</script>"
        name = "<img src=x onerror=document.title=1>\"'&.csv"
        content = f"resid,resname,atom,shift,chain\n1,ALA,CA,52,{script}\n2,PRO,CB,32,{script}\n3,<b>X,CA,50,{script}\n"
        self.folder.add(name, content.encode())
        self.page.drop({name: content.encode()})
        self.check_saved(name)
        self.assertIn(name, self.page.text("result-title"))
        self.assertIn(name, self.page.driver.title)
        inside = "document.getElementById('report').contentDocument"
        for document in ("document", inside):
            self.assertEqual(self.page.ask(f"return {document}.querySelectorAll('img, [onerror]').length"), 0)
        self.assertEqual(self.page.ask(f"return {inside}.querySelectorAll('script').length"), 0)

    def test_signs_that_turn_the_direction_of_writing_are_replaced(self):
        replaced = [*range(1, 0x20), *range(0x7f, 0xa0), 0x61c, 0x200e, 0x200f, *range(0x2028, 0x202f), *range(0x2066, 0x206a)]
        name = "a" + "".join(map(chr, replaced)) + "z.csv"
        self.page.drop({name: b"resid,resname,atom,shift\n1,ALA,CA,52\n2,PRO,XY,32\n", "b" + name: b""})
        shown = "a" + "?" * len(replaced) + "z.csv"
        inside = "document.getElementById('report').contentDocument"
        self.page.wait(lambda: shown in self.page.report())
        reported = self.page.ask(
            f"return [...{inside}.querySelectorAll('li')].map((e) => e.textContent).filter((text) => text.startsWith('b'))")
        self.assertEqual(self.errors(), reported)
        for text in self.page.texts("#errors li, #notes li"):
            self.assertIn(shown + ":", text)
        self.page.drop({name: b""})
        self.assertEqual(self.page.text("result-title"), shown)


class KeyboardAlone(Page):
    def tab_to(self, condition):
        for _ in range(30):
            self.page.press(browser.Keys.TAB)
            if self.page.ask(f"const e = document.activeElement; return {condition};"):
                return
        self.fail(f"the Tab key does not lead to {condition}")

    def test_example_choices_and_saving(self):
        self.tab_to("e.id === 'files'")
        self.tab_to("e.id === 'example'")
        self.page.press(browser.Keys.ENTER)
        self.assertIn("of 5 prolines", self.page.wait_for_result())
        self.tab_to("e.id === 'prolines'")
        self.page.press(browser.Keys.ARROW_DOWN)
        self.page.wait(lambda: self.page.element("prolines").get_property("value") == "interesting")
        self.tab_to("e.dataset.save === 'csv'")
        self.page.press(browser.Keys.ENTER)
        self.page.wait(lambda: len(self.page.saved()) == 1)
        self.assertEqual(self.page.saved()[0].name, "nuclease.csv")
        self.assertEqual(self.page.status(), "Saved nuclease.csv.")

    def test_the_focus_is_visible(self):
        self.page.choose(NUCLEASE)
        self.page.ask("document.activeElement.blur()")
        for _ in range(10):
            self.page.press(browser.Keys.TAB)
            visible = self.page.ask("""
                const e = document.activeElement;
                const shown = e.id === "files" ? e.nextElementSibling : e;
                return e.tagName === "IFRAME" || e === document.body || getComputedStyle(shown).outlineStyle !== "none";""")
            self.assertTrue(visible)


@browser.needs_browser
class Network(unittest.TestCase):
    def test_page_requests_only_its_own_files_and_works_without_a_network(self):
        server = browser.Server()
        with tempfile.TemporaryDirectory() as folder:
            log = pathlib.Path(folder) / "network.json"
            page = browser.Page(server.address, arguments=[f"--log-net-log={log}"])
            try:
                page.wait(lambda: page.text("offline") != "")
                page.choose(NUCLEASE)
                server.stop()
                page.choose(FILES / "nef_entry.nef")
                self.assertIn("nef_entry.nef:", page.status())
                page.open()  # from what the service worker keeps
                page.element("example").click()
                self.assertIn("of 5 prolines", page.wait_for_result())
                self.assertEqual(page.console(), [])
                self.assertEqual(page.ask("return document.cookie"), "")
            finally:
                page.close()
            asked = requests_in(log, server.address)
        self.assertIn(server.address + "zorvela.wasm", asked)
        site = {server.address + path.name for path in web.SITE.iterdir()} | {server.address}
        self.assertEqual(asked - site, set())

    def test_policy_keeps_connections_to_the_page(self):
        reached = threading.Event()

        class Elsewhere(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                reached.set()
                self.send_response(204)
                self.end_headers()

            do_POST = do_GET

        elsewhere = http.server.HTTPServer(("127.0.0.1", 0), Elsewhere)
        threading.Thread(target=elsewhere.serve_forever, daemon=True).start()
        self.addCleanup(elsewhere.shutdown)
        server = browser.Server()
        self.addCleanup(server.stop)
        page = browser.Page(server.address)
        self.addCleanup(page.close)
        outcome = page.driver.execute_async_script("""
            const [address, done] = arguments;
            new Image().src = address + "image";
            navigator.sendBeacon(address + "beacon", "shifts");
            const style = document.createElement("link");
            style.rel = "stylesheet"; style.href = address + "style"; document.head.append(style);
            fetch(address, {mode: "no-cors"}).then(() => done("sent"), () => setTimeout(() => done("refused"), 300));
            """, f"http://127.0.0.1:{elsewhere.server_address[1]}/")
        self.assertEqual(outcome, "refused")
        # The worker is started so, and bound by the same policy.
        outcome = page.driver.execute_async_script("""
            const [address, done] = arguments;
            const code = `fetch("${address}").then(() => postMessage("sent"), () => postMessage("refused"))`;
            new Worker(URL.createObjectURL(new Blob([code]))).onmessage = ({data}) => done(data);
            """, f"http://127.0.0.1:{elsewhere.server_address[1]}/")
        self.assertEqual(outcome, "refused")
        self.assertFalse(reached.is_set())


@browser.needs_browser
class Package(unittest.TestCase):
    def test_npm_package_in_a_browser(self):
        server = browser.Server(web.NPM)
        self.addCleanup(server.stop)
        driver = browser.start()
        self.addCleanup(driver.quit)
        driver.get(server.address)
        calls = driver.execute_async_script("""
            const [address, text, done] = arguments;
            import(address + "index.js").then((zorvela) => zorvela.predict(text))
              .then(({proteins}) => done(proteins[0].prolines.map(({call}) => call)), (error) => done(error.message));
            """, server.address, NUCLEASE.read_text())
        self.assertEqual(calls, ["trans", "trans", "trans", "trans", "cis"])


def requests_in(log, address):
    """The addresses that pages of a site and their workers asked for, by the browser's log of its network."""
    text = log.read_text()
    events = json.loads(text if text.rstrip().endswith("}") else text.rstrip().rstrip(",") + "]}")
    begin = events["constants"]["logEventTypes"]["URL_REQUEST_START_JOB"]
    asked = set()
    for event in events["events"]:
        parameters = event.get("params", {})
        if event["type"] == begin and "url" in parameters:
            initiator = parameters.get("initiator", "")
            if initiator + "/" == address or parameters["url"].startswith(address):
                asked.add(parameters["url"])
    return asked

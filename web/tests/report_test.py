"""The saved report in a real browser and on paper: wide and narrow, light and dark, short and long."""
import pathlib
import re
import tempfile
import unittest

import browser
import web
from zorvela_tests import program

EXAMPLES = program.SOURCE / "examples"
DIMER = program.SOURCE / "kit" / "tests" / "files" / "star3_dimer.str"
CIS = {"CB": 34.0, "CG": 24.0}
TRANS = {"CB": 31.8, "CG": 27.4}
PROLINES = 42
CALLED_CIS = (5, 20, 41)  # of them


def many_prolines():
    return program.full_table("APK" * PROLINES, {
        (3 * n - 1, atom): ppm for n in range(1, PROLINES + 1)
        for atom, ppm in (CIS if n in CALLED_CIS else TRANS).items()})


class Case(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.driver = browser.start(f"--user-data-dir={cls.folder}/profile")
        cls.addClassCleanup(cls.driver.quit)

    def put(self, name, text):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def open(self, *arguments):
        path = self.folder / "report.html"
        program.kit("run", "--tables", program.TABLES, "--format", "html", "--output", path, *arguments)
        self.driver.get(path.as_uri())

    def ask(self, script, *arguments):
        return self.driver.execute_script("return " + script, *arguments)

    def samples(self):
        """Kinds of reports, each with its arguments."""
        ubiquitin = (EXAMPLES / "ubiquitin.tab").read_text(encoding="utf-8")
        offset = self.put("offset.tab", web.shifted(ubiquitin, 3))
        none = self.put("none.tab", program.full_table("AKAKAKA"))
        return {"one": [EXAMPLES / "nuclease.str"], "chains": [DIMER], "none": [none], "offset": [offset],
                "as referenced": ["--as-referenced", offset],
                "twenty": [self.put(f"{n}.tab", ubiquitin) for n in range(1, 19)] + [offset, "missing.tab"],
                "many": [self.put("many.tab", many_prolines())],
                "long": [self.put("x" * 240 + ".tab", ubiquitin), none],
                "structure": [EXAMPLES / "nuclease.tab", "--structure", EXAMPLES / "nuclease.pdb.gz"]}


@browser.needs_driver
class Screens(Case):
    def test_nothing_is_too_wide_too_small_or_wrong_for_a_screen_reader(self):
        folder = web.installed("axe-core@4.14.1")
        axe = folder and (folder / "node_modules" / "axe-core" / "axe.min.js").read_text()
        for name, arguments in self.samples().items():
            self.open(*arguments)
            for width in (1400, 400, 320):
                browser.set_size(self.driver, width, 900)
                self.assertLessEqual(self.ask("document.documentElement.scrollWidth"), width, (name, width))
                smallest = self.ask("""Math.min(...[...document.querySelectorAll("main svg.w text, main .nats *")]
                    .map((e) => parseFloat(getComputedStyle(e).fontSize) * (e.getScreenCTM?.().a ?? 1)))""")
                self.assertGreaterEqual(smallest or 11, 11, (name, width))
                for dark in (False, True):
                    browser.set_scheme(self.driver, dark)
                    with self.subTest(name, width=width, dark=dark):
                        self.assertEqual(browser.violations(self.driver, axe) if axe else [], [])

    def test_tables_scroll_by_the_keyboard_where_they_are_too_wide(self):
        self.open(*self.samples()["structure"])
        browser.set_size(self.driver, 320, 900)
        frame = "document.querySelector(\"[aria-label='All prolines of nuclease.tab']\")"
        self.ask(f"{frame}.focus()")
        for _ in range(5):
            browser.webdriver.ActionChains(self.driver).send_keys(browser.Keys.ARROW_RIGHT).perform()
        browser.WebDriverWait(self.driver, 5).until(lambda _: self.ask(f"{frame}.scrollLeft") > 0)

    def test_links_open_the_fold_that_they_lead_to(self):
        self.open(*self.samples()["twenty"])
        browser.set_size(self.driver, 1000, 900)
        fold = "document.getElementById('chain12').closest('details')"
        self.assertFalse(self.ask(f"{fold}.open"))
        link = self.driver.find_element(browser.By.CSS_SELECTOR, "a[href='#chain12']")
        browser.webdriver.ActionChains(self.driver).move_to_element(link).click().perform()
        self.assertTrue(self.ask(f"{fold}.open"))
        top = self.ask(f"{fold}.getBoundingClientRect().top")
        self.assertTrue(-5 < top < 60, top)

    def test_lines_of_trans_prolines_open(self):
        self.open(*self.samples()["many"])
        browser.set_size(self.driver, 1000, 900)
        self.assertEqual(self.ask("document.querySelectorAll('article.card').length"), len(CALLED_CIS))
        lines = self.driver.find_elements(browser.By.CSS_SELECTOR, "details.line summary")
        self.assertEqual(len(lines), PROLINES - len(CALLED_CIS))
        before = self.ask("document.documentElement.scrollHeight")
        browser.webdriver.ActionChains(self.driver).move_to_element(lines[3]).click().perform()
        self.assertGreater(self.ask("document.documentElement.scrollHeight"), before + 200)

    def test_colours_that_the_system_forces(self):
        self.open(EXAMPLES / "nuclease.str")
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "forced-colors", "value": "active"}]})
        bars = self.ask("""[...document.querySelectorAll("article i")].map((e) => getComputedStyle(e).backgroundColor)""")
        key = self.ask("""[...document.querySelectorAll(".key use")].map((e) => e.getAttribute("href").slice(1)).map(
            (id) => getComputedStyle(document.getElementById(id)).fill)""")
        self.assertIn(key[0], bars)  # cis, and trans, as the legend has them
        self.assertIn(key[1], bars)
        self.assertNotEqual(key[0], key[1])


@browser.needs_driver
class Paper(Case):
    """Cards for cis prolines, lines for the others, folds open, nothing cut."""

    def check(self, cards, lines, *arguments):
        self.open(*arguments)
        pages = browser.printed(self.driver)
        text = "\n".join(pages)
        found = [re.findall(r"P_CIS_NORM [<>0-9]", page) for page in pages]
        self.assertEqual(sum(map(len, found)), cards)
        for page, of_page in zip(pages, found):
            self.assertEqual(len(re.findall(r"\bSum\b", page)), len(of_page), page)
            self.assertNotRegex(page.rstrip().splitlines()[-1], r"(\.tab|All prolines|Trans prolines|How to read this)$")
        self.assertEqual(len(re.findall(r"% trans .*(?:supports? |decides?;|19 in 20)", text)), lines)
        self.assertIn("How to cite", text)
        return text

    def test_many_prolines(self):
        self.check(len(CALLED_CIS), PROLINES - len(CALLED_CIS), *self.samples()["many"])

    def test_long_names(self):
        text = self.check(0, 3, *self.samples()["long"])
        self.assertIn("x" * 240 + ".tab", re.sub(r"\s+", "", text))

    def test_offset(self):
        text = self.check(2, 1, *self.samples()["offset"])
        self.assertEqual(text.count("3.02 ppm too high"), 1)

    def test_folds_are_open(self):
        text = self.check(2, 18 * 3 + 1, *self.samples()["twenty"])
        self.assertEqual(text.count("76 residues,"), 19)

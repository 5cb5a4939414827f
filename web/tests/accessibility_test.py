"""The page fits its screen, and axe-core (if npm can fetch it) finds no fault: wide and narrow, light and dark."""
import pathlib
import tempfile
import unittest

import browser
import web
from zorvela_tests import program

EXAMPLES = program.SOURCE / "examples"
FILES = program.SOURCE / "kit" / "tests" / "files"
NUCLEASE = EXAMPLES / "nuclease.str"
MODEL = EXAMPLES / "nuclease.pdb.gz"
DIMER = FILES / "star3_dimer.str"


@browser.needs_browser
class Accessibility(unittest.TestCase):
    def setUp(self):
        folder = web.installed("axe-core@4.14.1")
        self.axe = folder and (folder / "node_modules" / "axe-core" / "axe.min.js").read_text()
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def check(self, driver):
        for width in (1400, 400, 320):
            browser.set_size(driver, width, 900)
            for dark in (False, True):
                browser.set_scheme(driver, dark)
                with self.subTest(width=width, dark=dark):
                    self.assertEqual(browser.violations(driver, self.axe) if self.axe else [], [])
                    self.assertLessEqual(driver.execute_script("return document.documentElement.scrollWidth"), width)

    def test_page(self):
        server = browser.Server()
        self.addCleanup(server.stop)
        page = browser.Page(server.address)
        self.addCleanup(page.close)
        self.check(page.driver)
        flagged = self.folder / "flagged.nef"
        flagged.write_bytes(web.nef_of_two_cis_prolines())
        bad = self.folder / "empty.csv"
        bad.write_bytes(b"")
        for files in ((NUCLEASE, MODEL), (flagged, DIMER, bad)):
            page.choose(*files)
            self.check(page.driver)
        page.element("paste").click()
        self.check(page.driver)
        if not self.axe:
            self.skipTest("axe-core cannot be fetched; only the widths were checked")

"""zorvela-kit run --format html: a page that stands alone, safe with hostile names, pictures in the right place.

With --update the stored reports of the examples are written anew.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

from zorvela_tests import program

STORED = [(table, table.with_suffix(".html")) for table in program.EXAMPLES]
HOSTILE = "<img src=x onerror=alert(1)> \"'&amp;\x1b[31m\x07</style></title><script>alert(2)</script>\u202egpj"
FAR = {(2, "CB"): 34.0, (2, "CG"): 24.0}


def page(*arguments, tables=program.TABLES):
    result = program.run("--format", "html", *arguments, tables=tables, cwd=program.SOURCE)
    return result.stdout


def relative(path):
    return path.relative_to(program.SOURCE)


def pictures(text):
    """The pictures as XML trees: the parser of Python checks that they are well-formed."""
    return [xml.etree.ElementTree.fromstring(svg) for svg in re.findall(r"<svg class=\"w\".*?</svg>", text, re.DOTALL)]


def card(text, name):
    (found,) = re.findall(r"<article class=\"card\"><h3>(?:(?!</h3>).)* %s .*?</article>" % name, text, re.DOTALL)
    return found


def texts(picture):
    return [(float(t.get("x")), float(t.get("y")), t.text) for t in picture.iter("text")]


class Page(unittest.TestCase):
    maxDiff = None

    def assert_sound(self, text):
        self.assertIn("Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\"", text)
        for forbidden in (r"<script", r"<img", r"<link", r"<iframe", r"@import", r"url\(", r"\ssrc=", r"\son\w+=",
                          r"https?:", r"javascript:"):
            markup = re.sub(r">[^<]*<", "><", text[text.index("<body"):])  # tags alone: text cannot load anything
            self.assertIsNone(re.search(forbidden, markup, re.IGNORECASE), forbidden)
        for target in re.findall(r"href=\"([^\"]*)\"", text):
            self.assertTrue(target.startswith("#"), target)
            self.assertIn("id=\"%s\"" % target[1:], text)
        self.assertIsNone(re.search("[\x00-\x08\x0b-\x1f\x7f-\x9f\u200e\u200f\u202a-\u202e\u2066-\u2069]", text))
        self.assertIn("<!DOCTYPE html>", text)
        self.assertGreater(len(pictures(text)), 0)
        for picture in pictures(text):
            self.assertEqual(picture.get("role"), "img")
            self.assertTrue(picture.get("aria-label"))
        if shutil.which("tidy") is None:
            self.skipTest("tidy is missing")
        checked = subprocess.run(["tidy", "-quiet", "-errors", "-utf8"], input=text, text=True, capture_output=True,
                                 check=False)
        self.assertEqual(checked.stderr, "")
        self.assertEqual(checked.returncode, 0)

    def test_examples_are_sound(self):
        for example in program.EXAMPLES:
            self.assert_sound(page(relative(example)))

    def test_examples_byte_for_byte(self):
        for example, stored in STORED:
            self.assertEqual(page(relative(example)), stored.read_text(encoding="utf-8"), "to mend: html_test.py --update")

    def test_hostile_names(self):
        rows = program.full_table("APK", FAR).replace("\n", "\nREMARK %s\n" % HOSTILE.replace("\n", " "), 1)
        with tempfile.TemporaryDirectory() as folder:
            for name in (HOSTILE.replace("/", "|"), "x" * 240, "\udcff\udcfe.tab"):
                path = os.path.join(folder, name)
                with open(path, "w", encoding="utf-8") as file:
                    file.write(rows)
                result = subprocess.run(
                    [program.KIT, "run", "--tables", program.MADE_TABLES, "--format", "html", os.fsencode(path)],
                    capture_output=True, check=False, env=program.environment())
                text = result.stdout.decode("utf-8")  # strict: the page is UTF-8 whatever the name is
                self.assertIn("P2 cis", text)
                self.assert_sound(text)

    def test_errors_are_escaped(self):
        self.assertIn("&lt;img src=x onerror=y&gt;", page(program.EXAMPLES[0], "<img src=x onerror=y>"))

    def test_no_proline_and_one(self):
        with tempfile.TemporaryDirectory() as folder:
            for sequence, said in (("AAK", "The sequence has no proline."), ("PAK", "The one proline has no prediction."),
                                   ("APK", "1 of 1 proline is cis: P2.")):
                path = os.path.join(folder, sequence + ".tab")
                with open(path, "w", encoding="utf-8") as file:
                    file.write(program.full_table(sequence, FAR if sequence == "APK" else ()))
                text = page(path, tables=program.MADE_TABLES)
                self.assertIn(said, text)
                self.assert_sound(text)

    def test_chains_with_something_to_look_at_stand_open(self):
        text = page(*program.EXAMPLES)
        opened = re.findall(r"<details class=\"chain\" id=\"chain\d+\"( open)?><summary>([^<]*)", text)
        self.assertEqual([(bool(is_open), os.path.basename(name)) for is_open, name in opened],
                         [(True, "nuclease.tab"), (False, "ubiquitin.tab")])

    def test_accuracy_is_that_of_the_document(self):
        document = (program.SOURCE / "doc" / "accuracy.md").read_text(encoding="utf-8")
        text = page(program.EXAMPLES[0])
        for known, line in (("CB and CG", "with CB and CG"), ("CB, not CG", "with CB, without CG"),
                            ("no CB", "without CB")):
            found = re.search(r"^%s +(\d+) +\d+ +\S+ \[[^]]*\] +(\S+) \[[^]]*\] +(\S+) " % re.escape(line), document,
                              re.MULTILINE)
            count, sensitivity, specificity = found.groups()
            row = re.search(r"<td>%s</td>(.*?)</tr>" % known, text).group(1)
            self.assertEqual(re.findall(r">([0-9.]+)(?: prolines)?<", row)[1:], [sensitivity, specificity, count])


class Pictures(unittest.TestCase):
    """Made tables: CB tells cis (+2 ppm) from trans (0), CG 24 from 27, all deviations 1. Proline 2 of A P K."""

    def setUp(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "made.tab")
            with open(path, "w", encoding="utf-8") as file:
                file.write(program.full_table("APK", {(2, "CB"): 30.5, (2, "CG"): 24.5}))
            self.text = page(path, tables=program.MADE_TABLES)

    def picture(self):
        (found,) = pictures(card(self.text, "P2"))
        return found

    def test_bars(self):
        # Zero stands at 262, a nat is 15.5 wide. Rows of 14 from 30 on, 5 more before each of the four groups.
        # CB: half a ppm from trans, 1.5 from cis: (0.25 - 2.25) / 2 = -1 nat, 15.5 to the left. It is row 11, in the
        # second group: 30 + 11 * 14 + 2 * 5 = 194, bars start one below.
        # CG: 0.5 from cis, 2.5 from trans: (6.25 - 0.25) / 2 = +3 nats: 46.5 to the right. Row 12.
        # Prior: -ln 19 = -2.944: 45.6 to the left.
        shapes = [(p.get("class"), p.get("d")) for p in self.picture().iter("path")]
        self.assertIn(("p", "M262 31v9h-45.6v-9z"), shapes)
        self.assertIn(("t", "M262 195v9h-15.5v-9z"), shapes)
        self.assertIn(("c", "M262 209v9h46.5v-9z"), shapes)
        # Sum: -2.944 - 1 + 3 = -0.944, 14.6 to the left; undecided (0.28). Row 20, after all groups: 330.
        self.assertIn(("u", "M262 331v9h-14.6v-9z"), shapes)
        # The A before is twice as common beside cis, the K after beside trans: ln 2 = 0.693 to either side.
        self.assertIn(("c", "M262 50v9h10.7v-9z"), shapes)
        self.assertIn(("t", "M262 312v9h-10.7v-9z"), shapes)
        self.assertEqual(len([s for s in shapes if s[0] in ("c", "p", "t", "u")]), 6)

    def test_numbers_beside_the_bars(self):
        labels = texts(self.picture())
        self.assertIn((242.5, 203.0, "−1.0"), labels)  # four from the end of the bar
        self.assertIn((312.5, 217.0, "+3.0"), labels)
        self.assertIn((134.0, 203.0, "30.5"), labels)
        self.assertIn((134.0, 217.0, "24.5"), labels)

    def test_cb_against_cg(self):
        # Trans at (30, 27), cis at (32, 24), 2.4 deviations of 1 to either side, to whole ppm: CB 27 to 35, CG 21
        # to 30. The axes run from (40, 300) to (392, 12).
        picture = pictures(self.text)[1]
        (point,) = [u for u in picture.iter("use") if u.get("href") != "#k"]
        self.assertEqual(point.get("href"), "#u")
        self.assertAlmostEqual(float(point.get("x")), 40 + (30.5 - 27) / 8 * 352, delta=0.05)
        self.assertAlmostEqual(float(point.get("y")), 300 - (24.5 - 21) / 9 * 288, delta=0.05)
        centres = re.findall(r"<ellipse class=\"e([ct])\" cx=\"(\S+)\" cy=\"(\S+)\" rx=\"(\S+)\" ry=\"(\S+)\"", self.text)
        self.assertEqual(centres, [("t", "172", "108", "88", "64"), ("t", "172", "108", "44", "32"),
                                   ("c", "260", "204", "88", "64"), ("c", "260", "204", "44", "32")])

    def test_no_labels_overlap(self):
        for example in [*program.EXAMPLES, *program.real_entries()[::60]]:
            for picture in pictures(page(example)):
                boxes = []
                for label in picture.iter("text"):
                    if label.get("transform"):
                        continue
                    width = 6.2 * len(label.text)
                    shift = {"e": 1.0, "m": 0.5}.get((label.get("class") or "-").split()[0], 0.0)
                    x, y = float(label.get("x")) - shift * width, float(label.get("y"))
                    self.assertGreaterEqual(x, -1)
                    self.assertLessEqual(x + width, 402)
                    boxes.append((x, y, width, label.text))
                for i, (x, y, width, name) in enumerate(boxes):
                    for other_x, other_y, other_width, other in boxes[:i]:
                        touches = x < other_x + other_width and other_x < x + width and abs(y - other_y) < 9
                        self.assertFalse(touches, (example.name, name, other))


def update():
    for example, stored in STORED:
        stored.write_text(page(relative(example)), encoding="utf-8")


if __name__ == "__main__":
    if sys.argv[1:] == ["--update"]:
        update()
    else:
        unittest.main()

"""zorvela-kit run --format html: one file, safe with hostile names, pictures in the right place.

With --update the stored reports of the examples are written anew.
"""
import html
import os
import re
import shutil
import subprocess
import sys
import unittest
import xml.etree.ElementTree

from zorvela_tests import folder, program

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
    """The card of a proline, or the line that opens."""
    ((_, found),) = re.findall(
        r"(?s)<(article|details) class=\"(?:card|line)\">((?:(?!<b>).)* %s <b>.*?)</\1>" % name, text)
    return found


def headline(text, name):
    return html.unescape(re.search(r" %s <b>(.*?)</b>" % name, text).group(1)).replace("\u00a0", " ")


def first_line(text):
    return html.unescape(re.search(r"<p class=\"lead\">(.*?)</p>", text).group(1))


def table_after(text, start):
    """The cells of the first table after a place, without marks."""
    rows = re.findall(r"<tr.*?</tr>", text[text.index(start):].split("</table>")[0], re.DOTALL)
    return [[html.unescape(re.sub(r"<[^>]*>", "", cell)).strip() for cell in re.findall(r"<t[hd].*?</t[hd]>", row)]
            for row in rows]


class Page(folder.InFolder):
    def assert_sound(self, text):
        self.assertIn("Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\"", text)
        for forbidden in (r"<script", r"<img", r"<link", r"<iframe", r"@import", r"url\(", r"\ssrc=", r"\son\w+=",
                          r"https?:", r"javascript:"):
            # Tags without text and labels, which cannot load anything.
            markup = re.sub(r">[^<]*<|(?<=aria-label=\")[^\"<>]*", "><", text[text.index("<body"):])
            self.assertIsNone(re.search(forbidden, markup, re.IGNORECASE), forbidden)
        frames = re.findall(r"role=\"region\" aria-label=\"([^\"]*)\"", text)
        self.assertEqual(len(frames), len(set(frames)))
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
        checked = subprocess.run(["tidy", "-quiet", "-errors", "-utf8", "--drop-empty-elements", "no"], input=text, text=True, capture_output=True,
                                 check=False)
        self.assertEqual(checked.stderr, "")
        self.assertEqual(checked.returncode, 0)

    def test_examples_are_sound(self):
        for example in program.EXAMPLES:
            self.assert_sound(page(relative(example)))

    def test_examples_byte_for_byte(self):
        for example, stored in STORED:
            self.assertEqual(page(relative(example)), stored.read_text(encoding="utf-8"), "to fix: html_test.py --update")

    def test_hostile_names(self):
        rows = program.full_table("APK", FAR).replace("\n", "\nREMARK %s\n" % HOSTILE.replace("\n", " "), 1)
        for name in (HOSTILE.replace("/", "|"), "x" * 240, "\udcff\udcfe.tab"):
            result = subprocess.run(
                [program.KIT, "run", "--tables", program.MADE_TABLES, "--format", "html",
                 os.fsencode(self.put(name, rows))], capture_output=True, check=False, env=program.environment())
            text = result.stdout.decode("utf-8")  # strict: the page is UTF-8 whatever the name is
            self.assertEqual(headline(text, "P2"), "99.9 % cis")
            self.assert_sound(text)

    def test_errors_are_escaped(self):
        self.assertIn("&lt;img src=x onerror=y&gt;", page(program.EXAMPLES[0], "<img src=x onerror=y>"))

    def test_no_proline_and_one(self):
        for sequence, answer in (("AAK", "The sequence has no proline."), ("PAK", "The only proline has no prediction."),
                                 ("APK", "1 of 1 proline is cis: P2.")):
            table = program.full_table(sequence, FAR if sequence == "APK" else ())
            text = page(self.put(sequence + ".tab", table), tables=program.MADE_TABLES)
            self.assertIn(answer, text)
            self.assertEqual("class=\"key\"" in text, sequence == "APK")
            self.assertEqual("<li>P1: first residue</li>" in text, sequence == "PAK")
            self.assert_sound(text)

    def test_chains_with_a_proline_to_look_at_are_open(self):
        text = page(*program.EXAMPLES)
        opened = re.findall(r"<details class=\"chain\"( open)?><summary>([^<]*)", text)
        self.assertEqual([(bool(is_open), os.path.basename(name)) for is_open, name in opened],
                         [(True, "nuclease.tab"), (False, "ubiquitin.tab")])

    def test_accuracy_is_that_of_the_document(self):
        document = (program.SOURCE / "doc" / "accuracy.md").read_text(encoding="utf-8")
        text = page(program.EXAMPLES[0])
        for known, line in (("CB and CG", "with CB and CG"), ("CB without CG", "with CB, without CG"),
                            ("no CB", "without CB")):
            found = re.search(r"^%s +(\d+) +\d+ +\S+ \[[^]]*\] +(\S+) \[[^]]*\] +(\S+) " % re.escape(line), document,
                              re.MULTILINE)
            count, sensitivity, specificity = found.groups()
            row = re.search(r"<th scope=\"row\">%s</th>(.*?)</tr>" % known, text).group(1)
            self.assertEqual(re.findall(r">([0-9.]+)(?:\u00a0%| prolines)<", row),
                             ["%.1f" % (100 * float(share)) for share in (sensitivity, specificity)] + [count])


class Made(folder.InFolder):
    def page_of(self, changes=(), sequence="APK", **files):
        """The page about a made table, or several by their names."""
        files = files or {"made": program.full_table(sequence, changes)}
        return page(*(self.put(name + ".tab", table) for name, table in files.items()), tables=program.MADE_TABLES)


class Cards(Made):
    """Made tables: CB tells cis (+2 ppm) from trans (0), CG 24 from 27, all deviations 1. Proline 2 of A P K."""

    def test_contributions(self):
        # CB: half a ppm from trans, 1.5 from cis: (0.25 - 2.25) / 2 = -1 nat. CG: 0.5 from cis, 2.5 from trans:
        # (6.25 - 0.25) / 2 = +3 nats. Start: -ln 19 = -2.944. Sum: -2.944 - 1 + 3 = -0.944.
        # The A before is twice as common beside cis, the K after beside trans: ln 2 = 0.693 to either side.
        text = card(self.page_of({(2, "CB"): 30.5, (2, "CG"): 24.5}), "P2")
        rows = table_after(text, "<table")
        self.assertEqual(rows[0], ["ppm", "obs.", "cis", "trans", "nats", "trans | cis"])
        for row in (["A1 type", "+0.7", ""], ["P2 1 in 20 is cis", "−2.9", ""], ["K3 type", "−0.7", ""],
                    ["CB", "30.5", "32.0", "30.0", "−1.0", ""], ["CG", "24.5", "24.0", "27.0", "+3.0", ""],
                    ["Sum", "−0.9", ""]):
            self.assertIn(row, rows)
        # Zero is at 60 % of the width, 25 nats wide.
        bars = [(kind, side, float(at), float(width)) for kind, side, at, width in
                re.findall(r"<i class=\"(.)\" style=\"(\w+):(\d+)%;width:([0-9.]+)%\">", text)]
        self.assertEqual(bars, [("c", "left", 60, 2.8), ("p", "right", 40, 11.8), ("t", "right", 40, 4),
                                ("c", "left", 60, 12), ("t", "right", 40, 2.8), ("u", "right", 40, 3.8)])

    def test_missing_shifts_say_what_they_promise(self):
        text = card(self.page_of({(2, "CB"): 31.0}), "P2")  # between cis and trans, without CG
        (row,) = [row for row in table_after(text, "<table") if row[0] == "CG"]
        self.assertEqual(row[:4], ["CG", "–", "24.0", "27.0"])
        self.assertRegex(row[4], r"^worth 0\.\d\d bits$")
        # So surely trans that CG would add less than 0.02 bits.
        self.assertNotIn("bits", card(self.page_of({(2, "CB"): 29.5}), "P2"))

    def test_headlines(self):
        # As above, log-odds of -0.944: 28.0 %. CG 24 adds 4.5 instead of 3: 63.5 %. CB 30 and CG 27 speak for trans
        # with 2 and 4.5 nats: -2.944 - 6.5, 0.008 %.
        for cb, cg, expected in ((30.5, 24.5, "28.0 % cis, undecided"), (30.5, 24.0, "63.5 % cis"),
                                 (30.0, 27.0, "> 99.9 % trans")):
            text = self.page_of({(2, "CB"): cb, (2, "CG"): cg})
            self.assertEqual(headline(text, "P2"), expected)
            self.assertIn("P_CIS_NORM", card(text, "P2"))

    def test_trans_prolines_are_lines_that_open_after_the_cards(self):
        sequence = "APKAPKAPK"
        text = self.page_of({(2, "CG"): 27.0, (5, "CB"): 34.0, (5, "CG"): 24.0}, sequence)
        kinds = re.findall(r"<(article|details) class=\"(?:card|line)\">(?:(?!<b>).)* (P\d) <b>", text, re.DOTALL)
        self.assertEqual(kinds[0], ("article", "P5"))
        self.assertIn(("details", "P2"), kinds)
        line = re.search(r"<summary>.*?</summary>", card(text, "P2")).group()
        self.assertIn("CG of the proline supports it", line)
        self.assertIn("<i class=\"t\"", line)


class ManyChains(Made):
    CIS = program.full_table("APK", FAR)
    TRANS = program.full_table("APK", {(2, "CB"): 30.0, (2, "CG"): 27.0})

    def test_index(self):
        text = self.page_of(a=self.CIS, b=self.TRANS, c=program.full_table("PAK"))
        self.assertEqual(table_after(text, ">Index</h2>"),
                         [["Chain", "Cis", "Undecided", "Trans", "None", "Offset"],
                          ["a.tab", "P2", "0", "0", "0", "not known"], ["b.tab", "0", "0", "1", "0", "not known"],
                          ["c.tab", "0", "0", "0", "1", "not known"]])

    def index_with(self, changed):
        """The page and the offsets in its index for ubiquitin with changed lines of shifts, and for nuclease."""
        lines = program.EXAMPLES[1].read_text(encoding="utf-8").splitlines(keepends=True)
        table = "".join(changed(*line.split()) if len(line.split()) == 4 else line for line in lines)
        text = page(self.put("changed.tab", table), program.EXAMPLES[0])
        return text, [row[-1] for row in table_after(text, ">Index</h2>")[1:]]

    def test_index_names_offsets(self):
        # CA and CB 3 ppm too high, HA, C as they are: the axis of 13C.
        text, offsets = self.index_with(lambda resid, residue, atom, shift: "%4s %s %4s %8.3f\n" % (
            resid, residue, atom, float(shift) + (3 if atom in ("CA", "CB") else 0)))
        self.assertEqual(offsets, ["13C +3.0 ppm, corrected", "none"])
        self.assertRegex(first_line(text), r"corrected before predicting in \S*changed\.tab\.$")

    def test_index_without_carbon_knows_no_offset_of_carbon(self):
        _, offsets = self.index_with(lambda resid, residue, atom, shift: "" if atom.startswith("C") else
                                     "%4s %s %4s %s\n" % (resid, residue, atom, shift))
        self.assertEqual(offsets, ["13C not known", "none"])

    def test_links_lead_into_folds(self):
        text = self.page_of(a=self.CIS, b=self.TRANS)
        for place in re.findall(r"<a href=\"#(chain\d)\"", text):
            self.assertRegex(text, r"<details class=\"chain\"(?: open)?><summary>[^<]*</summary>\n<div id=\"%s\">" % place)

    def test_files_that_failed_are_named_first(self):
        text = page(program.EXAMPLES[0], program.EXAMPLES[1], "missing.tab")
        self.assertIn("1 file could not be predicted.", first_line(text))
        self.assertLess(text.index("<li>missing.tab: cannot be read"), text.index(">Index</h2>"))

    def test_one_sequence_twice(self):
        other = program.full_table("APA", FAR)
        text = self.page_of(a=self.CIS, b=self.TRANS, c=other)
        rows = table_after(text, ">One sequence, several sets of shifts</h2>")
        self.assertEqual(rows[0], ["Proline", "a.tab", "b.tab", "Difference of P_CIS_NORM"])
        # a: CB 34 is 2 above cis, CG 24 on cis: 6 + 4.5 - 2.944 nats, 0.9995; b: -2 - 4.5 - 2.944, 0.00008.
        self.assertEqual(rows[1:], [["P2", "99.9\u00a0% cis", "> 99.9\u00a0% trans", "0.999, the calls differ"]])
        self.assertIn("<mark>0.999, the calls differ</mark>", text)

    def test_many_of_one_sequence_have_a_row_each(self):
        text = self.page_of(**{name: self.TRANS for name in "abcde"}, f=self.CIS)
        rows = table_after(text, ">One sequence, several sets of shifts</h2>")
        self.assertEqual([row[0] for row in rows], ["Proline", *(name + ".tab" for name in "abcdef"),
                                                    "Difference of P_CIS_NORM"])
        self.assertEqual([row[1] for row in rows[5:]], ["> 99.9\u00a0% trans", "99.9\u00a0% cis", "0.999, the calls differ"])

    def test_calls_that_agree_are_not_marked(self):
        text = self.page_of(a=self.TRANS, b=self.TRANS)
        self.assertEqual(table_after(text, ">One sequence")[1][-1], "0.000")
        self.assertNotIn("<mark>", text)
        self.assertNotIn("One sequence", self.page_of(a=self.CIS))
        self.assertNotIn("One sequence", self.page_of(a=self.CIS, b=program.full_table("APA", FAR)))


class Pictures(Made):
    def test_cb_against_cg(self):
        # Trans at (30, 27), cis at (32, 24), 2.4 deviations of 1 to either side, to whole ppm: CB 27 to 35, CG 21
        # to 30. The axes run from (36, 240) to (282, 10): 30.75 wide and 25.556 high for each ppm.
        text = self.page_of({(2, "CB"): 30.5, (2, "CG"): 24.5})
        picture = pictures(text)[1]
        (point,) = [u for u in picture.iter("use") if u.get("href") != "#k"]
        self.assertEqual(point.get("href"), "#u")
        self.assertAlmostEqual(float(point.get("x")), 36 + 3.5 * 30.75, delta=0.06)
        self.assertAlmostEqual(float(point.get("y")), 240 - 3.5 * 230 / 9, delta=0.06)
        centres = re.findall(r"<ellipse class=\"e([ct])\" cx=\"(\S+)\" cy=\"(\S+)\" rx=\"(\S+)\" ry=\"(\S+)\"", text)
        self.assertEqual([kind for kind, *_ in centres], ["t", "t", "c", "c"])
        for found, wanted in zip(centres, ((128.25, 86.67, 61.5, 51.11), (128.25, 86.67, 30.75, 25.56),
                                           (189.75, 163.33, 61.5, 51.11), (189.75, 163.33, 30.75, 25.56))):
            for value, expected in zip(map(float, found[1:]), wanted):
                self.assertAlmostEqual(value, expected, delta=0.06)

    def test_cb_minus_cg_is_unclear_between_the_two_lines(self):
        for cb, said in ((30.5, "P2 is trans"), (31.0, "P2 is unclear"), (31.75, "P2 is unclear"), (32.0, "P2 is cis")):
            text = self.page_of({(2, "CB"): cb, (2, "CG"): 24.0})
            title = re.search(r"<h2>(By CB − CG: .*?)</h2>", text).group(1)
            self.assertEqual(title, "By CB − CG: " + said.replace("P2 is trans", "1 is trans"))

    def test_points_off_the_axes_are_arrows_with_a_name(self):
        text = self.page_of({(2, "CB"): 40.0, (2, "CG"): 24.0})
        picture = pictures(text)[1]
        self.assertEqual([u.get("href") for u in picture.iter("use")], ["#k"])
        self.assertIn("→", [label.text for label in picture.iter("text")])
        self.assertIn("Arrows, off the axes: P2 (CB 40.00, CG 24.00 ppm).", text)
        text = self.page_of({(2, "CB"): 20.0})
        self.assertIn("Arrows, off the axes: P2 (CB 20.00 ppm).", text)
        self.assertNotIn("Arrows", self.page_of({(2, "CB"): 30.0}))

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
                    self.assertLessEqual(x + width, 290)
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

"""zorvela-kit run --format html --structure: the report says where the structure agrees and where it does not."""
import gzip
import os
import re
import sys
import unittest

import made_pair
import made_structure as made
from made_pair import OTHER, chain, shifts
from zorvela_tests import program

sys.path.insert(0, str(program.SOURCE / "kit" / "tests" / "report"))
import html_test  # noqa: E402

MARK_OF = {"#va": "agrees", "#vd": "disagrees", "#wa": "agrees", "#wd": "disagrees"}
EXAMPLES = program.SOURCE / "examples"
ENSEMBLE = program.SOURCE / "kit" / "tests" / "files" / "ubiquitin_ensemble.cif.gz"


def without_cg(table, positions):
    lines = table.split("\n")
    return "\n".join(line for line in lines if not (line.split()[2:3] == ["CG"] and int(line.split()[0]) in positions))


def omega(atoms):
    """Degrees, of four positions."""
    a, b, c, d = atoms
    axis = made.unit(made.sub(c, b))
    first, second = made.cross(made.sub(b, a), axis), made.cross(axis, made.sub(d, c))
    dot = lambda u, v: sum(x * y for x, y in zip(u, v))  # noqa: E731
    size = dot(made.unit(first), made.unit(second))
    return made.math.degrees(made.math.acos(max(-1.0, min(1.0, size))))


def marks(picture):
    """(verdict, x, y) of each mark, and the places of the symbols."""
    uses = [(use.get("href"), float(use.get("x") or 0), float(use.get("y") or 0)) for use in picture.iter("use")]
    return ([(MARK_OF[href], x, y) for href, x, y in uses if href in MARK_OF],
            [(x, y) for href, x, y in uses if href in ("#c", "#t", "#u", "#n")])


class Case(made_pair.Case):
    def kit(self, *arguments, tables=program.MADE_TABLES):
        return program.kit("run", "--tables", tables, *arguments, cwd=self.folder)

    def page(self, *arguments, tables=program.MADE_TABLES):
        result = self.kit("--format", "html", *arguments, tables=tables)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.stderr = result.stderr
        html_test.Page.assert_sound(self, result.stdout)
        return result.stdout

    def page_with(self, residues):
        self.put("model.pdb", made.pdb([("A", residues)]))
        return self.page("shifts.tab", "--structure", "model.pdb")

    def rows(self, text):
        """Structure, |omega| and verdict by the name of the proline."""
        table = re.search(r"<table class=\"prolines compared\">(.*?)</table>", text, re.DOTALL).group(1)
        rows = [re.findall(r"<td[^>]*>(.*?)</td>", row) for row in re.findall(r"<tr>(.*?)</tr>", table, re.DOTALL)]
        return {re.sub(r"<.*>", "", row[0]).strip(): tuple(row[-3:]) for row in rows if row}


class Marks(Case):
    def test_chain(self):
        text = self.page_with(chain())
        picture = html_test.pictures(text)[0]
        # Residues are 6 wide from 20 on, symbols stand at 32.
        self.assertEqual(marks(picture)[0], [("agrees", 71.0, 32.0), ("disagrees", 119.0, 32.0),
                                             ("agrees", 173.0, 32.0), ("agrees", 233.0, 32.0)])
        self.assertEqual(picture.get("aria-label"),
                         "Residues 1 to 40: P9 trans, structure agrees, P17 cis, structure disagrees, P26 trans, "
                         "structure agrees, P36 trans, structure agrees")
        self.assertIn("Ring: the structure agrees; square: it disagrees.", text)

    def test_cb_against_cg(self):
        text = self.page_with(chain())
        picture = html_test.pictures(text)[1]
        found, symbols = marks(picture)
        self.assertEqual([mark[0] for mark in found], ["agrees", "disagrees", "agrees", "agrees"])
        self.assertEqual([mark[1:] for mark in found], symbols)
        # CB from 27 to 35 on 40 to 392, CG from 21 to 30 on 300 to 12: the cis proline is at 34 and 24.
        self.assertEqual(found[1], ("disagrees", 348.0, 204.0))
        self.assertIn("The structure disagrees: P17. It agrees: P9, P26, P36.", picture.get("aria-label"))
        self.assertIn("P17 cis: CB 34.00, CG 24.00 ppm, structure disagrees", text)

    def test_prolines_without_cg(self):
        self.put("shifts.tab", without_cg(shifts(cis=[17]), [26]))
        text = self.page_with(chain(cis=[26]))
        picture = html_test.pictures(text)[1]
        # CB 30 of 27 to 35 is at 172; the small mark is above the end of a dash from 300 to 288.
        self.assertIn(("disagrees", 172.0, 282.0), marks(picture)[0])
        self.assertEqual(picture.findall("use[@href='#wd']")[0].get("y"), "282")

    def test_undecided_and_absent_prolines_have_no_mark(self):
        residues = chain(cis=[17])
        text = self.page_with(residues[:25] + residues[26:])
        self.assertEqual([mark[0] for mark in marks(html_test.pictures(text)[0])[0]], ["agrees"] * 3)
        self.assertEqual(self.rows(text)["P26"], ("–", "–", "not in the structure"))
        self.assertIn("<b>Not in the structure.</b> No coordinates.", html_test.card(text, "P26"))

    def test_none_without_structures(self):
        text = self.page("shifts.tab")
        body = text[text.index("<main>"):]
        for absent in ("structure", "#va", "#vd", "#wa", "#wd", "<th>Verdict", "compared"):
            self.assertNotIn(absent, body.replace("known structures", ""))


class Words(Case):
    def test_disagreement(self):
        text = self.page_with(chain())
        self.assertIn("1 of 4 prolines is cis: P17. The structure disagrees: P17. It agrees: P9, P26, P36.", text)
        self.assertEqual(self.rows(text), {"P9": ("trans", "180°", "agree"), "P17": ("trans", "180°", "disagree"),
                                           "P26": ("trans", "180°", "agree"), "P36": ("trans", "180°", "agree")})
        self.assertRegex(html_test.card(text, "P17"),
                         r"<b>The structure disagrees.</b> The shifts say cis \(P_CIS_NORM \S+, CB - CG 10.0 ppm as in "
                         r"cis\), the structure is trans in 1 of 1 model \(\|omega\| 180 degrees\)\.")
        self.assertIn("<b>The structure agrees.</b> The structure is trans in 1 of 1 model", html_test.card(text, "P9"))
        self.assertIn("Compared with model.pdb, chain A (40 of 40 aligned residues are the same).", text)

    def test_ca_trace(self):
        text = self.page_with(made.trace(chain(cis=[17])))
        self.assertEqual(self.rows(text)["P17"], ("cis", "CA–CA 2.9 Å", "agree"))

    def test_mixed_models(self):
        self.put("model.cif", made.mmcif([("A", chain(cis=[17]))], [("A", chain())]))
        text = self.page("shifts.tab", "--structure", "model.cif")
        self.assertEqual(self.rows(text)["P17"], ("mixed", "90°", "mixed models"))
        self.assertIn("<b>The models contradict each other.</b> The structure is cis in 1, trans in 1 of 2 models.",
                      html_test.card(text, "P17"))

    def test_another_protein(self):
        text = self.page_with(chain(sequence=OTHER))
        self.assertIn("No call could be compared with a structure.", text)
        self.assertEqual({row[2] for row in self.rows(text).values()}, {"not in the structure"})
        for note in ("no chain of the structures is this protein", "model.pdb, chain A (28 residues) has no shifts"):
            self.assertIn(note, self.stderr)
            self.assertIn("<li>%s</li>" % note, text)

    def test_notes_are_said_and_shown(self):
        residues = chain(cis=[17])
        residues[4].name = "ARG"
        text = self.page_with(residues[2:])
        for note in ("model.pdb, chain A: other residues than in the shifts: S5 is ARG 5",
                     "model.pdb, chain A: residues of the shifts without coordinates: 1-2"):
            self.assertIn("zorvela-kit: note: shifts.tab: %s\n" % note, self.stderr)
            self.assertIn("<li>%s</li>" % note, text)

    def test_many_chains(self):
        self.put("other.tab", shifts(cis=[17]))
        self.put("model.pdb", made.pdb([("A", chain())]))
        text = self.page("shifts.tab", "other.tab", "--structure", "model.pdb")
        self.assertEqual(re.findall(r"<th>Structure disagrees</th>", text), ["<th>Structure disagrees</th>"])
        self.assertEqual(text.count("<td>P17</td></tr>"), 2)
        self.assertEqual(text.count("<details class=\"chain\""), 2)

    def test_hostile_names(self):
        text = made.mmcif([("A", chain())]).replace(" A ", " <i> ")
        name = "<b onclick=x>&.cif"
        self.put(name, text)
        page = self.page("shifts.tab", "--structure", name)
        self.assertIn("&lt;b onclick=x&gt;&amp;.cif, chain &lt;i&gt; (40 of 40", page)


class Failures(Case):
    def fails(self, *arguments):
        result = self.kit(*arguments)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        lines = result.stderr.splitlines()
        self.assertEqual(len(lines), 1, result.stderr)
        return lines[0].removeprefix("zorvela-kit: ")

    def test_a_bad_structure_leaves_nothing(self):
        self.put("good.pdb", made.pdb([("A", chain())]))
        self.put("bad.pdb", "hello\n")
        for models in (["bad.pdb"], ["good.pdb", "bad.pdb"], ["none.pdb"]):
            message = self.fails("--format", "html", "--output", "out.html", "shifts.tab", "--structure", *models)
            self.assertTrue(message.startswith(models[-1] + ": "), message)
            self.assertFalse(os.path.exists(os.path.join(self.folder, "out.html")))

    def test_shift_files_after_the_structures(self):
        self.put("model.pdb", made.pdb([("A", chain())]))
        self.assertEqual(self.fails("--format", "html", "--structure", "model.pdb", "shifts.tab", "shifts.tab"),
                         "shifts.tab: holds shifts and no structure; name shift files before --structure, or after --")

    def test_a_structure_counts_once(self):
        self.put("model.pdb", made.pdb([("A", chain())]))
        self.assertEqual(self.fails("--format", "html", "shifts.tab", "--structure", "model.pdb", "./model.pdb"),
                         "./model.pdb: is given twice; name each structure once")

    def test_other_formats_have_compare(self):
        self.put("model.pdb", made.pdb([("A", chain())]))
        for form in ("table", "csv", "json"):
            self.assertEqual(self.fails("--format", form, "shifts.tab", "--structure", "model.pdb"),
                             "--structure goes with --format html; for a table, CSV or JSON use zorvela-kit compare")

    def test_a_structure_is_no_output(self):
        path = self.put("model.pdb", made.pdb([("A", chain())]))
        message = self.fails("--format", "html", "--output", "model.pdb", "shifts.tab", "--structure", "model.pdb")
        self.assertIn("is an input file", message)
        self.assertGreater(os.path.getsize(path), 1000)


class RealStructures(Case):
    """Nuclease (1STN, proline 117 cis) and ubiquitin as X-ray structure (1UBQ) and as ensemble (1D3Z, backbone)."""

    def test_nuclease(self):
        text = self.page(EXAMPLES / "nuclease.str", "--structure", EXAMPLES / "nuclease.pdb.gz", tables=program.TABLES)
        atoms = {}
        with gzip.open(EXAMPLES / "nuclease.pdb.gz", "rt") as file:
            for line in file:
                if line.startswith("ATOM"):
                    atoms[int(line[22:26]), line[12:16].strip()] = [float(line[i:i + 8]) for i in (30, 38, 46)]
        expected = {}
        for number in (11, 31, 42, 47, 117):
            size = omega([atoms[number - 1, "CA"], atoms[number - 1, "C"], atoms[number, "N"], atoms[number, "CA"]])
            expected["P%d" % number] = ("cis" if number == 117 else "trans", "%.0f°" % size, "agree")
        self.assertEqual(self.rows(text), expected)
        self.assertIn("The structure agrees: P11, P31, P42, P47, P117.", text)

    def test_ubiquitin(self):
        text = self.page(EXAMPLES / "ubiquitin.tab", "--structure", EXAMPLES / "ubiquitin.pdb.gz", ENSEMBLE,
                         tables=program.TABLES)
        self.assertEqual([row[::2] for row in self.rows(text).values()], [("trans", "agree")] * 3)
        self.assertIn("The structure is trans in 11 of 11 models", html_test.card(text, "P19"))


if __name__ == "__main__":
    unittest.main()

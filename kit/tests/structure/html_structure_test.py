"""zorvela-kit run --format html --structure: the report shows where the structure agrees and where not."""
import re
import sys

import made_pair
import made_structure as made
from made_pair import OTHER, chain, shifts
from zorvela_tests import program

sys.path.insert(0, str(program.SOURCE / "kit" / "tests" / "report"))
import html_test  # noqa: E402

MARK_OF = {"#va": "agrees", "#vd": "disagrees", "#wa": "agrees", "#wd": "disagrees"}


def without_cg(table, positions):
    lines = table.split("\n")
    return "\n".join(line for line in lines if not (line.split()[2:3] == ["CG"] and int(line.split()[0]) in positions))


def marks(picture):
    """(verdict, x, y) of each mark, and the places of the symbols."""
    uses = [(use.get("href"), float(use.get("x") or 0), float(use.get("y") or 0)) for use in picture.iter("use")]
    return ([(MARK_OF[href], x, y) for href, x, y in uses if href in MARK_OF],
            [(x, y) for href, x, y in uses if href in ("#c", "#t", "#u", "#n")])


class Case(made_pair.Case):
    def page(self, *arguments):
        result = self.run_kit("--format", "html", *arguments)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.stderr = result.stderr
        html_test.Page.assert_sound(self, result.stdout)
        return result.stdout

    def page_with(self, residues):
        self.put("model.pdb", made.pdb([("A", residues)]))
        return self.page("shifts.tab", "--structure", "model.pdb")

    def table_rows(self, text):
        """Structure, |omega| and verdict by the name of the proline."""
        table = re.search(r"<table class=\"prolines\">.*?<tbody>(.*?)</table>", text, re.DOTALL).group(1)
        rows = [re.findall(r"<t[hd][^>]*>(.*?)</t[hd]>", row) for row in re.findall(r"<tr>(.*?)</tr>", table, re.DOTALL)]
        return {re.sub(r"<.*>", "", row[0]).strip(): (row[-4], row[-3], row[-1]) for row in rows}


class Marks(Case):
    def test_chain(self):
        text = self.page_with(chain())
        picture = html_test.pictures(text)[0]
        # Residues are 5.2 wide from 16 on, symbols are at 32.
        self.assertEqual(marks(picture)[0], [("agrees", 60.2, 32.0), ("disagrees", 101.8, 32.0),
                                             ("agrees", 148.6, 32.0), ("agrees", 200.6, 32.0)])
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
        # CB from 27 to 35 on 36 to 282, CG from 21 to 30 on 240 to 10: the cis proline is at 34 and 24.
        self.assertEqual(found[1], ("disagrees", 251.2, 163.3))
        self.assertIn("The structure disagrees: P17. It agrees: P9, P26, P36.", picture.get("aria-label"))

    def test_prolines_without_cg(self):
        self.put("shifts.tab", without_cg(shifts(cis=[17]), [26]))
        text = self.page_with(chain(cis=[26]))
        picture = html_test.pictures(text)[1]
        # CB 30 of 27 to 35 is at 128.25; the small mark is above the end of a dash from 240 to 228.
        self.assertIn(("disagrees", 128.2, 222.0), marks(picture)[0])
        self.assertEqual(picture.findall("use[@href='#wd']")[0].get("y"), "222")

    def test_undecided_and_absent_prolines_have_no_mark(self):
        residues = chain(cis=[17])
        text = self.page_with(residues[:25] + residues[26:])
        self.assertEqual([mark[0] for mark in marks(html_test.pictures(text)[0])[0]], ["agrees"] * 3)
        self.assertEqual(self.table_rows(text)["P26"], ("–", "–", "not in the structure"))
        self.assertIn("<b>Not in the structure.</b> No coordinates.", html_test.card(text, "P26"))

    def test_none_without_structures(self):
        text = self.page("shifts.tab")
        body = text[text.index("<main>"):text.index("How to read this</h2>")]
        for absent in ("structure", "#va", "#vd", "#wa", "#wd", "|omega|"):
            self.assertNotIn(absent, body)


class Words(Case):
    def test_disagreement(self):
        text = self.page_with(chain())
        self.assertIn("1 of 4 prolines is cis: P17. The structure disagrees: P17. It agrees: P9, P26, P36.", text)
        self.assertEqual(self.table_rows(text), {"P9": ("trans", "180°", "agree"), "P17": ("trans", "180°", "<b>disagree</b>"),
                                           "P26": ("trans", "180°", "agree"), "P36": ("trans", "180°", "agree")})
        self.assertRegex(html_test.card(text, "P17"),
                         r"<b>Disagree.</b> The shifts predict cis \(P_CIS_NORM \S+, CB - CG 10.0 ppm as in "
                         r"cis\), the structure is trans in 1 of 1 model \(\|omega\| 180 degrees\)\.")
        self.assertIn("<b>Agree.</b> The structure is trans in 1 of 1 model", html_test.card(text, "P9"))
        self.assertIn("Compared with model.pdb, chain A (40 of 40 aligned residues are the same).", text)

    def test_ca_trace(self):
        text = self.page_with(made.trace(chain(cis=[17])))
        self.assertEqual(self.table_rows(text)["P17"], ("cis", "CA–CA 2.9 Å", "agree"))

    def test_mixed_models(self):
        self.put("model.cif", made.mmcif([("A", chain(cis=[17]))], [("A", chain())]))
        text = self.page("shifts.tab", "--structure", "model.cif")
        self.assertEqual(self.table_rows(text)["P17"], ("mixed", "1 trans, 1 cis", "mixed models"))
        self.assertIn("Models contradict each other: P17.", text)
        self.assertIn("<b>Mixed models.</b> The structure is cis in 1, trans in 1 of 2 models.",
                      html_test.card(text, "P17"))

    def test_another_protein(self):
        text = self.page_with(chain(sequence=OTHER))
        self.assertIn("No call could be compared with a structure.", text)
        self.assertEqual({row[2] for row in self.table_rows(text).values()}, {"not in the structure"})
        for note in ("no chain of the structures matches this protein", "model.pdb, chain A (28 residues) has no shifts"):
            self.assertIn(note, self.stderr)
            self.assertIn("<li>%s</li>" % note, text)

    def test_notes_are_said_and_shown(self):
        residues = chain(cis=[17])
        residues[4].name = "ARG"
        text = self.page_with(residues[2:])
        for note in ("model.pdb, chain A: residues that differ from those of the shift file: S5 is ARG 5",
                     "model.pdb, chain A: residues of the shift file without coordinates: 1-2"):
            self.assertIn("zorvela-kit: note: shifts.tab: %s\n" % note, self.stderr)
            self.assertIn("<li>%s</li>" % note, text)

    def test_chain_and_number_in_the_structure(self):
        self.put("model.pdb", made.pdb([("B", chain(first=1001))]))
        self.assertIn("<td class=\"r\">180°</td><td>B 1017</td>", self.page("shifts.tab", "--structure", "model.pdb"))

    def test_each_structure_has_its_line(self):
        self.put("a.pdb", made.pdb([("A", chain(cis=[17]))]))
        self.put("b.pdb", made.pdb([("A", chain())]))
        card = html_test.card(self.page("shifts.tab", "--structure", "a.pdb", "b.pdb"), "P17")
        self.assertIn("<li>a.pdb: cis in 1 of 1 model (|omega| 0 degrees)</li>", card)
        self.assertIn("<li>b.pdb: trans in 1 of 1 model (|omega| 180 degrees)</li>", card)

    def test_many_chains(self):
        self.put("other.tab", shifts(cis=[17]))
        self.put("model.pdb", made.pdb([("A", chain())]))
        text = self.page("shifts.tab", "other.tab", "--structure", "model.pdb")
        self.assertEqual(re.findall(r">Structure disagrees</th>", text), [">Structure disagrees</th>"])
        self.assertEqual(text.count("<td>P17</td></tr>"), 2)
        self.assertEqual(text.count("<details class=\"chain\""), 2)

    def test_hostile_names(self):
        text = made.mmcif([("A", chain())]).replace(" A ", " <i> ")
        name = "<b onclick=x>&.cif"
        self.put(name, text)
        page = self.page("shifts.tab", "--structure", name)
        self.assertIn("&lt;b onclick=x&gt;&amp;.cif, chain &lt;i&gt; (40 of 40", page)

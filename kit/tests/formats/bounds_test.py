"""Work and memory in proportion to the bytes: small files that once became gigabytes or minutes.

For each of them: memory below 64 MiB plus 24 times the unpacked bytes, time below 1 s plus 1 s for each unpacked
MiB, and an error in one line that names the file where it is beyond what a real file can be.
"""
import unittest

from zorvela_tests import hostile, program
from zorvela_tests.hostile import ALL_LISTS, BARE_ROWS, ROWS, attack, copies, entity, lists

TOO_MANY_RESIDUES = "describes more than 100000 residues"
TOO_MANY_MADE = "makes more than 100000 residues in all tables together"
TOO_LARGE = "is too large for the shift table of a protein"
NO_SHIFTS = "holds no backbone shifts of a protein"
REFUSED = (  # attacks at a size, and the message
    ("lists x copies x residues", 1000, TOO_MANY_RESIDUES),
    ("lists x copies", 1000, "has more than 10000 chains times shift lists"),
    ("bond rows x copies", 1000, "has more than 100000 ends of disulfide bonds in all copies"),
    ("molecules", 5000000, "describes more than 1000 molecules"),
    ("letters, NMR-STAR 3", 5000000, "has a sequence of more than 40000 residues"),
    ("residues, NMR-STAR 3", 200000, TOO_MANY_RESIDUES),
    ("residues, NMR-STAR 2.1", 200000, TOO_MANY_RESIDUES),
    ("residues, NEF", 200000, TOO_MANY_RESIDUES),
    ("letters, shift table", 5000000, TOO_LARGE),
    ("columns, shift table", 2000000, TOO_LARGE),
    ("rows, shift table", 2000000, TOO_LARGE),
    ("quoted words", 2000000, NO_SHIFTS),
    ("gaps x chains", 900, TOO_MANY_MADE),
    ("$words", 5000000, NO_SHIFTS),
    ("$words", 21000000, "has more than 20000000 words"),
    ("$words for shifts", 5000000, "has more than 300000 shift rows"),
    ("save frames", 200000, "has more than 100000 save frames"),
    ("entries in a file", 2000, "holds more than 1000 entries"))


def done():
    """Texts as large as a file may be, the command, and the status (None: either)."""
    yield entity("GP" * 50) + copies(100) + lists(100), ("import", "--list", "all"), 1  # no chain is certain
    yield entity("GP" * 12) + copies(400) + ROWS + hostile.lines(400, "%d 2 PRO CA 63\n"), ("run",), 0
    yield entity("GP" * 50) + lists(100, "".join("%d PRO CA 63\n" % i for i in range(2, 100, 2))), ALL_LISTS, 0
    for report in (("--format", "json"), ("--format", "html"), ("--format", "csv"), ("--explain",)):
        yield attack("all lists").make(70), (*ALL_LISTS, *report), 0
    yield entity("GP" * 20000) + hostile.ONE_SHIFT, ("run", "--format", "json"), 0
    # Just below the limit of rows: each kept, each with a reason.
    yield "data_x " + BARE_ROWS + "".join("%d PRO CA 63\n" % (i % 39000) for i in range(290000)), ("import",), 0
    yield entity("GP" * 19000) + BARE_ROWS + "".join("%d ALA CA 63\n" % (i % 38000) for i in range(290000)), ("import",), 1
    yield attack("offsets of chains").make(400), ("import",), None
    yield attack("cells, shift table").make(1000), ("import",), None


class Bounds(unittest.TestCase):
    def check(self, taken, seconds=None):
        """The measurement, if it is within the bounds."""
        if not hostile.is_sanitized():
            self.assertTrue(taken.is_bounded(), taken.figures())
            self.assertLess(taken.seconds, seconds or hostile.MOST_SECONDS)
        return taken

    def run_bounded(self, text, *arguments, name="hostile.str", seconds=None):
        name += ".gz"
        return self.check(hostile.measured({name: text}, [*arguments, name]), seconds)

    def check_refused(self, text, what, *command, name):
        taken = self.run_bounded(text, *command, name=name)
        self.assertEqual(taken.status, 1, taken.figures())
        self.assertIn(name + ".gz: " + what, taken.message)
        self.assertEqual(taken.message.count("\n"), 1, taken.figures())

    def test_too_much_for_any_file(self):
        for title, size, what in REFUSED:
            with self.subTest(title):
                self.check_refused(attack(title).make(size), what, "import", name=attack(title).name)
        self.check_refused(entity("GP" * 1000) + lists(900), TOO_MANY_MADE, *ALL_LISTS, name="a.str")

    def test_much_within_the_limits(self):
        for i, (text, command, status) in enumerate(done()):
            with self.subTest(command, number=i):
                taken = self.run_bounded(text, *command)
                self.assertIn(taken.status, (0, 1) if status is None else (status,), taken.figures())

    def test_a_long_name_times_copies(self):
        taken = self.run_bounded(attack("long name x copies").make(1000), "import")
        self.assertEqual(taken.status, 0, taken.figures())
        self.assertIn("names of more than 200 characters are cut", taken.message)

    def test_entries_of_an_evaluation(self):
        """They are shift tables with the limits of any other; a search for each residue over all rows took a minute."""
        labels = "entry,resid,label_structure,cluster\n" + "".join(
            "a,%d,%s,1\n" % (3 + 4 * i, ("cis", "trans")[i % 2]) for i in range(2500))
        for table, status, what in ((attack("letters, shift table").make(2000000), 1, "a.tab: " + TOO_LARGE),
                                    (attack("rows, shift table").make(2000000), 1, "a.tab: " + TOO_LARGE),
                                    (program.full_table("AKPA" * 2500), 0, "")):
            taken = self.check(hostile.measured(
                {"e/a.tab": table, "l.csv": labels},
                ["evaluate", "--entries", "e", "--labels", "l.csv", "--bootstrap", "0"]))
            self.assertEqual(taken.status, status, taken.figures())
            self.assertIn(what, taken.message)

    def test_alignments(self):
        """Every chain of a structure against every chain of the shifts."""
        shifts = entity("GP" * 5000) + hostile.ONE_SHIFT
        for residues, chains in ((10000, 2), (1000, 20)):
            with self.subTest(residues=residues):
                taken = self.check(hostile.measured({"x.str": shifts, "x.cif": hostile.bare_mmcif(residues, chains)},
                                                    ["run", "x.str", "--structure", "x.cif"]))
                self.assertIn("x.cif: has too many residues to align with the 10000 of a protein", taken.message)

    def test_atoms(self):
        """The least that an mmCIF file may have of an atom, in whatever order; words that no reader needs."""
        for one in hostile.ATTACKS:
            for size in one.sizes[:2] if one.title.endswith(", mmCIF") else ():
                with self.subTest(one.title, size=size):
                    self.check(one.taken(size))
        bare = hostile.prolines_of_mmcif(100000)
        taken = self.check(hostile.measured({"x.csv": hostile.csv_file(10), "x.cif": bare},
                                            ["run", "x.csv", "--structure", "x.cif"]))
        self.assertIn("x.cif: has more than %d residues, too many for its size; give the models or chains that have "
                      "shifts" % (30000 + len(bare) // 50), taken.message)

    def test_products(self):
        """One part of a file looked up in another one, at each size; the largest are refused or done."""
        refused = {"chains x equal proteins": "gives more than 53760 results for all chains and lists of the shifts",
                   "chains x equal names": "has too many residues to align with the 5 of a protein",
                   "chains x prolines": "gives more than 96000 results for all chains and lists of the shifts",
                   "chains of one long protein": "has too many residues to align with the 10000 of a protein",
                   "pieces of a chain": "has too many residues to align with the 1 of a protein",
                   "rows of no chain": "has more than 10000 chains times shift lists",
                   "list numbers x frames": "has more than 1000 shift lists",
                   "blocks of copies": "describes more than 1000000 residues in all entries together",
                   "long name of an entity": TOO_MANY_RESIDUES,
                   "prolines with shifts": "makes more than 1647 prolines that can be predicted, too many for its size"}
        for one in hostile.PRODUCTS:
            for size in one.sizes:
                with self.subTest(one.title, size=size):
                    taken = self.check(one.taken(size))
                    if size == one.sizes[-1]:
                        self.assertEqual(taken.status, one.title in refused, taken.figures())
                        self.assertIn(refused.get(one.title, ""), taken.message[-300:])

    def test_text_without_shifts(self):
        plain = "resid,resname,atom,shift\n"
        for header, row, what in (("", "some words of text\n", "1: is not a known kind of shift file"),
                                  ("", "1,2,", "1: is not a known kind of shift file"),
                                  ("resid,resname,CA,CB,N\n", "foo,bar,n,n,n\n", "2: most rows (1428571 of 1428571) name"),
                                  (plain, "some words of text\n", "2: most rows (1052631 of 1052631) do not fit"),
                                  (plain, "1,ALA,CA,1\n", "300002: has more than 300000 shift rows"),
                                  ("", "12 GLY CA 45.1\n", "300001: has more than 300000 shift rows")):
            with self.subTest(header + row):
                taken = self.run_bounded(header + row * (20000000 // len(row)), "import", name="long.csv")
                self.assertEqual(taken.status, 1)
                self.assertIn("long.csv.gz:" + what, taken.message)

    def test_a_large_entry_is_fast(self):
        """2 MB of rows in all the columns of a BMRB entry take 0.1 s; five times that would be another algorithm."""
        text = hostile.star3_entry(3500)
        self.assertGreater(len(text), 1900000)
        self.assertEqual(self.run_bounded(text, "import", seconds=0.5).status, 0)

"""Work and memory in proportion to the bytes: small files that once became gigabytes or minutes.

For each of them: memory below 64 MiB plus 24 times the unpacked bytes, time below 1 s plus 1 s for each unpacked
MiB, and an error in one line that names the file where it is beyond what a real file can be.
"""
import unittest

from zorvela_tests import hostile, program
from zorvela_tests.hostile import BARE_ROWS, ROWS, copies, entity, lists


class Bounds(unittest.TestCase):
    def run_bounded(self, text, *arguments, name="hostile.str", seconds=None):
        """Exit status and standard error of an import within the bounds."""
        name += ".gz"
        taken = hostile.measured({name: text}, [*arguments, name])
        if not hostile.is_sanitized():
            self.assertLess(taken.memory, hostile.memory_bound(taken.unpacked))
            self.assertLess(taken.seconds, seconds or hostile.time_bound(taken.unpacked))
        return taken.status, taken.message

    def refused(self, text, what, *arguments, name="hostile.str"):
        status, message = self.run_bounded(text, *(arguments or ("import",)), name=name)
        self.assertEqual(status, 1, message[:300])
        self.assertIn(name + ".gz: " + what, message)
        self.assertEqual(message.count("\n"), 1, message[:300])

    def test_lists_times_copies_times_residues(self):
        """Every list against every chain against every residue."""
        self.refused(hostile.lists_times_copies_times_residues(1000), "describes more than 100000 residues")
        self.refused(hostile.lists_times_copies(1000), "has more than 10000 chains times shift lists")

    def test_lists_and_chains_within_the_limits(self):
        status, message = self.run_bounded(entity("GP" * 50) + copies(100) + lists(100, "2 PRO CA 63\n"), "import",
                                           "--list", "all")
        self.assertEqual(status, 1, message[:300])  # no chain is certain
        rows = "".join("%d 2 PRO CA 63\n" % i for i in range(1, 401))
        status, message = self.run_bounded(entity("GP" * 12) + copies(400) + ROWS + rows, "run")
        self.assertEqual(status, 0, message[:300])

    def test_bonds_times_copies(self):
        self.refused(hostile.bonds_times_copies(1000), "has more than 100000 ends of disulfide bonds in all copies")

    def test_a_long_name_times_copies(self):
        status, message = self.run_bounded(hostile.long_name_times_copies(1000), "import")
        self.assertEqual(status, 0, message[:300])
        self.assertIn("names of more than 200 characters are cut", message)

    def test_many_entities(self):
        self.refused(hostile.many_entities(5000000), "describes more than 1000 molecules")

    def test_long_sequences(self):
        self.refused(entity("P" * 5000000) + BARE_ROWS + "2 PRO CA 63\n", "has a sequence of more than 40000 residues")
        for make in (hostile.star3_residues, hostile.star2_residues):
            self.refused(make(200000), "describes more than 100000 residues")
        self.refused(hostile.nef_residues(200000), "describes more than 100000 residues", name="hostile.nef")

    def test_size_of_a_table(self):
        """A cell or residue takes as much memory as fifty of its bytes."""
        for text in (hostile.long_sequence_of_a_table(5000000), hostile.columns_of_a_table(2000000),
                     hostile.rows_of_a_table(2000000)):
            self.refused(text, "is too large for the shift table of a protein", name="hostile.tab")
        status, message = self.run_bounded(hostile.cells_of_a_table(1000), "import", name="hostile.tab")
        self.assertIn(status, (0, 1), message[:300])

    def test_entries_of_an_evaluation(self):
        """They are shift tables with the limits of any other; a search for each residue over all rows took a minute."""
        labels = "entry,resid,label_structure,cluster\n" + "".join(
            "a,%d,%s,1\n" % (3 + 4 * i, ("cis", "trans")[i % 2]) for i in range(2500))
        large = "a.tab: is too large for the shift table of a protein"
        full = program.full_table("AKPA" * 2500)
        for table, status, what in ((hostile.long_sequence_of_a_table(2000000), 1, large),
                                    (hostile.rows_of_a_table(2000000), 1, large), (full, 0, "")):
            taken = hostile.measured({"e/a.tab": table, "l.csv": labels},
                                     ["evaluate", "--entries", "e", "--labels", "l.csv", "--bootstrap", "0"])
            self.assertEqual(taken.status, status, taken.message[:300])
            self.assertIn(what, taken.message)
            self.assertTrue(taken.is_bounded() or hostile.is_sanitized(), taken.figures())

    def test_quoted_words_on_one_line(self):
        self.refused(hostile.quotes_of_star(2000000), "holds no backbone shifts of a protein")

    def test_gaps(self):
        """Two rows name residues 1,000 apart, in many chains."""
        self.refused(hostile.gaps_of_many_chains(900), "makes more than 100000 residues in all tables together")

    def test_names_of_frames(self):
        self.refused(hostile.words_of_frames(5000000), "holds no backbone shifts of a protein")
        self.refused(hostile.frame_words_as_shifts(5000000), "has more than 300000 shift rows")
        self.refused(hostile.many_frames(200000), "has more than 100000 save frames")
        self.refused("data_x " + "a " * 21000000, "has more than 20000000 words")

    def test_all_lists(self):
        """A table for each list, each with the whole sequence."""
        self.refused(entity("GP" * 1000) + lists(900, "2 PRO CA 63\n"),
                     "makes more than 100000 residues in all tables together", "run", "--list", "all")
        rows = "".join("%d PRO CA 63\n" % i for i in range(2, 100, 2))
        status, message = self.run_bounded(entity("GP" * 50) + lists(100, rows), "run", "--list", "all")
        self.assertEqual(status, 0, message[:300])

    def test_all_lists_in_every_report(self):
        """Many residues from 20 kB."""
        for options in (["--format", "json"], ["--format", "html"], ["--format", "csv"], ["--explain"]):
            with self.subTest(options=options):
                status, message = self.run_bounded(hostile.all_lists(70), "run", "--list", "all", *options)
                self.assertEqual(status, 0, message[:300])

    def test_a_sequence_of_many_prolines(self):
        """What is predicted costs more than what is read."""
        text = entity("GP" * 20000) + BARE_ROWS + "2 PRO CA 63\n"
        status, message = self.run_bounded(text, "run", "--format", "json")
        self.assertEqual(status, 0, message[:300])

    def test_alignments(self):
        """Every chain of a structure against every chain of the shifts."""
        shifts = entity("GP" * 5000) + BARE_ROWS + "2 PRO CA 63\n"
        for residues, chains in ((10000, 2), (1000, 20)):
            with self.subTest(residues=residues):
                files = {"x.str": shifts, "x.cif": hostile.bare_mmcif(residues, chains)}
                taken = hostile.measured(files, ["run", "x.str", "--structure", "x.cif"])
                self.assertIn("x.cif: has too many residues to align with the 10000 of a protein", taken.message)
                self.assertTrue(taken.is_bounded() or hostile.is_sanitized(), taken.figures())

    def test_atoms(self):
        """The least that an mmCIF file may say of an atom, in whatever order; words that nobody asks for."""
        for attack in hostile.ATTACKS:
            if not attack.title.endswith(", mmCIF"):
                continue
            for size in attack.sizes[:2]:
                with self.subTest(attack.title, size=size):
                    taken = attack.taken(size)
                    self.assertTrue(taken.is_bounded() or hostile.is_sanitized(), taken.figures())
        bare = hostile.prolines_of_mmcif(100000)
        taken = hostile.measured({"x.csv": hostile.csv_file(10), "x.cif": bare},
                                 ["run", "x.csv", "--structure", "x.cif"])
        self.assertIn("x.cif: has more than %d residues, too many for its size; give the models or chains that have "
                      "shifts" % (30000 + len(bare) // 50), taken.message)
        self.assertTrue(taken.is_bounded() or hostile.is_sanitized(), taken.figures())

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
                   "long name of an entity": "describes more than 100000 residues",
                   "prolines with shifts": "makes more than 1647 prolines that can be predicted, too many for its size"}
        for attack in hostile.PRODUCTS:
            for size in attack.sizes:
                with self.subTest(attack.title, size=size):
                    taken = attack.taken(size)
                    self.assertTrue(taken.is_bounded() or hostile.is_sanitized(), taken.figures())
                    if size == attack.sizes[-1]:
                        self.assertEqual(taken.status, attack.title in refused, taken.message[-300:])
                        self.assertIn(refused.get(attack.title, ""), taken.message[-300:])

    def test_many_rows(self):
        """Just below the limit of rows: each kept, each with a reason."""
        status, message = self.run_bounded("data_x " + BARE_ROWS +
                                           "".join("%d PRO CA 63\n" % (i % 39000) for i in range(290000)), "import")
        self.assertEqual(status, 0, message[:300])
        status, message = self.run_bounded(entity("GP" * 19000) + BARE_ROWS +
                                           "".join("%d ALA CA 63\n" % (i % 38000) for i in range(290000)), "import")
        self.assertEqual(status, 1, message[:300])

    def test_entries(self):
        self.refused(hostile.many_entries(2000), "holds more than 1000 entries")

    def test_rows_numbered_otherwise(self):
        """Each chain is searched for the offset of its rows."""
        status, message = self.run_bounded(hostile.offsets_of_many_chains(400), "import")
        self.assertIn(status, (0, 1), message[:300])

    def test_text_without_shifts(self):
        plain = "resid,resname,atom,shift\n"
        for header, row, what in (("", "some words of text\n", "1: is not a known kind of shift file"),
                                  ("", "1,2,", "1: is not a known kind of shift file"),
                                  ("resid,resname,CA,CB,N\n", "foo,bar,n,n,n\n", "2: most rows (1428571 of 1428571) name"),
                                  (plain, "some words of text\n", "2: most rows (1052631 of 1052631) do not fit"),
                                  ("", "12 GLY CA 45.1\n", "300001: has more than 300000 shift rows")):
            with self.subTest(header + row):
                status, message = self.run_bounded(header + row * (20000000 // len(row)), "import", name="long.csv")
                self.assertEqual(status, 1)
                self.assertIn("long.csv.gz:" + what, message)

    def test_a_large_entry_is_fast(self):
        """2 MB of rows in all the columns of a BMRB entry take 0.1 s; five times that would be another algorithm."""
        text = hostile.star3_entry(3500)
        self.assertGreater(len(text), 1900000)
        status, message = self.run_bounded(text, "import", seconds=0.5)
        self.assertEqual(status, 0, message[:300])

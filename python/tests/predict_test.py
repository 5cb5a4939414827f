"""The arguments of the functions, and their results."""
import gzip
import io
import pathlib
import threading
import unittest

import pandas
import zorvela
from tables import Entry, mapping_of, table_of
from zorvela_tests import folder, program

EXAMPLES = program.SOURCE / "examples"
STAR = EXAMPLES / "nuclease.str"
TABLE = EXAMPLES / "nuclease.tab"
STRUCTURE = EXAMPLES / "nuclease.pdb.gz"
# Residues 4, 5 and 6 of a longer protein, as a file that has no more.
ROWS = "resid,resname,atom,shift\n4,LYS,CA,56.1\n5,PRO,CA,63.2\n6,VAL,CA,62.0\n"


def calls(results):
    """Proline 117 of nuclease is cis in crystals, the others are trans."""
    return [(proline.resid, proline.call) for proline in results.prolines]


NUCLEASE = [("11", "trans"), ("31", "trans"), ("42", "trans"), ("47", "trans"), ("117", "cis")]


class Sources(folder.InFolder):
    def test_all_kinds(self):
        data = STAR.read_bytes()
        with STAR.open("rb") as binary, STAR.open(encoding="utf-8") as text:
            sources = {"path": STAR, "name": str(STAR), "bytes": data, "bytearray": bytearray(data),
                       "gzipped": gzip.compress(data), "text": data.decode(), "open": binary, "open text": text,
                       "in memory": io.BytesIO(data), "entry": Entry(data.decode())}
            for kind, source in sources.items():
                with self.subTest(kind):
                    self.assertEqual(calls(zorvela.predict(source)), NUCLEASE)

    def test_names(self):
        self.assertEqual(zorvela.predict(str(STAR)).file, str(STAR))
        self.assertEqual(zorvela.predict(STAR.read_bytes()).file, "input")
        with STAR.open("rb") as file:
            self.assertEqual(zorvela.predict(file).proteins[0].file, str(STAR))
        self.assertEqual(zorvela.predict(Entry(STAR.read_text())).file, "entry 16585")

    def test_a_name_that_is_not_utf8(self):
        path = pathlib.Path(self.folder, "a\udcffb.tab")
        path.write_bytes(TABLE.read_bytes())
        self.assertTrue(zorvela.predict(path).file.endswith("a\ufffdb.tab"))

    def test_chain_and_list(self):
        dimer = program.SOURCE / "kit" / "tests" / "files" / "star3_complex.str"
        every = zorvela.predict(dimer, list="all")
        one = zorvela.predict(dimer, chain=every.proteins[-1].chain)
        self.assertGreater(len(every.proteins), len(one.proteins))
        self.assertEqual({protein.chain for protein in one.proteins}, {every.proteins[-1].chain})

    def test_sequence_of_a_file_without_one(self):
        results = zorvela.predict(ROWS, sequence="MKA KPV GK")
        self.assertEqual([(p.resid, p.prev, p.next) for p in results.prolines], [("5", "K", "V")])
        self.assertEqual(results.proteins[0].length, 8)
        numbered = zorvela.predict(ROWS, sequence=">protein\nAKKPVGK\n", first_residue=2)
        self.assertEqual([(p.resid, p.p_cis) for p in numbered.prolines], [("5", results.prolines[0].p_cis)])
        path = pathlib.Path(self.folder, "p.seq")
        path.write_text("ALA 2\nLYS\nLYS\nPRO\nVAL\nGLY\n")
        for sequence in (path, path.read_bytes(), path.open("rb")):
            self.assertEqual(zorvela.predict(ROWS, sequence=sequence).prolines[0].position, 4)

    def test_referencing(self):
        shifted = {key: ppm + (2.5 if key[1] in ("CA", "CB", "CG") else 0) for key, ppm in mapping_of(TABLE)[1].items()}
        protein = zorvela.predict_shifts(mapping_of(TABLE)[0], shifted).proteins[0]
        self.assertAlmostEqual(protein.referencing[0].corrected_by, 2.5, delta=0.1)
        self.assertRegex(protein.correction, "^13C is 2.[45]. ppm too high")
        self.assertEqual(calls(protein), NUCLEASE)
        kept = zorvela.predict_shifts(mapping_of(TABLE)[0], shifted, as_referenced=True).proteins[0]
        self.assertIsNone(kept.correction)

    def test_deuterated(self):
        for deuterated, share in ((True, 1), (False, None), (None, None)):
            self.assertEqual(zorvela.predict(TABLE, deuterated=deuterated).proteins[0].deuteration, share)

    def test_structure(self):
        for source in (STRUCTURE, str(STRUCTURE), STRUCTURE.read_bytes(), gzip.decompress(STRUCTURE.read_bytes()),
                       zorvela.read_structure(STRUCTURE), [STRUCTURE]):
            results = zorvela.predict(TABLE, structure=source)
            self.assertEqual([proline.verdict for proline in results.prolines], ["agree"] * 5)
            self.assertEqual(results.structures[0].format, "PDB")


class Shifts(unittest.TestCase):
    def test_mapping_frame_and_entry(self):
        sequence, rows = table_of(TABLE)
        frame = pandas.DataFrame(rows, columns=["resid", "atom", "shift"])
        star = frame.rename(columns={"resid": "Comp_index_ID", "atom": "Atom_ID", "shift": "Val"})
        expected = zorvela.predict(TABLE)
        for shifts in (mapping_of(TABLE)[1], frame, star, Entry("", rows)):
            results = zorvela.predict_shifts(sequence, shifts)
            self.assertEqual([p.p_cis for p in results.prolines], [p.p_cis for p in expected.prolines])

    def test_numbers_from_another_first(self):
        sequence, shifts = mapping_of(TABLE)
        moved = {(number + 100, atom): ppm for (number, atom), ppm in shifts.items()}
        results = zorvela.predict_shifts(sequence, moved, first=101)
        self.assertEqual([proline.resid for proline in results.prolines], ["111", "131", "142", "147", "217"])

    def test_other_atoms_are_noted(self):
        results = zorvela.predict_shifts("APA", {(1, "HB1"): 1.4, (1, "CA"): 52.0}, name="mine")
        self.assertEqual(results.notes, ["1 shift of other atoms (side chain and the like) not needed"])
        self.assertEqual(results.file, "mine")


class Many(folder.InFolder):
    def test_order_and_jobs(self):
        files = [STAR, TABLE, EXAMPLES / "ubiquitin.tab"] * 7
        for jobs in (1, 3, 8):
            found = [results.file for results in zorvela.predict_many(files, jobs=jobs, progress=True)]
            self.assertEqual(found, list(map(str, files)))

    def test_errors(self):
        files = [TABLE, "absent.tab", STAR]
        found = list(zorvela.predict_many(files, errors="return"))
        self.assertEqual([type(one) for one in found], [zorvela.Results, zorvela.FileError, zorvela.Results])
        several = zorvela.predict_many(iter(files), jobs=1)
        self.assertEqual(calls(next(several)), NUCLEASE)
        with self.assertRaises(zorvela.FileError):
            next(several)

    def test_is_lazy_and_can_be_left(self):
        taken = []
        several = zorvela.predict_many((taken.append(i) or TABLE for i in range(1000)), jobs=2)
        next(several)
        several.close()
        self.assertLess(len(taken), 20)

    def test_threads_give_the_same(self):
        files = sorted((program.SOURCE / "kit" / "tests" / "files").glob("star3_*.str")) + [STAR, TABLE]

        def all_of(target):
            target.extend(one.report("json") if isinstance(one, zorvela.Results) else str(one)
                          for one in zorvela.predict_many(files, jobs=1, errors="return"))

        alone, together = [], [[] for _ in range(8)]
        all_of(alone)
        threads = [threading.Thread(target=all_of, args=(target,)) for target in together]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(together, [alone] * 8)


class Shown(unittest.TestCase):
    def test_reports(self):
        results = zorvela.predict(TABLE)
        self.assertIn("K116", str(results))
        self.assertEqual(results.report("csv").splitlines()[0], ",".join(program.COLUMNS))
        self.assertTrue(results.report().startswith("<!DOCTYPE html>"))

    def test_a_notebook_shows_the_report_in_a_frame(self):
        text = zorvela.predict("resid,resname,atom,shift\n1,PRO,CA,63\n")._repr_html_()
        self.assertRegex(text, r'^<iframe srcdoc="[^"<>]*" sandbox title="[^"<>]*" style="[^"<>]*"></iframe>$')

    def test_short_texts(self):
        results = zorvela.predict(TABLE)
        self.assertEqual(repr(results.prolines[4]), "<Proline P117: cis, p_cis_norm 0.987>")
        self.assertIn("1 cis, 4 trans, 0 undecided", repr(results))

    def test_parts_outlive_the_whole(self):
        shift = zorvela.predict(TABLE).proteins[0].prolines[4].evidence.shifts["CG"]
        garbage = [zorvela.predict(STAR) for _ in range(20)]
        self.assertEqual(shift.observed, 23.7)
        del garbage

    def test_members_cannot_be_set(self):
        with self.assertRaises(AttributeError):
            zorvela.predict(TABLE).prolines[0].call = "cis"

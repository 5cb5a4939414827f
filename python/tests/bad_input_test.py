"""Every error is an exception in one line that tells what to do; nothing is printed, nothing crashes."""
import contextlib
import io
import os
import pathlib
import random

import pandas
import zorvela
from tables import Entry, mapping_of
from zorvela_tests import folder, program

TABLE = program.SOURCE / "examples" / "nuclease.tab"
NAN = float("nan")


class BadInput(folder.InFolder):
    def fails(self, kind, words, call, *arguments, **keywords):
        printed = io.StringIO()
        with self.assertRaises(kind) as raised, contextlib.redirect_stdout(printed), \
                contextlib.redirect_stderr(printed):
            call(*arguments, **keywords)
        message = str(raised.exception)
        self.assertIn(words, message)
        self.assertNotIn("\n", message)
        self.assertRegex(message, "[:;] ", "no remedy")
        self.assertEqual(printed.getvalue(), "")
        return raised.exception

    def test_files(self):
        predict = zorvela.predict
        error = self.fails(zorvela.FileError, "cannot be read", predict, self.path("absent.str"))
        self.assertEqual((error.file, error.line), (self.path("absent.str"), None))
        error = self.fails(zorvela.FileError, "is not a known kind of shift file", predict, b"nothing of the kind")
        self.assertEqual((error.file, error.line), ("input", 1))
        self.fails(zorvela.FileError, "", predict, self.folder)
        self.fails(zorvela.FileError, "", predict, b"")
        self.fails(zorvela.Error, "is not a path", predict, "a\0b")
        self.fails(zorvela.ChoiceError, "has no chain \"Z\"", predict, TABLE.with_suffix(".str"), chain="Z")
        self.fails(zorvela.FileError, "", predict, TABLE, structure=TABLE)
        self.fails(zorvela.FileError, "cannot be unpacked", predict, TABLE, structure=b"\x1f\x8b\x08\0")

    def test_a_file_that_vanishes(self):
        path = self.put("a.tab", TABLE.read_bytes())
        several = zorvela.predict_many(path if i < 50 else (os.path.exists(path) and os.remove(path)) or path
                                       for i in range(100))
        with self.assertRaises(zorvela.FileError):
            list(several)

    def test_types(self):
        for source in (None, 3, 2.5, {"a": 1}, [TABLE], object()):
            self.fails(TypeError, "a file cannot be of type", zorvela.predict, source)
        self.fails(TypeError, "a file cannot be of type", zorvela.predict, TABLE, sequence=5)
        self.fails(TypeError, "chain cannot be of type int", zorvela.predict, TABLE, chain=5)
        self.fails(TypeError, "list 1 is not a text", zorvela.predict, TABLE, list=[1])
        self.fails(TypeError, "sources cannot be of type", zorvela.predict_many, str(TABLE))
        self.fails(TypeError, "sources cannot be of type", zorvela.predict_many, 3)
        for jobs in (0, -1, 1000, "2", 1.5, True):
            self.fails(zorvela.Error, "jobs is", zorvela.predict_many, [TABLE], jobs=jobs)
        self.fails(zorvela.Error, "errors is", zorvela.predict_many, [TABLE], errors="ignore")
        self.fails(TypeError, "format must be", zorvela.predict(TABLE).report, 3)
        self.fails(zorvela.Error, "", zorvela.predict(TABLE).report, "pdf")

    def test_shifts(self):
        def refused(kind, words, shifts, sequence="MQIFP", **keywords):
            self.fails(kind, words, zorvela.predict_shifts, sequence, shifts, **keywords)

        refused(zorvela.Error, "CA of residue 1: has a shift that is not a number", {(1, "CA"): NAN})
        refused(TypeError, "the shift '55.1' of CA of residue 1", {(1, "CA"): "55.1"})
        refused(TypeError, "the shift None of CA", {(1, "CA"): None})
        refused(zorvela.Error, "is not in the sequence", {(10 ** 30, "CA"): 55.1})
        refused(zorvela.Error, "is not in the sequence", {(2 ** 31, "CA"): 55.1}, first=10 ** 8)
        refused(zorvela.Error, "is not an atom", {(1, "C\udc80A"): 55.1})
        refused(TypeError, "the atom 5 of residue 1", {(1, 5): 55.1})
        refused(TypeError, "residue number '1'", {("1", "CA"): 55.1})
        refused(TypeError, "the key 'CA1'", {"CA1": 55.1})
        refused(TypeError, "shifts cannot be of type list", [((1, "CA"), 55.1)])
        refused(zorvela.Error, "there are no shifts", {})
        refused(zorvela.Error, "the sequence: has a sequence of more", {(1, "CA"): 55.1}, sequence="A" * 10 ** 7)
        refused(TypeError, "the sequence cannot be of type", {(1, "CA"): 55.1}, sequence=None)
        refused(zorvela.Error, "the entry has a row", Entry("", [(1, "CA", ".")]))

    def test_frames(self):
        def refused(kind, words, frame):
            self.fails(kind, words, zorvela.predict_shifts, "MQIFP", frame)

        refused(zorvela.Error, "there are no shifts", pandas.DataFrame({"resid": [], "atom": [], "shift": []}))
        refused(zorvela.Error, "no column with residue numbers", pandas.DataFrame())
        refused(zorvela.Error, "no column with shifts", pandas.DataFrame({"resid": [1], "atom": ["CA"]}))
        refused(zorvela.Error, "not a number", pandas.DataFrame({"resid": [1], "atom": ["CA"], "shift": [NAN]}))
        refused(TypeError, "is not a number", pandas.DataFrame({"resid": [1], "atom": ["CA"], "shift": ["a"]}))

    def test_a_sequence_that_does_not_fit(self):
        self.fails(zorvela.FileError, "does not fit the sequence of the text given", zorvela.predict, TABLE, sequence="MQIF")
        self.fails(zorvela.FileError, "is not a sequence", zorvela.predict, TABLE, sequence="M_Q")
        self.fails(zorvela.FileError, "none.seq: cannot be read: No such file", zorvela.predict, TABLE,
                  sequence=pathlib.Path("none.seq"))
        self.fails(TypeError, "is not a whole number", zorvela.predict, TABLE, sequence="MQIF", first_residue="2")

    def test_damaged_files(self):
        chance = random.Random(5)
        data = (program.SOURCE / "examples" / "nuclease.str").read_bytes()
        for _ in range(60):
            damaged = bytearray(data[:chance.randrange(len(data))])
            for _ in range(chance.randrange(20)):
                damaged[chance.randrange(len(damaged) or 1):][:1] = bytes([chance.randrange(256)])
            with contextlib.suppress(zorvela.Error):
                zorvela.predict(bytes(damaged)).report("json")

    def test_shifts_at_random(self):
        chance = random.Random(6)
        sequence, shifts = mapping_of(TABLE)
        for _ in range(60):
            some = {key: chance.choice((ppm, -ppm, 0.0, 1e308, -1e308, 998.0, 9999.0)) for key, ppm in shifts.items()
                    if chance.random() < 0.5}
            with contextlib.suppress(zorvela.Error):
                zorvela.predict_shifts("".join(chance.choice("cpX?" + letter * 9) for letter in sequence),
                                       some or shifts).report("html")

    def test_parts_cannot_be_made(self):
        with self.assertRaises(TypeError):
            zorvela.Proline()

"""The folder of the tables: from ZORVELA_DIR, or with the separator that PATH shows."""

from reference import ROOT
from support import TABLE_HEAD, ProgramTest, coil_shifts, finished, protein

UNSET = None


class MainDirectory(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.tab", protein("AG", coil_shifts("AG")))

    def test_the_tables_begin_with(self):
        for start, environment, options in (
                ("./tab/", {"ZORVELA_DIR": UNSET}, ()),
                ("share/z/tab/", {"ZORVELA_DIR": "share/z"}, ()),
                (self.path("z/tab/"), {"ZORVELA_DIR": self.path("z")}, ()),
                ("z//tab/", {"ZORVELA_DIR": "z/"}, ()),
                (".tab", {"ZORVELA_DIR": "data"}, ()),  # a name without a separator is ignored
                ("z\\y\\tab\\", {"ZORVELA_DIR": "z\\y", "PATH": "/usr/bin"}, ()),
                ("z\\y/x/tab/", {"ZORVELA_DIR": "z\\y/x"}, ()),
                (".\\tab\\", {"PATH": UNSET}, ()),
                ("./tab/", {"PATH": "a\\b:/c"}, ()),
                (".\\tab\\", {"PATH": "C:\\bin"}, ()),
                (".tab", {"PATH": "bin"}, ()),
                ("x\\", {"PATH": UNSET}, ("-tabDir", "x")),
                ("y", {"PATH": "bin"}, ("-tabDir", "y"))):
            with self.subTest(start=start, environment=environment):
                self.write_tables(place=start)
                result = self.run_program("-in", "in.tab", *options, environment=environment)
                self.assertEqual((result.stdout, result.stderr, result.status),
                                 (finished("in.tab", directory=start), "", 0))

    def test_the_tables_that_come_with_the_program(self):
        self.expect(["-in", "in.tab"], finished("in.tab", directory=ROOT + "/tab/"), environment={"ZORVELA_DIR": ROOT},
                    written={"pred.tab": TABLE_HEAD})

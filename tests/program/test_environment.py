"""Where the tables are looked for: ZORVELA_DIR, and without it the separator that PATH shows."""

from support import ROOT, ProgramTest, coil_shifts, finished, protein

UNSET = None


class MainDirectory(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.tab", protein("AG", coil_shifts("AG")))

    def expect_tables_at(self, start, environment, *options):
        """The tables' names begin so; with tables of these names the run goes through to its end."""
        first = "Reading Random Coil Shifts from " + start + "randcoil.tab\n"
        self.expect(["-in", "in.tab", *options], first, "\tCan't open file " + start + "randcoil.tab for reading\n",
                    environment=environment)
        self.write_tables(folder=start)
        result = self.run_program("-in", "in.tab", *options, environment=environment)
        self.assertEqual((result.stdout, result.stderr, result.status),
                         (finished("in.tab", directory=start), "", 0))

    def test_no_ZORVELA_DIR(self):
        self.expect_tables_at("./tab/", {"ZORVELA_DIR": UNSET})

    def test_a_relative_directory(self):
        self.expect_tables_at("share/z/tab/", {"ZORVELA_DIR": "share/z"})

    def test_an_absolute_directory(self):
        self.expect_tables_at(self.path("z/tab/"), {"ZORVELA_DIR": self.path("z")})

    def test_a_separator_at_its_end_stays(self):
        self.expect_tables_at("z//tab/", {"ZORVELA_DIR": "z/"})

    def test_a_directory_with_blanks(self):
        self.expect_tables_at("my  z/y/tab/", {"ZORVELA_DIR": "my  z/y"})

    def test_a_name_without_a_separator_is_ignored(self):
        self.expect_tables_at(".tab", {"ZORVELA_DIR": "data"})

    def test_an_empty_name_is_ignored(self):
        self.expect_tables_at(".tab", {"ZORVELA_DIR": ""})

    def test_backslashes(self):
        self.expect_tables_at("z\\y\\tab\\", {"ZORVELA_DIR": "z\\y"})

    def test_a_slash_wins_over_backslashes(self):
        self.expect_tables_at("z\\y/x/tab/", {"ZORVELA_DIR": "z\\y/x"})

    def test_ZORVELA_DIR_wins_over_PATH(self):
        self.expect_tables_at("z\\y\\tab\\", {"ZORVELA_DIR": "z\\y", "PATH": "/usr/bin"})

    def test_the_option_zorvelaDir_changes_nothing(self):
        self.expect_tables_at("./tab/", {}, "-zorvelaDir", "/opt/z")

    def test_PATH_unset(self):
        self.expect_tables_at(".\\tab\\", {"PATH": UNSET})

    def test_PATH_with_a_slash_and_a_backslash(self):
        self.expect_tables_at("./tab/", {"PATH": "a\\b:/c"})

    def test_PATH_with_a_backslash_only(self):
        self.expect_tables_at(".\\tab\\", {"PATH": "a\\b"})

    def test_PATH_without_separators(self):
        self.expect_tables_at(".tab", {"PATH": "bin"})

    def test_empty_PATH(self):
        self.expect_tables_at(".tab", {"PATH": ""})

    def test_tabDir_is_joined_with_the_separator_found(self):
        self.expect_tables_at("x\\", {"PATH": UNSET}, "-tabDir", "x")
        self.expect_tables_at("y", {"PATH": "bin"}, "-tabDir", "y")

    def test_a_very_long_directory_name(self):
        name = "z/" * 3000
        start = name + "/tab/"
        self.expect(["-in", "in.tab"], "Reading Random Coil Shifts from " + start + "randcoil.tab\n",
                    "\tCan't open file " + start + "randcoil.tab for reading\n", environment={"ZORVELA_DIR": name})

    def test_the_tables_that_come_with_the_program(self):
        self.expect(["-in", "in.tab"], finished("in.tab", directory=ROOT + "/tab/"), environment={"ZORVELA_DIR": ROOT},
                    written={"pred.tab": "\n\nVARS   RESID RESNAME_PREV RESNAME RESNAME_NEXT CS_CNT1 CS_CNT2 CS_CNT3 "
                                         "CG_SHIFT P_CIS P_CIS_NORM \n"
                                         "FORMAT %2d %1s %1s %1s %2d %2d %2d %8.3f %8.3f %8.3f \n\n"})

// Run settings: constructors, option values, usage text, and the listing of a row.
#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::outputOf;
using support::ScopedEnv;
using testing::Eq;
using testing::ExitedWithCode;

using Args = std::map<std::string, std::string>;

const std::vector<std::string> kNames = {"zorvelaDir", "tabDir", "predDir", "in",    "sum",  "out",  "rand",
                                         "adj",        "prev",   "next",    "first", "last", "clip", "noclip",
                                         "nodetail",   "tpct",   "dbpct",   "check", "help"};

// The usage text, line by line; continuation lines begin with 38 blanks.
std::string usage() {
  const std::string blanks(38, ' ');
  return "ZORVELA: Proline Omega Angle Prediction from Chemical Shift.\n"
         "Version 1.01 (build 2009.1102.12) by the Zorvela developers\n"
         "\n"
         "Directory Settings: \n"
         " -zorvelaDir mDir    [.]          ZORVELA Main Directory: ZORVELA_DIR.\n"
         " -tabDir     tDir    [tab]        Subdirectory of master tables.\n"
         " -predDir    pDir    [pred]       Directory for prediction results.\n"
         "\n"
         "File Name Settings:\n"
         " -in         inName  [None]           Input Shift Table.\n"
         " -sum        sumName [pred.tab]       Prediction Summary Output.\n"
         "\n"
         "Random Coil and Secondary Shift Tables:\n"
         " -rand       rName   [randcoil.tab]   Random Coil Shift Table.\n"
         " -adj        aName   [rcadj.tab]      Adjustment Table.\n" +
         blanks +
         "(None for no adjustment).\n"
         " -prev       pName   [rcprev.tab]     Previous Residue Adjustment.\n" +
         blanks +
         "(None for no adjustment).\n"
         " -next       nName   [rcnext.tab]     Next Residue Adjustment.\n" +
         blanks +
         "(None for no adjustment).\n"
         " -limits     lName   [sslimit.tab]    Secondary Shift Limits.\n" +
         blanks +
         "(Used only with -clip).\n"
         "\n"
         "Other Options:\n"
         " -first      resID1  [First]          First RESID to use.\n"
         " -last       resIDN  [Last]           Last RESID to use.\n"
         " -clip                                Clip Extreme Shifts (Default).\n"
         " -noclip                              No Clipping of Shifts.\n"
         "\n"
         "Examples:\n"
         " zorvela -in ubiq.tab     Form predictions from the given shifts.\n";
}

}  // namespace

// A main directory with slashes, whatever the environment of the test run.
class Settings : public testing::Test {
 protected:
  ScopedEnv mainDir{"ZORVELA_DIR", "/opt/z"};
  ZORVELA zorvela;
};

// --- Constructors -------------------------------------------------------------------------------

TEST_F(Settings, MainDirectoryWithSlashes) {
  zorvela.setArgs({});
  EXPECT_EQ(zorvela.mainDir, "/opt/z");
  EXPECT_EQ(zorvela.pathSep, "/");
  EXPECT_EQ(zorvela.tabDir, "/opt/z/tab");
  EXPECT_EQ(zorvela.rcName, "/opt/z/tab/randcoil.tab");
}

TEST(SettingsOfEnvironment, DirectoryNameWithoutSeparatorIsIgnored) {
  const ScopedEnv dir("ZORVELA_DIR", "data");
  ZORVELA zorvela;
  EXPECT_EQ(zorvela.mainDir, ".");
  EXPECT_EQ(zorvela.pathSep, "");
  zorvela.setArgs({});
  EXPECT_EQ(zorvela.tabDir, ".tab");
  EXPECT_EQ(zorvela.rcName, ".tabrandcoil.tab");
}

TEST(SettingsOfEnvironment, EmptyDirectoryNameIsSetAndHasNoSeparator) {
  const ScopedEnv dir("ZORVELA_DIR", "");
  const ScopedEnv path("PATH", "/usr/bin:/bin");
  const ZORVELA zorvela;
  EXPECT_EQ(zorvela.mainDir, ".");
  EXPECT_EQ(zorvela.pathSep, "");
}

TEST(SettingsOfEnvironment, DirectoryUnsetAndPathWithSlashesGivesTabBelowTheWorkingDirectory) {
  const ScopedEnv dir("ZORVELA_DIR", nullptr);
  const ScopedEnv path("PATH", "/usr/bin:/bin");
  ZORVELA zorvela;
  EXPECT_EQ(zorvela.mainDir, ".");
  EXPECT_EQ(zorvela.pathSep, "/");
  zorvela.setArgs({});
  EXPECT_EQ(zorvela.tabDir, "./tab");
}

TEST(SettingsOfEnvironment, DirectoryWithBackslashesAndNoSlash) {
  const ScopedEnv dir("ZORVELA_DIR", "C:\\z");
  ZORVELA zorvela;
  EXPECT_EQ(zorvela.mainDir, "C:\\z");
  EXPECT_EQ(zorvela.pathSep, "\\");
  zorvela.setArgs({});
  EXPECT_EQ(zorvela.tabDir, "C:\\z\\tab");
  EXPECT_EQ(zorvela.proCsName, "C:\\z\\tab\\Pro.cs.tab");
}

TEST(SettingsOfEnvironment, SlashWinsOverBackslash) {
  const ScopedEnv dir("ZORVELA_DIR", "a\\b/c");
  const ZORVELA zorvela;
  EXPECT_EQ(zorvela.mainDir, "a\\b/c");
  EXPECT_EQ(zorvela.pathSep, "/");
}

TEST(SettingsOfEnvironment, SeparatorComesFromPathWhereTheDirectoryIsUnset) {
  const ScopedEnv dir("ZORVELA_DIR", nullptr);
  const auto separatorFor = [](const char* path) {
    const ScopedEnv variable("PATH", path);
    const ZORVELA zorvela;
    EXPECT_EQ(zorvela.mainDir, ".");
    return zorvela.pathSep;
  };
  EXPECT_EQ(separatorFor(nullptr), "\\");
  EXPECT_EQ(separatorFor("/bin"), "/");
  EXPECT_EQ(separatorFor("C:\\bin;/bin"), "/");
  EXPECT_EQ(separatorFor("C:\\bin"), "\\");
  EXPECT_EQ(separatorFor("bin"), "");
  EXPECT_EQ(separatorFor(""), "");
}

TEST_F(Settings, ConstructorFillsOptionNamesAndAtoms) {
  EXPECT_EQ(zorvela.argNames, kNames);
  EXPECT_EQ(zorvela.atomNames,
            (std::map<int, std::string>{{1, "N"}, {2, "HA"}, {3, "C"}, {4, "CA"}, {5, "CB"}, {6, "HN"}}));
}

TEST_F(Settings, ConstructorLeavesNamesAndMapsEmpty) {
  EXPECT_EQ(zorvela.predDir, "");
  EXPECT_EQ(zorvela.tabDir, "");
  EXPECT_EQ(zorvela.spareDir, "");
  EXPECT_EQ(zorvela.inName, "");
  EXPECT_EQ(zorvela.spareName, "");
  EXPECT_EQ(zorvela.csTable.getEntryCount(), 0);
  EXPECT_TRUE(zorvela.resNames.empty());
  EXPECT_TRUE(zorvela.missingCount.empty());
  EXPECT_TRUE(zorvela.proSeqCis.empty());
  EXPECT_TRUE(zorvela.avgCis.empty());
  EXPECT_TRUE(zorvela.cgShifts.empty());
  EXPECT_EQ(sizeof zorvela.numBuffer, 32U);
}

TEST_F(Settings, ConstructorWithAnInputNameAppliesNoDefault) {
  const ZORVELA other("shifts.tab");
  EXPECT_EQ(other.inName, "shifts.tab");
  EXPECT_EQ(other.mainDir, "");
  EXPECT_EQ(other.pathSep, "");
  EXPECT_TRUE(other.argNames.empty());
  EXPECT_TRUE(other.atomNames.empty());
}

// --- Option values ------------------------------------------------------------------------------

TEST_F(Settings, DefaultsWithoutOptions) {
  zorvela.setArgs({});
  EXPECT_EQ(zorvela.predDir, "pred");
  EXPECT_EQ(zorvela.inName, "");
  EXPECT_EQ(zorvela.refName, "");
  EXPECT_EQ(zorvela.sumName, "pred.tab");
  EXPECT_EQ(zorvela.sumBase, "pred");
  EXPECT_EQ(zorvela.rcName, "/opt/z/tab/randcoil.tab");
  EXPECT_EQ(zorvela.adjName, "/opt/z/tab/rcadj.tab");
  EXPECT_EQ(zorvela.prevName, "/opt/z/tab/rcprev.tab");
  EXPECT_EQ(zorvela.nextName, "/opt/z/tab/rcnext.tab");
  EXPECT_EQ(zorvela.limitName, "/opt/z/tab/sslimit.tab");
  EXPECT_EQ(zorvela.proCsName, "/opt/z/tab/Pro.cs.tab");
  EXPECT_EQ(zorvela.proSeqName, "/opt/z/tab/Pro.seq.tab");
  EXPECT_EQ(zorvela.dbpct, 59.0F);
  EXPECT_EQ(zorvela.tpct, 15.0F);
  EXPECT_EQ(zorvela.count, 10);
  EXPECT_EQ(zorvela.firstResid, 1);
  EXPECT_EQ(zorvela.lastResid, 9999);
  EXPECT_TRUE(zorvela.clipShifts);
  EXPECT_FALSE(zorvela.checkShifts);
  EXPECT_FALSE(zorvela.showDetail);
}

TEST_F(Settings, TabDirIsTakenAsItIsAndTheSeparatorIsAdded) {
  zorvela.setArgs({{"tabDir", "/t"}});
  EXPECT_EQ(zorvela.tabDir, "/t");
  EXPECT_EQ(zorvela.rcName, "/t/randcoil.tab");
  EXPECT_EQ(zorvela.proSeqName, "/t/Pro.seq.tab");
  zorvela.setArgs({{"tabDir", "/t/"}});
  EXPECT_EQ(zorvela.rcName, "/t//randcoil.tab");
}

TEST_F(Settings, SumBaseIsTheNameBeforeItsLastDot) {
  const auto baseOf = [&](const std::string& name) {
    zorvela.setArgs({{"sum", name}});
    EXPECT_EQ(zorvela.sumName, name);
    return zorvela.sumBase;
  };
  EXPECT_EQ(baseOf("out.dat"), "out");
  EXPECT_EQ(baseOf("results"), "results");
  EXPECT_EQ(baseOf("a.b.tab"), "a.b");
  EXPECT_EQ(baseOf(".tab"), "");
}

TEST_F(Settings, DbpctIs59WithoutTheOptionAnd15ForZeroOrNoNumber) {
  const auto dbpctOf = [&](const Args& args) {
    zorvela.setArgs(args);
    return zorvela.dbpct;
  };
  EXPECT_EQ(dbpctOf({{"dbpct", "0"}}), 15.0F);
  EXPECT_EQ(dbpctOf({}), 59.0F);
  EXPECT_EQ(dbpctOf({{"dbpct", "x"}}), 15.0F);
  EXPECT_EQ(dbpctOf({{"dbpct", "nan"}}), 15.0F);
  EXPECT_EQ(dbpctOf({{"dbpct", "12.5%"}}), 12.5F);
  EXPECT_EQ(dbpctOf({{"dbpct", "-3"}}), -3.0F);
}

TEST_F(Settings, TpctIs15ForZeroOrNoNumber) {
  const auto tpctOf = [&](const std::string& value) {
    zorvela.setArgs({{"tpct", value}});
    return zorvela.tpct;
  };
  EXPECT_EQ(tpctOf("0"), 15.0F);
  EXPECT_EQ(tpctOf("tpct"), 15.0F);
  EXPECT_EQ(tpctOf("nan"), 15.0F);
  EXPECT_EQ(tpctOf("20"), 20.0F);
}

TEST_F(Settings, CountIs10ForZeroOrNoNumber) {
  const auto countOf = [&](const std::string& value) {
    zorvela.setArgs({{"count", value}});
    return zorvela.count;
  };
  EXPECT_EQ(countOf("0"), 10);
  EXPECT_EQ(countOf("x"), 10);
  EXPECT_EQ(countOf("25"), 25);
  EXPECT_EQ(countOf("-2"), -2);
}

TEST_F(Settings, FirstZeroStaysZeroAfterSetArgs) {
  zorvela.setArgs({{"first", "0"}, {"last", "0"}});
  EXPECT_EQ(zorvela.firstResid, 0);
  EXPECT_EQ(zorvela.lastResid, 0);
}

TEST_F(Settings, FirstAndLastAreReadInBase10) {
  zorvela.setArgs({{"first", "010"}, {"last", "2000000000"}});
  EXPECT_EQ(zorvela.firstResid, 10);
  EXPECT_EQ(zorvela.lastResid, 2000000000);
  zorvela.setArgs({{"first", "first"}, {"last", "-7"}});
  EXPECT_EQ(zorvela.firstResid, 0);
  EXPECT_EQ(zorvela.lastResid, -7);
}

TEST_F(Settings, OptionZorvelaDirLeavesTheMainDirectory) {
  zorvela.setArgs({{"zorvelaDir", "/x"}});
  EXPECT_EQ(zorvela.mainDir, "/opt/z");
  EXPECT_EQ(zorvela.tabDir, "/opt/z/tab");
}

TEST_F(Settings, KeyInCapitalsSetsTheMainDirectory) {
  zorvela.setArgs({{"ZORVELADir", "/x"}});
  EXPECT_EQ(zorvela.mainDir, "/x");
  EXPECT_EQ(zorvela.tabDir, "/x/tab");
}

TEST_F(Settings, FileNamesReplaceTheirTablesVerbatim) {
  zorvela.setArgs({{"tabDir", "/t"},
                   {"rc", "my.rc"},
                   {"adj", "None"},
                   {"prev", "p.tab"},
                   {"next", "n.tab"},
                   {"limits", "l.tab"}});
  EXPECT_EQ(zorvela.rcName, "my.rc");
  EXPECT_EQ(zorvela.adjName, "None") << "a name like any other";
  EXPECT_EQ(zorvela.prevName, "p.tab");
  EXPECT_EQ(zorvela.nextName, "n.tab");
  EXPECT_EQ(zorvela.limitName, "l.tab");
  EXPECT_EQ(zorvela.proCsName, "/t/Pro.cs.tab");
}

TEST_F(Settings, RandClipAndNodetailChangeNothing) {
  zorvela.setArgs({{"rand", "my.rc"}, {"clip", "clip"}, {"nodetail", "true"}});
  EXPECT_EQ(zorvela.rcName, "/opt/z/tab/randcoil.tab");
  EXPECT_TRUE(zorvela.clipShifts);
  EXPECT_FALSE(zorvela.showDetail);
}

TEST_F(Settings, OutWinsOverSumAndPdbOverRef) {
  zorvela.setArgs({{"sum", "a.tab"}, {"out", "b.tab"}, {"ref", "r"}, {"pdb", "p"}});
  EXPECT_EQ(zorvela.sumName, "b.tab");
  EXPECT_EQ(zorvela.sumBase, "b");
  EXPECT_EQ(zorvela.refName, "p");
  zorvela.setArgs({{"ref", "r"}});
  EXPECT_EQ(zorvela.refName, "r");
}

TEST_F(Settings, InAndPredDir) {
  zorvela.setArgs({{"in", "my shifts.tab"}, {"predDir", "/results"}});
  EXPECT_EQ(zorvela.inName, "my shifts.tab");
  EXPECT_EQ(zorvela.predDir, "/results");
}

TEST_F(Settings, FlagsCheckAndNoclip) {
  zorvela.setArgs({{"noclip", "true"}, {"check", "true"}});
  EXPECT_FALSE(zorvela.clipShifts);
  EXPECT_TRUE(zorvela.checkShifts);
}

TEST_F(Settings, EmptyValueIsNotGiven) {
  zorvela.inName = "kept.tab";
  zorvela.setArgs({{"help", ""},
                   {"in", ""},
                   {"tabDir", ""},
                   {"predDir", ""},
                   {"sum", ""},
                   {"out", ""},
                   {"adj", ""},
                   {"first", ""},
                   {"last", ""},
                   {"tpct", ""},
                   {"dbpct", ""},
                   {"count", ""},
                   {"noclip", ""},
                   {"check", ""}});
  EXPECT_EQ(zorvela.inName, "kept.tab");
  EXPECT_EQ(zorvela.tabDir, "/opt/z/tab");
  EXPECT_EQ(zorvela.predDir, "pred");
  EXPECT_EQ(zorvela.sumName, "pred.tab");
  EXPECT_EQ(zorvela.adjName, "/opt/z/tab/rcadj.tab");
  EXPECT_EQ(zorvela.firstResid, 1);
  EXPECT_EQ(zorvela.lastResid, 9999);
  EXPECT_EQ(zorvela.tpct, 15.0F);
  EXPECT_EQ(zorvela.dbpct, 59.0F);
  EXPECT_EQ(zorvela.count, 10);
  EXPECT_TRUE(zorvela.clipShifts);
  EXPECT_FALSE(zorvela.checkShifts);
}

// --- A row as text ------------------------------------------------------------------------------

TEST_F(Settings, PrintEntryWritesTheNonEmptyValuesInKeyOrder) {
  const support::Output output = outputOf([&] {
    zorvela.printEntry({{"SHIFT", "8.1"}, {"ATOMNAME", "HN"}, {"NOTE", ""}, {"RESID", "2"}});
  });
  EXPECT_EQ(output.out, "HN 2 8.1 \n");
  EXPECT_EQ(output.err, "");
}

TEST_F(Settings, PrintEntryOfAnEmptyRowIsAnEndOfLine) {
  EXPECT_EQ(outputOf([&] { zorvela.printEntry({}); }).out, "\n");
}

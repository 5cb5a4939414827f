// Run settings: constructors, option values, and the listing of a row.
#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::outputOf;
using support::ScopedEnv;

using Args = std::map<std::string, std::string>;

const std::vector<std::string> kNames = {"zorvelaDir", "tabDir", "predDir", "in",    "sum",  "out",  "rand",
                                         "adj",        "prev",   "next",    "first", "last", "clip", "noclip",
                                         "nodetail",   "tpct",   "dbpct",   "check", "help"};

}  // namespace

// A main directory with slashes, whatever the environment of the test run.
class Settings : public testing::Test {
 protected:
  ScopedEnv mainDir{"ZORVELA_DIR", "/opt/z"};
  ZORVELA zorvela;
};

// --- Constructors -------------------------------------------------------------------------------

TEST_F(Settings, ConstructorFillsOptionNamesAndAtoms) {
  EXPECT_EQ(zorvela.argNames, kNames);
  EXPECT_EQ(zorvela.atomNames,
            (std::map<int, std::string>{{1, "N"}, {2, "HA"}, {3, "C"}, {4, "CA"}, {5, "CB"}, {6, "HN"}}));
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

TEST_F(Settings, DefaultsAreUsedWhereAnOptionIsNotGivenOrEmpty) {
  std::map<std::string, std::string> empty = {{"count", ""}};
  for (const std::string& name : zorvela.argNames) empty[name] = "";
  for (const auto& args : {std::map<std::string, std::string>(), empty}) {
    zorvela.showDetail = true;
    zorvela.setArgs(args);
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

TEST_F(Settings, NumbersThatAreZeroOrNoneTakeTheirOwnDefault) {
  using Cases = std::vector<std::pair<std::string, float>>;
  for (const auto& [value, expected] :
       Cases{{"0", 15}, {"x", 15}, {"nan", 15}, {"12.5%", 12.5F}, {"-3", -3}}) {
    zorvela.setArgs({{"dbpct", value}, {"tpct", value}});
    EXPECT_EQ(zorvela.dbpct, expected) << value;
    EXPECT_EQ(zorvela.tpct, expected) << value;
  }
  for (const auto& [value, expected] :
       std::map<std::string, int>{{"0", 10}, {"x", 10}, {"25", 25}, {"-2", -2}}) {
    zorvela.setArgs({{"count", value}});
    EXPECT_EQ(zorvela.count, expected) << value;
  }
}

TEST_F(Settings, FirstZeroStaysZeroAfterSetArgs) {
  zorvela.setArgs({{"first", "0"}, {"last", "0"}});
  EXPECT_EQ(zorvela.firstResid, 0);
  EXPECT_EQ(zorvela.lastResid, 0);
}

TEST_F(Settings, OnlyTheKeyInCapitalsSetsTheMainDirectory) {
  zorvela.setArgs({{"zorvelaDir", "/x"}});
  EXPECT_EQ(zorvela.mainDir, "/opt/z");
  EXPECT_EQ(zorvela.tabDir, "/opt/z/tab");
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

TEST_F(Settings, OutWinsOverSumAndPdbOverRef) {
  zorvela.setArgs({{"sum", "a.tab"}, {"out", "b.tab"}, {"ref", "r"}, {"pdb", "p"}});
  EXPECT_EQ(zorvela.sumName, "b.tab");
  EXPECT_EQ(zorvela.sumBase, "b");
  EXPECT_EQ(zorvela.refName, "p");
  zorvela.setArgs({{"ref", "r"}});
  EXPECT_EQ(zorvela.refName, "r");
}

// --- A row as text ------------------------------------------------------------------------------

TEST_F(Settings, PrintEntryWritesTheNonEmptyValuesInKeyOrder) {
  const support::Output output = outputOf([&] {
    zorvela.printEntry({{"SHIFT", "8.1"}, {"ATOMNAME", "HN"}, {"NOTE", ""}, {"RESID", "2"}});
    zorvela.printEntry({});
  });
  EXPECT_EQ(output.out, "HN 2 8.1 \n\n");
  EXPECT_EQ(output.err, "");
}

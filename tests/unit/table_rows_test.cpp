// Rows and cells are the maps of the standard library: each natural way of using them.
#include <map>
#include <string>
#include <vector>

// Names that a program of its own may have.
struct Row {
  int line;
};
typedef std::vector<Row> Rows;
using Map = Rows;
using Pool = Rows;

#include <algorithm>
#include <iterator>
#include <sstream>
#include <type_traits>

#include "ZORVELA.h"
#include "support.h"

namespace {

using Cells = std::map<std::string, std::string>;

static_assert(std::is_same<decltype(GDB::entries), std::map<int, Cells>>::value, "rows by number");
static_assert(std::is_same<decltype(GDB::residNames), std::map<int, std::string>>::value, "sequence");
static_assert(std::is_same<decltype(ZORVELA::rcShifts), std::map<int, std::map<std::string, float>>>::value,
              "reference shifts by residue and atom");
static_assert(std::is_same<decltype(ZORVELA::cgShifts), std::map<int, float>>::value, "CG by residue");
static_assert(std::is_same<decltype(ZORVELA::proSeqCis), std::map<std::string, std::map<int, float>>>::value,
              "shares by residue type and position");

// 40 rows, one a residue, with SHIFT 50.1, 50.2 ...
GDB shiftTable() {
  GDB table;
  table.presetClass("KIVRA_SHIFT");
  for (int i = 1; i <= 40; ++i)
    support::addRow(table, {{"RESID", std::to_string(i)},
                            {"RESNAME", "A"},
                            {"ATOMNAME", "CA"},
                            {"SHIFT", std::to_string(50) + "." + std::to_string(i)}});
  return table;
}

}  // namespace

// --- Walks --------------------------------------------------------------------------------------

TEST(TableRows, AreWalkedByIteratorsInBothDirections) {
  GDB table = shiftTable();
  std::string columns;
  const Cells& cells = table.entries[1];
  for (auto it = cells.begin(); it != cells.end(); it++) columns += it->first + " ";
  EXPECT_EQ(columns, "ATOMNAME RESID RESNAME SHIFT ");
  std::string back;
  for (auto it = cells.rbegin(); it != cells.rend(); ++it) back += it->second + " ";
  EXPECT_EQ(back, "50.1 A 1 CA ");
  auto last = table.entries.end();
  last--;
  EXPECT_EQ(last->first, 40);
  EXPECT_EQ(std::next(table.entries.begin(), 6)->second.at("RESID"), "7");
  EXPECT_EQ(std::distance(cells.find("RESID"), cells.end()), 3);
}

TEST(TableRows, AreChangedThroughStructuredBindings) {
  GDB table = shiftTable();
  for (auto& [number, row] : table.entries)
    for (auto& [column, text] : row)
      if (column == "RESNAME") text = number % 2 == 0 ? "G" : "K";
  EXPECT_EQ(table.entries[2]["RESNAME"], "G");
  EXPECT_EQ(table.getEntry("RESNAME", "G", 20).at("RESID"), "40");
}

TEST(TableRows, AreChangedThroughReferencesAndPointers) {
  GDB table = shiftTable();
  std::map<std::string, std::string>& row = table.entries[1];
  row["SHIFT"] = "51";
  EXPECT_EQ(table.getEntry(1).at("SHIFT"), "51");
  std::string* shift = &table.entries.at(2).at("SHIFT");
  *shift += "5";
  EXPECT_EQ(table.getEntry(2).at("SHIFT"), "50.25");
  auto& [number, cells] = *table.entries.find(3);
  cells.at("ATOMNAME") = "CB";
  EXPECT_EQ(table.getEntry("ATOMNAME", "CB", 1).at("RESID"), std::to_string(number));
}

TEST(TableRows, WorkWithTheAlgorithmsOfTheLibrary) {
  const GDB table = shiftTable();
  const auto isResidue7 = [](const auto& entry) { return entry.second.at("RESID") == "7"; };
  const auto found = std::find_if(table.entries.begin(), table.entries.end(), isResidue7);
  ASSERT_NE(found, table.entries.end());
  EXPECT_EQ(found->first, 7);
  const auto isShift = [](const std::pair<const std::string, std::string>& cell) {
    return cell.first == "SHIFT";
  };
  EXPECT_EQ(std::count_if(found->second.begin(), found->second.end(), isShift), 1);
  std::vector<std::pair<std::string, std::string>> sorted(found->second.begin(), found->second.end());
  EXPECT_EQ(sorted.front().first, "ATOMNAME");
}

// --- Changes ------------------------------------------------------------------------------------

TEST(TableRows, AreInsertedAndErased) {
  GDB table = shiftTable();
  EXPECT_TRUE(table.entries.insert({41, {{"RESID", "41"}}}).second);
  EXPECT_FALSE(table.entries.insert({41, {}}).second);
  EXPECT_TRUE(table.entries.emplace(42, Cells{{"RESID", "42"}}).second);
  EXPECT_EQ(table.entries[41].insert({"NOTE", "new"}).first->second, "new");
  EXPECT_EQ(table.entries[41].erase("NOTE"), 1U);
  EXPECT_EQ(table.entries.erase(1), 1U);
  table.entries.erase(table.entries.begin());
  for (auto it = table.entries.begin(); it != table.entries.end();)
    it = it->first % 2 == 0 ? table.entries.erase(it) : std::next(it);
  EXPECT_EQ(table.getEntryCount(), 20);
  EXPECT_TRUE(table.getEntry("RESID", "42", 1).empty());
  EXPECT_EQ(table.getEntry("RESID", "41", 1), (Cells{{"RESID", "41"}}));
}

TEST(TableRows, AreSwappedMovedAndHandedToOtherMaps) {
  GDB table = shiftTable();
  std::map<int, Cells> rows = std::move(table.entries);
  table.entries.clear();
  EXPECT_EQ(rows.size(), 40U);
  std::swap(table.entries, rows);
  EXPECT_EQ(table.getEntryCount(), 40);
  const Cells copy = table.getEntry("RESID", "3", 1);
  EXPECT_EQ(copy, table.entries.at(3));
  auto node = table.entries.extract(3);
  node.key() = 100;
  table.entries.insert(std::move(node));
  EXPECT_EQ(table.entries.rbegin()->second, copy);
}

// --- Parts of the table as arguments ------------------------------------------------------------

TEST(TableRows, CellIsSetFromACellOfTheSameRow) {
  GDB table = shiftTable();
  table.setEntry(1, "COPY", table.entries[1]["RESNAME"]);
  EXPECT_EQ(table.entries[1]["COPY"], "A");
  table.entries[1]["SHIFT"] = table.entries[1]["RESID"];
  EXPECT_EQ(table.entries[1]["SHIFT"], "1");
  table.entries[1]["FRESH"] = table.entries[1]["RESID"];
  EXPECT_EQ(table.entries[1]["FRESH"], "1");
  table.entries[2]["SHIFT"] = table.entries[50]["NONE"];
  EXPECT_EQ(table.entries[2]["SHIFT"], "");
  table.setEntry(60, "RESID", table.entries[1]["RESID"]);
  table.addEntry("RESID", table.entries[60]["RESID"]);
  EXPECT_EQ(table.getEntry("RESID", table.entries[1]["RESID"], 3).at("RESID"), "1");
}

TEST(TableRows, ColumnsAndFormatsAreSetFromTheTableItself) {
  GDB table;
  table.VARS_str_parser("A B C");
  table.FORMAT_str_parser("%4d %s %8.3f");
  table.setVAR(3, table.columnNames[0], table.columnFormats[1]);
  EXPECT_EQ(table.columnNames[2], "A");
  EXPECT_EQ(table.columnFormats[2], "%s ");
  table.setEntry(1, "A", "RESID ATOMNAME OF_A_LONG_NAME");
  table.VARS_str_parser(table.entries[1]["A"]);
  EXPECT_EQ(table.columnNames[2], "OF_A_LONG_NAME");
  table.columnCount = 1;
  table.columnFormats[0] = "%8.3f and a text that does not fit in a short string";
  table.setEntry(1, "A", "%12.6f                                   ");
  table.FORMAT_str_parser(table.entries[1]["A"]);
  EXPECT_EQ(table.columnFormats[0], "%12.6f                                   ");
  EXPECT_EQ(table.getEntryCount(), 0);
  table.FORMAT_str_parser(table.columnFormats[0]);
  EXPECT_EQ(table.columnFormats[0], "%12.6f                                   ");
  table.presetClass("KIVRA_SHIFT");
  table.presetClass(table.className);
  EXPECT_EQ(table.className, "KIVRA_SHIFT");
  table.addRemark("a remark that does not fit in a short string");
  table.addRemark(table.remarks[0]);
  EXPECT_EQ(table.remarks[1], table.remarks[0]);
}

// --- Searches after direct changes --------------------------------------------------------------

TEST(TableRows, SearchSeesEveryDirectChangeOfALargeTable) {
  GDB table = shiftTable();
  ASSERT_EQ(table.getEntry("RESID", "20", 1).at("SHIFT"), "50.20");
  table.entries[5]["RESID"] = "20";
  EXPECT_EQ(table.getEntry("RESID", "20", 1).at("SHIFT"), "50.5") << "the earlier row";
  EXPECT_EQ(table.getEntry("RESID", "20", 2).at("SHIFT"), "50.20");
  table.entries.erase(5);
  EXPECT_EQ(table.getEntry("RESID", "20", 1).at("SHIFT"), "50.20");
  table.entries[20].clear();
  EXPECT_TRUE(table.getEntry("RESID", "20", "ATOMNAME", "CA", 1).empty());
  Cells& row = table.entries[30];
  EXPECT_EQ(table.getEntry("RESID", "30", "ATOMNAME", "CA", 1).at("SHIFT"), "50.30");
  row["ATOMNAME"] = "CB";
  EXPECT_TRUE(table.getEntry("RESID", "30", "ATOMNAME", "CA", 1).empty());
  EXPECT_EQ(table.getEntry("RESID", "30", "ATOMNAME", "CB", 1).at("SHIFT"), "50.30");
}

// --- Failures of parsing ------------------------------------------------------------------------

TEST(TableParsing, GivesItsCallerTheFaultWithItsLine) {
  const support::TempDir dir;
  const std::string path = dir.write("bad.tab", "REMARK a\nVARS A B\nFORMAT %d %5.1e\n1 2\n");
  GDB table = shiftTable();
  const support::Output output = support::outputOf([&] {
    const auto fault = table.readFile(path);
    ASSERT_TRUE(fault.has_value());
    EXPECT_EQ(fault->message, "Bad format syntax '%5.1e'");
    EXPECT_EQ(fault->line, 3U);
  });
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(output.err, "") << "what is said of it is the caller's business";
}

TEST(TableParsing, OfAFileThatIsNotThereSaysSo) {
  const support::TempDir dir;
  const auto fault = GDB().readFile(dir.file("none.tab"));
  ASSERT_TRUE(fault.has_value());
  EXPECT_EQ(fault->message, "Can't open file " + dir.file("none.tab") + " for reading");
}

TEST(TableParsing, LeavesTheTableAsItWasWhereItFails) {
  GDB table = shiftTable();
  table.setData("SEQUENCE", "AA");
  const GDB before = table;
  std::istringstream bad("REMARK x\nDATA SEQUENCE M\nVARS A\nFORMAT %d\n1\nFORMAT %x\n");
  EXPECT_TRUE(table.readTable(bad).has_value());
  std::istringstream bare("REMARK x\nVARS A\nFORMAT %d\n1\nREMARK\n");
  EXPECT_THROW(table.readTable(bare), std::out_of_range);
  EXPECT_TRUE(table.setFormats("%d %s %s %q").has_value());
  EXPECT_EQ(table.entries, before.entries);
  EXPECT_EQ(table.columnNames, before.columnNames);
  EXPECT_EQ(table.columnFormats, before.columnFormats);
  EXPECT_EQ(table.columnCount, 4);
  EXPECT_EQ(table.dataLines, before.dataLines);
  EXPECT_TRUE(table.remarks.empty());
}

TEST(TableParsing, ReadsAsLoadGDBDoes) {
  const support::TempDir dir;
  const std::string path =
      dir.write("a.tab", "DATA SEQUENCE MK\nVARS RESID SHIFT\nFORMAT %4d %8.3f\n1 2.5\n");
  GDB table;
  table.plaintext = true;
  EXPECT_FALSE(table.readFile(path).has_value());
  const GDB loaded(path);
  EXPECT_EQ(table.entries, loaded.entries);
  EXPECT_EQ(table.residNames, loaded.residNames);
  EXPECT_EQ(table.fileName, path);
  EXPECT_FALSE(table.plaintext);
}

TEST(TableParsing, TellsTheLinesOfRowsAndThoseThatItSkipped) {
  std::istringstream in("1 2\nREMARK x\nVARS A B\nFORMAT %d %d\n\n1 2\n1 2 3\n3 4\n");
  GDB table;
  TableLines lines;
  table.readTable(in, &lines);
  EXPECT_EQ(lines.rows, (std::vector<std::size_t>{6, 8}));
  EXPECT_EQ(lines.skipped, (std::vector<std::size_t>{1, 7}));
}

TEST(TableParsing, OfColumnsThatTheUserNumberedReadsThoseInTheCount) {
  GDB table;
  table.VARS_str_parser("A B");
  table.columnNames[7] = "FAR";
  table.columnNames[-1] = "BEFORE";
  std::istringstream in("FORMAT %d %d\n1 2\n");
  table.readTable(in);
  EXPECT_EQ(table.getEntry(1), (Cells{{"A", "1"}, {"B", "2"}}));
}

// Searches by cell text, in small and large tables and after every way of changing them.
#include <random>
#include <utility>

#include "support.h"

namespace {

using support::addRow;
using support::TempDir;

GDB::Row shiftRow(const std::string& resid, const std::string& atom, const std::string& shift) {
  return {{"RESID", resid}, {"ATOMNAME", atom}, {"SHIFT", shift}};
}

// Rows for residues 1, 2, 3 ..., with the row number as RESID and RESID x 10 as SHIFT.
GDB numberedTable(int rows) {
  GDB table;
  for (int i = 1; i <= rows; ++i) addRow(table, shiftRow(std::to_string(i), "CA", std::to_string(i * 10)));
  return table;
}

// The same as a file.
std::string numberedFile(int rows) {
  std::string text = "VARS RESID ATOMNAME SHIFT\nFORMAT %d %s %f\n";
  for (int i = 1; i <= rows; ++i) text += std::to_string(i) + " CA " + std::to_string(i * 10) + "\n";
  return text;
}

std::string shiftOf(const GDB& table, const std::string& resid) {
  return GDB::cell(table.getEntry("RESID", resid, 1), "SHIFT");
}

}  // namespace

// The number of rows of the table.
class TableSearch : public testing::TestWithParam<int> {
 protected:
  int rows() const { return GetParam(); }
  std::string last() const { return std::to_string(rows()); }
  GDB table = numberedTable(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Sizes, TableSearch, testing::Values(8, 33, 300));

TEST_P(TableSearch, FindsEveryRow) {
  for (int i = 1; i <= rows(); ++i) EXPECT_EQ(shiftOf(table, std::to_string(i)), std::to_string(i * 10));
  EXPECT_TRUE(table.getEntry("RESID", "0", 1).empty());
  EXPECT_EQ(table.getEntryCount(), rows()) << "a search adds no row";
}

TEST_P(TableSearch, CountsOccurrencesInRowOrder) {
  table.setEntry(3, "RESID", "12x");
  table.setEntry(7, "RESID", "12x");
  EXPECT_EQ(table.getEntry("RESID", "12x", 1).at("SHIFT"), "30");
  EXPECT_EQ(table.getEntry("RESID", "12x", 2).at("SHIFT"), "70");
  EXPECT_TRUE(table.getEntry("RESID", "12x", 3).empty());
  EXPECT_TRUE(table.getEntry("RESID", "12x", 0).empty());
  EXPECT_TRUE(table.getEntry("RESID", "12x", -1).empty());
}

TEST_P(TableSearch, ComparesTheWholeTextAndItsCase) {
  table.setEntry(2, "ATOMNAME", "HA2");
  EXPECT_TRUE(table.getEntry("ATOMNAME", "HA", 1).empty());
  EXPECT_TRUE(table.getEntry("ATOMNAME", "ha2", 1).empty());
  EXPECT_EQ(table.getEntry("ATOMNAME", "HA2", 1).at("RESID"), "2");
}

TEST_P(TableSearch, MatchesTwoCells) {
  table.setEntry(5, "RESID", "4");
  table.setEntry(5, "ATOMNAME", "CB");
  EXPECT_EQ(table.getEntry("RESID", "4", "ATOMNAME", "CB", 1).at("SHIFT"), "50");
  EXPECT_EQ(table.getEntry("RESID", "4", "ATOMNAME", "CA", 1).at("SHIFT"), "40");
  EXPECT_TRUE(table.getEntry("RESID", "4", "ATOMNAME", "CB", 2).empty());
  EXPECT_TRUE(table.getEntry("RESID", "4", "ATOMNAME", "CB", 0).empty());
  EXPECT_TRUE(table.getEntry("RESID", "4", "ATOMNAME", "HA", 1).empty());
  // The same search with the columns in the other order.
  EXPECT_EQ(table.getEntry("ATOMNAME", "CB", "RESID", "4", 1).at("SHIFT"), "50");
  // The fifth row with CA: rows 1 to 4, then 6.
  EXPECT_EQ(table.getEntry("ATOMNAME", "CA", "ATOMNAME", "CA", 5).at("SHIFT"), "60");
}

TEST_P(TableSearch, TakesACellThatARowLacksAsEmptyText) {
  EXPECT_EQ(table.getEntry("NOSUCH", "", 1).at("RESID"), "1");
  EXPECT_EQ(table.getEntry("NOSUCH", "", rows()).at("RESID"), last());
  EXPECT_TRUE(table.getEntry("NOSUCH", "", rows() + 1).empty());
  EXPECT_TRUE(table.getEntry("NOSUCH", "x", 1).empty());
  EXPECT_EQ(table.getEntry("RESID", "6", "NOSUCH", "", 1).at("SHIFT"), "60");
}

TEST_P(TableSearch, SeesACellChangedAfterASearch) {
  ASSERT_EQ(shiftOf(table, "5"), "50");
  table.setEntry(5, "RESID", "5b");
  EXPECT_EQ(shiftOf(table, "5"), "");
  EXPECT_EQ(shiftOf(table, "5b"), "50");
  table.setEntry(5, "RESID", "5");
  EXPECT_EQ(shiftOf(table, "5"), "50");
  EXPECT_EQ(shiftOf(table, "5b"), "");
}

TEST_P(TableSearch, SeesARowAddedAfterASearch) {
  ASSERT_EQ(shiftOf(table, "new"), "");
  table.addEntry("RESID", "new");
  table.setEntry(table.getEntryCount(), "SHIFT", "1.5");
  EXPECT_EQ(shiftOf(table, "new"), "1.5");
}

TEST_P(TableSearch, SeesARowAddedThroughTheRowsThemselves) {
  ASSERT_EQ(shiftOf(table, "new"), "");
  const int number = rows() + 1;
  table.entries[number]["RESID"] = "new";
  table.entries[number]["SHIFT"] = "1.5";
  EXPECT_EQ(shiftOf(table, "new"), "1.5");
}

TEST_P(TableSearch, SeesAnEarlierRowSetAfterASearch) {
  ASSERT_EQ(shiftOf(table, "7"), "70");
  table.setEntry(-4, "RESID", "7");
  table.setEntry(-4, "SHIFT", "first");
  EXPECT_EQ(shiftOf(table, "7"), "first");
  EXPECT_EQ(table.getEntry("RESID", "7", 2).at("SHIFT"), "70");
}

TEST_P(TableSearch, SeesTheEmptyRowThatARowNumberInserts) {
  ASSERT_TRUE(table.getEntry("RESID", "", 1).empty());
  const int other = 1000;
  table.setEntry(other, "RESID", "seen");
  ASSERT_EQ(table.getEntry("RESID", "seen", 1).size(), 1U);
  table.getEntry(other + 1);
  // The inserted row is empty, and an empty row has an empty RESID: two rows tell the two apart.
  table.setEntry(other + 2, "SHIFT", "behind");
  EXPECT_TRUE(table.getEntry("RESID", "", 1).empty());
  EXPECT_EQ(table.getEntry("RESID", "", 2).at("SHIFT"), "behind");
}

TEST_P(TableSearch, FindsNothingAfterNewColumns) {
  ASSERT_EQ(shiftOf(table, "5"), "50");
  table.VARS_str_parser("RESID ATOMNAME SHIFT");
  EXPECT_TRUE(table.getEntry("RESID", "5", 1).empty());
  EXPECT_EQ(table.getEntryCount(), 0);
}

TEST_P(TableSearch, FindsNothingAfterNewFormats) {
  ASSERT_EQ(shiftOf(table, "5"), "50");
  table.FORMAT_str_parser("%d");
  EXPECT_TRUE(table.getEntry("RESID", "5", 1).empty());
}

TEST_P(TableSearch, FindsTheNewRowsAfterNewColumns) {
  ASSERT_EQ(shiftOf(table, last()), last() + "0");
  table.VARS_str_parser("RESID SHIFT");
  for (int i = 1; i <= rows(); ++i)
    addRow(table, {{"RESID", "n" + std::to_string(i)}, {"SHIFT", std::to_string(i)}});
  EXPECT_EQ(shiftOf(table, last()), "");
  EXPECT_EQ(shiftOf(table, "n" + last()), last());
}

TEST_P(TableSearch, FindsTheNewRowsAfterALoad) {
  const TempDir dir;
  ASSERT_EQ(shiftOf(table, "1"), "10");
  // As many rows as before, residues one higher, same shifts.
  std::string text = "VARS RESID ATOMNAME SHIFT\nFORMAT %d %s %f\n";
  for (int i = 1; i <= rows(); ++i) text += std::to_string(i + 1) + " CA " + std::to_string(i * 10) + "\n";
  table.loadGDB(dir.write("next.tab", text));
  EXPECT_EQ(shiftOf(table, "1"), "");
  EXPECT_EQ(shiftOf(table, "2"), "10");
  EXPECT_EQ(shiftOf(table, std::to_string(rows() + 1)), last() + "0");
}

TEST_P(TableSearch, FindsTheRowsOfAFile) {
  const GDB read = support::tableOf(numberedFile(rows()));
  for (int i = 1; i <= rows(); ++i) EXPECT_EQ(shiftOf(read, std::to_string(i)), std::to_string(i * 10));
}

TEST_P(TableSearch, KeepsACopyAndItsOriginalApart) {
  ASSERT_EQ(shiftOf(table, "5"), "50");
  GDB copy(table);
  table.setEntry(5, "RESID", "changed");
  EXPECT_EQ(shiftOf(copy, "5"), "50");
  EXPECT_EQ(shiftOf(table, "5"), "");
  copy.setEntry(6, "RESID", "other");
  EXPECT_EQ(shiftOf(table, "6"), "60");
  EXPECT_EQ(shiftOf(copy, "other"), "60");
}

TEST_P(TableSearch, SeesTheRowsOfAnAssignedTable) {
  GDB target = numberedTable(rows());
  target.setEntry(1, "RESID", "old");
  ASSERT_EQ(shiftOf(target, "old"), "10");
  target = table;
  EXPECT_EQ(shiftOf(target, "old"), "");
  EXPECT_EQ(shiftOf(target, "1"), "10");
}

TEST_P(TableSearch, SeesTheRowsOfAMovedTable) {
  GDB target = numberedTable(rows());
  target.setEntry(1, "RESID", "old");
  ASSERT_EQ(shiftOf(target, "old"), "10");
  ASSERT_EQ(shiftOf(table, "1"), "10");
  target = std::move(table);
  EXPECT_EQ(shiftOf(target, "old"), "");
  EXPECT_EQ(shiftOf(target, "1"), "10");
  const GDB built(std::move(target));
  EXPECT_EQ(shiftOf(built, last()), last() + "0");
}

TEST_P(TableSearch, NeverGoesStaleInARandomSequenceOfChangesAndSearches) {
  std::mt19937 random(20091102);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int step = 0; step < 400; ++step) {
    // A few values, so that many rows share one.
    if (below(2) == 0) {
      table.setEntry(1 + below(rows() + 3), "RESID", std::to_string(below(9)));
      table.setEntry(1 + below(rows() + 3), "ATOMNAME", below(2) ? "CA" : "CB");
    }
    const std::string resid = std::to_string(below(9));
    const std::string atom = below(2) ? "CA" : "CB";
    const int wanted = 1 + below(4);
    GDB::Row expected;
    int seen = 0;
    for (const auto& [number, row] : table.entries) {
      const bool matches = row.count("RESID") && row.at("RESID") == resid && row.count("ATOMNAME") &&
                           row.at("ATOMNAME") == atom;
      if (matches && ++seen == wanted) expected = row;
    }
    ASSERT_EQ(table.getEntry("RESID", resid, "ATOMNAME", atom, wanted), expected) << "step " << step;
  }
}

TEST(TableSearchOfEmpty, FindsNothing) {
  const GDB table;
  EXPECT_TRUE(table.getEntry("RESID", "1", 1).empty());
  EXPECT_TRUE(table.getEntry("RESID", "", 1).empty());
  EXPECT_TRUE(table.getEntry("RESID", "1", "ATOMNAME", "CA", 1).empty());
}

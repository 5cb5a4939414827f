// A row and the rows of a table: used like ordered maps, whatever they are kept in.
#include <memory>       // for std::make_shared
#include <random>       // for std::mt19937
#include <stdexcept>    // for std::out_of_range
#include <string_view>  // for std::string_view
#include <vector>       // for std::vector

#include "support.h"

namespace {

Row::Map mapOf(const Row& row) {
  return row;
}

// Two rows that share their columns, as those of a file do.
std::vector<Row> rowsOfOneFile() {
  const auto columns = std::make_shared<Row::Names>(Row::Names{"ATOMNAME", "RESID", "SHIFT"});
  return {Row(columns, std::vector<std::string_view>{"CA", "1", "52.5"}),
          Row(columns, std::vector<std::string_view>{"CB", "2", "19"})};
}

}  // namespace

// --- One row ------------------------------------------------------------------------------------

TEST(RowTest, StartsEmpty) {
  const Row row;
  EXPECT_TRUE(row.empty());
  EXPECT_EQ(row.size(), 0U);
  EXPECT_EQ(row.count("RESID"), 0U);
  EXPECT_EQ(row.find("RESID"), row.end());
  EXPECT_TRUE(row.begin() == row.end());
  EXPECT_EQ(mapOf(row), Row::Map());
}

TEST(RowTest, CellsStandInTheOrderOfTheirNames) {
  Row row;
  row["SHIFT"] = "52.5";
  row["ATOMNAME"] = "CA";
  row["RESID"] = "1";
  row["ATOMNAME"] = "CB";
  std::string seen;
  for (const auto& [name, text] : row) seen += name + "=" + text + " ";
  EXPECT_EQ(seen, "ATOMNAME=CB RESID=1 SHIFT=52.5 ");
}

TEST(RowTest, CellThatIsMissingThrowsOrIsMadeEmpty) {
  Row row{{"RESID", "1"}};
  EXPECT_THROW(row.at("SHIFT"), std::out_of_range);
  EXPECT_EQ(row["SHIFT"], "");
  EXPECT_EQ(row.count("SHIFT"), 1U);
  EXPECT_EQ(row.at("SHIFT"), "");
}

TEST(RowTest, ConvertsToAndFromAMap) {
  const Row::Map cells = {{"RESID", "1"}, {"ATOMNAME", "CA"}, {"", "no name"}};
  const Row row(cells);
  EXPECT_EQ(mapOf(row), cells);
  EXPECT_EQ(row, Row(cells));
}

TEST(RowTest, NewCellOfARowLeavesTheOtherRowsOfTheFile) {
  std::vector<Row> rows = rowsOfOneFile();
  rows[0]["NOTE"] = "strong";
  EXPECT_EQ(mapOf(rows[0]),
            (Row::Map{{"ATOMNAME", "CA"}, {"NOTE", "strong"}, {"RESID", "1"}, {"SHIFT", "52.5"}}));
  EXPECT_EQ(mapOf(rows[1]), (Row::Map{{"ATOMNAME", "CB"}, {"RESID", "2"}, {"SHIFT", "19"}}));
}

TEST(RowTest, CopyIsApartFromItsOriginal) {
  const std::vector<Row> rows = rowsOfOneFile();
  Row copy = rows[0];
  copy["SHIFT"] = "0";
  copy["A"] = "first";
  EXPECT_EQ(rows[0].at("SHIFT"), "52.5");
  EXPECT_EQ(rows[0].count("A"), 0U);
  EXPECT_EQ(copy.at("RESID"), "1");
}

TEST(RowTest, RowsAreEqualByTheirCellsWhereverTheirNamesAreKept) {
  const std::vector<Row> rows = rowsOfOneFile();
  EXPECT_EQ(rows[0], (Row{{"RESID", "1"}, {"ATOMNAME", "CA"}, {"SHIFT", "52.5"}}));
  EXPECT_NE(rows[0], rows[1]);
  EXPECT_NE(rows[0], (Row{{"RESID", "1"}, {"ATOMNAME", "CA"}, {"PPM", "52.5"}}));
  EXPECT_NE(rows[0], Row());
  EXPECT_EQ(Row(), Row());
}

TEST(RowTest, MovedRowKeepsItsCells) {
  Row row{{"RESID", "1"}};
  const Row moved = std::move(row);
  EXPECT_EQ(mapOf(moved), (Row::Map{{"RESID", "1"}}));
}

TEST(RowTest, ColumnReadsRowsOfSeveralFilesInTurn) {
  const std::vector<Row> rows = rowsOfOneFile();
  const Row other{{"A", "a"}, {"B", "b"}, {"C", "c"}, {"D", "d"}, {"SHIFT", "8"}};
  const Row lacking{{"RESID", "9"}};
  Row::Column column("SHIFT");
  EXPECT_EQ(column.of(Row()), "");
  EXPECT_EQ(column.of(rows[0]), "52.5");
  EXPECT_EQ(column.of(rows[1]), "19");
  EXPECT_EQ(column.of(other), "8");
  EXPECT_EQ(column.of(lacking), "");
  EXPECT_EQ(column.of(Row()), "");
  EXPECT_EQ(column.of(rows[0]), "52.5");
}

TEST(RowTest, BehavesAsAMapInARandomSequenceOfChanges) {
  std::mt19937 random(7);
  const auto below = [&](unsigned n) { return random() % n; };
  std::vector<Row> rows(4);
  std::vector<Row::Map> maps(4);
  for (int step = 0; step < 2000; ++step) {
    const std::size_t i = below(4);
    const std::string name(1, static_cast<char>('A' + below(12)));
    if (below(8) == 0) {
      const std::size_t from = below(4);
      rows[i] = rows[from];
      maps[i] = maps[from];
    } else if (below(20) == 0) {
      rows[i] = Row();
      maps[i].clear();
    } else {
      rows[i][name] = maps[i][name] = std::to_string(step);
    }
    for (std::size_t k = 0; k < 4; ++k) ASSERT_EQ(mapOf(rows[k]), maps[k]) << "step " << step;
    ASSERT_EQ(rows[i].count(name), maps[i].count(name));
    ASSERT_EQ(rows[0] == rows[1], maps[0] == maps[1]);
  }
}

// --- The rows of a table ------------------------------------------------------------------------

TEST(RowsTest, AbsentRowThrowsOrIsMadeEmpty) {
  Rows rows;
  EXPECT_TRUE(rows.empty());
  EXPECT_THROW(rows.at(1), std::out_of_range);
  EXPECT_TRUE(rows[1].empty());
  EXPECT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows.count(1), 1U);
  EXPECT_TRUE(rows.find(2) == rows.end());
}

TEST(RowsTest, NumbersMayBeTheGreatestAndSmallest) {
  Rows rows;
  for (const int number : {2147483647, -2147483647 - 1, 0, -1}) rows[number]["N"] = std::to_string(number);
  std::string seen;
  for (const auto& [number, row] : rows) seen += row.at("N") + " ";
  EXPECT_EQ(seen, "-2147483648 -1 0 2147483647 ");
  EXPECT_EQ(rows.lower_bound(1)->first, 2147483647);
  EXPECT_EQ(rows.count(-2147483647), 0U);
}

TEST(RowsTest, BehaveAsAMapInARandomSequenceOfChanges) {
  std::mt19937 random(11);
  const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
  for (const int start : {1, -30, 1000}) {
    Rows rows;
    support::PlainRows plain;
    for (int step = 0; step < 800; ++step) {
      const int number = start + below(60);
      switch (below(6)) {
        case 0:
          ASSERT_EQ(rows.erase(number), plain.erase(number));
          break;
        case 1: {
          const int next = plain.empty() ? start : plain.rbegin()->first + 1;
          rows.append(next, Row{{"S", std::to_string(step)}});
          plain[next] = {{"S", std::to_string(step)}};
          break;
        }
        default:
          rows[number]["S"] = plain[number]["S"] = std::to_string(step);
      }
      ASSERT_EQ(rows.size(), plain.size());
      ASSERT_EQ(rows.count(number), plain.count(number));
      const auto at = rows.lower_bound(number);
      const auto expected = plain.lower_bound(number);
      ASSERT_EQ(at == rows.end(), expected == plain.end());
      if (expected != plain.end()) {
        ASSERT_EQ(at->first, expected->first);
      }
      if (step % 8 != 0) continue;
      support::PlainRows seen;
      for (const auto& [key, row] : rows) seen[key] = row;
      ASSERT_EQ(seen, plain) << "step " << step;
    }
  }
}

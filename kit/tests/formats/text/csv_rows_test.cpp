// Rows of tables, by separators and by place.
#include "formats/text/csv_rows.h"

#include <gtest/gtest.h>

namespace {

using Cells = std::vector<std::string>;

std::vector<zorvela::CsvRow> rowsOf(const std::string& text) {
  std::size_t pos = 0;
  std::size_t line = 0;
  const auto header = zorvela::nextFilledLine(text, pos, line);
  auto layout = zorvela::layoutOf(header.value(), text, pos, line);
  zorvela::findPlaces(text, layout.value());
  std::vector<zorvela::CsvRow> rows;
  zorvela::forEachRow(text, *layout, [&](const zorvela::CsvRow& row) { rows.push_back(row); });
  return rows;
}

TEST(CsvRows, OneCellForEachColumn) {
  const auto rows = rowsOf("a,b,c\n1,2,3\n# comment\n\n1,2\n1,2,3,4\n1,2,3,,\n,,\n1,\"2,3\n");
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_EQ(rows[0].cells, (Cells{"1", "2", "3"}));
  EXPECT_EQ(rows[0].line, 2U);
  EXPECT_EQ(rows[1].fault, "2 cells for 3 columns");
  EXPECT_EQ(rows[1].line, 5U);
  EXPECT_EQ(rows[2].fault, "more than 3 cells for 3 columns");
  EXPECT_EQ(rows[3].cells, (Cells{"1", "2", "3"}));  // a spreadsheet's empty columns
  EXPECT_EQ(rows[4].fault, "a double quote is not closed");
  EXPECT_EQ(rowsOf("a,b,c\n,,\n, ,\t,,\n,\n").at(0).line, 4U);  // too few cells, though empty ones
}

TEST(CsvRows, CellsThatStandAnywhereAreReadInTurn) {
  const auto rows = rowsOf("resid resname atom shift\n5 ALA CA 52.4\n6 PRO CA 63.0\n7 GLY\n");
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0].cells, (Cells{"5", "ALA", "CA", "52.4"}));
  EXPECT_EQ(rows[2].fault, "2 cells for 4 columns");
}

TEST(CsvRows, MarkOrNameOfTheFirstColumn) {
  EXPECT_EQ(rowsOf("# a b\n1 2\n").at(0).cells, (Cells{"1", "2"}));
  EXPECT_EQ(rowsOf("# a b\n1 2 3\n").at(0).cells, (Cells{"1", "2", "3"}));
  EXPECT_EQ(rowsOf("#,a\n1,2\n").at(0).cells, (Cells{"1", "2"}));
  EXPECT_EQ(rowsOf("#a,b\n1,2\n").at(0).cells, (Cells{"1", "2"}));
}

}  // namespace

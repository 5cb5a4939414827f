// Rows of tables, by separators and by place.
#include "formats/text/csv_rows.h"

#include <gtest/gtest.h>

namespace {

using Cells = std::vector<std::string>;

std::vector<zorvela::CsvRow> rowsOf(const std::string& text) {
  std::size_t pos = 0;
  std::size_t line = 0;
  const auto header = zorvela::nextFilledLine(text, pos, line);
  auto layout = zorvela::layoutOf(header.value(), std::string_view(text).substr(pos), line);
  zorvela::findPlaces(layout.value());
  std::vector<zorvela::CsvRow> rows;
  zorvela::forEachRow(*layout, [&](const zorvela::CsvRow& row) { rows.push_back(row); });
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

TEST(CsvRows, QuotedCellsOverSeveralLines) {
  const std::string joined = zorvela::withQuotedLinesJoined(
      "\"a\n(ppm)\",b\n1,\"x\r\ny \"\"z\"\" \r\n\"\n3,4\n5,HA\"\n\"6,7\n8,\"9\"\n");
  const auto rows = rowsOf(joined);
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_EQ(rows[0].cells, (Cells{"1", "x \vy \"z\""}));
  EXPECT_EQ(rows[0].line, 3U);
  EXPECT_EQ(rows[1].cells, (Cells{"3", "4"}));
  EXPECT_EQ(rows[1].line, 6U);
  EXPECT_EQ(rows[2].cells, (Cells{"5", "HA\""}));
  EXPECT_EQ(rows[3].fault, "a double quote is not closed");  // none of two lines, as no cell ends at its end
  EXPECT_EQ(rows[4].cells, (Cells{"8", "9"}));
  EXPECT_EQ(rows[4].line, 9U);
}

TEST(CsvRows, PrintedDataFrames) {
  const auto rows = rowsOf("   a   b\n0  1 2\n1  3 4\n");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[1].cells, (Cells{"1", "3", "4"}));
  EXPECT_EQ(rowsOf("a b\n1 1 2\n2 3 4\n").at(0).fault, "more than 2 cells for 2 columns");
}

TEST(CsvRows, TailsInBrackets) {
  EXPECT_EQ(rowsOf("a b\n1 2 (from 12.HSQC)\n").at(0).cells, (Cells{"1", "2"}));
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

// Rows of tables, by separators and by place.
#include "formats/text/csv_rows.h"

#include <gtest/gtest.h>

namespace {

/// Returns all rows as "2: 1|2|3; 5: 2 cells for 3 columns": line, then cells or fault.
std::string rowsOf(const std::string& text) {
  std::size_t pos = 0;
  std::size_t line = 0;
  const auto header = zorvela::nextFilledLine(text, pos, line);
  auto layout = zorvela::layoutOf(header.value(), std::string_view(text).substr(pos), line);
  zorvela::findPlaces(layout.value());
  std::string rows;
  zorvela::forEachRow(*layout, [&](const zorvela::CsvRow& row) {
    rows += (rows.empty() ? "" : "; ") + std::to_string(row.line) + ": " + row.fault;
    if (!row.fault.empty()) return;
    for (const std::string& cell : row.cells) rows += (&cell == &row.cells.front() ? "" : "|") + cell;
  });
  return rows;
}

TEST(CsvRows, OneCellForEachColumn) {
  // The empty columns after the last are a spreadsheet's.
  EXPECT_EQ(rowsOf("a,b,c\n1,2,3\n# comment\n\n1,2\n1,2,3,4\n1,2,3,,\n,,\n1,\"2,3\n"),
            "2: 1|2|3; 5: 2 cells for 3 columns; 6: more than 3 cells for 3 columns; 7: 1|2|3; "
            "9: a double quote is not closed");
  EXPECT_EQ(rowsOf("a,b,c\n,,\n, ,\t,,\n,\n"), "4: 2 cells for 3 columns");  // though empty ones
  // Cells that are anywhere are read in turn.
  EXPECT_EQ(rowsOf("resid resname atom shift\n5 ALA CA 52.4\n6 PRO CA 63.0\n7 GLY\n"),
            "2: 5|ALA|CA|52.4; 3: 6|PRO|CA|63.0; 4: 2 cells for 4 columns");
  EXPECT_EQ(rowsOf("a b\n1 2 (from 12.HSQC)\n"), "2: 1|2");
}

TEST(CsvRows, QuotedCellsOverSeveralLines) {
  // The quote that opens line 8 has no end: those of line 9 are of another cell.
  EXPECT_EQ(rowsOf(zorvela::withQuotedLinesJoined(
                "\"a\n(ppm)\",b\n1,\"x\r\ny \"\"z\"\" \r\n\"\n3,4\n5,HA\"\n\"6,7\n8,\"9\"\n")),
            "3: 1|x \vy \"z\"; 6: 3|4; 7: 5|HA\"; 8: a double quote is not closed; 9: 8|9");
}

TEST(CsvRows, CountOfPrintedDataFrames) {
  EXPECT_EQ(rowsOf("   a   b\n0  1 2\n1  3 4\n"), "2: 0|1|2; 3: 1|3|4");
  EXPECT_EQ(rowsOf("a b\n1 1 2\n2 3 4\n"),
            "2: more than 2 cells for 2 columns; 3: more than 2 cells for 2 columns");
}

TEST(CsvRows, MarkOrNameOfTheFirstColumn) {
  EXPECT_EQ(rowsOf("# a b\n1 2\n"), "2: 1|2");
  EXPECT_EQ(rowsOf("# a b\n1 2 3\n"), "2: 1|2|3");
  EXPECT_EQ(rowsOf("#,a\n1,2\n"), "2: 1|2");
  EXPECT_EQ(rowsOf("#a,b\n1,2\n"), "2: 1|2");
}

}  // namespace

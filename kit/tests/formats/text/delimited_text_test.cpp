// Cells of a line of text.
#include "formats/text/delimited_text.h"

#include <gtest/gtest.h>

namespace {

using Cells = std::vector<std::string>;
using zorvela::Separator;
using zorvela::splitCells;

TEST(DelimitedText, TellsTheSeparator) {
  EXPECT_EQ(zorvela::separatorOf("a|b,c\td"), Separator::bar);
  EXPECT_EQ(zorvela::separatorOf("a,b;c\td"), Separator::tab);
  EXPECT_EQ(zorvela::separatorOf("a,b;c"), Separator::semicolon);
  EXPECT_EQ(zorvela::separatorOf("a,b c"), Separator::comma);
  EXPECT_EQ(zorvela::separatorOf("a b c"), Separator::blank);
}

TEST(DelimitedText, CutsCells) {
  EXPECT_EQ(splitCells("a, b ,,d,", Separator::comma), (Cells{"a", "b", "", "d", ""}));
  EXPECT_EQ(splitCells("\ta\t\tb", Separator::tab), (Cells{"", "a", "", "b"}));
  EXPECT_EQ(splitCells("  a  \t b c  ", Separator::blank), (Cells{"a", "b", "c"}));
  EXPECT_EQ(splitCells("a;8,25", Separator::semicolon), (Cells{"a", "8,25"}));
  EXPECT_EQ(splitCells("", Separator::comma), (Cells{""}));
  EXPECT_EQ(splitCells("", Separator::blank), Cells{});
}

TEST(DelimitedText, CellsMayBeQuoted) {
  EXPECT_EQ(splitCells("\"a,b\",\"c \"\"d\"\"\", \" e \"", Separator::comma), (Cells{"a,b", "c \"d\"", "e"}));
  EXPECT_EQ(splitCells("\"a b\" c", Separator::blank), (Cells{"a b", "c"}));
  EXPECT_EQ(splitCells("5\",b", Separator::comma), (Cells{"5\"", "b"}));  // inches, not quotes
  EXPECT_EQ(splitCells("\"a,b", Separator::comma), std::nullopt);
}

TEST(DelimitedText, BarsMayStandAtBothEnds) {
  EXPECT_EQ(splitCells("| a | |b|", Separator::bar), (Cells{"a", "", "b"}));
  EXPECT_EQ(splitCells("a | b", Separator::bar), (Cells{"a", "b"}));
}

TEST(DelimitedText, CutsNoMoreThanAskedFor) {
  EXPECT_EQ(splitCells("a,b,c,\"d", Separator::comma, 2), (Cells{"a", "b", "c,\"d"}));
  EXPECT_EQ(splitCells("a b", Separator::blank, 2), (Cells{"a", "b"}));
}

TEST(DelimitedText, PlacesAreInCharacters) {
  const auto cells = zorvela::placedCells(" Cα  8.1", Separator::blank);
  ASSERT_TRUE(cells);
  ASSERT_EQ(cells->size(), 2U);
  EXPECT_EQ(cells->at(0).text, "Cα");
  EXPECT_EQ(cells->at(0).start, 1U);
  EXPECT_EQ(cells->at(0).end, 3U);
  EXPECT_EQ(cells->at(1).start, 5U);
  EXPECT_EQ(cells->at(1).end, 8U);
  EXPECT_EQ(zorvela::placedCells("a \"b", Separator::blank), std::nullopt);
}

}  // namespace

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

TEST(DelimitedText, BarsMayBeAtBothEnds) {
  EXPECT_EQ(splitCells("| a | |b|", Separator::bar), (Cells{"a", "", "b"}));
  EXPECT_EQ(splitCells("a | b", Separator::bar), (Cells{"a", "b"}));
}

TEST(DelimitedText, CutsNoMoreThanAskedFor) {
  EXPECT_EQ(splitCells("a,b,c,\"d", Separator::comma, 2), (Cells{"a", "b", "c,\"d"}));
  EXPECT_EQ(splitCells("a b", Separator::blank, 2), (Cells{"a", "b"}));
}

TEST(DelimitedText, PlacesAreInCharacters) {
  const auto cells = zorvela::placedCells(" Cα  8.1", Separator::blank).value();
  ASSERT_EQ(cells.size(), 2U);
  EXPECT_EQ(cells[0].text, "Cα");
  EXPECT_EQ(cells[0].start, 1U);
  EXPECT_EQ(cells[0].end, 3U);
  EXPECT_EQ(cells[1].start, 5U);
  EXPECT_EQ(cells[1].end, 8U);
}

TEST(DelimitedText, ALineWithAnOpenQuoteIsOneWord) {
  EXPECT_EQ(zorvela::wordsOf("a \"b c\"  d"), (Cells{"a", "b c", "d"}));
  EXPECT_EQ(zorvela::wordsOf("a \"b"), (Cells{"a \"b"}));
}

}  // namespace

// The small text helpers, one test per rule.
#include "util/text.h"

#include <gtest/gtest.h>

namespace {

using zorvela::toDecimal;
using zorvela::toInteger;

TEST(Text, NumbersAreReadWholeOrNotAtAll) {
  EXPECT_EQ(toInteger("12"), 12);
  EXPECT_EQ(toInteger("-3"), -3);
  EXPECT_EQ(toInteger("+007"), 7);
  EXPECT_EQ(toInteger("2147483647"), 2147483647);
  EXPECT_EQ(toInteger("2147483648"), std::nullopt);
  EXPECT_EQ(toInteger("12A"), std::nullopt);
  EXPECT_EQ(toInteger("-"), std::nullopt);
  EXPECT_EQ(toInteger(""), std::nullopt);
}

TEST(Text, ShiftsStayAsTheFileWritesThem) {
  EXPECT_EQ(toDecimal("8.25"), "8.25");
  EXPECT_EQ(toDecimal("+8.250"), "8.250");
  EXPECT_EQ(toDecimal("-.5"), "-.5");
  EXPECT_EQ(toDecimal("120"), "120");
}

TEST(Text, ExponentsAndEndlessDigitsBecomePlainNumbers) {
  EXPECT_EQ(toDecimal("5.51e1"), "55.100000");
  EXPECT_EQ(toDecimal("8.25000000000000000000000001"), "8.250000");
  EXPECT_EQ(toDecimal("0.000000000000000000000000000001"), "0.000000");
}

TEST(Text, WhatIsNoPlainShiftIsNone) {
  for (const char* text :
       {"", "-", ".", "abc", "8.2.5", "8,25", "8.25a", "0x10", "nan", "inf", "1e400", "1e10", "--1"})
    EXPECT_EQ(toDecimal(text), std::nullopt) << text;
}

TEST(Text, LinesEndInAnyOfTheThreeWays) {
  const std::string_view text = "a\r\nb\rc\n\nd";
  std::size_t pos = 0;
  std::vector<std::string> lines;
  while (const auto line = zorvela::nextLine(text, pos)) lines.emplace_back(*line);
  EXPECT_EQ(lines, (std::vector<std::string>{"a", "b", "c", "", "d"}));
}

TEST(Text, PrintableTextIsOneShortLine) {
  EXPECT_EQ(zorvela::printable("a\tb\nc\x01"), "a b c ");
  EXPECT_EQ(zorvela::printable("abcdef", 3), "abc...");
  EXPECT_EQ(zorvela::printable("ab\xC3\xBC", 3), "ab...");  // not half a letter
  EXPECT_EQ(zorvela::printable("abc", 3), "abc");
}

TEST(Text, ListsAreCutWithACount) {
  EXPECT_EQ(zorvela::enumerated({}), "");
  EXPECT_EQ(zorvela::enumerated({"5", "14", "30"}), "5, 14, 30");
  EXPECT_EQ(zorvela::enumerated({"5", "14", "30"}, 2), "5, 14 and 1 more");
  EXPECT_EQ(zorvela::counted(1, "shift", "shifts"), "1 shift");
  EXPECT_EQ(zorvela::counted(0, "shift", "shifts"), "0 shifts");
}

}  // namespace

// Text utilities of the table: splitting, white space, counting, numbers.
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "support.h"

namespace {

using Pieces = std::vector<std::string>;

// Every character that counts as white space, and one of each neighbour that does not.
const std::string kAllSpace = " \t\n\v\f\r";

std::string sectionOf(const std::string& text, int first, int last) {
  char out[64] = "untouched";
  char* returned = GDB::section(text, ',', out, first, last);
  EXPECT_EQ(returned, out) << "section gives back the caller's buffer";
  return out;
}

}  // namespace

TEST(TableText, IsDigitHoldsForZeroToNineOnly) {
  for (const char c : std::string("0123456789")) EXPECT_TRUE(GDB::isDigit(c)) << c;
  for (const char c : std::string("/:aA -.\0", 8)) EXPECT_FALSE(GDB::isDigit(c)) << c;
  EXPECT_FALSE(GDB::isDigit('\xB2')) << "a superscript two is not a digit";
}

TEST(TableText, IsSpaceHoldsForCodes9To13And32Only) {
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    EXPECT_EQ(GDB::isSpace(c), (code >= 9 && code <= 13) || code == 32) << code;
  }
}

TEST(TableText, SimplifyWhiteSpaceTrimsAndKeepsOneBlankForEachInnerRun) {
  EXPECT_EQ(GDB::simplifyWhiteSpace("  my \t\n file.tab \r"), "my file.tab");
  EXPECT_EQ(GDB::simplifyWhiteSpace("a" + kAllSpace + "b"), "a b");
  EXPECT_EQ(GDB::simplifyWhiteSpace(kAllSpace), "");
  EXPECT_EQ(GDB::simplifyWhiteSpace(""), "");
}

TEST(TableText, SplitDropsEmptyPieces) {
  EXPECT_EQ(GDB::split(" -", " -in a.tab -noclip"), (Pieces{"in a.tab", "noclip"}));
  EXPECT_EQ(GDB::split(" -", "a-b - c"), (Pieces{"a-b", " c"}));
  EXPECT_EQ(GDB::split(',', ",,a,,b,"), (Pieces{"a", "b"}));
  EXPECT_EQ(GDB::split("ab", "ababXabab"), Pieces{"X"});
  EXPECT_EQ(GDB::split("aa", "aaa"), Pieces{"a"}) << "from left to right";
  EXPECT_EQ(GDB::split(',', ",,,"), Pieces{});
  EXPECT_EQ(GDB::split(',', "abc"), Pieces{"abc"});
  EXPECT_EQ(GDB::split(',', ""), Pieces{});
}

TEST(TableText, SplitWhiteSpaceYieldsTheRunsOfOtherCharacters) {
  EXPECT_EQ(GDB::split_WhiteSpace("  1 M\tCA\r\n 56.5 "), (Pieces{"1", "M", "CA", "56.5"}));
  EXPECT_EQ(GDB::split_WhiteSpace(kAllSpace), Pieces{});
  EXPECT_EQ(GDB::split_WhiteSpace(""), Pieces{""}) << "one empty piece";
}

TEST(TableText, ContainsCountsOccurrencesThatMayOverlap) {
  EXPECT_EQ(GDB::contains("%4d %1s", '%'), 2);
  EXPECT_EQ(GDB::contains("", 'f'), 0);
  EXPECT_EQ(GDB::contains("AAA", std::string("AA")), 2);
  EXPECT_EQ(GDB::contains("AB", std::string("ABC")), 0);
}

TEST(TableText, SectionJoinsTheFieldsFromFirstToLast) {
  EXPECT_EQ(sectionOf("a,b,c,d", 1, 2), "b,c");
  EXPECT_EQ(sectionOf("a,b,c,d", 3, 3), "d");
  EXPECT_EQ(sectionOf(",,a,,b,", 1, 1), "b") << "empty fields do not count";
  EXPECT_EQ(sectionOf("a,b", 0, 1), "a,b");
  EXPECT_EQ(sectionOf("a,b", 0, 2), "a,b,") << "a separator where there are fewer fields";
  EXPECT_EQ(sectionOf("a,b", 2, 5), "");
  EXPECT_EQ(sectionOf("a,b", 1, 0), "");
  EXPECT_EQ(sectionOf("", 0, 0), "");
  EXPECT_EQ(sectionOf("a,b,c", -2, 1), "a,b") << "a negative first is the first field";
}

TEST(TableText, IntegersAreReadInBase10FromTheLeadingPart) {
  for (const auto& [text, number] :
       std::map<std::string, int>{{"42", 42},
                                  {"  -7x", -7},
                                  {"007", 7},   // not octal
                                  {"0x10", 0},  // not hexadecimal
                                  {"3.9", 3},
                                  {"", 0},
                                  {"abc", 0},
                                  {"2147483647", INT_MAX},
                                  {"4294967297", 1}})  // the low 32 bits of 2^32 + 1
    EXPECT_EQ(GDB::toInt(text), number) << text;
  GDB::toInt(std::string(10000, '9'));
}

TEST(TableText, RealsAreReadToSinglePrecision) {
  // 0.1 in single precision is 13421773 / 2^27.
  EXPECT_EQ(GDB::toFloat("0.1"), 13421773.0F / 134217728.0F);
  EXPECT_EQ(GDB::toFloat("56.5xyz"), 56.5F);
  EXPECT_EQ(GDB::toFloat("-1.25e2"), -125.0F);
  for (const char* text : {"", "abc", "-"}) EXPECT_EQ(GDB::toFloat(text), 0.0F) << text;
}

// --- Numbers ------------------------------------------------------------------------------------

// Texts of digits, points and signs, and of other characters that a number may have.
TEST(TableText, ReadsNumbersAsStrtodAndStrtolDo) {
  const std::string usual = "0123456789.-";
  const std::string unusual = "0123456789..-+eExXnaif \t";
  std::mt19937_64 draw(7);
  for (int i = 0; i < 400000; ++i) {
    const std::string& letters = i % 3 == 0 ? unusual : usual;
    std::string text;
    for (std::size_t length = draw() % 20; text.size() < length;) text += letters[draw() % letters.size()];
    const double expected = std::strtod(text.c_str(), nullptr);
    const double read = GDB::toDouble(text);
    if (std::isnan(expected))
      ASSERT_TRUE(std::isnan(read)) << text;
    else
      ASSERT_EQ(std::memcmp(&read, &expected, sizeof read), 0) << text;
    ASSERT_EQ(GDB::toInt(text), static_cast<int>(std::strtol(text.c_str(), nullptr, 10))) << text;
  }
}

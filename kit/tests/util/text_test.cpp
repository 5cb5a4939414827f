// The small text helpers, one test per rule.
#include "util/text.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace {

using zorvela::toDecimal;
using zorvela::toInteger;

TEST(Text, NumbersAreReadWholeOrNotAtAll) {
  EXPECT_EQ(toInteger("12"), 12);
  EXPECT_EQ(toInteger("-3"), -3);
  EXPECT_EQ(toInteger("+007"), 7);
  EXPECT_EQ(toInteger("2147483647"), 2147483647);
  for (const char* text : {"2147483648", "-2147483648", "12A", "-", "+-3", "+", ""})
    EXPECT_EQ(toInteger(text), std::nullopt);
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

TEST(Text, NumbersThatATableCannotHoldAreNoShifts) {
  EXPECT_EQ(toDecimal("999999999999999"), "999999999999999");
  EXPECT_EQ(toDecimal("00000000000000000001.5"), "00000000000000000001.5");
  for (const char* text : {"10000000000000000", "-10000000000000000", "123456789012345678901234"})
    EXPECT_EQ(toDecimal(text), std::nullopt) << text;
}

TEST(Text, WhatIsNoPlainShiftIsNone) {
  for (const char* text :
       {"", "-", ".", "abc", "8.2.5", "8,25", "8.25a", "0x10", "nan", "inf", "1e400", "1e10", "--1"})
    EXPECT_EQ(toDecimal(text), std::nullopt) << text;
}

TEST(Text, StartsInEitherCase) {
  EXPECT_TRUE(zorvela::startsIgnoringCase("DATA_x", "data_"));
  EXPECT_TRUE(zorvela::startsIgnoringCase("data_", "DATA_"));
  EXPECT_TRUE(zorvela::startsIgnoringCase("", ""));
  EXPECT_FALSE(zorvela::startsIgnoringCase("data", "data_"));
  EXPECT_FALSE(zorvela::startsIgnoringCase("xdata_", "data_"));
}

TEST(Text, ABaseNameIsWhatComesAfterTheLastFolder) {
  EXPECT_EQ(zorvela::baseName("a/b/c.str"), "c.str");
  EXPECT_EQ(zorvela::baseName("c.str"), "c.str");
  EXPECT_EQ(zorvela::baseName("/c.str"), "c.str");
  EXPECT_EQ(zorvela::baseName("a/"), "");
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
  EXPECT_EQ(zorvela::printable("\xE2\x82\xAC\xE2\x82\xAC", 5), "\xE2\x82\xAC...");
  EXPECT_EQ(zorvela::printable("ab\xC2\x9B"), "ab ");
}

TEST(Text, ShownTextHasNothingThatATerminalObeys) {
  EXPECT_EQ(zorvela::shown("plain \xC3\xBC \xE2\x82\xAC \xF0\x9D\x9B\xBC"),
            "plain \xC3\xBC \xE2\x82\xAC \xF0\x9D\x9B\xBC");
  EXPECT_EQ(zorvela::shown("a\x1B[31mb\nc\td\x7F"), "a?[31mb?c?d?");
  EXPECT_EQ(zorvela::shown(std::string_view("a\0b", 3)), "a?b");
  for (const char* control : {"\xC2\x80", "\xC2\x9B", "\xC2\x9F"})  // U+0080, U+009B, U+009F
    EXPECT_EQ(zorvela::shown(control), "?");
  EXPECT_EQ(zorvela::shown("\xC2\xA0"), "\xC2\xA0");  // U+00A0, a blank
  for (const char* turn : {"\xD8\x9C", "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xAA", "\xE2\x80\xAE",
                           "\xE2\x81\xA6", "\xE2\x81\xA9", "\xE2\x80\xA8", "\xE2\x80\xA9"})
    EXPECT_EQ(zorvela::shown(turn), "?");
  EXPECT_EQ(zorvela::shownLines("a\nb\rc"), "a\nb?c");
}

TEST(Text, BytesThatAreNoUtf8AreReplaced) {
  const std::string bad = "\xEF\xBF\xBD";  // U+FFFD
  EXPECT_EQ(zorvela::shown("\x9B"), bad);  // C1 in one byte
  EXPECT_EQ(zorvela::shown("caf\xE9"), "caf" + bad);
  EXPECT_EQ(zorvela::shown("\xC3"), bad);                                // cut
  EXPECT_EQ(zorvela::shown("\xE2\x82"), bad + bad);                      // cut
  EXPECT_EQ(zorvela::shown("\xC0\x9B"), bad + bad);                      // too long for its code
  EXPECT_EQ(zorvela::shown("\xE0\x82\x9B"), bad + bad + bad);            // too long for U+009B
  EXPECT_EQ(zorvela::shown("\xF0\x82\x82\xAC"), bad + bad + bad + bad);  // too long
  EXPECT_EQ(zorvela::shown("\xED\xA0\x80"), bad + bad + bad);            // half of a pair
  EXPECT_EQ(zorvela::shown("\xF4\x90\x80\x80"), bad + bad + bad + bad);  // beyond U+10FFFF
  EXPECT_EQ(zorvela::shown("\xFFx"), bad + "x");
}

TEST(Text, CellsOfCsvAreQuotedWhereTheyMustBe) {
  EXPECT_EQ(zorvela::csvCell("plain"), "plain");
  EXPECT_EQ(zorvela::csvCell("a,b"), "\"a,b\"");
  EXPECT_EQ(zorvela::csvCell("x;=HYPERLINK(1);y"), "\"x;=HYPERLINK(1);y\"");
  EXPECT_EQ(zorvela::csvCell("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(zorvela::csvCell("a\nb"), "\"a\nb\"");
  EXPECT_EQ(zorvela::csvCell("a\x1B"), "a?");
}

TEST(Text, CellsThatAreFormulasAreMarked) {
  for (const char* formula : {"=1", "=A1", "+A1", "-A1", "-1-1", "--1", "@SUM", "-3AB", "+1+1"})
    EXPECT_EQ(zorvela::csvCell(formula), std::string("'") + formula);
  EXPECT_EQ(zorvela::csvCell("\tx"), "'?x");
  EXPECT_EQ(zorvela::csvCell("=1,2"), "\"'=1,2\"");
  for (const char* harmless : {"-", "=", "", "-3", "-3.5", "+2", "-3A", "a=b"})
    EXPECT_EQ(zorvela::csvCell(harmless), harmless);
}

TEST(Text, MarksOfFormulasAreTakenOffAgain) {
  EXPECT_EQ(zorvela::csvCell("'=x"), "''=x");
  for (const char* text : {"=x", "'=x", "''=x", "-3", "'", "'x", "", "@a", "+1+1", "a"})
    EXPECT_EQ(zorvela::withoutFormulaMark(zorvela::csvCell(text)), text);
}

TEST(Text, ListsAreCutWithACount) {
  EXPECT_EQ(zorvela::enumerated({}), "");
  EXPECT_EQ(zorvela::enumerated({"5", "14", "30"}), "5, 14, 30");
  EXPECT_EQ(zorvela::enumerated({"5", "14", "30"}, 2), "5, 14 and 1 more");
  EXPECT_EQ(zorvela::counted(1, "shift", "shifts"), "1 shift");
  EXPECT_EQ(zorvela::counted(0, "shift", "shifts"), "0 shifts");
}

}  // namespace

TEST(Checksum, IsTheOneOfGzip) {
  EXPECT_EQ(zorvela::crc32(0, "123456789"), 0xCBF43926U);
  EXPECT_EQ(zorvela::crc32(zorvela::crc32(0, "1234"), "56789"), 0xCBF43926U);
  const std::string text = "every table, \xff and \x80 too";
  EXPECT_EQ(zorvela::crc32(0, text),
            ::crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size())));
}

TEST(Shown, HasNoCharactersThatNobodySees) {
  for (const char* hidden : {"\u00AD", "\u200B", "\u2060", "\uFEFF", "\uFFF9", "\uFFFB", "\U000E0041",
                             "\xEF\xBF\xBE", "\xEF\xBF\xBF"})
    EXPECT_EQ(zorvela::shown(std::string("a") + hidden + "b"), "a?b");
  for (const char* seen : {"\u00E9", "\u200D", "\uFFFD", "\U0001F600"}) EXPECT_EQ(zorvela::shown(seen), seen);
}

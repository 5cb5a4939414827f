// Lines of loops with values missing or left over.
#include "formats/star/loop_lines.h"

#include <gtest/gtest.h>

namespace {

// Each value is a letter.
std::optional<zorvela::OddLine> oddOf(const std::string& text, std::size_t columns) {
  zorvela::LoopLines lines;
  std::size_t line = 1;
  for (const char c : text) {
    if (c == '\n') ++line;
    if (c >= 'a' && c <= 'z') lines.add(line);
  }
  return zorvela::firstOddLine(lines, columns);
}

void expectOdd(const std::string& text, std::size_t line, std::size_t values) {
  const auto odd = oddOf(text, 3);
  ASSERT_TRUE(odd.has_value()) << text;
  EXPECT_EQ(odd->number, line) << text;
  EXPECT_EQ(odd->values, values) << text;
}

TEST(LoopLines, WholeRowsAreNotOdd) {
  EXPECT_FALSE(oddOf("a b c\nd e f\n\ng h i\n", 3).has_value());
  EXPECT_FALSE(oddOf("a b c\nd e f g h i\nj k l\nm n o\n", 3).has_value());  // two rows on a line
  EXPECT_FALSE(oddOf("a b c\nd e\nf\ng h i\nj k l\nm n o", 3).has_value());  // a row on two lines
  EXPECT_FALSE(oddOf("", 3).has_value());
}

TEST(LoopLines, AValueMissingOrLeftOver) {
  expectOdd("a b c\nd e\ng h i\nj k l\n", 2, 2);
  expectOdd("\na b c\nd e f x\ng h i\n", 3, 4);
  expectOdd("a b c\nd e f\ng h", 3, 2);                    // at the end
  expectOdd("a b c\nd e\ng h i\nj k l m\nn o p\n", 2, 2);  // the one makes up for the other
  expectOdd("a b c\nd e\ng h i x\nj k l\nm n o\n", 2, 2);
  expectOdd("a b c d e f\na b c d e\na b c d e f\n", 2, 5);  // two rows on each line
}

TEST(LoopLines, WhereRowsRunOnTheLinesSayNothing) {
  EXPECT_FALSE(oddOf("a b c d\ne f\ng h i j k", 3).has_value());
  EXPECT_FALSE(oddOf("a\nb\nc\nd\n", 3).has_value());
}

}  // namespace

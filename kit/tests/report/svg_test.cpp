// Text and numbers as they stand in a page.
#include "report/svg.h"

#include <gtest/gtest.h>

TEST(Svg, MarkupIsEscaped) {
  EXPECT_EQ(zorvela::escaped("<a href=\"x\" b='y'>&"), "&lt;a href=&quot;x&quot; b=&#39;y&#39;&gt;&amp;");
}

TEST(Svg, ControlsAndTurnedTextAreMadeVisible) {
  EXPECT_EQ(zorvela::escaped("a\x1b[31m\n\x7f"), "a?[31m??");
  EXPECT_EQ(zorvela::escaped("a\u202eb\u2067c\u0085"), "a?b?c?");
}

TEST(Svg, Utf8Stays) {
  EXPECT_EQ(zorvela::escaped("Cα − β 🧬"), "Cα − β 🧬");
}

TEST(Svg, WhatIsNotUtf8IsReplacedByteByByte) {
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_EQ(zorvela::escaped("a\xff<"), "a" + mark + "&lt;");
  EXPECT_EQ(zorvela::escaped("\xc3"), mark);                        // cut short
  EXPECT_EQ(zorvela::escaped("\xc0\xbc"), mark + mark);             // "<" in two bytes
  EXPECT_EQ(zorvela::escaped("\xe0\x80\xbc"), mark + mark + mark);  // and in three
  EXPECT_EQ(zorvela::escaped("\xed\xa0\x80"), mark + mark + mark);  // a surrogate
  EXPECT_EQ(zorvela::escaped("\xf5\x80\x80\x80"), mark + mark + mark + mark);
}

TEST(Svg, LabelsAreCutBetweenCharacters) {
  EXPECT_EQ(zorvela::shortened("P117", 4), "P117");
  EXPECT_EQ(zorvela::shortened("P1117", 4), "P11…");
  EXPECT_EQ(zorvela::shortened("αβγδε", 3), "αβ…");
  EXPECT_EQ(zorvela::shortened("", 3), "");
}

TEST(Svg, NumbersForPeople) {
  EXPECT_EQ(zorvela::figureText(-0.04, 1), "0.0");
  EXPECT_EQ(zorvela::figureText(-1.25, 2), "−1.25");
  EXPECT_EQ(zorvela::signedFigure(0.04, 1), "0.0");
  EXPECT_EQ(zorvela::signedFigure(3, 1), "+3.0");
  EXPECT_EQ(zorvela::signedFigure(-3, 1), "−3.0");
  EXPECT_EQ(zorvela::coordinate(12.04), "12");
  EXPECT_EQ(zorvela::coordinate(-0.04), "0");
  EXPECT_EQ(zorvela::coordinate(12.36), "12.4");
}

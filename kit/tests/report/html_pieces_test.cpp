// Text and numbers as a page has them.
#include "report/html_pieces.h"

#include <gtest/gtest.h>

TEST(Svg, MarkupIsEscaped) {
  EXPECT_EQ(zorvela::escaped("<a href=\"x\" b='y'>&"), "&lt;a href=&quot;x&quot; b=&#39;y&#39;&gt;&amp;");
}

TEST(Svg, Utf8Stays) {
  EXPECT_EQ(zorvela::escaped("Cα − β 🧬"), "Cα − β 🧬");
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

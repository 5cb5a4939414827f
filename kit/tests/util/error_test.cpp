// The one line of an error: file, line, what is wrong, what to do.
#include "zorvela/error.h"

#include <gtest/gtest.h>

TEST(Error, NamesFileLineCauseAndRemedy) {
  EXPECT_STREQ(zorvela::Error("a.csv", 7, "no shift", "add one").what(), "a.csv:7: no shift; add one");
}

TEST(Error, WithoutALineOrARemedyLeavesThemOut) {
  EXPECT_STREQ(zorvela::Error("a.csv", 0, "is empty", "").what(), "a.csv: is empty");
}

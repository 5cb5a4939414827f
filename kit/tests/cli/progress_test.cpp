// Progress of long work.
#include "cli/progress.h"

#include <gtest/gtest.h>

TEST(Progress, SaysHowLongTheRestTakes) {
  EXPECT_EQ(zorvela::timeLeft(10, 1, 5), ", 40 s left");
  EXPECT_EQ(zorvela::timeLeft(60, 100, 1300), ", 12 min left");
  EXPECT_EQ(zorvela::timeLeft(3600, 1, 4), ", 3 h left");
  EXPECT_EQ(zorvela::timeLeft(5, 5, 5), "");
  EXPECT_EQ(zorvela::timeLeft(5, 0, 5), "");
}

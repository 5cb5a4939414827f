// Progress of long work.
#include "cli/progress.h"

#include <gtest/gtest.h>

TEST(Progress, IsSilentOffTheTerminal) {
  testing::internal::CaptureStderr();
  {
    zorvela::Progress progress("files", 2);
    progress.step();
    progress.step();
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

#include "protein/implausible_shifts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zorvela {
namespace {

TEST(PlausibleShifts, OtherAtomsHaveNoRange) {
  EXPECT_TRUE(isPlausible('K', "CE", 500.0));
}

}  // namespace
}  // namespace zorvela

// From a probability to a word.
#include "zorvela/calls.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using zorvela::Call;

TEST(Call, TurnsAtTheThresholds) {
  EXPECT_EQ(zorvela::callOf(1.0F), Call::cis);
  EXPECT_EQ(zorvela::callOf(zorvela::kCisFrom), Call::cis);
  EXPECT_EQ(zorvela::callOf(std::nextafter(zorvela::kCisFrom, 0.0F)), Call::undecided);
  EXPECT_EQ(zorvela::callOf(std::nextafter(zorvela::kTransUpTo, 1.0F)), Call::undecided);
  EXPECT_EQ(zorvela::callOf(zorvela::kTransUpTo), Call::trans);
  EXPECT_EQ(zorvela::callOf(0.0F), Call::trans);
  EXPECT_EQ(zorvela::callOf(std::numeric_limits<float>::quiet_NaN()), Call::none);
}

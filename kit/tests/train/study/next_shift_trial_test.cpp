// Shifts hidden and given back: the score where it is known beforehand.
#include "train/study/next_shift_trial.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using zorvela::TrialProline;
using zorvela::TrialShift;

constexpr int kRounds = 200;

/// A shift whose classes are so many deviations apart, and what it says of this proline.
TrialShift shift(float distance, double nats) {
  return {{0, {distance, 1}, {0, 1}, -998, 998}, nats};
}

/// A cis proline at odds of 1 to 4 with one shift that settles it and three that say nothing.
TrialProline settledByOne(std::size_t cluster) {
  return {true, cluster, -std::log(4.0), {shift(0, 0), shift(0, 0), shift(8, 30), shift(0, 0)}};
}

}  // namespace

TEST(NextShiftTrial, TheRankingFindsTheOneThatSettlesIt) {
  const auto trial = zorvela::tryNextShifts({settledByOne(0), settledByOne(1)}, kRounds, 100);
  EXPECT_EQ(trial.all.prolines, 2U);
  EXPECT_EQ(trial.all.starts, 400U);
  // Undecided at the start: those in which the shift is hidden, half of all. Their log loss is log2 5.
  EXPECT_NEAR(static_cast<double>(trial.undecided.starts), 200, 45);
  EXPECT_NEAR(trial.undecided.steps[0].byGain, std::log2(5.0), 1e-9);
  // One shift later all are settled; the least log loss that is counted is -log2 0.999.
  EXPECT_NEAR(trial.undecided.steps[1].byGain, -std::log2(0.999), 1e-9);
  EXPECT_EQ(trial.undecided.steps[1].undecidedByGain, 0);
  EXPECT_GT(trial.undecided.steps[1].undecidedAtRandom, 0.3);
  EXPECT_GT(trial.undecided.steps[1].saved.low, 0);
  // The whole entropy of odds of 1 to 4 is promised: 0.7219 bits.
  EXPECT_NEAR(trial.undecided.promised, 0.7219, 1e-3);
}

TEST(NextShiftTrial, WhereAllShiftsAreAlikeBothOrdersAre) {
  const TrialProline alike = {false, 0, 0, {shift(2, -1), shift(2, -1), shift(2, -1)}};
  const auto trial = zorvela::tryNextShifts({alike}, kRounds, 0);
  for (const zorvela::TrialStep& step : trial.all.steps) EXPECT_DOUBLE_EQ(step.byGain, step.atRandom);
}

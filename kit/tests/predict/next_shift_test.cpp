// What is worth measuring next: limits that are known without a computer.
#include "predict/next_shift.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using zorvela::MissingShift;

constexpr double kEven = 0;
const double kOneIn20 = -std::log(19.0);

/// Cis at `distance` deviations of 1 from trans, which is at 0, with limits far off.
MissingShift at(double distance, int index = 0) {
  return {index, {static_cast<float>(distance), 1}, {0, 1}, -998, 998};
}

}  // namespace

TEST(NextShift, EntropyIsOneBitAtEvenOdds) {
  EXPECT_DOUBLE_EQ(zorvela::entropy(kEven), 1);
  // 1 in 20: -(0.05 log2 0.05 + 0.95 log2 0.95)
  EXPECT_NEAR(zorvela::entropy(kOneIn20), 0.286396957, 1e-9);
  EXPECT_DOUBLE_EQ(zorvela::entropy(kOneIn20), zorvela::entropy(-kOneIn20));
  EXPECT_GT(zorvela::entropy(-700), 0);
  EXPECT_EQ(zorvela::entropy(-1e6), 0);
}

TEST(NextShift, AShiftThatIsTheSameInBothIsWorthNothing) {
  EXPECT_NEAR(zorvela::expectedGain(kEven, at(0)), 0, 1e-12);
  EXPECT_NEAR(zorvela::expectedGain(kOneIn20, at(0)), 0, 1e-12);
}

TEST(NextShift, AShiftThatTellsForCertainIsWorthTheWholeEntropy) {
  EXPECT_NEAR(zorvela::expectedGain(kEven, at(40)), 1, 1e-9);
  EXPECT_NEAR(zorvela::expectedGain(kOneIn20, at(40)), zorvela::entropy(kOneIn20), 1e-9);
}

// Two deviations apart at even odds: the capacity of a Gaussian channel with inputs of +1 and -1 and noise of
// variance 1, 0.4859 bits in tables of communication theory.
TEST(NextShift, GainIsThatOfTheBinaryGaussianChannel) {
  EXPECT_NEAR(zorvela::expectedGain(kEven, at(2)), 0.4859, 1e-4);
}

TEST(NextShift, LimitsTakeInformationAway) {
  MissingShift limited = at(3);
  limited.highest = 1;
  EXPECT_LT(zorvela::expectedGain(kEven, limited), zorvela::expectedGain(kEven, at(3)));
  limited.lowest = limited.highest = 0;  // every value becomes 0, which always says the same
  EXPECT_NEAR(zorvela::expectedGain(1.5, at(0)), 0, 1e-12);
}

TEST(NextShift, TablesThatMakeNoSenseAreWorthNothing) {
  MissingShift broken = at(2);
  broken.cis.deviation = 0;
  EXPECT_EQ(zorvela::expectedGain(kEven, broken), 0);
  EXPECT_EQ(zorvela::chanceToDecide(kEven, broken), 0);
  broken = at(2);
  broken.lowest = 999;
  EXPECT_EQ(zorvela::expectedGain(kEven, broken), 0);
}

// Odds of 1 to 4, means two apart: the call is cis from x = 1 + ln 4 / 2 = 1.693 on and trans up to
// 1 + (ln 4 - ln 19) / 2 = 0.221. Under cis that is 1 - Phi(-0.307) + Phi(-1.779) = 0.6206 + 0.0376, under
// trans 1 - Phi(1.693) + Phi(0.221) = 0.0452 + 0.5875; mixed 0.2 to 0.8: 0.6378.
TEST(NextShift, ChanceToDecideCountsBothWays) {
  EXPECT_NEAR(zorvela::chanceToDecide(-std::log(4.0), at(2)), 0.6378, 0.0025);
}

TEST(NextShift, RanksByGainAndKeepsTheOrderOfTies) {
  const auto next = zorvela::nextShifts(-2, false, {at(1, 3), at(3, 7), at(1, 9)});
  ASSERT_EQ(next.size(), 3U);
  EXPECT_EQ(next[0].index, 7);
  EXPECT_EQ(next[1].index, 3);
  EXPECT_EQ(next[2].index, 9);
  EXPECT_FALSE(next[0].decides.has_value());
  EXPECT_TRUE(zorvela::nextShifts(-2, true, {at(1)})[0].decides.has_value());
}

TEST(NextShift, NothingIsPromisedWhereTheOddsAreUnknown) {
  EXPECT_TRUE(zorvela::nextShifts(std::numeric_limits<double>::quiet_NaN(), false, {at(1)}).empty());
  EXPECT_TRUE(zorvela::nextShifts(std::numeric_limits<double>::infinity(), false, {at(1)}).empty());
}

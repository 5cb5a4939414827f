// AUC, MCC, Brier score, log loss; bootstrap, ROC curve, calibration.
// Expected values are worked out by hand in the comments.
#include "train/metrics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using zorvela::Scored;

Scored proline(bool isCis, double probability, std::size_t cluster = 0) {
  return {isCis, probability, probability > 0.5, probability, cluster};
}

// --- Figures --------------------------------------------------------------------------------------

const std::vector<Scored> kSix = {proline(true, 0.9),  proline(true, 0.4),  proline(false, 0.4),
                                  proline(false, 0.1), proline(false, 0.6), proline(false, 0.0)};

TEST(Figures, AtTheirBounds) {
  // All calls are the same.
  EXPECT_EQ(0, zorvela::figuresOf({proline(true, 0.2), proline(false, 0.1)})[zorvela::kMcc]);
  // Probabilities are kept away from certainty.
  for (const Scored& wrong : {proline(true, 0.0), proline(false, 1.0)})
    EXPECT_NEAR(-std::log(0.001), *zorvela::figuresOf({wrong})[zorvela::kLogLoss], 1e-12);
  const zorvela::Figures ofTrans = zorvela::figuresOf({proline(false, 0.1), proline(false, 0.7)});
  for (const zorvela::Figure figure : {zorvela::kAuc, zorvela::kMcc, zorvela::kSensitivity})
    EXPECT_FALSE(ofTrans[figure]);
  EXPECT_EQ(0.5, ofTrans[zorvela::kSpecificity]);
  const zorvela::Figures ofScores =
      zorvela::figuresOf({{true, 9.0, true, -1, 0}, {false, 4.0, false, -1, 0}});
  for (const zorvela::Figure figure : {zorvela::kAuc, zorvela::kMcc}) EXPECT_EQ(1, ofScores[figure]);
  for (const zorvela::Figure figure : {zorvela::kBrier, zorvela::kLogLoss}) EXPECT_FALSE(ofScores[figure]);
}

// --- Bootstrap ------------------------------------------------------------------------------------

TEST(Bootstrap, OfOneClusterIsThePoint) {
  const zorvela::FigureIntervals intervals = zorvela::bootstrap(kSix, 20, 1);
  EXPECT_DOUBLE_EQ(6.5 / 8, intervals[zorvela::kAuc]->low);
  EXPECT_DOUBLE_EQ(6.5 / 8, intervals[zorvela::kAuc]->high);
}

TEST(Bootstrap, DrawsClustersAsAWhole) {
  // Two trans in each of two clusters, all called cis in one, none in the other: a round has
  // specificity 0, 0.5 or 1, never 0.25.
  const std::vector<Scored> set = {proline(false, 0.9, 3), proline(false, 0.9, 3), proline(false, 0.1, 8),
                                   proline(false, 0.1, 8)};
  const zorvela::FigureIntervals intervals = zorvela::bootstrap(set, 500, 1);
  EXPECT_DOUBLE_EQ(0, intervals[zorvela::kSpecificity]->low);
  EXPECT_DOUBLE_EQ(1, intervals[zorvela::kSpecificity]->high);
  for (std::uint64_t seed = 0; seed < 20; ++seed) {
    const double once = zorvela::bootstrap(set, 1, seed)[zorvela::kSpecificity]->low;
    EXPECT_TRUE(once == 0 || once == 0.5 || once == 1) << once;
  }
}

TEST(Draw, IsTheSameOnEveryMachine) {
  // The published first outputs of SplitMix64 with seed 1234567.
  zorvela::Draw draw{1234567};
  EXPECT_EQ(6457827717110365317ULL % 1000, draw.below(1000));
  EXPECT_EQ(3203168211198807973ULL % 1000, draw.below(1000));
  EXPECT_EQ(9817491932198370423ULL % 1000, draw.below(1000));
}

// --- Curves ---------------------------------------------------------------------------------------

TEST(RocCurve, OfOneClassIsEmpty) {
  EXPECT_TRUE(zorvela::rocCurve({proline(true, 0.5)}).empty());
}

TEST(Calibration, PutsEdgesIntoTheUpperBinAndOneIntoTheLast) {
  const auto bins =
      zorvela::calibration({proline(false, 0.0), proline(true, 0.5), proline(true, 1.0)}, {0, 0.5, 1});
  ASSERT_EQ(2U, bins.size());
  EXPECT_EQ(1U, bins[0].count);
  EXPECT_EQ(0U, bins[0].cis);
  EXPECT_EQ(2U, bins[1].count);
  EXPECT_DOUBLE_EQ(0.75, bins[1].meanProbability);
  EXPECT_DOUBLE_EQ(1.0, bins[1].share);
}

TEST(Calibration, IntervalIsWilsons) {
  // 1 of 10: (0.1 + 1.92073 / 10) / 1.384146 = 0.21101; 1.959964 sqrt(0.009 + 0.0096037) / 1.384146 =
  // 0.19314.
  std::vector<Scored> set(10, proline(false, 0.1));
  set[0].isCis = true;
  const auto bins = zorvela::calibration(set, {0, 1});
  EXPECT_NEAR(0.01788, bins[0].interval.low, 2e-5);
  EXPECT_NEAR(0.40415, bins[0].interval.high, 2e-5);
}

}  // namespace

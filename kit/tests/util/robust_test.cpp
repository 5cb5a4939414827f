// Median, percentile and trimmed sample; expected values are worked out by hand in the comments.
#include "util/robust.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

TEST(Percentile, InterpolatesBetweenNeighbours) {
  const std::vector<double> values = {10, 20, 40, 80};
  EXPECT_DOUBLE_EQ(10, zorvela::percentile(values, 0));
  EXPECT_DOUBLE_EQ(30, zorvela::percentile(values, 50));  // place 1.5
  EXPECT_DOUBLE_EQ(13, zorvela::percentile(values, 10));  // place 0.3
  EXPECT_DOUBLE_EQ(80, zorvela::percentile(values, 100));
}

TEST(Median, NeedsNoOrder) {
  EXPECT_DOUBLE_EQ(2, zorvela::median({9, 1, 2}));
  EXPECT_DOUBLE_EQ(3, zorvela::median({9, 1, 2, 4}));
}

TEST(TrimmedSample, WithoutTrimIsTheWholeSample) {
  const zorvela::Sample sample = zorvela::trimmedSample({1, 2, 3, 6}, 0);
  EXPECT_DOUBLE_EQ(3, sample.mean);
  EXPECT_DOUBLE_EQ(std::sqrt(14.0 / 3), sample.deviation);  // 4 + 1 + 0 + 9
  EXPECT_EQ(4U, sample.count);
}

TEST(TrimmedSample, LeavesOutWhatIsFarFromTheMedian) {
  // Median 3, distances 2 1 0 1 97, median distance 1: 4 robust deviations are 5.93.
  const zorvela::Sample sample = zorvela::trimmedSample({1, 2, 3, 4, 100}, 4);
  EXPECT_DOUBLE_EQ(2.5, sample.mean);
  EXPECT_EQ(4U, sample.count);
}

TEST(TrimmedSample, KeepsAllWhereMostAreTheSame) {
  const zorvela::Sample sample = zorvela::trimmedSample({5, 5, 5, 5, 10}, 4);
  EXPECT_DOUBLE_EQ(6, sample.mean);
  EXPECT_EQ(5U, sample.count);
}

TEST(TrimmedSample, OfFewValuesHasNoDeviation) {
  EXPECT_EQ(0U, zorvela::trimmedSample({}, 4).count);
  EXPECT_EQ(0, zorvela::trimmedSample({}, 4).mean);
  EXPECT_EQ(7, zorvela::trimmedSample({7}, 4).mean);
  EXPECT_EQ(0, zorvela::trimmedSample({7}, 4).deviation);
}

}  // namespace

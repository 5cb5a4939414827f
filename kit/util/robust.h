// Percentiles, and centre and spread that a few wrong values cannot move.
#pragma once

#include <cstddef>
#include <vector>

namespace zorvela {

/// The median; the mean of the middle two where the count is even. `values` must not be empty.
double median(std::vector<double> values);

/// 1.4826 times the median distance from a centre: the standard deviation if the values were Gaussian.
/// `values` must not be empty.
double robustDeviation(const std::vector<double>& values, double centre);

/// A percentile (0 to 100) of sorted values, interpolated between neighbours. `sorted` must not be empty.
double percentile(const std::vector<double>& sorted, double percent);

/// Mean and deviation of a class.
struct Sample {
  double mean = 0;        ///< 0 without values
  double deviation = 0;   ///< with the sample denominator; 0 for fewer than two values
  std::size_t count = 0;  ///< values that are in it
};

/// Mean and deviation of the values within `trim` robust deviations (1.4826 times the median distance
/// from the median) of the median. All values where `trim` is 0, or where most values are the same.
Sample trimmedSample(const std::vector<double>& values, double trim);

}  // namespace zorvela

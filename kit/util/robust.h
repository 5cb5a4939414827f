// Centre and spread that a few wrong values cannot move.
#pragma once

#include <vector>

namespace zorvela {

/// The median; the mean of the middle two where the count is even. `values` must not be empty.
double median(std::vector<double> values);

/// 1.4826 times the median distance from a centre: the standard deviation if the values were Gaussian.
/// `values` must not be empty.
double robustDeviation(const std::vector<double>& values, double centre);

}  // namespace zorvela

#include "util/robust.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace zorvela {

namespace {

// Makes the median distance from the median a deviation, for Gaussian values.
constexpr double kDeviationsPerMedianDistance = 1.4826;

}  // namespace

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  if (values.size() % 2 == 1) return *middle;
  const double below = *std::max_element(values.begin(), middle);
  return below + 0.5 * (*middle - below);
}

double robustDeviation(const std::vector<double>& values, double centre) {
  std::vector<double> distances;
  distances.reserve(values.size());
  for (const double value : values) distances.push_back(std::abs(value - centre));
  return kDeviationsPerMedianDistance * median(std::move(distances));
}

}  // namespace zorvela

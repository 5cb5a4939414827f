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

double percentile(const std::vector<double>& sorted, double percent) {
  const double place = percent / 100.0 * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  if (below + 1 >= sorted.size()) return sorted.back();
  const double fraction = place - static_cast<double>(below);
  return sorted[below] + fraction * (sorted[below + 1] - sorted[below]);
}

namespace {

std::vector<double> withoutOutliers(const std::vector<double>& values, double trim) {
  const double centre = median(values);
  const double farthest = trim * robustDeviation(values, centre);
  if (!(farthest > 0)) return values;
  std::vector<double> kept;
  for (const double value : values)
    if (std::abs(value - centre) <= farthest) kept.push_back(value);
  return kept;
}

}  // namespace

Sample trimmedSample(const std::vector<double>& values, double trim) {
  Sample sample;
  if (values.empty()) return sample;
  const std::vector<double> kept = withoutOutliers(values, trim);
  sample.count = kept.size();
  double sum = 0;
  for (const double value : kept) sum += value;
  sample.mean = sum / static_cast<double>(kept.size());
  if (kept.size() < 2) return sample;
  double squares = 0;
  for (const double value : kept) squares += (value - sample.mean) * (value - sample.mean);
  sample.deviation = std::sqrt(squares / static_cast<double>(kept.size() - 1));
  return sample;
}

}  // namespace zorvela

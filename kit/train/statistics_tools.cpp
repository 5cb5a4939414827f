// Sums run in the order of the values, so that results are the same on every machine.
#include "train/statistics_tools.h"

#include <algorithm>
#include <cmath>

namespace zorvela {

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return percentile(values, 50.0);
}

double percentile(const std::vector<double>& sorted, double percent) {
  const double place = percent / 100.0 * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  if (below + 1 >= sorted.size()) return sorted.back();
  const double fraction = place - static_cast<double>(below);
  return sorted[below] + fraction * (sorted[below + 1] - sorted[below]);
}

namespace {

// Makes the median distance from the median a deviation, for Gaussian values.
constexpr double kDeviationsPerMedianDistance = 1.4826;

std::vector<double> withoutOutliers(const std::vector<double>& values, double trim) {
  const double centre = median(values);
  std::vector<double> distances;
  distances.reserve(values.size());
  for (const double value : values) distances.push_back(std::abs(value - centre));
  const double farthest = trim * kDeviationsPerMedianDistance * median(distances);
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

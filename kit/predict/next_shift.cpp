// Expected gain of information, by quadrature.
#include "predict/next_shift.h"

#include <algorithm>
#include <cmath>

#include "zorvela/calls.h"

namespace zorvela {

namespace {

constexpr double kDeviationsToEitherSide = 6;
constexpr int kPointsForGain = 8;  // to a deviation; the integrand is smooth
// The chance counts points on one side of a bound: many, so that it is right to 1 in 400.
constexpr int kPointsForChance = 200;

/// Points and weights of a standard normal density; the weights add up to 1.
struct Quadrature {
  std::vector<double> points;
  std::vector<double> weights;

  explicit Quadrature(int pointsToADeviation) {
    const int half = static_cast<int>(kDeviationsToEitherSide) * pointsToADeviation;
    double sum = 0;
    for (int i = -half; i <= half; ++i) {
      points.push_back(static_cast<double>(i) / pointsToADeviation);
      weights.push_back(std::exp(-0.5 * points.back() * points.back()));
      sum += weights.back();
    }
    for (double& weight : weights) weight /= sum;
  }

  /// The mean of `f` over values of one class.
  template <class Function>
  double mean(const ClassShift& of, Function f) const {
    double sum = 0;
    for (std::size_t i = 0; i < points.size(); ++i)
      sum += weights[i] * f(static_cast<double>(of.mean) + static_cast<double>(of.deviation) * points[i]);
    return sum;
  }

  /// The mean over both classes as they are to be expected.
  template <class Function>
  double mean(double logOdds, const MissingShift& shift, Function f) const {
    const double cis = 1 / (1 + std::exp(-logOdds));
    return cis * mean(shift.cis, f) + (1 - cis) * mean(shift.trans, f);
  }
};

double squaredDistance(double value, const ClassShift& from) {
  const double z = (value - static_cast<double>(from.mean)) / static_cast<double>(from.deviation);
  return z * z;
}

/// The contribution of a value to the log-odds.
double update(double value, const MissingShift& shift) {
  const double used =
      std::clamp(value, static_cast<double>(shift.lowest), static_cast<double>(shift.highest));
  return 0.5 * (squaredDistance(used, shift.trans) - squaredDistance(used, shift.cis));
}

bool isUsable(const MissingShift& shift) {
  return shift.cis.deviation > 0 && shift.trans.deviation > 0 && shift.lowest <= shift.highest;
}

double logit(float probability) {
  const auto p = static_cast<double>(probability);
  return std::log(p / (1 - p));
}

}  // namespace

double entropy(double logOdds) {
  // Of the less likely class: no difference of two numbers close to 1.
  const double odds = std::exp(-std::fabs(logOdds));
  return (std::log1p(odds) + std::fabs(logOdds) * odds / (1 + odds)) / std::log(2.0);
}

double expectedGain(double logOdds, const MissingShift& shift) {
  static const Quadrature quadrature(kPointsForGain);
  if (!isUsable(shift)) return 0;
  return entropy(logOdds) - quadrature.mean(logOdds, shift, [&](double value) {
    return entropy(logOdds + update(value, shift));
  });
}

double chanceToDecide(double logOdds, const MissingShift& shift) {
  static const Quadrature quadrature(kPointsForChance);
  if (!isUsable(shift)) return 0;
  const double cisFrom = logit(kCisFrom);
  const double transUpTo = logit(kTransUpTo);
  return quadrature.mean(logOdds, shift, [&](double value) {
    const double after = logOdds + update(value, shift);
    return after >= cisFrom || after <= transUpTo ? 1.0 : 0.0;
  });
}

std::vector<NextShift> nextShifts(double logOdds, bool isUndecided,
                                  const std::vector<MissingShift>& missing) {
  std::vector<NextShift> next;
  if (!std::isfinite(logOdds)) return next;
  for (const MissingShift& shift : missing) {
    NextShift promise;
    promise.index = shift.index;
    // Quadrature leaves a little below zero where nothing is to be learnt.
    promise.bits = std::max(0.0, expectedGain(logOdds, shift));
    if (isUndecided) promise.decides = chanceToDecide(logOdds, shift);
    next.push_back(promise);
  }
  std::stable_sort(next.begin(), next.end(),
                   [](const NextShift& a, const NextShift& b) { return a.bits > b.bits; });
  return next;
}

}  // namespace zorvela

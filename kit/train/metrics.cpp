// A set is scored with weights: 1 for each proline, or how often its cluster was drawn.
#include "train/metrics.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include "util/robust.h"

namespace zorvela {

namespace {

constexpr double kLeastProbability = 0.001;
constexpr double kMostProbability = 0.999;

/// Indices by ascending score.
std::vector<std::size_t> byScore(const std::vector<Scored>& set) {
  std::vector<std::size_t> order(set.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return set[a].score < set[b].score; });
  return order;
}

double logLossOf(const Scored& proline) {
  const double p = std::clamp(proline.probability, kLeastProbability, kMostProbability);
  return -std::log(proline.isCis ? p : 1 - p);
}

double brierOf(const Scored& proline) {
  const double difference = proline.probability - (proline.isCis ? 1 : 0);
  return difference * difference;
}

double matthews(double tp, double fp, double tn, double fn) {
  const double product = (tp + fp) * (tp + fn) * (tn + fp) * (tn + fn);
  return product > 0 ? (tp * tn - fp * fn) / std::sqrt(product) : 0;
}

/// Share of pairs of a cis and a trans proline in which the cis scores higher; ties count half.
double areaUnderCurve(const std::vector<Scored>& set, const std::vector<std::size_t>& order,
                      const std::vector<double>& weight, double cis, double trans) {
  double pairs = 0;
  double transBelow = 0;
  for (std::size_t begin = 0; begin < order.size();) {
    double cisHere = 0;
    double transHere = 0;
    std::size_t end = begin;
    for (; end < order.size() && !(set[order[begin]].score < set[order[end]].score); ++end)
      (set[order[end]].isCis ? cisHere : transHere) += weight[order[end]];
    pairs += cisHere * (transBelow + 0.5 * transHere);
    transBelow += transHere;
    begin = end;
  }
  return pairs / (cis * trans);
}

Figures weightedFigures(const std::vector<Scored>& set, const std::vector<std::size_t>& order,
                        const std::vector<double>& weight) {
  double tp = 0, fp = 0, tn = 0, fn = 0, brier = 0, logLoss = 0;
  bool hasProbabilities = !set.empty();
  for (std::size_t i = 0; i < set.size(); ++i) {
    if (set[i].isCis)
      (set[i].calledCis ? tp : fn) += weight[i];
    else
      (set[i].calledCis ? fp : tn) += weight[i];
    hasProbabilities = hasProbabilities && set[i].probability >= 0;
    brier += weight[i] * brierOf(set[i]);
    logLoss += weight[i] * logLossOf(set[i]);
  }
  Figures figures;
  const double cis = tp + fn;
  const double trans = fp + tn;
  if (cis > 0) figures[kSensitivity] = tp / cis;
  if (trans > 0) figures[kSpecificity] = tn / trans;
  if (cis > 0 && trans > 0) {
    figures[kAuc] = areaUnderCurve(set, order, weight, cis, trans);
    figures[kMcc] = matthews(tp, fp, tn, fn);
  }
  if (hasProbabilities && cis + trans > 0) {
    figures[kBrier] = brier / (cis + trans);
    figures[kLogLoss] = logLoss / (cis + trans);
  }
  return figures;
}

}  // namespace

Figures figuresOf(const std::vector<Scored>& set) {
  return weightedFigures(set, byScore(set), std::vector<double>(set.size(), 1.0));
}

// --- Bootstrap ------------------------------------------------------------------------------------

// SplitMix64.
std::size_t Draw::below(std::size_t bound) {
  state += 0x9E3779B97F4A7C15ULL;
  std::uint64_t z = state;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  z ^= z >> 31;
  return static_cast<std::size_t>(z % bound);
}

FigureIntervals bootstrap(const std::vector<Scored>& set, int rounds, std::uint64_t seed) {
  std::map<std::size_t, std::size_t> place;  // of a cluster among those of the set
  for (const Scored& proline : set) place[proline.cluster] = 0;
  std::size_t clusters = 0;
  for (auto& [cluster, number] : place) number = clusters++;

  const std::vector<std::size_t> order = byScore(set);
  Draw draw{seed};
  std::array<std::vector<double>, kFigureCount> values;
  for (int round = 0; round < rounds; ++round) {
    std::vector<double> drawn(clusters);
    for (std::size_t i = 0; i < clusters; ++i) drawn[draw.below(clusters)] += 1;
    std::vector<double> weight;
    for (const Scored& proline : set) weight.push_back(drawn[place[proline.cluster]]);
    const Figures figures = weightedFigures(set, order, weight);
    for (std::size_t i = 0; i < values.size(); ++i)
      if (figures[i]) values[i].push_back(*figures[i]);
  }
  FigureIntervals intervals;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i].empty()) continue;
    std::sort(values[i].begin(), values[i].end());
    intervals[i] = Interval{percentile(values[i], 2.5), percentile(values[i], 97.5)};
  }
  return intervals;
}

// --- Curves ---------------------------------------------------------------------------------------

std::vector<RocPoint> rocCurve(const std::vector<Scored>& set) {
  std::vector<std::size_t> order = byScore(set);
  std::reverse(order.begin(), order.end());
  double cis = 0;
  for (const Scored& proline : set) cis += proline.isCis ? 1 : 0;
  const double trans = static_cast<double>(set.size()) - cis;
  if (!(cis > 0) || !(trans > 0)) return {};
  std::vector<RocPoint> curve;
  double tp = 0, fp = 0;
  for (std::size_t i = 0; i < order.size(); ++i) {
    (set[order[i]].isCis ? tp : fp) += 1;
    const double score = set[order[i]].score;
    if (i + 1 == order.size() || set[order[i + 1]].score < score)
      curve.push_back({score, fp / trans, tp / cis});
  }
  return curve;
}

namespace {

/// Wilson's interval for a share, 95 %.
Interval wilson(std::size_t hits, std::size_t count) {
  constexpr double kZ = 1.959964;
  const auto n = static_cast<double>(count);
  const double share = static_cast<double>(hits) / n;
  const double centre = (share + kZ * kZ / (2 * n)) / (1 + kZ * kZ / n);
  const double half = kZ * std::sqrt(share * (1 - share) / n + kZ * kZ / (4 * n * n)) / (1 + kZ * kZ / n);
  return {std::max(0.0, centre - half), std::min(1.0, centre + half)};
}

}  // namespace

std::vector<CalibrationBin> calibration(const std::vector<Scored>& set, const std::vector<double>& edges) {
  std::vector<CalibrationBin> bins;
  for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
    CalibrationBin bin;
    bin.from = edges[i];
    bin.below = edges[i + 1];
    const bool isLast = i + 2 == edges.size();
    for (const Scored& proline : set) {
      if (proline.probability < bin.from) continue;
      if (isLast ? proline.probability > bin.below : proline.probability >= bin.below) continue;
      ++bin.count;
      bin.cis += proline.isCis ? 1 : 0;
      bin.meanProbability += proline.probability;
    }
    if (bin.count > 0) {
      bin.meanProbability /= static_cast<double>(bin.count);
      bin.share = static_cast<double>(bin.cis) / static_cast<double>(bin.count);
      bin.interval = wilson(bin.cis, bin.count);
    }
    bins.push_back(bin);
  }
  return bins;
}

}  // namespace zorvela

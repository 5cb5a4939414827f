// Hides shifts, gives them back, keeps the score.
#include "train/study/next_shift_trial.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

#include "predict/evidence.h"
#include "train/statistics_tools.h"
#include "zorvela/calls.h"

namespace zorvela {

namespace {

constexpr double kLeastProbability = 0.001;

double chanceOfCis(double logOdds) {
  return 1 / (1 + std::exp(-logOdds));
}

/// -log2 of the probability that the label had.
double logLoss(double logOdds, bool isCis) {
  const double cis = std::clamp(chanceOfCis(logOdds), kLeastProbability, 1 - kLeastProbability);
  return -std::log2(isCis ? cis : 1 - cis);
}

bool isUndecided(double logOdds) {
  return callOf(static_cast<float>(chanceOfCis(logOdds))) == Call::undecided;
}

/// Log-odds before and after each shift that is given back; the last ones repeat where there are no more.
using Course = std::vector<double>;

Course giveBack(double logOdds, std::vector<TrialShift> hidden, std::size_t steps,
                const std::function<std::size_t(double, const std::vector<TrialShift>&)>& choose) {
  Course course = {logOdds};
  while (course.size() <= steps) {
    if (!hidden.empty()) {
      const std::size_t chosen = choose(logOdds, hidden);
      logOdds += hidden[chosen].nats;
      hidden.erase(hidden.begin() + static_cast<std::ptrdiff_t>(chosen));
    }
    course.push_back(logOdds);
  }
  return course;
}

std::size_t ofLargestGain(double logOdds, const std::vector<TrialShift>& hidden) {
  std::size_t best = 0;
  double most = -1;
  for (std::size_t i = 0; i < hidden.size(); ++i) {
    const double gain = expectedGain(logOdds, hidden[i].promise);
    if (gain <= most) continue;
    most = gain;
    best = i;
  }
  return best;
}

/// One proline with some of its shifts hidden, given back both ways.
struct Start {
  bool isCis = false;
  std::size_t cluster = 0;
  std::size_t proline = 0;
  Course byGain;
  Course atRandom;
  double promised = 0;
};

Start startOf(const TrialProline& proline, std::size_t steps, Draw& draw) {
  double known = proline.start;
  std::vector<TrialShift> hidden;
  for (const TrialShift& shift : proline.shifts) {
    if (draw.below(2) == 0)
      hidden.push_back(shift);
    else
      known += shift.nats;
  }
  Start start;
  start.isCis = proline.isCis;
  start.cluster = proline.cluster;
  start.byGain = giveBack(known, hidden, steps, ofLargestGain);
  start.atRandom = giveBack(known, hidden, steps, [&draw](double, const std::vector<TrialShift>& left) {
    return draw.below(left.size());
  });
  if (!hidden.empty()) start.promised = expectedGain(known, hidden[ofLargestGain(known, hidden)].promise);
  return start;
}

// --- Figures ------------------------------------------------------------------------------------

template <class Value>
double meanOf(const std::vector<Start>& starts, Value value) {
  double sum = 0;
  for (const Start& start : starts) sum += value(start);
  return starts.empty() ? 0 : sum / static_cast<double>(starts.size());
}

/// What the ranking saves at a step, over resampled clusters.
Interval intervalOfSaving(const std::vector<Start>& starts, std::size_t step, int rounds,
                          std::uint64_t seed) {
  struct Sum {
    double saved = 0;
    double count = 0;
  };
  std::map<std::size_t, Sum> byCluster;
  for (const Start& start : starts) {
    Sum& sum = byCluster[start.cluster];
    sum.saved += logLoss(start.atRandom[step], start.isCis) - logLoss(start.byGain[step], start.isCis);
    sum.count += 1;
  }
  std::vector<Sum> clusters;
  for (const auto& [cluster, sum] : byCluster) clusters.push_back(sum);
  if (clusters.empty() || rounds == 0) return {};
  Draw draw(seed);
  std::vector<double> means;
  for (int round = 0; round < rounds; ++round) {
    Sum all;
    for (std::size_t i = 0; i < clusters.size(); ++i) {
      const Sum& drawn = clusters[draw.below(clusters.size())];
      all.saved += drawn.saved;
      all.count += drawn.count;
    }
    means.push_back(all.saved / all.count);
  }
  std::sort(means.begin(), means.end());
  return {percentile(means, 2.5), percentile(means, 97.5)};
}

TrialFigures figuresOf(const std::vector<Start>& starts, std::size_t steps, int rounds, std::uint64_t seed) {
  TrialFigures figures;
  figures.starts = starts.size();
  for (std::size_t i = 0; i < starts.size(); ++i)
    if (i == 0 || starts[i].proline != starts[i - 1].proline) ++figures.prolines;
  for (std::size_t step = 0; step <= steps; ++step) {
    TrialStep figure;
    figure.byGain = meanOf(starts, [&](const Start& s) { return logLoss(s.byGain[step], s.isCis); });
    figure.atRandom = meanOf(starts, [&](const Start& s) { return logLoss(s.atRandom[step], s.isCis); });
    figure.saved = intervalOfSaving(starts, step, rounds, seed);
    figure.undecidedByGain =
        meanOf(starts, [&](const Start& s) { return isUndecided(s.byGain[step]) ? 1 : 0; });
    figure.undecidedAtRandom =
        meanOf(starts, [&](const Start& s) { return isUndecided(s.atRandom[step]) ? 1 : 0; });
    figures.steps.push_back(figure);
  }
  figures.promised = meanOf(starts, [](const Start& s) { return s.promised; });
  figures.kept = steps == 0 ? 0 : figures.steps[0].byGain - figures.steps[1].byGain;
  return figures;
}

}  // namespace

namespace {

/// A shift of a proline's triplet as if it were still to be measured: what the tables of the run expect.
MissingShift missingShift(ZORVELA& run, int prolineResid, int index) {
  // Nothing real is outside of these; from 999 on a shift is missing.
  constexpr float kFar = 998.0F;
  MissingShift shift;
  shift.index = index;
  shift.cis = {run.avgCis[index], run.stdCis[index]};
  shift.trans = {run.avgTrans[index], run.stdTrans[index]};
  const bool isLimited = index != kIndexCG && run.clipShifts;
  const int resid = prolineResid + shiftPlace(static_cast<std::size_t>(index)).residue;
  shift.lowest = isLimited ? run.clipSShift(resid, -kFar, atomName(index)) : -kFar;
  shift.highest = isLimited ? run.clipSShift(resid, kFar, atomName(index)) : kFar;
  return shift;
}

}  // namespace

TrialProline trialProline(ZORVELA& run, const ProlinePrediction& prediction) {
  const ProlineEvidence& evidence = prediction.evidence;
  TrialProline proline;
  proline.start = Evidence::prior();
  for (std::size_t side = 0; side < 2; ++side)
    proline.start += std::log(static_cast<double>(evidence.cisShares[side]) / evidence.transShares[side]);
  for (int index = 0; index <= kIndexCG; ++index) {
    const ShiftEvidence& shift = evidence.shifts[static_cast<std::size_t>(index)];
    if (shift.isMissing) continue;
    TrialShift trial;
    trial.promise = missingShift(run, prediction.resid, index);
    trial.nats = shift.lnCis - shift.lnTrans;
    proline.shifts.push_back(trial);
  }
  return proline;
}

Trial tryNextShifts(const std::vector<TrialProline>& prolines, std::size_t steps, int rounds,
                    int bootstrapRounds, std::uint64_t seed) {
  Draw draw(seed);
  std::vector<Start> all;
  std::vector<Start> undecided;
  for (std::size_t i = 0; i < prolines.size(); ++i)
    for (int round = 0; round < rounds; ++round) {
      Start start = startOf(prolines[i], steps, draw);
      start.proline = i;
      if (isUndecided(start.byGain.front())) undecided.push_back(start);
      all.push_back(std::move(start));
    }
  return {figuresOf(all, steps, bootstrapRounds, seed), figuresOf(undecided, steps, bootstrapRounds, seed)};
}

}  // namespace zorvela

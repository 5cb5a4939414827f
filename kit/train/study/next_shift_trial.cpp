// Hides shifts, gives them back, keeps the score.
#include "train/study/next_shift_trial.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <ostream>
#include <string>

#include "predict/evidence.h"
#include "train/study/formatted.h"
#include "util/robust.h"
#include "zorvela/calls.h"

namespace zorvela {

namespace {

constexpr double kLeastProbability = 0.001;
// Shifts that are given back.
constexpr std::size_t kSteps = 4;
// Seed of what is hidden; any number does, but always the same one.
constexpr std::uint64_t kSeed = 9;

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

Course giveBack(double logOdds, std::vector<TrialShift> hidden,
                const std::function<std::size_t(double, const std::vector<TrialShift>&)>& choose) {
  Course course = {logOdds};
  while (course.size() <= kSteps) {
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

Start startOf(const TrialProline& proline, Draw& draw) {
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
  start.byGain = giveBack(known, hidden, ofLargestGain);
  start.atRandom = giveBack(known, hidden, [&draw](double, const std::vector<TrialShift>& left) {
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
Interval intervalOfSaving(const std::vector<Start>& starts, std::size_t step, int rounds) {
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
  Draw draw(kSeed);
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

TrialFigures figuresOf(const std::vector<Start>& starts, int rounds) {
  TrialFigures figures;
  figures.starts = starts.size();
  for (std::size_t i = 0; i < starts.size(); ++i)
    if (i == 0 || starts[i].proline != starts[i - 1].proline) ++figures.prolines;
  for (std::size_t step = 0; step <= kSteps; ++step) {
    TrialStep figure;
    figure.byGain = meanOf(starts, [&](const Start& s) { return logLoss(s.byGain[step], s.isCis); });
    figure.atRandom = meanOf(starts, [&](const Start& s) { return logLoss(s.atRandom[step], s.isCis); });
    figure.saved = intervalOfSaving(starts, step, rounds);
    figure.undecidedByGain =
        meanOf(starts, [&](const Start& s) { return isUndecided(s.byGain[step]) ? 1 : 0; });
    figure.undecidedAtRandom =
        meanOf(starts, [&](const Start& s) { return isUndecided(s.atRandom[step]) ? 1 : 0; });
    figures.steps.push_back(figure);
  }
  figures.promised = meanOf(starts, [](const Start& s) { return s.promised; });
  figures.kept = figures.steps[0].byGain - figures.steps[1].byGain;
  return figures;
}

}  // namespace

TrialProline trialProline(const Model& model, const std::array<char, 3>& types,
                          const CisPrediction& prediction) {
  const ProlineEvidence& evidence = prediction.evidence;
  TrialProline proline;
  proline.start = Evidence::prior();
  for (std::size_t side = 0; side < 2; ++side)
    proline.start += std::log(static_cast<double>(evidence.cisShares[side]) / evidence.transShares[side]);
  for (std::size_t index = 0; index < kShifts; ++index) {
    const ShiftEvidence& shift = evidence.shifts[index];
    if (shift.isMissing) continue;
    const char type = types[static_cast<std::size_t>(shiftPlace(index).residue + 1)];
    TrialShift trial;
    trial.promise = missingShift(model, type, index);
    trial.nats = shift.lnCis - shift.lnTrans;
    proline.shifts.push_back(trial);
  }
  return proline;
}

NextShiftTrial tryNextShifts(const std::vector<TrialProline>& prolines, int rounds, int bootstrapRounds) {
  Draw draw(kSeed);
  std::vector<Start> all;
  std::vector<Start> undecided;
  for (std::size_t i = 0; i < prolines.size(); ++i)
    for (int round = 0; round < rounds; ++round) {
      Start start = startOf(prolines[i], draw);
      start.proline = i;
      if (isUndecided(start.byGain.front())) undecided.push_back(start);
      all.push_back(std::move(start));
    }
  return {figuresOf(all, bootstrapRounds), figuresOf(undecided, bootstrapRounds)};
}

// --- As text --------------------------------------------------------------------------------------

namespace {

void writeTrialSet(std::ostream& out, const std::string& name, const TrialFigures& figures) {
  out << '\n'
      << name << ": " << figures.starts << " starts of " << figures.prolines << " prolines\n"
      << "          log loss (bits)                               undecided\n"
         "shifts    by gain  at random  saved [95 %]              by gain  at random\n";
  for (std::size_t i = 0; i < figures.steps.size(); ++i) {
    const TrialStep& step = figures.steps[i];
    out << formatted("%6zu    %7.4f  %9.4f  %6.4f [%.4f %.4f]  %8.3f  %9.3f\n", i, step.byGain, step.atRandom,
                     step.atRandom - step.byGain, step.saved.low, step.saved.high, step.undecidedByGain,
                     step.undecidedAtRandom);
  }
  out << formatted("The first shift by gain: %.4f bits expected, %.4f bits less log loss.\n",
                   figures.promised, figures.kept);
}

}  // namespace

void writeTrial(std::ostream& out, const NextShiftTrial& trial, int rounds) {
  out << "Each shift is hidden with a chance of one half, " << rounds
      << " times for each proline; hidden ones are then\n"
         "given back one at a time, by expected gain of information or at random.\n";
  writeTrialSet(out, "All", trial.all);
  writeTrialSet(out, "Undecided at the start", trial.undecided);
}

}  // namespace zorvela

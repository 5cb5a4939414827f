// Trains and predicts; chooses what is scored.
#include "train/evaluation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <numeric>
#include <set>
#include <string>
#include <utility>

#include "predict/chain.h"
#include "util/robust.h"
#include "zorvela/calls.h"
#include "zorvela/error.h"

namespace zorvela {

// --- Training and predicting ----------------------------------------------------------------------

namespace {

// Seed of the folds; any number does, but always the same one.
constexpr std::uint64_t kFoldSeed = 20;
// Seed of the bootstrap.
constexpr std::uint64_t kBootstrapSeed = 7;

/// Number of each label's cluster, from 0 in order of first appearance.
std::vector<std::size_t> clusterNumbers(const LabelledProlines& data) {
  std::map<std::string, std::size_t> numbers;
  std::vector<std::size_t> ofLabel;
  for (const ProlineLabel& label : data.labels.prolines)
    ofLabel.push_back(numbers.emplace(label.cluster, numbers.size()).first->second);
  return ofLabel;
}

/// The fold of each cluster: they are dealt out in random order.
std::vector<std::size_t> dealtOut(std::size_t clusters, std::size_t folds) {
  std::vector<std::size_t> order(clusters);
  std::iota(order.begin(), order.end(), std::size_t{0});
  Draw draw(kFoldSeed);
  for (std::size_t i = clusters; i > 1; --i) std::swap(order[i - 1], order[draw.below(i)]);
  std::vector<std::size_t> fold(clusters);
  for (std::size_t i = 0; i < clusters; ++i) fold[order[i]] = i % folds;
  return fold;
}

/// Trains on all entries, clusters and windows that are not in the fold.
Model trainedWithout(std::size_t fold, const std::vector<std::size_t>& foldOf, const Model& published,
                     const LabelledProlines& data, const TrainingChoices& choices) {
  std::vector<bool> useEntry(data.entries.size(), true);
  std::set<std::string> windows;
  for (std::size_t i = 0; i < foldOf.size(); ++i) {
    if (foldOf[i] != fold) continue;
    useEntry[data.entryOf[i]] = false;
    windows.insert(data.windows[i]);
  }
  std::vector<bool> useLabel(foldOf.size());
  for (std::size_t i = 0; i < foldOf.size(); ++i)
    useLabel[i] = useEntry[data.entryOf[i]] && windows.count(data.windows[i]) == 0;
  return train(published, data, useEntry, useLabel, choices).model;
}

}  // namespace

FoldModels oneModel(const Model& model, const LabelledProlines& data) {
  return {{model}, std::vector<std::size_t>(data.windows.size(), 0)};
}

FoldModels trainFolds(const Model& published, const LabelledProlines& data, std::size_t folds,
                      const TrainingChoices& choices, const OnStep& onStep) {
  const std::vector<std::size_t> clusterOf = clusterNumbers(data);
  const std::size_t clusters = *std::max_element(clusterOf.begin(), clusterOf.end()) + 1;
  if (clusters < folds)
    throw Error(data.labels.path, 0, "has " + std::to_string(clusters) + " clusters, fewer than folds",
                "ask for fewer folds with --cross-validate");
  const std::vector<std::size_t> foldOfCluster = dealtOut(clusters, folds);
  FoldModels folded;
  for (const std::size_t cluster : clusterOf) folded.foldOf.push_back(foldOfCluster[cluster]);
  for (std::size_t fold = 0; fold < folds; ++fold) {
    folded.models.push_back(trainedWithout(fold, folded.foldOf, published, data, choices));
    if (onStep) onStep(fold + 1, folds);
  }
  return folded;
}

Predictions predictAll(const FoldModels& folded, const LabelledProlines& data) {
  Predictions out(data.windows.size());
  for (std::size_t i = 0; i < out.size(); ++i) {
    const EntryShifts& entry = data.entry(i);
    if (data.labels.prolines[i].structure && isPredictable(entry.residues, data.place(i)))
      out[i] = predict(folded.of(i), tripletAt(entry.residues, entry.secondary, data.place(i)));
  }
  return out;
}

// --- Choosing what is scored ------------------------------------------------------------------------

namespace {

int shiftCount(const std::vector<Residue>& residues, std::size_t place) {
  const int missing = missingShifts(residues[place - 1]) + missingShifts(residues[place]) +
                      missingShifts(residues[place + 1]);
  return static_cast<int>(kBackboneShifts) - missing + (isMissingCG(cgOf(residues[place])) ? 0 : 1);
}

/// The measurements of one window, in the order of the labels.
using Measurements = std::vector<std::size_t>;

/// The label that most measurements have; that of the first where they are split.
Omega labelOf(const LabelledProlines& data, const Measurements& window) {
  const auto isCis = [&](std::size_t i) { return *data.labels.prolines[i].structure == Omega::cis; };
  const auto cis = static_cast<std::size_t>(std::count_if(window.begin(), window.end(), isCis));
  const std::size_t trans = window.size() - cis;
  if (cis == trans) return *data.labels.prolines[window.front()].structure;
  return cis > trans ? Omega::cis : Omega::trans;
}

double medianOf(const Predictions& predictions, const Measurements& window, float CisPrediction::*value) {
  std::vector<double> values;
  for (const std::size_t i : window) values.push_back((*predictions[i]).*value);
  return median(std::move(values));
}

/// The measurement in the middle by probability; of two the less probable one, of equals the first.
std::size_t middleOf(const Predictions& predictions, Measurements window) {
  std::stable_sort(window.begin(), window.end(), [&](std::size_t a, std::size_t b) {
    return predictions[a]->pCisNorm < predictions[b]->pCisNorm;
  });
  return window[(window.size() - 1) / 2];
}

Evaluated evaluated(const LabelledProlines& data, const Predictions& predictions, const Measurements& window,
                    const std::vector<std::size_t>& cluster) {
  const std::size_t middle = middleOf(predictions, window);
  const std::vector<Residue>& residues = data.entry(middle).residues;
  const Residue& residue = residues[data.place(middle)];
  Evaluated proline;
  proline.label = middle;
  proline.shiftCount = shiftCount(residues, data.place(middle));
  proline.hasCB = residue.shift(Atom::CB) < kMissingBound;
  proline.hasCG = !isMissingCG(cgOf(residue));
  if (proline.ruleApplies()) proline.cbMinusCg = static_cast<double>(residue.shift(Atom::CB)) - cgOf(residue);
  proline.byShift = data.labels.prolines[middle].byShift;
  proline.cluster = cluster[middle];
  proline.isCis = labelOf(data, window) == Omega::cis;
  proline.pCis = medianOf(predictions, window, &CisPrediction::pCis);
  proline.pCisNorm = medianOf(predictions, window, &CisPrediction::pCisNorm);
  return proline;
}

}  // namespace

Evaluation evaluation(const LabelledProlines& data, const Predictions& predictions) {
  const std::vector<std::size_t> cluster = clusterNumbers(data);
  Evaluation result;
  std::map<std::string, std::size_t> known;  // window to its place in the next
  std::vector<Measurements> windows;
  for (std::size_t i = 0; i < predictions.size(); ++i) {
    if (!data.labels.prolines[i].structure) continue;
    ++result.labelled;
    if (!predictions[i]) {
      ++result.notPredicted;
    } else if (std::isnan(predictions[i]->pCisNorm)) {
      result.notANumber.push_back(i);
    } else {
      const auto place = known.emplace(data.windows[i], windows.size());
      if (place.second)
        windows.emplace_back();
      else
        ++result.repeated;
      windows[place.first->second].push_back(i);
    }
  }
  for (const Measurements& window : windows)
    result.prolines.push_back(evaluated(data, predictions, window, cluster));
  if (result.prolines.empty())
    throw Error(data.labels.path, 0, "no proline with a label by structure has enough shifts",
                "add entries with more shifts");
  return result;
}

// --- Groups -----------------------------------------------------------------------------------------

std::vector<Group> groups() {
  const auto all = [](const Evaluated&) { return true; };
  const auto withBoth = [](const Evaluated& p) { return p.ruleApplies(); };
  const auto without = [](const Evaluated& p) { return !p.ruleApplies(); };
  const auto fair = [](const Evaluated& p) { return !p.isContradicted(); };
  const auto fairWithBoth = [](const Evaluated& p) { return p.ruleApplies() && !p.isContradicted(); };
  const auto onlyCB = [](const Evaluated& p) { return p.hasCB && !p.hasCG; };
  const auto noCB = [](const Evaluated& p) { return !p.hasCB; };
  const auto few = [](const Evaluated& p) { return p.shiftCount <= 9; };
  const auto some = [](const Evaluated& p) { return p.shiftCount >= 10 && p.shiftCount <= 13; };
  const auto many = [](const Evaluated& p) { return p.shiftCount >= 14; };
  return {{"all", "all prolines", Method::program, all},
          {"with_cb_and_cg", "with CB and CG", Method::program, withBoth},
          {"with_cb_and_cg_rule", "  CB - CG above 7.1 ppm", Method::rule, withBoth},
          {"without_cb_minus_cg", "without CB - CG", Method::program, without},
          {"not_contradicted", "label not contradicted", Method::program, fair},
          {"not_contradicted_with_cb_and_cg", "  of these, with CB and CG", Method::program, fairWithBoth},
          {"not_contradicted_with_cb_and_cg_rule", "  CB - CG above 7.1 ppm", Method::rule, fairWithBoth},
          {"cb_without_cg", "with CB, without CG", Method::program, onlyCB},
          {"without_cb", "without CB", Method::program, noCB},
          {"up_to_9_shifts", "up to 9 shifts", Method::program, few},
          {"from_10_to_13_shifts", "10 to 13 shifts", Method::program, some},
          {"from_14_shifts", "14 shifts or more", Method::program, many}};
}

std::vector<Scored> scored(const Evaluation& evaluation, const Group& group) {
  std::vector<Scored> set;
  for (const Evaluated& p : evaluation.prolines) {
    if (!group.holds(p)) continue;
    if (group.method == Method::rule)
      set.push_back({p.isCis, p.cbMinusCg, p.cbMinusCg > kRuleCisAbove, -1, p.cluster});
    else
      set.push_back(
          {p.isCis, p.pCisNorm, callOf(static_cast<float>(p.pCisNorm)) == Call::cis, p.pCisNorm, p.cluster});
  }
  return set;
}

std::vector<GroupFigures> allFigures(const Evaluation& evaluation, int rounds) {
  std::vector<GroupFigures> all;
  for (const Group& group : groups()) {
    const std::vector<Scored> set = scored(evaluation, group);
    all.push_back({group, figuresOf(set), bootstrap(set, rounds, kBootstrapSeed)});
  }
  return all;
}

}  // namespace zorvela

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

/// The fold of each cluster: they are dealt out in random order.
std::vector<std::size_t> dealtOut(std::size_t clusters, std::size_t folds) {
  std::vector<std::size_t> order(clusters);
  std::iota(order.begin(), order.end(), std::size_t{0});
  Draw draw{kFoldSeed};
  for (std::size_t i = clusters; i > 1; --i) std::swap(order[i - 1], order[draw.below(i)]);
  std::vector<std::size_t> fold(clusters);
  for (std::size_t i = 0; i < clusters; ++i) fold[order[i]] = i % folds;
  return fold;
}

/// The data without the clusters of a fold, and without labels of their windows in other clusters.
LabelledProlines without(std::size_t fold, const std::vector<std::size_t>& foldOf, LabelledProlines data) {
  std::set<std::string> windows;
  for (const LabelledProline& proline : data.prolines)
    if (foldOf[data.entryOf(proline).cluster] == fold) windows.insert(proline.window);
  for (LabelledProline& proline : data.prolines)
    if (windows.count(proline.window) > 0) proline.structure = Call::none;
  for (EntryShifts& entry : data.entries) {
    if (foldOf[entry.cluster] != fold) continue;
    entry.residues.clear();
    entry.secondary.clear();
  }
  return data;
}

}  // namespace

FoldModels oneModel(const Model& model, const LabelledProlines& data) {
  return {{model}, std::vector<std::size_t>(data.clusters.size(), 0)};
}

FoldModels trainFolds(const Model& published, const LabelledProlines& data, std::size_t folds,
                      const TrainingChoices& choices, const OnStep& onStep) {
  const std::size_t clusters = data.clusters.size();
  if (clusters < folds)
    throw Error(data.path, 0, "has " + std::to_string(clusters) + " clusters, fewer than folds",
                "ask for fewer folds with --cross-validate");
  FoldModels folded;
  folded.foldOf = dealtOut(clusters, folds);
  for (std::size_t fold = 0; fold < folds; ++fold) {
    folded.models.push_back(train(published, without(fold, folded.foldOf, data), choices).model);
    if (onStep) onStep(folds);
  }
  return folded;
}

Predictions predictAll(const FoldModels& folded, const LabelledProlines& data) {
  Predictions predictions;
  for (const LabelledProline& proline : data.prolines) {
    const EntryShifts& entry = data.entryOf(proline);
    predictions.emplace_back();
    if (proline.structure != Call::none && isPredictable(entry.residues, proline.place()))
      predictions.back() = predict(folded.models[folded.foldOf[entry.cluster]],
                                   tripletAt(entry.residues, entry.secondary, proline.place()));
  }
  return predictions;
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

/// Tells whether most measurements are labelled cis; where they are split, whether the first one is.
bool isCis(const LabelledProlines& data, const Measurements& window) {
  const auto isLabelledCis = [&](std::size_t i) { return data.prolines[i].structure == Call::cis; };
  const auto cis = static_cast<std::size_t>(std::count_if(window.begin(), window.end(), isLabelledCis));
  return 2 * cis == window.size() ? isLabelledCis(window.front()) : 2 * cis > window.size();
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

Evaluated evaluated(const LabelledProlines& data, const Predictions& predictions,
                    const Measurements& window) {
  const std::size_t middle = middleOf(predictions, window);
  const LabelledProline& label = data.prolines[middle];
  const EntryShifts& entry = data.entryOf(label);
  const Residue& residue = entry.residues[label.place()];
  Evaluated proline;
  proline.label = middle;
  proline.isCis = isCis(data, window);
  proline.isContradicted = label.byShift == (proline.isCis ? Call::trans : Call::cis);
  proline.pCis = medianOf(predictions, window, &CisPrediction::pCis);
  proline.pCisNorm = medianOf(predictions, window, &CisPrediction::pCisNorm);
  proline.shiftCount = shiftCount(entry.residues, label.place());
  proline.hasCB = residue.shift(Atom::CB) < kMissingBound;
  if (proline.hasCB && !isMissingCG(cgOf(residue)))
    proline.cbMinusCg = static_cast<double>(residue.shift(Atom::CB)) - cgOf(residue);
  proline.cluster = entry.cluster;
  return proline;
}

}  // namespace

Evaluation evaluation(const LabelledProlines& data, const Predictions& predictions) {
  Evaluation result;
  std::map<std::string, std::size_t> known;  // window to its place in the next
  std::vector<Measurements> windows;
  for (std::size_t i = 0; i < predictions.size(); ++i) {
    if (data.prolines[i].structure == Call::none) continue;
    ++result.labelled;
    if (!predictions[i]) {
      ++result.notPredicted;
    } else if (std::isnan(predictions[i]->pCisNorm)) {
      ++result.notANumber;
    } else {
      const auto [place, isNew] = known.emplace(data.prolines[i].window, windows.size());
      if (isNew) windows.emplace_back();
      if (!isNew) ++result.repeated;
      windows[place->second].push_back(i);
    }
  }
  for (const Measurements& window : windows) result.prolines.push_back(evaluated(data, predictions, window));
  if (result.prolines.empty())
    throw Error(data.path, 0, "no proline with a label by structure has enough shifts",
                "add entries with more shifts");
  return result;
}

// --- Groups -----------------------------------------------------------------------------------------

std::vector<Group> groups() {
  const auto withBoth = [](const Evaluated& p) { return p.cbMinusCg.has_value(); };
  const auto fairWithBoth = [](const Evaluated& p) { return p.cbMinusCg && !p.isContradicted; };
  return {
      {"all", "all prolines", false, [](const Evaluated&) { return true; }},
      {"with_cb_and_cg", "with CB and CG", false, withBoth},
      {"with_cb_and_cg_rule", "  CB - CG above 7.1 ppm", true, withBoth},
      {"without_cb_minus_cg", "without CB - CG", false, [](const Evaluated& p) { return !p.cbMinusCg; }},
      {"not_contradicted", "label not contradicted", false,
       [](const Evaluated& p) { return !p.isContradicted; }},
      {"not_contradicted_with_cb_and_cg", "  of these, with CB and CG", false, fairWithBoth},
      {"not_contradicted_with_cb_and_cg_rule", "  CB - CG above 7.1 ppm", true, fairWithBoth},
      {"cb_without_cg", "with CB, without CG", false,
       [](const Evaluated& p) { return p.hasCB && !p.cbMinusCg; }},
      {"without_cb", "without CB", false, [](const Evaluated& p) { return !p.hasCB; }},
      {"up_to_9_shifts", "up to 9 shifts", false, [](const Evaluated& p) { return p.shiftCount <= 9; }},
      {"from_10_to_13_shifts", "10 to 13 shifts", false,
       [](const Evaluated& p) { return p.shiftCount >= 10 && p.shiftCount <= 13; }},
      {"from_14_shifts", "14 shifts or more", false, [](const Evaluated& p) { return p.shiftCount >= 14; }}};
}

std::vector<Scored> scored(const Evaluation& evaluation, const Group& group) {
  std::vector<Scored> set;
  for (const Evaluated& p : evaluation.prolines) {
    if (!group.holds(p)) continue;
    if (group.byRule)
      set.push_back({p.isCis, *p.cbMinusCg, *p.cbMinusCg > kRuleCisAbove, -1, p.cluster});
    else
      set.push_back(
          {p.isCis, p.pCisNorm, callOf(static_cast<float>(p.pCisNorm)) == Call::cis, p.pCisNorm, p.cluster});
  }
  return set;
}

}  // namespace zorvela

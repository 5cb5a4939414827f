// Trains and predicts; chooses what is scored.
#include "train/evaluation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "train/metrics.h"
#include "util/robust.h"
#include "zorvela/error.h"

namespace zorvela {

// --- Training and predicting ----------------------------------------------------------------------

namespace {

// Seed of the folds; any number does, but always the same one.
constexpr std::uint64_t kFoldSeed = 20;

/// Gives a triplet of an entry to a run object.
void show(const EntryShifts& entry, int resid, ZORVELA& run) {
  run.resTable = GDB();
  run.seqLength = entry.length();
  int row = 0;
  for (int i = std::max(resid - 1, 1); i <= std::min(resid + 1, entry.length()); ++i) {
    run.resNames[i] = entry.residue(i);
    run.missingCount[i] = entry.missing[static_cast<std::size_t>(i) - 1];
    const auto cg = entry.cg.find(i);
    run.cgShifts[i] = cg == entry.cg.end() ? kMissingShift : cg->second;
    for (const auto& [key, atom] : run.atomNames) {
      const float shift = entry.secondary[static_cast<std::size_t>(i) - 1][static_cast<std::size_t>(key) - 1];
      ++row;
      run.resTable.setEntry(row, "RESID", std::to_string(i));
      run.resTable.setEntry(row, "ATOMNAME", atom);
      run.resTable.setEntry(row, "SHIFT", run.ftoa(shift, run.numBuffer, 'g', 6));
    }
  }
}

/// Number of each label's cluster, from 0 in order of first appearance.
std::vector<std::size_t> clusterNumbers(const LabelledProlines& data, std::size_t& count) {
  std::map<std::string, std::size_t> numbers;
  std::vector<std::size_t> ofLabel;
  for (const ProlineLabel& label : data.labels.prolines)
    ofLabel.push_back(numbers.emplace(label.cluster, numbers.size()).first->second);
  count = numbers.size();
  return ofLabel;
}

/// The fold of each cluster: they are dealt out in random order.
std::vector<std::size_t> dealtOut(std::size_t clusters, std::size_t folds) {
  std::vector<std::size_t> order(clusters);
  for (std::size_t i = 0; i < clusters; ++i) order[i] = i;
  Draw draw(kFoldSeed);
  for (std::size_t i = clusters; i > 1; --i) std::swap(order[i - 1], order[draw.below(i)]);
  std::vector<std::size_t> fold(clusters);
  for (std::size_t i = 0; i < clusters; ++i) fold[order[i]] = i % folds;
  return fold;
}

/// Trains on all entries, clusters and windows that are not in the fold.
ReferenceTables trainedWithout(std::size_t fold, const std::vector<std::size_t>& foldOf,
                               const ReferenceTables& published, const LabelledProlines& data,
                               const TrainingChoices& choices) {
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
  ReferenceTables tables = published;
  const Training training = train(published.randomCoil, data, useEntry, useLabel, choices);
  tables.limits = limitsTable(training, choices);
  tables.shifts = shiftTable(training, choices);
  return tables;
}

}  // namespace

FoldModels oneModel(const ReferenceTables& tables, const LabelledProlines& data) {
  return {{tables}, std::vector<std::size_t>(data.windows.size(), 0)};
}

FoldModels trainFolds(const ReferenceTables& published, const LabelledProlines& data, std::size_t folds,
                      const TrainingChoices& choices, const OnStep& onStep) {
  std::size_t clusters = 0;
  const std::vector<std::size_t> clusterOf = clusterNumbers(data, clusters);
  if (clusters < folds)
    throw Error(data.labels.path, 0, "has " + std::to_string(clusters) + " clusters, fewer than folds",
                "ask for fewer folds with --cross-validate");
  const std::vector<std::size_t> foldOfCluster = dealtOut(clusters, folds);
  FoldModels models;
  for (const std::size_t cluster : clusterOf) models.foldOf.push_back(foldOfCluster[cluster]);
  for (std::size_t fold = 0; fold < folds; ++fold) {
    models.tables.push_back(trainedWithout(fold, models.foldOf, published, data, choices));
    if (onStep) onStep(fold + 1, folds);
  }
  return models;
}

Predictions predictAll(const FoldModels& models, const LabelledProlines& data,
                       const PredictionVisitor& visit) {
  Predictions out(data.windows.size());
  for (std::size_t fold = 0; fold < models.tables.size(); ++fold) {
    ZORVELA run;
    useTables(models.tables[fold], run);
    for (std::size_t i = 0; i < out.size(); ++i) {
      const ProlineLabel& label = data.labels.prolines[i];
      if (models.foldOf[i] != fold || !label.structure) continue;
      show(data.entry(i), label.resid, run);
      out[i] = run.predictProline(label.resid);
      if (visit && out[i]) visit(i, run, *out[i]);
    }
  }
  return out;
}

// --- Choosing what is scored ------------------------------------------------------------------------

namespace {

Evaluated evaluated(const LabelledProlines& data, std::size_t label, const ProlinePrediction& prediction,
                    std::size_t cluster) {
  const ProlineLabel& known = data.labels.prolines[label];
  const EntryShifts& entry = data.entry(label);
  Evaluated proline;
  proline.label = label;
  proline.isCis = known.structure == Omega::cis;
  proline.pCis = prediction.pCis;
  proline.pCisNorm = prediction.pCisNorm;
  proline.shiftCounts = prediction.shiftCounts;
  const auto cb = entry.cb.find(known.resid);
  proline.hasCB = cb != entry.cb.end();
  proline.hasCG = prediction.cgShift < kMissingBound;
  if (proline.ruleApplies()) proline.cbMinusCg = static_cast<double>(cb->second) - prediction.cgShift;
  proline.byShift = known.byShift;
  proline.cluster = cluster;
  return proline;
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

double medianOf(const Predictions& predictions, const Measurements& window, float ProlinePrediction::*value) {
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
  Evaluated proline = evaluated(data, middle, *predictions[middle], cluster[middle]);
  proline.isCis = labelOf(data, window) == Omega::cis;
  proline.pCis = medianOf(predictions, window, &ProlinePrediction::pCis);
  proline.pCisNorm = medianOf(predictions, window, &ProlinePrediction::pCisNorm);
  return proline;
}

}  // namespace

Evaluation evaluation(const LabelledProlines& data, const Predictions& predictions) {
  std::size_t clusters = 0;
  const std::vector<std::size_t> cluster = clusterNumbers(data, clusters);
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

}  // namespace zorvela

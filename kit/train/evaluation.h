// Predictions for labelled prolines, by given tables or by cross-validation over clusters.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "train/labelled_prolines.h"
#include "train/table_training.h"

namespace zorvela {

/// A labelled proline that the program predicts.
struct Evaluated {
  std::size_t label = 0;  ///< index of the label of its measurement in the middle
  bool isCis = false;
  double pCis = 0;
  double pCisNorm = 0;
  std::array<int, 3> shiftCounts{};  ///< backbone shifts of previous residue, proline, next residue
  bool hasCB = false;
  bool hasCG = false;
  double cbMinusCg = 0;  ///< ppm, where the proline has both
  ShiftLabel byShift = ShiftLabel::none;
  std::size_t cluster = 0;

  bool ruleApplies() const { return hasCB && hasCG; }
  bool isContradicted() const { return byShift == (isCis ? ShiftLabel::trans : ShiftLabel::cis); }
  int shiftCount() const { return shiftCounts[0] + shiftCounts[1] + shiftCounts[2] + (hasCG ? 1 : 0); }
};

/// All that was predicted, one proline for each distinct window.
struct Evaluation {
  std::vector<Evaluated> prolines;
  std::size_t labelled = 0;             ///< prolines with a label by structure
  std::size_t notPredicted = 0;         ///< of these, too few shifts or at an end of the chain
  std::size_t repeated = 0;             ///< of these, further measurements of a window
  std::vector<std::size_t> notANumber;  ///< labels whose probability is none: shifts far from both classes
};

/// One for each label; nothing where the program does not predict, or where there is no label by structure.
using Predictions = std::vector<std::optional<ProlinePrediction>>;

/// Sees each prediction together with the run that made it, tables and all.
using PredictionVisitor =
    std::function<void(std::size_t label, ZORVELA& run, const ProlinePrediction& prediction)>;

/// What predicts each label: a model for each fold.
struct FoldModels {
  std::vector<ReferenceTables> tables;
  std::vector<std::size_t> foldOf;  ///< by label
};

/// Makes the same tables predict all labels.
FoldModels oneModel(const ReferenceTables& tables, const LabelledProlines& data);

/// Trains tables for each fold without it: clusters are dealt out to the folds, and entries and windows of a
/// fold are left out together with its clusters. Error if there are fewer clusters than folds, or a fold
/// leaves no cis or no trans to train on. A step is a fold.
FoldModels trainFolds(const ReferenceTables& published, const LabelledProlines& data, std::size_t folds,
                      const TrainingChoices& choices, const OnStep& onStep = {});

/// Predicts all labels by structure. `data` may have other shifts than those that the models were trained
/// on.
Predictions predictAll(const FoldModels& models, const LabelledProlines& data,
                       const PredictionVisitor& visit = {});

/// What is scored: each window once, in the order of the labels, with the median of the probabilities of its
/// measurements and the label that most of them have. All else (shifts, CB, CG, cluster) is that of the
/// measurement in the middle. Error if there is none.
Evaluation evaluation(const LabelledProlines& data, const Predictions& predictions);

}  // namespace zorvela

// Predictions for labelled prolines, by given tables or by cross-validation over clusters.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "train/labelled_prolines.h"
#include "train/metrics.h"
#include "train/table_training.h"

namespace zorvela {

/// A labelled proline that the program predicts.
struct Evaluated {
  std::size_t label = 0;  ///< index of the label of its measurement in the middle
  bool isCis = false;
  bool isContradicted = false;  ///< by its own CB - CG
  double pCis = 0;
  double pCisNorm = 0;
  int shiftCount = 0;  ///< of the triplet, with CG
  bool hasCB = false;
  std::optional<double> cbMinusCg;  ///< ppm, where the proline has both
  std::size_t cluster = 0;
};

/// All that was predicted, one proline for each distinct window.
struct Evaluation {
  std::vector<Evaluated> prolines;
  std::size_t labelled = 0;      ///< prolines with a label by structure
  std::size_t notPredicted = 0;  ///< of these, too few shifts or at an end of the chain
  std::size_t repeated = 0;      ///< of these, further measurements of a window
  std::size_t notANumber = 0;    ///< of these, without a probability: shifts far from both classes
};

/// One for each label; nothing if the program does not predict, or if there is no label by structure.
using Predictions = std::vector<std::optional<CisPrediction>>;

/// The models that predict the labels, one for each fold.
struct FoldModels {
  std::vector<Model> models;
  std::vector<std::size_t> foldOf;  ///< by cluster
};

/// Makes the same model predict all labels.
FoldModels oneModel(const Model& model, const LabelledProlines& data);

/// Trains a model for each fold without it: clusters are dealt out to the folds, and entries and windows of a
/// fold are left out together with its clusters. Error if there are fewer clusters than folds, or a fold
/// leaves no cis or no trans to train on. A step is a fold.
FoldModels trainFolds(const Model& published, const LabelledProlines& data, std::size_t folds,
                      const TrainingChoices& choices, const OnStep& onStep = {});

/// Predicts all labels by structure. `data` may have other shifts than those that the models were trained
/// on.
Predictions predictAll(const FoldModels& folded, const LabelledProlines& data);

/// Selects the scored prolines: each window once, in the order of the labels, with the median of the
/// probabilities of its measurements and the label that most of them have. All else (shifts, CB, CG, cluster)
/// is that of the measurement in the middle. Error if there is none.
Evaluation evaluation(const LabelledProlines& data, const Predictions& predictions);

// --- Groups: by what was measured, and by how sure the label is -------------------------------------

/// Prolines that are scored together.
struct Group {
  std::string key;      ///< in JSON
  std::string name;     ///< in the table
  bool byRule = false;  ///< scores the rule that CB - CG above a bound means cis, not the probability
  std::function<bool(const Evaluated&)> holds;
};

/// All groups, in the order of the report; the first holds every proline.
std::vector<Group> groups();

/// The prolines of a group with what is scored of them.
std::vector<Scored> scored(const Evaluation& evaluation, const Group& group);

}  // namespace zorvela

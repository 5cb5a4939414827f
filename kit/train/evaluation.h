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
  double pCis = 0;
  double pCisNorm = 0;
  int shiftCount = 0;  ///< of the triplet, with CG
  bool hasCB = false;
  bool hasCG = false;
  double cbMinusCg = 0;  ///< ppm, where the proline has both
  ShiftLabel byShift = ShiftLabel::none;
  std::size_t cluster = 0;

  bool ruleApplies() const { return hasCB && hasCG; }
  bool isContradicted() const { return byShift == (isCis ? ShiftLabel::trans : ShiftLabel::cis); }
};

/// All that was predicted, one proline for each distinct window.
struct Evaluation {
  std::vector<Evaluated> prolines;
  std::size_t labelled = 0;             ///< prolines with a label by structure
  std::size_t notPredicted = 0;         ///< of these, too few shifts or at an end of the chain
  std::size_t repeated = 0;             ///< of these, further measurements of a window
  std::vector<std::size_t> notANumber;  ///< labels whose probability is none: shifts far from both classes
};

/// One for each label; nothing if the program does not predict, or if there is no label by structure.
using Predictions = std::vector<std::optional<CisPrediction>>;

/// The models that predict the labels, one for each fold.
struct FoldModels {
  std::vector<Model> models;
  std::vector<std::size_t> foldOf;  ///< by label

  const Model& of(std::size_t label) const { return models[foldOf[label]]; }
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

/// The scored prediction: the probability of the program, or the rule that CB - CG above a bound means cis.
enum class Method { program, rule };

/// Prolines that are scored together.
struct Group {
  std::string key;   ///< in JSON
  std::string name;  ///< in the table
  Method method = Method::program;
  std::function<bool(const Evaluated&)> holds;
};

/// All groups, in the order of the report; the first holds every proline.
std::vector<Group> groups();

/// The prolines of a group with what is scored of them.
std::vector<Scored> scored(const Evaluation& evaluation, const Group& group);

struct GroupFigures {
  Group group;
  Figures figures;
  FigureIntervals intervals;
};

/// The figures of all groups, with intervals from so many rounds of bootstrap over clusters (0: none). The
/// same evaluation gives the same figures.
std::vector<GroupFigures> allFigures(const Evaluation& evaluation, int rounds);

}  // namespace zorvela

// Accuracy of predictions: figures for a set of prolines, with bootstrap intervals over clusters.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace zorvela {

/// A proline with a known label and a score.
struct Scored {
  bool isCis = false;       ///< the label
  double score = 0;         ///< higher: more likely cis
  bool calledCis = false;   ///< what the score is taken for
  double probability = -1;  ///< of cis; below 0 where the score is none
  std::size_t cluster = 0;  ///< from 0, without gaps
};

/// The figures of a set, in the order of the reports.
enum Figure : std::size_t {
  kAuc,          ///< area under the ROC curve; ties count half
  kSensitivity,  ///< share of cis that are called cis
  kSpecificity,  ///< share of trans that are called trans
  kMcc,          ///< Matthews correlation coefficient; 0 where all calls are the same
  kBrier,        ///< mean squared difference of probability and label
  kLogLoss,      ///< natural logarithm; probabilities kept within 0.001 to 0.999
  kFigureCount
};

struct FigureName {
  const char* key;    ///< in JSON
  const char* title;  ///< in the table
};
inline constexpr std::array<FigureName, kFigureCount> kFigureNames = {{{"auc", "AUC"},
                                                                       {"sensitivity", "sensitivity"},
                                                                       {"specificity", "specificity"},
                                                                       {"mcc", "MCC"},
                                                                       {"brier", "Brier score"},
                                                                       {"log_loss", "log loss"}}};

/// Values by `Figure`. Nothing where they cannot be had: no cis, no trans, no probabilities.
using Figures = std::array<std::optional<double>, kFigureCount>;

Figures figuresOf(const std::vector<Scored>& set);

/// The 2.5th and 97.5th percentile of a figure over resampled clusters.
struct Interval {
  double low = 0;
  double high = 0;
};
using FigureIntervals = std::array<std::optional<Interval>, kFigureCount>;

/// Draws as many clusters as there are, with replacement, `rounds` times. The same seed gives the same
/// intervals on every machine.
FigureIntervals bootstrap(const std::vector<Scored>& set, int rounds, std::uint64_t seed);

/// A number from 0 to `bound` - 1, the same on every machine (std::uniform_int_distribution is not).
struct Draw {
  std::uint64_t state;  ///< at first the seed
  std::size_t below(std::size_t bound);
};

/// A point of the ROC curve: what is called cis from this score upwards.
struct RocPoint {
  double threshold = 0;
  double falsePositiveRate = 0;  ///< share of trans called cis
  double truePositiveRate = 0;   ///< share of cis called cis
};

/// From the strictest threshold to the loosest, one point for each distinct score.
std::vector<RocPoint> rocCurve(const std::vector<Scored>& set);

/// Predicted probability against observed share of cis.
struct CalibrationBin {
  double from = 0;   ///< probabilities at or above this ...
  double below = 0;  ///< ... and below this (the last bin holds 1 too)
  std::size_t count = 0;
  std::size_t cis = 0;
  double meanProbability = 0;  ///< 0 for no prolines
  double share = 0;            ///< observed share of cis; 0 for no prolines
  Interval interval;           ///< 95 % of the share, after Wilson
};

/// Bins by `edges`, which ascend from 0 to 1.
std::vector<CalibrationBin> calibration(const std::vector<Scored>& set, const std::vector<double>& edges);

}  // namespace zorvela

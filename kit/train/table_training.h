// Limits of secondary shifts, and means and deviations of shifts around cis and trans prolines.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "GDB.h"
#include "train/labelled_prolines.h"
#include "util/robust.h"
#include "zorvela/core.h"

namespace zorvela {

/// Choices in training. The values here are those of the tables that the program ships with;
/// doc/accuracy.md has the figures behind each.
struct TrainingChoices {
  double limitPercent = 2.0;  ///< shifts are clipped below this percentile and above its mirror
  double trim = 4.0;  ///< values further from the median than this many robust deviations are left out
  /// Deviations of cis and trans. "natural": one for both, with the variances weighted 1 to 19 as in nature.
  /// "equal": one for both, with the variances weighted equally. "none": each class has its own.
  std::string pooling = "natural";
  double widenProline = 1.5;     ///< factor on the deviations of the proline's own shifts
  double widenNeighbours = 2.0;  ///< factor on the deviations of the neighbours' shifts
  int pseudocount = 1;           ///< added to each count of neighbours
};

/// The shifts of one index. `cis` and `trans` are those of the sample; the prediction uses the others.
struct IndexStatistics {
  Sample cis;
  Sample trans;
  double stdCis = 1;
  double stdTrans = 1;
};

/// The result of training.
struct Training {
  Model model;  ///< with limits, means and deviations as the tables print them
  std::array<IndexStatistics, kShifts> shifts;
  std::size_t secondaryShifts = 0;  ///< in the limits
  std::size_t entries = 0;
  std::size_t cisProlines = 0;  ///< windows in the statistics
  std::size_t transProlines = 0;
};

/// Adds limits, means and deviations to published values. Error if no cis, or no trans, proline has enough
/// shifts.
Training train(const Model& published, const LabelledProlines& data, const TrainingChoices& choices);

/// Writes the limits as sslimit.tab, and the shifts as Pro.cs.tab.
GDB limitsTable(const Training& training, const TrainingChoices& choices);
GDB shiftTable(const Training& training, const TrainingChoices& choices);

}  // namespace zorvela

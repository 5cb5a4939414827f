// Limits of secondary shifts, and means and deviations of shifts around cis and trans prolines.
#pragma once

#include <vector>

#include "predict/tables.h"
#include "train/labelled_prolines.h"

namespace zorvela {

/// Which deviation a shift gets for cis and for trans.
enum class Pooling {
  natural,  ///< one for both: the variances of the classes weighted 1 to 19, as in nature
  equal,    ///< one for both: the variances weighted equally
  none      ///< each class its own
};

/// What can be chosen in training. The values here are those of the tables that the program ships with;
/// doc/accuracy.md has the figures behind each.
struct TrainingChoices {
  double limitPercent = 2.0;  ///< shifts are clipped below this percentile and above its mirror
  double trim = 4.0;  ///< values further from the median than this many robust deviations are left out
  Pooling pooling = Pooling::natural;
  double widenProline = 1.5;     ///< factor on the deviations of the proline's own shifts
  double widenNeighbours = 2.0;  ///< factor on the deviations of the neighbours' shifts
  int pseudocount = 1;           ///< added to each count of neighbours
};

/// Fills in limits and shifts from the entries and labels that are marked as used. Error if no cis,
/// or no trans, proline with enough shifts is among them.
void trainTables(ReferenceTables& tables, const LabelledProlines& data, const std::vector<bool>& useEntry,
                 const std::vector<bool>& useLabel, const TrainingChoices& choices);

}  // namespace zorvela

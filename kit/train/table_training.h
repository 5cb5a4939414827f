// Limits of secondary shifts, and means and deviations of shifts around cis and trans prolines.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <vector>

#include "predict/tables.h"
#include "train/labelled_prolines.h"
#include "util/robust.h"

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

/// Shift indices: six of each residue, and CG of the proline.
inline constexpr std::size_t kShiftIndices = kProlineCG + 1;

/// The lowest and highest secondary shift of an atom (ppm), with the three decimals of a table.
struct Limits {
  float lowest = 0;
  float highest = 0;
};
using TypeLimits = std::map<char, std::array<Limits, kAtomsPerResidue>>;

/// The shifts of one index. `cis` and `trans` are those of the sample; the prediction uses the others.
struct IndexStatistics {
  Sample cis;
  Sample trans;
  double stdCis = 1;
  double stdTrans = 1;
};

/// What training finds.
struct Training {
  TypeLimits limits;
  std::array<IndexStatistics, kShiftIndices> shifts;
  std::size_t secondaryShifts = 0;  ///< in the limits
  std::size_t entries = 0;
  std::size_t cisProlines = 0;  ///< windows in the statistics
  std::size_t transProlines = 0;
};

/// Trains on the entries and labels that are marked as used. Error if no cis, or no trans, proline with
/// enough shifts is among them.
Training train(const GDB& randomCoil, const LabelledProlines& data, const std::vector<bool>& useEntry,
               const std::vector<bool>& useLabel, const TrainingChoices& choices);

/// Writes the limits as sslimit.tab, and the shifts as Pro.cs.tab.
GDB limitsTable(const Training& training, const TrainingChoices& choices);
GDB shiftTable(const Training& training, const TrainingChoices& choices);

}  // namespace zorvela

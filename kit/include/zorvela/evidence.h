// The contributions to a probability, and the shifts that are worth measuring next.
//
// P_CIS_NORM is a product of factors, so its log-odds is a sum: the prior of every proline, the residue
// types before and after it, and one contribution for each shift. Contributions are in nats of log-odds,
// positive for cis; 1 nat multiplies the odds by 2.7.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/core.h"

namespace zorvela {

/// Shift index of the proline's own CB and CG.
inline constexpr int kIndexCB = static_cast<int>(shiftIndex(0, Atom::CB));
inline constexpr int kIndexCG = static_cast<int>(shiftIndex(0, Atom::CG));

/// Returns the name of the atom of a shift index.
inline std::string atomName(int index) {
  return std::string(nameOf(shiftPlace(static_cast<std::size_t>(index)).atom));
}

/// One of the 19 shifts. Means, deviations and `secondary` are secondary shifts (observed minus reference);
/// for CG they are the shift itself.
struct ShiftContribution {
  std::optional<float> observed;   ///< ppm as in the file; HA of glycine: mean of HA2, HA3
  std::optional<float> corrected;  ///< without the referencing offset, if one was subtracted
  std::optional<float> reference;  ///< random coil with its corrections (ppm); nothing for CG or if unknown
  std::optional<float> secondary;  ///< as the model uses it (ppm); nothing if missing
  bool clipped = false;            ///< `secondary` was brought to the limit of its residue type
  bool measurable = false;         ///< missing, but it exists and would be used
  ClassShift cis;
  ClassShift trans;
  double nats = 0;  ///< 0 if missing

  /// Returns the shift that the model uses, before the reference is subtracted (ppm).
  const std::optional<float>& compared() const { return corrected ? corrected : observed; }
};

/// The factor of a neighbour's residue type.
struct NeighbourContribution {
  std::string name;  ///< one-letter code
  float cis = 0;     ///< its share among neighbours of cis prolines
  float trans = 0;   ///< and of trans
  double nats = 0;   ///< infinite where one share is 0; not a number where both are
};

/// The expected value of measuring a missing shift.
struct NextShift {
  int index = 0;
  double bits = 0;                ///< expected gain of information about cis or trans
  std::optional<double> decides;  ///< chance that this shift alone decides an undecided proline
};

/// All contributions to the probability of one proline.
struct Evidence {
  NeighbourContribution before;
  NeighbourContribution after;
  /// One for each shift index.
  std::vector<ShiftContribution> shifts = std::vector<ShiftContribution>(kShifts);
  std::vector<NextShift> next;  ///< the measurable ones, the most useful first

  /// Returns the contribution of a shift index of the triplet; see `shiftPlace`.
  const ShiftContribution& shift(int index) const { return shifts[static_cast<std::size_t>(index)]; }
  /// Returns the log-odds of every proline before any evidence: 1 cis to 19 trans.
  static double prior();
  /// Returns the sum: the log-odds of P_CIS_NORM in double precision, even if the product of the factors is
  /// too small for single precision.
  double logOdds() const;
};

}  // namespace zorvela

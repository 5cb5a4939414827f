// Fits the relations by which referencing offsets are estimated, and counts how often they see an offset.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "predict/referencing.h"
#include "train/labelled_prolines.h"

namespace zorvela {

/// Adds ppm to CA, CB and C of a chain and to CG of its prolines, and to HA, as wrong referencing does.
void addOffsets(EntryShifts& chain, double carbon, double proton);

/// Takes away what calls for a correction, as `run` does.
void rereference(EntryShifts& chain);

/// The relations of `knownRelations()` fitted anew to chains that are taken to have no offset: medians of the
/// atom's shift around each point, moved so that the median chain has no offset. Rounded to 0.001 ppm.
/// Error where no chain has enough residues for one of them.
std::vector<ShiftRelation> fitRelations(const std::vector<const EntryShifts*>& chains);

/// The ways to estimate an offset that are compared.
enum class OffsetMethod {
  line,      ///< the straight line of the check report
  known,     ///< `estimateOffsets` as `run` uses it
  otherHalf  ///< the same, with relations fitted to the clusters of the other half
};
inline constexpr std::size_t kOffsetMethods = 3;

/// Offsets that a method finds in a chain: CA, CB, HA, C.
struct FoundOffset {
  double offset = 0;  ///< ppm; not a number where there is none
  double error = 0;
  bool isCalled = false;  ///< it calls for a correction
};
using FoundOffsets = std::array<FoundOffset, 4>;

/// How often a correction is called for among some chains.
struct CalledCount {
  std::string chains;                                ///< which chains, and what was added to them
  std::size_t count = 0;                             ///< chains
  std::array<std::size_t, kOffsetMethods> called{};  ///< by method
};

/// The estimates of an atom over the chains as they are.
struct EstimateSpread {
  std::string atoms;
  std::size_t method = 0;
  std::size_t count = 0;       ///< chains with an estimate
  double median = 0;           ///< ppm
  double deviation = 0;        ///< robust, ppm
  double beyondTwoErrors = 0;  ///< share of chains whose offset is more than twice its error from 0
};

struct ReferencingStudy {
  std::size_t chains = 0;
  std::size_t longChains = 0;  ///< of 40 residues or more
  std::vector<CalledCount> called;
  std::vector<EstimateSpread> spreads;
  std::vector<ShiftRelation> fitted;  ///< to all chains
};

/// Tries the methods on all entries, as they are and with offsets added.
ReferencingStudy studyReferencing(const LabelledProlines& data);

}  // namespace zorvela

// Does it pay to measure what the expected gain ranks first? Shifts are hidden from labelled prolines and
// given back one at a time: the one with the largest expected gain, or one drawn at random.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <vector>

#include "predict/next_shift.h"
#include "train/metrics.h"
#include "zorvela/core.h"

namespace zorvela {

/// A shift that a proline has, as if it were still to be measured, and what it adds to the log-odds.
struct TrialShift {
  MissingShift promise;
  double nats = 0;
};

/// A labelled proline.
struct TrialProline {
  bool isCis = false;
  std::size_t cluster = 0;
  double start = 0;  ///< log-odds without any shift: 1 in 20 and the residue types beside it
  std::vector<TrialShift> shifts;
};

/// The shifts of a prediction; `types` are those of its triplet. Label and cluster are left to the caller.
TrialProline trialProline(const Model& model, const std::array<char, 3>& types,
                          const CisPrediction& prediction);

/// After so many shifts were given back: the mean of -log2 of the probability that the label had (bits;
/// probabilities kept within 0.001 to 0.999), and the share of prolines that are still undecided.
struct TrialStep {
  double byGain = 0;
  double atRandom = 0;
  Interval saved;  ///< 95 % of `atRandom` less `byGain`, over resampled clusters
  double undecidedByGain = 0;
  double undecidedAtRandom = 0;
};

/// One set of prolines.
struct TrialFigures {
  std::size_t prolines = 0;  ///< distinct ones
  std::size_t starts = 0;    ///< all rounds together
  std::vector<TrialStep> steps;
  double promised = 0;  ///< of the first shift given back by gain: mean expected gain (bits) ...
  double kept = 0;      ///< ... and by how much the log loss fell (bits)
};

struct NextShiftTrial {
  TrialFigures all;
  TrialFigures undecided;  ///< only the starts that are undecided
};

/// Hides each shift with a chance of one half, `rounds` times for each proline, and gives back up to four.
/// The same prolines give the same figures on every machine.
NextShiftTrial tryNextShifts(const std::vector<TrialProline>& prolines, int rounds, int bootstrapRounds);

/// Writes what the shifts that are measured next are worth; hidden `rounds` times.
void writeTrial(std::ostream& out, const NextShiftTrial& trial, int rounds);

}  // namespace zorvela

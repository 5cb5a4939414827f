// From the factors of a probability to contributions.
#include "predict/evidence.h"

#include <cmath>
#include <utility>

#include "predict/next_shift.h"
#include "zorvela/calls.h"

namespace zorvela {

namespace {

double ratio(float cis, float trans) {
  return std::log(static_cast<double>(cis)) - std::log(static_cast<double>(trans));
}

NeighbourContribution neighbour(char type, float cis, float trans) {
  return {std::string(1, type), cis, trans, ratio(cis, trans)};
}

/// One shift of a triplet in its sequence.
struct TripletShift {
  const std::vector<Residue>& sequence;
  std::size_t residue;  ///< its place in the sequence, from 0
  Atom atom;

  std::optional<float> observed() const {
    if (atom == Atom::CG) return sequence[residue].shift(atom);
    return observedShift(sequence[residue], atom);
  }

  std::optional<float> reference(const Model& model) const {
    if (atom == Atom::CG) return std::nullopt;
    const float shift = referenceShifts(model, sequence, residue)[indexOf(atom)];
    if (shift >= kMissingBound) return std::nullopt;
    return shift;
  }

  /// Tells whether it exists and would be used. The amino group of the first residue is not seen.
  bool isMeasurable(const Model& model) const {
    if (atom == Atom::CG) return true;
    if (isAmide(atom) && (residue == 0 || isProline(sequence[residue].type))) return false;
    return reference(model).has_value();
  }
};

ShiftContribution contribution(const Model& model, const TripletShift& shift, const ShiftEvidence& factor,
                               const ShiftStatistics& statistics) {
  ShiftContribution result;
  result.cis = statistics.cis;
  result.trans = statistics.trans;
  result.reference = shift.reference(model);
  if (factor.isMissing) {
    result.measurable = shift.isMeasurable(model);
    return result;
  }
  result.observed = shift.observed();
  result.secondary = factor.used;
  result.nats = factor.lnCis - factor.lnTrans;
  return result;
}

/// A shift of a proline's triplet as if it were still to be measured: what the model expects of it.
MissingShift missingShift(const Model& model, char type, std::size_t index) {
  // Nothing real is outside of these; from 999 on a shift is missing.
  constexpr float kFar = 998.0F;
  MissingShift shift;
  shift.index = static_cast<int>(index);
  shift.cis = model.shifts[index].cis;
  shift.trans = model.shifts[index].trans;
  shift.lowest = -kFar;
  shift.highest = kFar;
  if (const Atom atom = shiftPlace(index).atom; atom != Atom::CG) {
    const float lowest = model.type(type).lowest[indexOf(atom)];
    const float highest = model.type(type).highest[indexOf(atom)];
    shift.lowest = clipped(-kFar, lowest, highest);
    shift.highest = clipped(kFar, lowest, highest);
  }
  return shift;
}

}  // namespace

Evidence evidenceOf(const Model& model, const std::vector<Residue>& sequence, std::size_t place,
                    const Triplet& triplet, const CisPrediction& prediction) {
  const ProlineEvidence& factors = prediction.evidence;
  Evidence evidence;
  evidence.before = neighbour(triplet.types[0], factors.cisShares[0], factors.transShares[0]);
  evidence.after = neighbour(triplet.types[2], factors.cisShares[1], factors.transShares[1]);
  std::vector<MissingShift> missing;
  for (std::size_t index = 0; index < kShifts; ++index) {
    const auto [residue, atom] = shiftPlace(index);
    const auto position = static_cast<std::size_t>(std::ptrdiff_t{residue} + 1);
    const TripletShift at{sequence, place + position - 1, atom};
    ShiftContribution& shift = evidence.shifts[index];
    shift = contribution(model, at, factors.shifts[index], model.shifts[index]);
    shift.clipped =
        atom != Atom::CG && shift.secondary && *shift.secondary != triplet.secondary[position][indexOf(atom)];
    if (shift.measurable) missing.push_back(missingShift(model, triplet.types[position], index));
  }
  const bool isUndecided = callOf(prediction.pCisNorm) == Call::undecided;
  evidence.next = nextShifts(evidence.logOdds(), isUndecided, missing);
  return evidence;
}

double Evidence::prior() {
  static const double logOdds = -std::log(kTransPerCis);
  return logOdds;
}

double Evidence::logOdds() const {
  double sum = prior() + before.nats + after.nats;
  for (const ShiftContribution& shift : shifts) sum += shift.nats;
  return sum;
}

}  // namespace zorvela

// From observed shifts to the probability of cis.
#include "zorvela/core.h"

#include <cmath>  // for std::exp, std::fabs, std::fma, std::llrint

namespace zorvela {

std::optional<Atom> atomNamed(std::string_view name) {
  for (std::size_t i = 0; i < kAtomCount; ++i)
    if (nameOf(static_cast<Atom>(i)) == name) return static_cast<Atom>(i);
  return std::nullopt;
}

// --- Six digits -----------------------------------------------------------------------------------

namespace {

// Powers of ten that a double holds exactly.
constexpr double kPowers[] = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                              1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The integer nearest to product + error; of two as near the even one.
double nearestInteger(double product, double error) {
  const double below = std::floor(product);
  const double rest = product - below;
  if (rest != 0.5 || error == 0) return static_cast<double>(std::llrint(product));
  return error > 0 ? below + 1 : below;
}

}  // namespace

// Exact up to the last step, a division or product of two exact numbers that is rounded once: as printf and
// strtod round.
float sixDigits(float value) {
  const double size = std::fabs(static_cast<double>(value));
  // Outside are 0, infinity, what is not a number, and sizes that no shift has.
  if (!(size >= 1e-17 && size < 1e28)) return value;
  double rounded = 0;
  if (size < 1e5) {
    int decimals = 0;
    while (size * kPowers[decimals] < 1e5) ++decimals;
    const double product = size * kPowers[decimals];
    rounded = nearestInteger(product, std::fma(size, kPowers[decimals], -product)) / kPowers[decimals];
  } else {
    int zeros = 0;
    while (size / kPowers[zeros] >= 999999.5) ++zeros;
    const double quotient = size / kPowers[zeros];
    rounded = nearestInteger(quotient, std::fma(-quotient, kPowers[zeros], size)) * kPowers[zeros];
  }
  return static_cast<float>(std::copysign(rounded, static_cast<double>(value)));
}

// --- Secondary shifts -----------------------------------------------------------------------------

float referenceShift(const ReferenceValues& previous, const ReferenceValues& own, const ReferenceValues& next,
                     Atom atom) {
  const std::size_t i = indexOf(atom);
  return own.randomCoil[i] + own.own[i] + previous.asPrevious[i] + next.asNext[i];
}

BackboneValues referenceShifts(const Model& model, const std::vector<Residue>& sequence, std::size_t place) {
  const char previous = place > 0 ? sequence[place - 1].type : kNoType;
  const char next = place + 1 < sequence.size() ? sequence[place + 1].type : kNoType;
  BackboneValues references{};
  for (const Atom atom : kBackbone)
    references[indexOf(atom)] =
        referenceShift(model.type(previous), model.type(sequence[place].type), model.type(next), atom);
  return references;
}

std::optional<float> glycineHA(float ha2, float ha3) {
  if (ha2 < kMissingBound && ha3 < kMissingBound) return (ha2 + ha3) * 0.5F;
  if (ha2 < kMissingBound) return ha2;
  if (ha3 < kMissingBound) return ha3;
  return std::nullopt;
}

float secondaryShift(char type, Atom atom, std::optional<float> observed, float reference) {
  if (type == kProlineCode && isAmide(atom)) return kMissingShift;
  // HA of glycine stays as it is where the reference is unknown, and 9999 less the reference is missing too.
  if (type == kGlycineCode && atom == Atom::HA) {
    const float ha = observed.value_or(kMissingShift);
    return reference < kMissingBound ? ha - reference : ha;
  }
  return observed && !(reference >= kMissingBound) ? *observed - reference : kMissingShift;
}

std::optional<float> observedShift(const Residue& residue, Atom atom) {
  if (residue.type == kGlycineCode && atom == Atom::HA)
    return glycineHA(residue.shift(Atom::HA2), residue.shift(Atom::HA3));
  if (!residue.has(atom)) return std::nullopt;
  return residue.shift(atom);
}

int missingShifts(const Residue& residue) {
  int missing = 0;
  for (const Atom atom : kBackbone)
    if (!observedShift(residue, atom)) ++missing;
  return missing;
}

BackboneValues secondaryShifts(const Residue& residue, const BackboneValues& references) {
  BackboneValues secondary{};
  for (const Atom atom : kBackbone) {
    const std::size_t i = indexOf(atom);
    secondary[i] = sixDigits(secondaryShift(residue.type, atom, observedShift(residue, atom), references[i]));
  }
  return secondary;
}

std::vector<BackboneValues> secondaryShifts(const Model& model, const std::vector<Residue>& sequence) {
  std::vector<BackboneValues> secondary;
  secondary.reserve(sequence.size());
  for (std::size_t i = 0; i < sequence.size(); ++i)
    secondary.push_back(secondaryShifts(sequence[i], referenceShifts(model, sequence, i)));
  return secondary;
}

float clipped(float shift, float lowest, float highest) {
  if (shift >= kMissingBound) return shift;
  if (shift < lowest) return lowest;
  return shift > highest ? highest : shift;
}

// --- Prediction -------------------------------------------------------------------------------

namespace {

// More missing shifts than this make a residue a poor one; a triplet may hold one of them.
constexpr int kMostMissing = 3;
constexpr int kMostPoorResidues = 1;

// Without the factor 1 / (sigma sqrt(2 pi)): the deviations act through the exponent alone.
double lnGaussian(float shift, const ClassShift& of) {
  const float difference = shift - of.mean;
  const double z = (1.0 / static_cast<double>(of.deviation)) * static_cast<double>(difference);
  return -0.5 * (z * z);
}

}  // namespace

bool hasEnoughShifts(const std::array<int, 3>& missing) {
  int poorResidues = 0;
  for (const int count : missing)
    if (count > kMostMissing) ++poorResidues;
  return poorResidues <= kMostPoorResidues;
}

ShiftEvidence compared(float shift, const ShiftStatistics& statistics) {
  return {shift, false, lnGaussian(shift, statistics.cis), lnGaussian(shift, statistics.trans)};
}

// Backbone shifts, neighbours, CG: in this order, each factor rounded to single precision.
float cisProbability(const ProlineEvidence& evidence) {
  float likeCis = 1.0F;
  float likeTrans = 1.0F;
  const auto take = [&](const ShiftEvidence& shift) {
    if (shift.isMissing) return;
    likeCis = static_cast<float>(static_cast<double>(likeCis) * std::exp(shift.lnCis));
    likeTrans = static_cast<float>(static_cast<double>(likeTrans) * std::exp(shift.lnTrans));
  };
  for (std::size_t k = 0; k < kBackboneShifts; ++k) take(evidence.shifts[k]);
  const float priorCis = evidence.cisShares[0] * evidence.cisShares[1];
  const float priorTrans = evidence.transShares[0] * evidence.transShares[1];
  likeCis *= priorCis;
  likeTrans *= priorTrans;
  take(evidence.shifts[shiftIndex(0, Atom::CG)]);
  return likeCis / (likeCis + likeTrans);
}

float naturalOdds(float pCis) {
  const auto p = static_cast<double>(pCis);
  return static_cast<float>(p / (p + kTransPerCis * (1.0 - p)));
}

CisPrediction predict(const Model& model, const Triplet& triplet) {
  CisPrediction prediction;
  ProlineEvidence& evidence = prediction.evidence;
  for (std::size_t k = 0; k < kBackboneShifts; ++k) {
    const std::size_t residue = k / kBackboneAtoms;
    const std::size_t atom = k % kBackboneAtoms;
    const ReferenceValues& type = model.type(triplet.types[residue]);
    const float used =
        sixDigits(clipped(triplet.secondary[residue][atom], type.lowest[atom], type.highest[atom]));
    if (!isMissingSecondary(used)) evidence.shifts[k] = compared(used, model.shifts[k]);
  }
  const std::size_t cg = shiftIndex(0, Atom::CG);
  if (!isMissingCG(triplet.cg)) evidence.shifts[cg] = compared(triplet.cg, model.shifts[cg]);
  const ReferenceValues& before = model.type(triplet.types[0]);
  const ReferenceValues& after = model.type(triplet.types[2]);
  evidence.cisShares = {before.cisBefore, after.cisAfter};
  evidence.transShares = {before.transBefore, after.transAfter};
  prediction.pCis = cisProbability(evidence);
  prediction.pCisNorm = naturalOdds(prediction.pCis);
  return prediction;
}

}  // namespace zorvela

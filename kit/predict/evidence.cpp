// From the program's own factors to contributions.
#include "predict/evidence.h"

#include <cmath>
#include <map>
#include <utility>

#include "protein/residue_shifts.h"
#include "zorvela/calls.h"

namespace zorvela {

namespace {

static_assert(kIndexCG == kProlineCG, "CG is the last shift of a triplet");

ClassShift classShift(const std::map<int, float>& means, const std::map<int, float>& deviations, int index) {
  const auto at = [index](const std::map<int, float>& values) {
    const auto found = values.find(index);
    return found == values.end() ? 0.0F : found->second;
  };
  return {at(means), at(deviations)};
}

/// The shifts around one proline as the file has them.
class Observed {
 public:
  Observed(const Protein& protein, int resid) {
    for (const Shift& shift : shiftsOf(protein, resid - 1, resid + 1))
      values.emplace(std::make_pair(shift.position, std::string(nameOf(shift.atom))),
                     static_cast<float>(shift.ppm));
  }

  std::optional<float> of(int resid, const std::string& atom) const {
    const auto found = values.find({resid, atom});
    if (found == values.end()) return std::nullopt;
    return found->second;
  }

  /// The mean of HA2 and HA3, or the one of them that is there.
  std::optional<float> ofGlycine(int resid) const {
    const std::optional<float> second = of(resid, "HA2");
    const std::optional<float> third = of(resid, "HA3");
    if (second && third) return (*second + *third) * 0.5F;
    return second ? second : third;
  }

 private:
  std::map<std::pair<int, std::string>, float> values;
};

std::optional<float> referenceOf(const ZORVELA& run, int resid, const std::string& atom) {
  const auto residue = run.rcShifts.find(resid);
  if (residue == run.rcShifts.end()) return std::nullopt;
  const auto reference = residue->second.find(atom);
  if (reference == residue->second.end() || reference->second >= kMissingBound) return std::nullopt;
  return reference->second;
}

/// Whether a missing shift exists and would be used. Proline has no amide proton and its N is not used; the
/// amino group of the first residue is not seen.
bool isMeasurable(const ZORVELA& run, int resid, const std::string& atom) {
  if (atom == "CG") return true;
  const bool isAmide = atom == "N" || atom == "HN";
  if (isAmide && (resid == 1 || run.resNames.at(resid) == "P" || run.resNames.at(resid) == "p")) return false;
  return referenceOf(run, resid, atom).has_value();
}

double ratio(float cis, float trans) {
  return std::log(static_cast<double>(cis)) - std::log(static_cast<double>(trans));
}

ShiftContribution contribution(const ZORVELA& run, const ProlinePrediction& prediction,
                               const Observed& observed, int index) {
  const ::ShiftEvidence& factor = prediction.evidence.shifts[static_cast<std::size_t>(index)];
  const ShiftPlace place = shiftPlace(index);
  const int resid = prediction.resid + place.residue;
  ShiftContribution shift;
  shift.cis = classShift(run.avgCis, run.stdCis, index);
  shift.trans = classShift(run.avgTrans, run.stdTrans, index);
  if (index != kIndexCG) shift.reference = referenceOf(run, resid, place.atom);
  if (factor.isMissing) {
    shift.measurable = isMeasurable(run, resid, place.atom);
    return shift;
  }
  const bool isGlycineHA = place.atom == "HA" && run.resNames.at(resid) == "G";
  shift.observed = isGlycineHA ? observed.ofGlycine(resid) : observed.of(resid, place.atom);
  shift.secondary = factor.used;
  shift.clipped = factor.used != factor.secondary;
  shift.nats = factor.lnCis - factor.lnTrans;
  return shift;
}

}  // namespace

ShiftPlace shiftPlace(int index) {
  static const std::array<const char*, kAtomsPerResidue> atoms = {"N", "HA", "C", "CA", "CB", "HN"};
  if (index == kIndexCG) return {0, "CG"};
  return {index / kAtomsPerResidue - 1, atoms[static_cast<std::size_t>(index % kAtomsPerResidue)]};
}

MissingShift missingShift(ZORVELA& run, int prolineResid, int index) {
  const ShiftPlace place = shiftPlace(index);
  MissingShift shift;
  shift.index = index;
  shift.cis = classShift(run.avgCis, run.stdCis, index);
  shift.trans = classShift(run.avgTrans, run.stdTrans, index);
  // Nothing real is outside of these; from 999 on a shift is missing.
  constexpr float kFar = 998.0F;
  const bool isLimited = index != kIndexCG && run.clipShifts;
  const int resid = prolineResid + place.residue;
  shift.lowest = isLimited ? run.clipSShift(resid, -kFar, place.atom) : -kFar;
  shift.highest = isLimited ? run.clipSShift(resid, kFar, place.atom) : kFar;
  return shift;
}

Evidence evidenceOf(ZORVELA& run, const Protein& protein, const ProlinePrediction& prediction) {
  const ProlineEvidence& factors = prediction.evidence;
  const Observed observed(protein, prediction.resid);
  Evidence evidence;
  evidence.before = {prediction.names[0], factors.cisShares[0], factors.transShares[0],
                     ratio(factors.cisShares[0], factors.transShares[0])};
  evidence.after = {prediction.names[2], factors.cisShares[1], factors.transShares[1],
                    ratio(factors.cisShares[1], factors.transShares[1])};
  std::vector<MissingShift> missing;
  for (int index = 0; index <= kIndexCG; ++index) {
    ShiftContribution& shift = evidence.shifts[static_cast<std::size_t>(index)];
    shift = contribution(run, prediction, observed, index);
    if (shift.measurable) missing.push_back(missingShift(run, prediction.resid, index));
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

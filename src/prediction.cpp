// The run from end to end, and the probability of cis.
#include <algorithm>  // for std::min, std::max
#include <cmath>      // for std::exp
#include <iostream>   // for std::cout

#include "ZORVELA.h"
#include "names.h"
#include "residue_rows.h"
#include "triplet.h"

namespace {

// Input rows far apart can span billions of residue numbers: of more than these only those are visited
// that the sequence or a row names.
constexpr long long kMostUnnamed = 100000;

// Without the factor 1 / (sigma sqrt(2 pi)): the deviations act through the exponent alone.
double lnGaussian(float shift, float mean, float deviation) {
  const float difference = shift - mean;
  const double z = (1.0 / deviation) * difference;
  return -0.5 * (z * z);
}

// Likelihood of cis and of trans, each in single precision after every factor.
struct Likelihoods {
  float cis = 1.0F;
  float trans = 1.0F;

  void take(const ShiftEvidence& shift) {
    if (shift.isMissing) return;
    cis = static_cast<float>(cis * std::exp(shift.lnCis));
    trans = static_cast<float>(trans * std::exp(shift.lnTrans));
  }
  void take(float cisFactor, float transFactor) {
    cis *= cisFactor;
    trans *= transFactor;
  }
  float probability() const { return cis / (cis + trans); }
};

// Backbone shifts, neighbours, CG: in this order, which single precision can notice.
float cisProbability(const ProlineEvidence& evidence) {
  Likelihoods all;
  for (std::size_t k = 0; k < kTripletShifts; ++k) all.take(evidence.shifts[k]);
  all.take(evidence.cisShares[0] * evidence.cisShares[1], evidence.transShares[0] * evidence.transShares[1]);
  all.take(evidence.shifts[kProlineCG]);
  return all.probability();
}

float valueAt(const std::map<int, float>& values, int index) {
  const auto found = values.find(index);
  return found == values.end() ? 0.0F : found->second;
}

float naturalOdds(float p) {
  return static_cast<float>(p / (p + kTransPerCis * (1.0 - p)));
}

}  // namespace

// --- The run ------------------------------------------------------------------------------------

void ZORVELA::runPredict() {
  init();
  std::cout << "Analyzing " << inName << ":" << std::endl;
  getResInfo();

  GDB outTable = startPredictions();
  const ResidueRows secondaryShifts(resTable);
  for (const int resid : residuesToVisit()) {
    // Residue 1 has no neighbour before it. The other number is that of the names known so far.
    if (resid == 1 || resid == static_cast<int>(resNames.size())) continue;
    if (const auto prediction = predictResidue(resid, secondaryShifts)) addPrediction(outTable, *prediction);
  }
  printListing(outTable);
  outTable.saveGDB(sumName);
}

std::vector<int> ZORVELA::residuesToVisit() const {
  const int first = std::max(firstResid, minResid);
  const int last = std::min(lastResid, maxResid);
  std::vector<int> residues;
  const long long numbers = static_cast<long long>(last) - first + 1;
  if (numbers <= kMostUnnamed + static_cast<long long>(resNames.size())) {
    for (long long resid = first; resid <= last; ++resid) residues.push_back(static_cast<int>(resid));
  } else {
    for (auto at = resNames.lower_bound(first); at != resNames.end() && at->first <= last; ++at)
      residues.push_back(at->first);
  }
  return residues;
}

// --- Probability --------------------------------------------------------------------------------

std::optional<ProlinePrediction> ZORVELA::predictProline(int r) {
  return predictResidue(r, ResidueRows(resTable));
}

std::vector<std::optional<ProlinePrediction>> ZORVELA::predictProlines(const std::vector<int>& residues) {
  const ResidueRows secondaryShifts(resTable);
  std::vector<std::optional<ProlinePrediction>> predictions;
  for (const int resid : residues) predictions.push_back(predictResidue(resid, secondaryShifts));
  return predictions;
}

std::optional<ProlinePrediction> ZORVELA::predictResidue(int r, const ResidueRows& secondaryShifts) {
  // Whatever comes of it, residues looked at outside the sequence are noted: without a name, and without a
  // missing shift.
  for (const int offset : {-1, 0, 1}) {
    const int resid = residueAt(r, offset);
    resNames.try_emplace(resid);
    missingCount.try_emplace(resid);
  }
  // With details on, every clipped shift has its line, those around other residues as well.
  if (resNames[r] != kProline && !showDetail) return std::nullopt;
  std::map<std::string, std::string> triplet = tripletOf(r, secondaryShifts);
  if (!hasEnoughShifts(triplet) || resNames[r] != kProline) return std::nullopt;

  ProlinePrediction prediction;
  prediction.resid = r;
  prediction.cgShift = cgShifts[r];
  for (int position = kPrevious; position <= kNext; ++position) {
    const auto i = static_cast<std::size_t>(position - kPrevious);
    prediction.names[i] = triplet[atPosition(kResname, position)];
    prediction.shiftCounts[i] = kAtomsPerResidue - missingCount[residueAt(r, position - kCentre)];
  }
  prediction.evidence = gatherEvidence(triplet, secondaryShifts, prediction);
  prediction.pCis = cisProbability(prediction.evidence);
  prediction.pCisNorm = naturalOdds(prediction.pCis);
  return prediction;
}

ProlineEvidence ZORVELA::gatherEvidence(std::map<std::string, std::string>& triplet,
                                        const ResidueRows& secondaryShifts,
                                        const ProlinePrediction& proline) {
  ProlineEvidence evidence;
  int k = 0;
  for (int position = kPrevious; position <= kNext; ++position) {
    const ResidueRows::Residue rows = secondaryShifts.of(residueAt(proline.resid, position - kCentre));
    for (const auto& [key, atom] : atomNames) {
      ShiftEvidence& shift = evidence.shifts[static_cast<std::size_t>(k)];
      shift.secondary = rows.shiftOf(atom, 0.0F);
      shift.used = GDB::toFloat(triplet[atPosition(atom, position)]);
      shift.isMissing = shift.used > kMissingSecondaryShift;
      compare(shift, k++);
    }
  }
  ShiftEvidence& cg = evidence.shifts[kProlineCG];
  cg.secondary = cg.used = proline.cgShift;
  cg.isMissing = proline.cgShift >= kMissingBound;
  compare(cg, kProlineCG);

  evidence.cisShares = {proSeqCis[proline.names[0]][kPrevious], proSeqCis[proline.names[2]][kNext]};
  evidence.transShares = {proSeqTrans[proline.names[0]][kPrevious], proSeqTrans[proline.names[2]][kNext]};
  return evidence;
}

void ZORVELA::compare(ShiftEvidence& shift, int index) const {
  if (shift.isMissing) return;
  shift.lnCis = lnGaussian(shift.used, valueAt(avgCis, index), valueAt(stdCis, index));
  shift.lnTrans = lnGaussian(shift.used, valueAt(avgTrans, index), valueAt(stdTrans, index));
}

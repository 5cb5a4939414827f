// The run from end to end, and the probability of cis.
#include <algorithm>  // for std::min, std::max
#include <cmath>      // for std::exp
#include <iostream>   // for std::cout

#include "ZORVELA.h"
#include "names.h"
#include "residue_rows.h"
#include "triplet.h"

namespace {

// Trans to cis among prolines, by which equal odds become natural ones.
constexpr double kTransPerCis = 19.0;

// Input rows far apart can span billions of residue numbers: of more than these only those are visited
// that the sequence or a row names.
constexpr long long kMostUnnamed = 100000;

// Without the factor 1 / (sigma sqrt(2 pi)): the deviations act through the exponent alone.
double gaussian(float shift, float mean, float deviation) {
  const float difference = shift - mean;
  const double z = (1.0 / deviation) * difference;
  return std::exp(-0.5 * (z * z));
}

float times(float product, double factor) {
  return static_cast<float>(product * factor);
}

// Evidence for cis and for trans, each in single precision after every factor.
struct Evidence {
  float cis = 1.0F;
  float trans = 1.0F;

  float probability() const { return cis / (cis + trans); }
};

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
  prediction.pCis = cisProbability(triplet, prediction.names, prediction.cgShift);
  prediction.pCisNorm = naturalOdds(prediction.pCis);
  return prediction;
}

float ZORVELA::cisProbability(std::map<std::string, std::string>& triplet,
                              const std::array<std::string, 3>& names, float cgShift) {
  Evidence shifts;
  int k = 0;
  for (int position = kPrevious; position <= kNext; ++position) {
    for (const auto& [key, atom] : atomNames) {
      const float shift = GDB::toFloat(triplet[atPosition(atom, position)]);
      if (!(shift > kMissingSecondaryShift)) {
        shifts.cis = times(shifts.cis, gaussian(shift, avgCis[k], stdCis[k]));
        shifts.trans = times(shifts.trans, gaussian(shift, avgTrans[k], stdTrans[k]));
      }
      ++k;
    }
  }

  const float priorCis = proSeqCis[names[0]][kPrevious] * proSeqCis[names[2]][kNext];
  const float priorTrans = proSeqTrans[names[0]][kPrevious] * proSeqTrans[names[2]][kNext];
  Evidence all{shifts.cis * priorCis, shifts.trans * priorTrans};
  if (!(cgShift >= kMissingBound)) {
    all.cis = times(all.cis, gaussian(cgShift, avgCis[kProlineCG], stdCis[kProlineCG]));
    all.trans = times(all.trans, gaussian(cgShift, avgTrans[kProlineCG], stdTrans[kProlineCG]));
  }
  return all.probability();
}

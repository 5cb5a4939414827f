// The run from end to end, and the probability of cis.
#include <algorithm>  // for std::min, std::max
#include <iostream>   // for std::cout

#include "ZORVELA.h"
#include "names.h"
#include "residue_rows.h"
#include "triplet.h"

namespace {

constexpr int kAtomsPerResidue = static_cast<int>(zorvela::kBackboneAtoms);
constexpr std::size_t kProlineCG = zorvela::shiftIndex(0, zorvela::Atom::CG);

// Input rows far apart can span billions of residue numbers: of more than these only those are visited
// that the sequence or a row names.
constexpr long long kMostUnnamed = 100000;

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

std::optional<ProlinePrediction> ZORVELA::predictResidue(int r, const ResidueRows& secondaryShifts) {
  // Residues outside the sequence get an entry in any case, without a name and without a missing shift.
  for (const int offset : {-1, 0, 1}) {
    const int resid = residueAt(r, offset);
    resNames.try_emplace(resid);
    missingCount.try_emplace(resid);
  }
  // With details on, every clipped shift has its line, those around other residues too.
  if (resNames[r] != kProline && !showDetail) return std::nullopt;
  const std::map<std::string, std::string> tripletRecord = tripletOf(r, secondaryShifts);
  if (!testTriplet(tripletRecord) || resNames[r] != kProline) return std::nullopt;

  ProlinePrediction prediction;
  prediction.resid = r;
  prediction.cgShift = cgShifts[r];
  for (int position = kPrevious; position <= kNext; ++position) {
    const auto i = static_cast<std::size_t>(position - kPrevious);
    prediction.names[i] = tripletRecord.at(atPosition(kResname, position));
    prediction.shiftCounts[i] = kAtomsPerResidue - missingCount[residueAt(r, position - kCentre)];
  }
  prediction.evidence = gatherEvidence(tripletRecord, prediction);
  prediction.pCis = zorvela::cisProbability(prediction.evidence);
  prediction.pCisNorm = zorvela::naturalOdds(prediction.pCis);
  return prediction;
}

zorvela::ProlineEvidence ZORVELA::gatherEvidence(const std::map<std::string, std::string>& tripletRecord,
                                                 const ProlinePrediction& proline) {
  std::vector<float> shiftVector;
  for (int position = kPrevious; position <= kNext; ++position)
    for (const auto& [key, atom] : atomNames)
      shiftVector.push_back(GDB::toFloat(tripletRecord.at(atPosition(atom, position))));

  zorvela::ProlineEvidence evidence;
  for (std::size_t k = 0; k < shiftVector.size(); ++k)
    if (!zorvela::isMissingSecondary(shiftVector[k]))
      evidence.shifts[k] = zorvela::compared(shiftVector[k], statisticsOf(k));
  if (!zorvela::isMissingCG(proline.cgShift))
    evidence.shifts[kProlineCG] = zorvela::compared(proline.cgShift, statisticsOf(kProlineCG));
  const std::string& before = proline.names[0];
  const std::string& after = proline.names[2];
  evidence.cisShares = {proSeqCis[before][kPrevious], proSeqCis[after][kNext]};
  evidence.transShares = {proSeqTrans[before][kPrevious], proSeqTrans[after][kNext]};
  return evidence;
}

zorvela::ShiftStatistics ZORVELA::statisticsOf(std::size_t index) {
  const auto key = static_cast<int>(index);
  return {{avgCis[key], stdCis[key]}, {avgTrans[key], stdTrans[key]}};
}

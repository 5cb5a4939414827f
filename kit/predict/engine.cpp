// From a protein to the results of its prolines, by the program's own classes.
#include <algorithm>
#include <climits>
#include <cmath>

#include "ZORVELA.h"
#include "predict/evidence.h"
#include "predict/referencing.h"
#include "predict/secondary_shifts.h"
#include "predict/tables.h"
#include "zorvela/predict.h"

namespace zorvela {

bool callsForCorrection(const ReferencingOffset& offset) {
  return offset.recommended && std::isfinite(offset.offset);
}

bool differsFromFlag(const ProlineResult& proline) {
  if (!proline.cisFlag) return false;
  return proline.call == (*proline.cisFlag ? Call::trans : Call::cis);
}

namespace {

/// Puts a protein in the place of the one before and assembles its secondary shifts.
void assemble(ZORVELA& run, const Protein& protein) {
  run.csTable = toTable(protein);
  run.rcShifts.clear();
  run.missingCount.clear();
  run.cgShifts.clear();
  run.firstResid = 1;
  run.lastResid = INT_MAX;
  run.getResInfo();
}

std::vector<ReferencingOffset> toResults(const std::vector<OffsetEstimate>& estimates) {
  std::vector<ReferencingOffset> offsets;
  for (const OffsetEstimate& estimate : estimates)
    offsets.push_back({estimate.atom, static_cast<float>(estimate.offset), static_cast<float>(estimate.error),
                       estimate.residues, callsForCorrection(estimate), std::nullopt});
  return offsets;
}

/// Says in the results what is taken away before predicting.
void addCorrections(ProteinResult& result, const Corrections& corrections) {
  for (ReferencingOffset& offset : result.offsets)
    if (corrections.count(offset.atom) > 0)
      offset.correctedBy = static_cast<float>(corrections.at(offset.atom));
  result.notes.insert(result.notes.begin(), correctionNote(corrections));
}

/// How many of the six backbone shifts a residue has; nothing outside the sequence.
std::optional<int> shiftCount(const ZORVELA& run, int resid) {
  if (resid < 1 || resid > run.seqLength) return std::nullopt;
  return kAtomsPerResidue - run.missingCount.at(resid);
}

using ShiftsByResidue = std::map<int, float>;

std::optional<float> observedCG(const ShiftsByResidue& cgShifts, int resid) {
  const auto shift = cgShifts.find(resid);
  if (shift == cgShifts.end() || shift->second >= kMissingBound) return std::nullopt;
  return shift->second;
}

/// Proline, neighbours, shift counts: all that is known before a prediction.
ProlineResult describe(const ZORVELA& run, const Protein& protein, const ShiftsByResidue& cgShifts,
                       int position) {
  const auto index = static_cast<std::size_t>(position) - 1;
  ProlineResult proline;
  proline.position = position;
  proline.number = protein.numbers[index];
  if (index > 0) {
    proline.previous = protein.sequence[index - 1];
    proline.previousNumber = protein.numbers[index - 1];
  }
  if (index + 1 < protein.sequence.size()) {
    proline.next = protein.sequence[index + 1];
    proline.nextNumber = protein.numbers[index + 1];
  }
  proline.previousCount = shiftCount(run, position - 1);
  proline.count = shiftCount(run, position);
  proline.nextCount = shiftCount(run, position + 1);
  proline.cgShift = observedCG(cgShifts, position);
  if (const auto flag = protein.cisFlags.find(position); flag != protein.cisFlags.end())
    proline.cisFlag = flag->second;
  return proline;
}

const std::string& whyNot(const Protein& protein, int position) {
  const auto index = static_cast<std::size_t>(position) - 1;
  if (protein.sequence[index] == 'p') return reason::kLowerCase;
  if (index == 0) return reason::kFirstResidue;
  if (index + 1 == protein.sequence.size()) return reason::kLastResidue;
  return reason::kTooFewShifts;
}

ProlineResult resultOf(ZORVELA& run, const Protein& protein, const ShiftsByResidue& cgShifts, int position,
                       const std::optional<ProlinePrediction>& prediction) {
  ProlineResult proline = describe(run, protein, cgShifts, position);
  if (!prediction) {
    proline.reason = whyNot(protein, position);
    return proline;
  }
  proline.evidence = evidenceOf(run, protein, *prediction);
  proline.call = callOf(prediction->pCisNorm);
  if (proline.call == Call::none) {
    proline.reason = reason::kNeitherFits;
    return proline;
  }
  proline.pCis = prediction->pCis;
  proline.pCisNorm = prediction->pCisNorm;
  return proline;
}

/// Proline has no amide proton and its N is not used; a type without a reference shift lacks the atom.
Assignment assignmentOf(const ZORVELA& run, int resid) {
  Assignment assignment;
  const bool isProline = run.resNames.at(resid) == "P" || run.resNames.at(resid) == "p";
  for (const auto& [atom, reference] : run.rcShifts.at(resid))
    if (reference < kMissingBound && !(isProline && (atom == "N" || atom == "HN"))) ++assignment.possible;
  assignment.present = std::min(kAtomsPerResidue - run.missingCount.at(resid), assignment.possible);
  return assignment;
}

}  // namespace

Predictor::Predictor(const Tables& tables, const PredictorOptions& chosen)
    : options(chosen), run(std::make_unique<ZORVELA>()) {
  useTables(*tables, *run);
}

Predictor::Predictor(Predictor&& other) noexcept = default;
Predictor& Predictor::operator=(Predictor&& other) noexcept = default;
Predictor::~Predictor() = default;

ProteinResult Predictor::predict(const Protein& protein) {
  assemble(*run, protein);
  ProteinResult result;
  result.file = protein.file;
  result.chain = protein.chain;
  result.list = protein.list;
  result.length = static_cast<int>(protein.sequence.size());
  result.shiftCount = static_cast<int>(protein.shifts.size());
  result.notes = protein.notes;
  result.asides = protein.asides;
  const std::vector<OffsetEstimate> estimates = estimateOffsets(secondaryShifts(*run));
  result.offsets = toResults(estimates);
  const ShiftsByResidue observedCGs = run->cgShifts;
  Protein used = protein;
  if (const Corrections corrections = correctionsOf(estimates); options.rereference && !corrections.empty()) {
    addCorrections(result, corrections);
    used = corrected(protein, corrections);
    assemble(*run, used);
  }
  result.numbers = protein.numbers;
  for (int resid = 1; resid <= result.length; ++resid)
    result.assignments.push_back(assignmentOf(*run, resid));
  std::vector<int> positions;
  for (std::size_t i = 0; i < protein.sequence.size(); ++i)
    if (protein.sequence[i] == 'P' || protein.sequence[i] == 'p')
      positions.push_back(static_cast<int>(i) + 1);
  const auto predictions = run->predictProlines(positions);
  for (std::size_t i = 0; i < positions.size(); ++i)
    result.prolines.push_back(resultOf(*run, used, observedCGs, positions[i], predictions[i]));
  return result;
}

}  // namespace zorvela

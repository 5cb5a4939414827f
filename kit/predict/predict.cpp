// From a protein to the results of its prolines.
#include <algorithm>
#include <cmath>

#include "names/nomenclature.h"
#include "predict/chain.h"
#include "predict/evidence.h"
#include "predict/referencing.h"
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
std::optional<int> shiftCount(const std::vector<Residue>& residues, std::size_t place) {
  if (place >= residues.size()) return std::nullopt;
  return static_cast<int>(kBackboneAtoms) - missingShifts(residues[place]);
}

/// Proline, neighbours, shift counts: all that is known before a prediction.
ProlineResult describe(const Protein& protein, const std::vector<Residue>& residues, std::size_t place) {
  ProlineResult proline;
  proline.position = static_cast<int>(place) + 1;
  proline.number = protein.numbers[place];
  if (place > 0) {
    proline.previous = protein.sequence[place - 1];
    proline.previousNumber = protein.numbers[place - 1];
    proline.previousCount = shiftCount(residues, place - 1);
  }
  if (place + 1 < protein.sequence.size()) {
    proline.next = protein.sequence[place + 1];
    proline.nextNumber = protein.numbers[place + 1];
    proline.nextCount = shiftCount(residues, place + 1);
  }
  proline.count = shiftCount(residues, place);
  if (const float cg = cgOf(residues[place]); !isMissingCG(cg)) proline.cgShift = cg;
  if (const auto flag = protein.cisFlags.find(proline.position); flag != protein.cisFlags.end())
    proline.cisFlag = flag->second;
  return proline;
}

const std::string& whyNot(const Protein& protein, std::size_t place) {
  if (protein.sequence[place] == kPassedProlineCode) return reason::kLowerCase;
  if (place == 0) return reason::kFirstResidue;
  if (place + 1 == protein.sequence.size()) return reason::kLastResidue;
  return reason::kTooFewShifts;
}

/// Adds to what is known of a proline its probability, or why there is none.
void addPrediction(const Model& model, const Protein& protein, const std::vector<Residue>& residues,
                   const std::vector<BackboneValues>& secondary, std::size_t place, ProlineResult& proline) {
  if (!isPredictable(residues, place)) {
    proline.reason = whyNot(protein, place);
    return;
  }
  const Triplet triplet = tripletAt(residues, secondary, place);
  const CisPrediction prediction = predict(model, triplet);
  proline.evidence = evidenceOf(model, residues, place, triplet, prediction);
  proline.call = callOf(prediction.pCisNorm);
  if (proline.call == Call::none) {
    proline.reason = reason::kNeitherFits;
    return;
  }
  proline.pCis = prediction.pCis;
  proline.pCisNorm = prediction.pCisNorm;
}

/// A type without a reference shift lacks the atom.
Assignment assignmentOf(const Model& model, const std::vector<Residue>& residues, std::size_t place) {
  Assignment assignment;
  const char type = residues[place].type;
  const BackboneValues references = referenceShifts(model, residues, place);
  for (const Atom atom : kBackbone)
    if (references[indexOf(atom)] < kMissingBound && !(isProline(type) && isAmide(atom)))
      ++assignment.possible;
  assignment.present = std::min(*shiftCount(residues, place), assignment.possible);
  return assignment;
}

}  // namespace

Predictor::Predictor(const Tables& tables, const PredictorOptions& chosen)
    : options(chosen), model(std::make_shared<Model>(modelOf(*tables))) {}

ProteinResult Predictor::predict(const Protein& protein) const {
  ProteinResult result;
  result.file = protein.file;
  result.chain = protein.chain;
  result.list = protein.list;
  result.length = static_cast<int>(protein.sequence.size());
  result.shiftCount = static_cast<int>(protein.shifts.size());
  result.numbers = protein.numbers;
  result.notes = protein.notes;
  result.asides = protein.asides;

  std::vector<Residue> residues = residuesOf(protein);
  std::vector<BackboneValues> secondary = secondaryShifts(*model, residues);
  const std::vector<OffsetEstimate> estimates = estimateOffsets(secondary);
  result.offsets = toResults(estimates);
  for (std::size_t place = 0; place < residues.size(); ++place) {
    result.assignments.push_back(assignmentOf(*model, residues, place));
    if (isProline(residues[place].type)) result.prolines.push_back(describe(protein, residues, place));
  }

  const Corrections corrections = options.rereference ? correctionsOf(estimates) : Corrections();
  if (!corrections.empty()) {
    addCorrections(result, corrections);
    residues = residuesOf(protein, corrections);
    secondary = secondaryShifts(*model, residues);
  }
  for (ProlineResult& proline : result.prolines)
    addPrediction(*model, protein, residues, secondary, static_cast<std::size_t>(proline.position) - 1,
                  proline);
  return result;
}

}  // namespace zorvela

// From a protein to the results of its prolines.
#include <algorithm>
#include <cmath>
#include <utility>

#include "names/nomenclature.h"
#include "predict/chain.h"
#include "predict/corrections.h"
#include "predict/evidence.h"
#include "predict/referencing.h"
#include "predict/tables.h"
#include "protein/remarks.h"
#include "zorvela/predict.h"

namespace zorvela {

bool callsForCorrection(const ReferencingOffset& offset) {
  return offset.recommended && std::isfinite(offset.offset);
}

bool isUncertain(const ReferencingOffset& offset) {
  if (!std::isfinite(offset.offset) || callsForCorrection(offset)) return false;
  return std::fabs(static_cast<double>(offset.offset)) > correctionBound(offset.atom);
}

bool dependsOnCorrection(const ProlineResult& proline) {
  return proline.callAsReferenced && *proline.callAsReferenced != proline.call;
}

bool differsFromFlag(const ProlineResult& proline) {
  if (!proline.cisFlag) return false;
  return proline.call == (*proline.cisFlag ? Call::trans : Call::cis);
}

namespace {

/// Of a corrected shift in a table; those of the file may be rounded more.
constexpr std::uint8_t kDecimals = 3;

std::vector<ReferencingOffset> toResults(const std::vector<OffsetEstimate>& estimates) {
  std::vector<ReferencingOffset> offsets;
  for (const OffsetEstimate& estimate : estimates)
    offsets.push_back({estimate.atom, static_cast<float>(estimate.offset), static_cast<float>(estimate.error),
                       estimate.residues, callsForCorrection(estimate), std::nullopt});
  return offsets;
}

/// Notes in the results what is subtracted before predicting.
void addCorrections(ProteinResult& result, const Corrections& corrections) {
  for (ReferencingOffset& offset : result.offsets)
    if (const auto found = corrections.offsets.find(offset.atom); found != corrections.offsets.end())
      offset.correctedBy = static_cast<float>(found->second);
  result.deuteration = corrections.deuteration;
  result.correction = correctionText(corrections);
  result.notes.insert(result.notes.begin(), result.correction);
}

/// Counts the backbone shifts (of six) of a residue; nothing outside the sequence.
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

/// The residues of a chain with their secondary shifts.
struct Chain {
  std::vector<Residue> residues;
  std::vector<BackboneValues> secondary;

  Chain(const Model& model, const Protein& protein, const Corrections& corrections = {})
      : residues(residuesOf(protein, corrections)), secondary(secondaryShifts(model, residues)) {}

  Triplet tripletAt(std::size_t place) const { return zorvela::tripletAt(residues, secondary, place); }
};

/// Marks the shifts that differ from those in the file.
void addObserved(const Evidence& asReferenced, Evidence& evidence) {
  for (std::size_t i = 0; i < kShifts; ++i) {
    ShiftContribution& shift = evidence.shifts[i];
    const std::optional<float> observed = asReferenced.shifts[i].observed;
    if (shift.observed != observed) shift.corrected = std::exchange(shift.observed, observed);
  }
}

/// Adds to what is known of a proline its probability, or why there is none.
void addPrediction(const Model& model, const Protein& protein, const Chain& chain, std::size_t place,
                   ProlineResult& proline) {
  if (!isPredictable(chain.residues, place)) {
    proline.reason = whyNot(protein, place);
    return;
  }
  const Triplet triplet = chain.tripletAt(place);
  const CisPrediction prediction = predict(model, triplet);
  proline.evidence = evidenceOf(model, chain.residues, place, triplet, prediction);
  proline.call = callOf(prediction.pCisNorm);
  if (proline.call == Call::none) {
    proline.reason = reason::kNeitherFits;
    return;
  }
  proline.pCis = prediction.pCis;
  proline.pCisNorm = prediction.pCisNorm;
}

std::size_t placeOf(const ProlineResult& proline) {
  return static_cast<std::size_t>(proline.position) - 1;
}

/// Predicts again from corrected shifts, and keeps what the shifts of the file gave.
void correct(const Model& model, const Protein& protein, const Corrections& corrections,
             ProteinResult& result) {
  addCorrections(result, corrections);
  const Chain chain(model, protein, corrections);
  for (ProlineResult& proline : result.prolines) {
    if (!proline.evidence) continue;
    const Evidence asReferenced = *proline.evidence;
    proline.callAsReferenced = proline.call;
    proline.pCisNormAsReferenced = std::exchange(proline.pCisNorm, std::nullopt);
    proline.pCis = std::nullopt;
    proline.reason.clear();
    addPrediction(model, protein, chain, placeOf(proline), proline);
    addObserved(asReferenced, *proline.evidence);
  }
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

double deuterationOf(const Protein& protein, const PredictorOptions& options) {
  if (options.deuterated) return protein.deuteration > 0 ? protein.deuteration : 1;
  return options.protonated || options.asReferenced ? 0 : protein.deuteration;
}

/// Finds the corrections of a chain, with its offsets beyond the isotope shifts.
struct Findings {
  std::vector<OffsetEstimate> offsets;
  Corrections corrections;

  Findings(const Model& model, const Protein& protein, const PredictorOptions& options) {
    corrections.deuteration = deuterationOf(protein, options);
    corrections.isDeuterationGiven = options.deuterated;
    offsets = estimateOffsets(Chain(model, protein, corrections).secondary);
    if (!options.asReferenced) corrections.offsets = correctionsOf(offsets);
  }
};

}  // namespace

Predictor::Predictor(const Tables& tables, const PredictorOptions& chosen)
    : options(chosen), model(std::make_shared<Model>(modelOf(*tables))) {}

Predictor Predictor::with(const PredictorOptions& other) const {
  Predictor predictor = *this;
  predictor.options = other;
  return predictor;
}

ProteinResult Predictor::predict(const Protein& protein) const {
  ProteinResult result;
  result.file = protein.file;
  result.chain = protein.chain;
  result.list = protein.list;
  result.length = static_cast<int>(protein.sequence.size());
  result.sequence = protein.sequence;
  if (!protein.isSequenceGiven)
    result.unseen =
        static_cast<int>(std::count(protein.sequence.begin(), protein.sequence.end(), kUnknownResidue));
  result.shiftCount = static_cast<int>(protein.shifts.size());
  result.numbers = protein.numbers;
  result.notes = protein.notes;
  result.asides = protein.asides;

  const Chain chain(*model, protein);
  const std::vector<Residue>& residues = chain.residues;
  const Findings findings(*model, protein, options);
  result.offsets = toResults(findings.offsets);
  if (const std::string note = deuterationNote(findings.offsets);
      !note.empty() && protein.deuteration == 0 && !options.deuterated && !options.protonated)
    result.notes.push_back(note);
  for (std::size_t place = 0; place < residues.size(); ++place) {
    result.assignments.push_back(assignmentOf(*model, residues, place));
    if (isProline(residues[place].type)) result.prolines.push_back(describe(protein, residues, place));
  }

  for (ProlineResult& proline : result.prolines)
    addPrediction(*model, protein, chain, placeOf(proline), proline);
  if (!findings.corrections.empty()) correct(*model, protein, findings.corrections, result);
  return result;
}

Protein Predictor::corrected(const Protein& protein) const {
  Protein result = protein;
  const Corrections corrections = Findings(*model, protein, options).corrections;
  if (corrections.empty()) return result;
  for (Shift& shift : result.shifts) {
    const char type = result.sequence[static_cast<std::size_t>(shift.position) - 1];
    const double ppm = zorvela::corrected(shift.ppm, type, shift.atom, corrections);
    if (ppm != shift.ppm) shift = {shift.position, shift.atom, std::max(shift.decimals, kDecimals), ppm};
  }
  if (corrections.deuteration > 0) setDeuteration(0, result);
  result.remarks.push_back(correctionRemark(corrections));
  result.notes.push_back(correctionRemark(corrections));
  return result;
}

}  // namespace zorvela

// From a protein to the results of its prolines, by the program's own classes.
#include <climits>
#include <cmath>

#include "ZORVELA.h"
#include "predict/tables.h"
#include "zorvela/predict.h"

namespace zorvela {

bool callsForCorrection(const ReferencingOffset& offset) {
  return offset.recommended && std::isfinite(offset.offset);
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

std::vector<ReferencingOffset> offsetsOf(ZORVELA& run) {
  std::vector<ReferencingOffset> offsets;
  for (const ::ReferencingOffset& offset : run.referencingOffsets())
    offsets.push_back({offset.atom, offset.offset, offset.error, offset.size, offset.recommended});
  return offsets;
}

/// How many of the six backbone shifts a residue has; nothing outside the sequence.
std::optional<int> shiftCount(const ZORVELA& run, int resid) {
  if (resid < 1 || resid > run.seqLength) return std::nullopt;
  return kAtomsPerResidue - run.missingCount.at(resid);
}

std::optional<float> observedCG(const ZORVELA& run, int resid) {
  const auto shift = run.cgShifts.find(resid);
  if (shift == run.cgShifts.end() || shift->second >= kMissingBound) return std::nullopt;
  return shift->second;
}

/// Proline, neighbours, shift counts: all that is known before a prediction.
ProlineResult describe(const ZORVELA& run, const Protein& protein, int position) {
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
  proline.cgShift = observedCG(run, position);
  return proline;
}

const std::string& whyNot(const Protein& protein, int position) {
  const auto index = static_cast<std::size_t>(position) - 1;
  if (protein.sequence[index] == 'p') return reason::kLowerCase;
  if (index == 0) return reason::kFirstResidue;
  if (index + 1 == protein.sequence.size()) return reason::kLastResidue;
  return reason::kTooFewShifts;
}

ProlineResult resultOf(const ZORVELA& run, const Protein& protein, int position,
                       const std::optional<ProlinePrediction>& prediction) {
  ProlineResult proline = describe(run, protein, position);
  if (!prediction) {
    proline.reason = whyNot(protein, position);
    return proline;
  }
  proline.call = callOf(prediction->pCisNorm);
  if (proline.call == Call::none) {
    proline.reason = reason::kNeitherFits;
    return proline;
  }
  proline.pCis = prediction->pCis;
  proline.pCisNorm = prediction->pCisNorm;
  return proline;
}

}  // namespace

Predictor::Predictor(const Tables& tables) : run(std::make_unique<ZORVELA>()) {
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
  result.offsets = offsetsOf(*run);
  std::vector<int> positions;
  for (std::size_t i = 0; i < protein.sequence.size(); ++i)
    if (protein.sequence[i] == 'P' || protein.sequence[i] == 'p')
      positions.push_back(static_cast<int>(i) + 1);
  const auto predictions = run->predictProlines(positions);
  for (std::size_t i = 0; i < positions.size(); ++i)
    result.prolines.push_back(resultOf(*run, protein, positions[i], predictions[i]));
  return result;
}

}  // namespace zorvela

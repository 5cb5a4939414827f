// From a protein to the results of its prolines, by the program's own classes.
#include <algorithm>
#include <climits>
#include <cmath>

#include "ZORVELA.h"
#include "names/nomenclature.h"
#include "predict/evidence.h"
#include "predict/referencing.h"
#include "predict/secondary_shifts.h"
#include "predict/tables.h"
#include "protein/residue_shifts.h"
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

/// A protein as the table that the program reads.
GDB tableOf(const Protein& protein) {
  GDB table;
  table.presetClass("KIVRA_SHIFT");
  for (const char letter : protein.sequence)
    table.residNames[static_cast<int>(table.residNames.size()) + 1] = letter;
  int row = 0;
  for (const Shift& shift : protein.shifts) {
    GDB::Row& cells = table.entries[++row];
    cells["RESID"] = std::to_string(shift.position);
    cells["RESNAME"] = protein.sequence.at(static_cast<std::size_t>(shift.position) - 1);
    cells["ATOMNAME"] = nameOf(shift.atom);
    cells["SHIFT"] = shiftText(shift);
  }
  return table;
}

/// Puts a protein in the place of the one before and assembles its secondary shifts.
void assemble(ZORVELA& run, const Protein& protein) {
  run.csTable = tableOf(protein);
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

/// Proline, neighbours, shift counts: all that is known before a prediction.
ProlineResult describe(const ZORVELA& run, const Protein& protein, float observedCG, int position) {
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
  if (!(observedCG >= kMissingBound)) proline.cgShift = observedCG;
  if (const auto flag = protein.cisFlags.find(position); flag != protein.cisFlags.end())
    proline.cisFlag = flag->second;
  return proline;
}

const std::string& whyNot(const Protein& protein, int position) {
  const auto index = static_cast<std::size_t>(position) - 1;
  if (protein.sequence[index] == kPassedProlineCode) return reason::kLowerCase;
  if (index == 0) return reason::kFirstResidue;
  if (index + 1 == protein.sequence.size()) return reason::kLastResidue;
  return reason::kTooFewShifts;
}

ProlineResult resultOf(ZORVELA& run, const Protein& protein, float observedCG, int position,
                       const std::optional<ProlinePrediction>& prediction) {
  ProlineResult proline = describe(run, protein, observedCG, position);
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

// --- Long proteins, piece by piece ----------------------------------------------------------------

// The program's tables take 4 kB for a residue, so that a sequence of 40,000 letters would take 200 MB.
constexpr int kPieceLength = 4000;
// The shifts of a proline's neighbours are compared with references that their own neighbours have a part in.
constexpr int kReach = 2;

/// Residues `begin` to `end` (from 0, without the last) with as many as they need on either side.
struct Piece {
  int begin;
  int end;
  int from;
  int to;
};

std::vector<Piece> piecesOf(std::size_t residues) {
  const int length = static_cast<int>(residues);
  std::vector<Piece> pieces;
  for (int begin = 0; begin < length; begin += kPieceLength) {
    const int end = std::min(begin + kPieceLength, length);
    pieces.push_back({begin, end, std::max(begin - kReach, 0), std::min(end + kReach, length)});
  }
  return pieces;
}

/// The residues of a piece as a protein.
Protein partOf(const Protein& protein, const Piece& piece) {
  Protein part;
  const auto length = static_cast<std::size_t>(piece.to - piece.from);
  part.sequence = protein.sequence.substr(static_cast<std::size_t>(piece.from), length);
  part.numbers.assign(protein.numbers.begin() + piece.from, protein.numbers.begin() + piece.to);
  for (auto flag = protein.cisFlags.upper_bound(piece.from); flag != protein.cisFlags.upper_bound(piece.to);
       ++flag)
    part.cisFlags.emplace(flag->first - piece.from, flag->second);
  for (const Shift& shift : shiftsOf(protein, piece.from + 1, piece.to))
    part.shifts.push_back({shift.position - piece.from, shift.atom, shift.decimals, shift.ppm});
  return part;
}

/// Calls `use` for each piece with its protein, in order. A protein of one piece is its own part.
template <class Use>
void forEachPiece(const Protein& protein, Use use) {
  const std::vector<Piece> pieces = piecesOf(protein.sequence.size());
  if (pieces.size() == 1) return use(pieces.front(), protein);
  for (const Piece& piece : pieces) use(piece, partOf(protein, piece));
}

/// Assignments and prolines of a piece, whose residues with their reach (`part`) are assembled.
void addResults(ZORVELA& run, const Protein& part, const Piece& piece, const ShiftsByResidue& observedCGs,
                ProteinResult& result) {
  std::vector<int> positions;
  for (int resid = piece.begin - piece.from + 1; resid <= piece.end - piece.from; ++resid) {
    result.assignments.push_back(assignmentOf(run, resid));
    const char letter = part.sequence[static_cast<std::size_t>(resid) - 1];
    if (letter == kProlineCode || letter == kPassedProlineCode) positions.push_back(resid);
  }
  const auto predictions = run.predictProlines(positions);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const int position = positions[i] + piece.from;
    const auto cg = observedCGs.find(position);
    const float observedCG = cg == observedCGs.end() ? kMissingShift : cg->second;
    result.prolines.push_back(resultOf(run, part, observedCG, positions[i], predictions[i]));
    result.prolines.back().position = position;
  }
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
  ProteinResult result;
  result.file = protein.file;
  result.chain = protein.chain;
  result.list = protein.list;
  result.length = static_cast<int>(protein.sequence.size());
  result.shiftCount = static_cast<int>(protein.shifts.size());
  result.numbers = protein.numbers;
  result.notes = protein.notes;
  result.asides = protein.asides;

  std::vector<SecondaryShifts> secondary;
  ShiftsByResidue observedCGs;
  forEachPiece(protein, [&](const Piece& piece, const Protein& part) {
    assemble(*run, part);
    const std::vector<SecondaryShifts> ofPart = secondaryShifts(*run);
    secondary.insert(secondary.end(), ofPart.begin() + piece.begin - piece.from,
                     ofPart.begin() + piece.end - piece.from);
    for (const auto& [resid, shift] : run->cgShifts) observedCGs[resid + piece.from] = shift;
    if (!options.rereference) addResults(*run, part, piece, observedCGs, result);
  });
  const std::vector<OffsetEstimate> estimates = estimateOffsets(secondary);
  result.offsets = toResults(estimates);
  if (!options.rereference) return result;

  std::optional<Protein> shifted;
  if (const Corrections corrections = correctionsOf(estimates); !corrections.empty()) {
    addCorrections(result, corrections);
    shifted = corrected(protein, corrections);
  }
  forEachPiece(shifted ? *shifted : protein, [&](const Piece& piece, const Protein& part) {
    if (&part != &protein) assemble(*run, part);  // else it is what was assembled last
    addResults(*run, part, piece, observedCGs, result);
  });
  return result;
}

}  // namespace zorvela

// Aligns a sequence with a structure chain by gemmi's pairwise alignment.
#include "structure/chain_alignment.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string_view>
#include <utility>

#include <gemmi/seqalign.hpp>  // for align_sequences

#include "names/nomenclature.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// gemmi keeps one byte for each pair of residues, and fills some 250 million a second.
constexpr std::size_t kMostPairsAtOnce = 15000000;
constexpr std::size_t kPairsOfAnyStructure = 100000000;
constexpr std::size_t kPairsPerResidue = 4000;
// Fixed cost of an alignment, as so many pairs: it is most of the work if both sides are short.
constexpr std::size_t kPairsPerAlignment = 500;
constexpr std::size_t kPairsPerPlace = 8;

// So many residues of a piece that overlaps with the sequence by its end do not fit by chance.
constexpr std::size_t kFewestOfAPiece = 6;

constexpr std::string_view kLetters = "ACDEFGHIKLMNPQRSTVWY?";  // the last one is an unknown residue
constexpr std::uint8_t kLetterCount = 21;
constexpr std::uint8_t kUnknownCode = 20;

// Both sides are the same protein, perhaps with mutations: a mismatch is cheaper than two gaps, and a gap of
// any length (missing residues, tags) costs little more than a short one.
constexpr int kMatch = 4;
constexpr int kMismatch = -3;
constexpr int kGapOpening = -8;
constexpr int kGapLengthening = 0;

std::uint8_t codeOf(char letter) {
  const std::size_t place = kLetters.find(withoutThiolState(letter));
  return place == std::string_view::npos ? kUnknownCode : static_cast<std::uint8_t>(place);
}

std::vector<std::uint8_t> encoded(const std::string& letters) {
  std::vector<std::uint8_t> codes;
  codes.reserve(letters.size());
  for (const char letter : letters) codes.push_back(codeOf(letter));
  return codes;
}

gemmi::AlignmentScoring scoring() {
  gemmi::AlignmentScoring scores;
  scores.match = kMatch;
  scores.mismatch = kMismatch;
  scores.gapo = kGapOpening;
  scores.gape = kGapLengthening;
  for (std::uint8_t a = 0; a < kLetterCount; ++a) {
    scores.matrix_encoding.emplace_back(1, kLetters[a]);
    for (std::uint8_t b = 0; b < kLetterCount; ++b) {
      const bool isUnknown = a == kUnknownCode || b == kUnknownCode;
      scores.score_matrix.push_back(static_cast<std::int8_t>(isUnknown ? 0 : (a == b ? kMatch : kMismatch)));
    }
  }
  return scores;
}

/// Where a gap costs nothing to open: in front of the chain and at its interruptions.
std::vector<bool> freeGaps(const ChainRest& rest) {
  std::vector<bool> gaps;
  gaps.reserve(rest.residues().size() + 1);
  for (const std::size_t place : rest.residues()) gaps.push_back(gaps.empty() || rest.isStart(place));
  gaps.push_back(true);
  return gaps;
}

void countPair(char inSequence, char inStructure, ChainAlignment& alignment) {
  const std::uint8_t ours = codeOf(inSequence);
  const std::uint8_t theirs = codeOf(inStructure);
  if (ours == kUnknownCode || theirs == kUnknownCode) return;
  ++alignment.aligned;
  if (ours == theirs) ++alignment.identical;
}

/// For each residue of a chain the number of its piece.
std::vector<std::size_t> pieceNumbers(const StructureChain& chain) {
  std::vector<std::size_t> numbers;
  numbers.reserve(chain.residues.size());
  for (const StructureResidue& residue : chain.residues)
    numbers.push_back(numbers.empty() ? 0 : numbers.back() + (residue.isAfterBreak ? 1 : 0));
  return numbers;
}

/// Tells whether so much of a piece fits that chance is excluded.
bool belongs(const ChainAlignment& ofPiece, std::size_t pieceLength, std::size_t sequenceLength) {
  const std::size_t shorter = std::min(pieceLength, sequenceLength);
  if (ofPiece.aligned >= std::min(kFewestAligned, (shorter + 1) / 2)) return true;
  return ofPiece.aligned >= kFewestOfAPiece && ofPiece.identity() >= kSameProteinFrom;
}

std::size_t residueCount(const ProteinStructure& structure) {
  std::size_t count = 0;
  for (const StructureChain& chain : structure.chains) count += chain.residues.size();
  return count;
}

/// Leaves only the pairs of pieces that belong to the sequence, and counts them.
void keepPiecesThatBelong(const std::string& sequence, const StructureChain& chain,
                          ChainAlignment& alignment) {
  const std::vector<std::size_t> numbers = pieceNumbers(chain);
  std::vector<ChainAlignment> pieces(numbers.back() + 1);
  std::vector<std::size_t> lengths(pieces.size());
  for (const std::size_t number : numbers) ++lengths[number];
  for (std::size_t i = 0; i < sequence.size(); ++i)
    if (const std::size_t place = alignment.inStructure[i]; place != kNoResidue)
      countPair(sequence[i], chain.residues[place].letter, pieces[numbers[place]]);
  for (std::size_t& place : alignment.inStructure)
    if (place != kNoResidue && !belongs(pieces[numbers[place]], lengths[numbers[place]], sequence.size()))
      place = kNoResidue;
  for (std::size_t i = 0; i < sequence.size(); ++i)
    if (const std::size_t place = alignment.inStructure[i]; place != kNoResidue)
      countPair(sequence[i], chain.residues[place].letter, alignment);
}

}  // namespace

double ChainAlignment::identity() const {
  return aligned == 0 ? 0 : 100.0 * static_cast<double>(identical) / static_cast<double>(aligned);
}

ChainRest::ChainRest(const StructureChain& chain) : whole(&chain), places(chain.residues.size()) {
  std::iota(places.begin(), places.end(), std::size_t{0});
}

std::string ChainRest::letters() const {
  std::string text;
  for (const std::size_t place : places) text += whole->residues[place].letter;
  return text;
}

void ChainRest::take(const ChainAlignment& alignment) {
  const std::vector<std::size_t> numbers = pieceNumbers(*whole);
  std::vector<bool> isTaken(whole->residues.size());
  for (const std::size_t place : alignment.inStructure)
    if (place != kNoResidue) isTaken[numbers[place]] = true;
  places.erase(std::remove_if(places.begin(), places.end(),
                              [&](std::size_t place) { return isTaken[numbers[place]]; }),
               places.end());
}

ChainAlignment align(const std::string& sequence, const ChainRest& rest) {
  static const gemmi::AlignmentScoring kScoring = scoring();
  ChainAlignment alignment;
  alignment.inStructure.assign(sequence.size(), kNoResidue);
  if (sequence.empty() || rest.isEmpty()) return alignment;
  const gemmi::AlignmentResult result = gemmi::align_sequences(encoded(sequence), encoded(rest.letters()),
                                                               freeGaps(rest), kLetterCount, kScoring);
  std::size_t i = 0;
  std::size_t j = 0;
  for (const gemmi::AlignmentResult::Item& item : result.cigar)
    for (std::uint32_t n = 0; n < item.len(); ++n) {
      if (item.op() == 'M') alignment.inStructure[i] = rest.residues()[j];
      if (item.op() != 'D') ++i;
      if (item.op() != 'I') ++j;
    }
  keepPiecesThatBelong(sequence, rest.chain(), alignment);
  return alignment;
}

StructureAligner::StructureAligner(std::string name, std::size_t residues)
    : file(std::move(name)), pairsLeft(kPairsOfAnyStructure + kPairsPerResidue * residues) {}

StructureAligner::StructureAligner(const ProteinStructure& structure)
    : StructureAligner(structure.file, residueCount(structure)) {}

ChainAlignment StructureAligner::align(const std::string& sequence, const ChainRest& rest) {
  const std::size_t pairs = sequence.size() * rest.residues().size();
  const std::size_t work =
      pairs + kPairsPerAlignment + kPairsPerPlace * (sequence.size() + rest.chain().residues.size());
  if (pairs > kMostPairsAtOnce || work > pairsLeft)
    throw FileError(
        file, 0,
        "has too many residues to align with the " + std::to_string(sequence.size()) + " of a protein",
        "give the chains that have shifts");
  pairsLeft -= work;
  return zorvela::align(sequence, rest);
}

}  // namespace zorvela

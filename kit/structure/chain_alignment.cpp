// Aligns a sequence with a structure chain by gemmi's pairwise alignment.
#include "structure/chain_alignment.h"

#include <cstdint>
#include <string_view>

#include <gemmi/seqalign.hpp>  // for align_sequences

#include "names/nomenclature.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// gemmi keeps one byte for each pair of residues, and fills some 250 million a second.
constexpr std::size_t kMostPairsAtOnce = 15000000;
constexpr std::size_t kPairsOfAnyStructure = 100000000;
constexpr std::size_t kPairsPerResidue = 4000;

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
std::vector<bool> freeGaps(const StructureChain& chain) {
  std::vector<bool> gaps;
  gaps.reserve(chain.residues.size() + 1);
  for (const StructureResidue& residue : chain.residues) gaps.push_back(gaps.empty() || residue.isAfterBreak);
  gaps.push_back(true);
  return gaps;
}

void addPair(const std::string& sequence, const StructureChain& chain, std::size_t i, std::size_t j,
             ChainAlignment& alignment) {
  alignment.inStructure[i] = j;
  const std::uint8_t ours = codeOf(sequence[i]);
  const std::uint8_t theirs = codeOf(chain.residues[j].letter);
  if (ours == kUnknownCode || theirs == kUnknownCode) return;
  ++alignment.aligned;
  if (ours == theirs) ++alignment.identical;
}

}  // namespace

double ChainAlignment::identity() const {
  return aligned == 0 ? 0 : 100.0 * static_cast<double>(identical) / static_cast<double>(aligned);
}

ChainAlignment align(const std::string& sequence, const StructureChain& chain) {
  static const gemmi::AlignmentScoring kScoring = scoring();
  ChainAlignment alignment;
  alignment.inStructure.assign(sequence.size(), kNoResidue);
  if (sequence.empty() || chain.residues.empty()) return alignment;
  const gemmi::AlignmentResult result = gemmi::align_sequences(encoded(sequence), encoded(chain.letters()),
                                                               freeGaps(chain), kLetterCount, kScoring);
  std::size_t i = 0;
  std::size_t j = 0;
  for (const gemmi::AlignmentResult::Item& item : result.cigar)
    for (std::uint32_t n = 0; n < item.len(); ++n) {
      if (item.op() == 'M') addPair(sequence, chain, i, j, alignment);
      if (item.op() != 'D') ++i;
      if (item.op() != 'I') ++j;
    }
  return alignment;
}

StructureAligner::StructureAligner(const ProteinStructure& structure)
    : file(structure.file), pairsLeft(kPairsOfAnyStructure) {
  for (const StructureChain& chain : structure.chains) pairsLeft += kPairsPerResidue * chain.residues.size();
}

ChainAlignment StructureAligner::align(const std::string& sequence, const StructureChain& chain) {
  const std::size_t pairs = sequence.size() * chain.residues.size();
  if (pairs > kMostPairsAtOnce || pairs > pairsLeft)
    throw FileError(
        file, 0,
        "has too many residues to align with the " + std::to_string(sequence.size()) + " of a protein",
        "give the chains that have shifts");
  pairsLeft -= pairs;
  return zorvela::align(sequence, chain);
}

}  // namespace zorvela

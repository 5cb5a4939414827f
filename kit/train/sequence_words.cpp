// Words of a sequence as numbers: one byte for each residue.
#include "train/sequence_words.h"

#include <algorithm>

#include "names/nomenclature.h"

namespace zorvela {

std::string withoutThiolState(std::string sequence) {
  for (char& letter : sequence) letter = withoutThiolState(letter);
  return sequence;
}

std::vector<std::uint64_t> wordsOf(const std::string& sequence, std::size_t length) {
  const std::string letters = withoutThiolState(sequence);
  const std::uint64_t kept = length >= 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << (8 * length)) - 1;
  std::vector<std::uint64_t> words;
  std::uint64_t word = 0;
  std::size_t known = 0;  // residues since the last unknown one
  for (const char letter : letters) {
    word = ((word << 8) | static_cast<unsigned char>(letter)) & kept;
    known = letter == kUnknownResidue ? 0 : known + 1;
    if (known >= length) words.push_back(word);
  }
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  return words;
}

}  // namespace zorvela

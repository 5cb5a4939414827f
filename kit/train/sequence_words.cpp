#include "train/sequence_words.h"

#include <algorithm>
#include <utility>

#include "names/nomenclature.h"

namespace zorvela {

std::string withoutThiolState(std::string sequence) {
  for (char& letter : sequence) letter = withoutThiolState(letter);
  return sequence;
}

std::vector<std::string> wordsOf(const std::string& sequence, std::size_t length) {
  const std::string letters = withoutThiolState(sequence);
  std::vector<std::string> words;
  for (std::size_t i = 0; i + length <= letters.size(); ++i) {
    std::string word = letters.substr(i, length);
    if (word.find(kUnknownResidue) == std::string::npos) words.push_back(std::move(word));
  }
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  return words;
}

}  // namespace zorvela

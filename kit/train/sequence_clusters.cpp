// Single-linkage clusters by shared fragments of sequence.
#include "train/sequence_clusters.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

#include "names/nomenclature.h"

namespace zorvela {

namespace {

constexpr std::size_t kFragmentLength = 5;
constexpr std::size_t kMostSequencesOfFragment = 200;
constexpr std::size_t kSharedAlways = 20;
constexpr std::size_t kSharedAtLeast = 5;
constexpr std::size_t kShareOfShorter = 10;  // one in so many

/// Which elements are in one set.
class UnionFind {
 public:
  explicit UnionFind(std::size_t count) : parents(count) { std::iota(parents.begin(), parents.end(), 0U); }

  std::size_t find(std::size_t element) {
    while (parents[element] != element) element = parents[element] = parents[parents[element]];
    return element;
  }

  void join(std::size_t a, std::size_t b) { parents[find(b)] = find(a); }

 private:
  std::vector<std::size_t> parents;
};

bool areRelated(std::size_t shared, std::size_t fragmentsOfA, std::size_t fragmentsOfB) {
  if (shared >= kSharedAlways) return true;
  return shared >= kSharedAtLeast && shared * kShareOfShorter >= std::min(fragmentsOfA, fragmentsOfB);
}

/// The sequence with C for c: the state of a thiol does not tell proteins apart.
std::string plainLetters(std::string sequence) {
  for (char& letter : sequence) letter = withoutThiolState(letter);
  return sequence;
}

}  // namespace

std::vector<std::string> fragmentsOf(const std::string& sequence, std::size_t length) {
  const std::string letters = plainLetters(sequence);
  std::vector<std::string> fragments;
  for (std::size_t i = 0; i + length <= letters.size(); ++i) {
    std::string fragment = letters.substr(i, length);
    if (fragment.find(kUnknownResidue) == std::string::npos) fragments.push_back(std::move(fragment));
  }
  std::sort(fragments.begin(), fragments.end());
  fragments.erase(std::unique(fragments.begin(), fragments.end()), fragments.end());
  return fragments;
}

std::vector<std::size_t> sequenceClusters(const std::vector<std::string>& sequences) {
  UnionFind sets(sequences.size());
  std::vector<std::size_t> different;
  std::unordered_map<std::string, std::size_t> first;
  for (std::size_t i = 0; i < sequences.size(); ++i) {
    const auto [known, isNew] = first.emplace(plainLetters(sequences[i]), i);
    if (isNew) different.push_back(i);
    sets.join(known->second, i);
  }

  std::unordered_map<std::string, std::vector<std::size_t>> sequencesOf;
  std::vector<std::vector<std::string>> fragments;
  for (const std::size_t i : different) {
    fragments.push_back(fragmentsOf(sequences[i], kFragmentLength));
    for (const std::string& fragment : fragments.back())
      sequencesOf[fragment].push_back(fragments.size() - 1);
  }
  std::vector<std::size_t> shared(different.size(), 0);
  for (std::size_t a = 0; a < different.size(); ++a) {
    std::vector<std::size_t> touched;
    for (const std::string& fragment : fragments[a]) {
      const std::vector<std::size_t>& others = sequencesOf[fragment];
      if (others.size() > kMostSequencesOfFragment) continue;
      for (const std::size_t b : others) {
        if (b >= a) break;
        if (shared[b]++ == 0) touched.push_back(b);
      }
    }
    for (const std::size_t b : touched) {
      if (areRelated(shared[b], fragments[a].size(), fragments[b].size()))
        sets.join(different[b], different[a]);
      shared[b] = 0;
    }
  }

  std::vector<std::size_t> numbers(sequences.size());
  std::unordered_map<std::size_t, std::size_t> numberOf;
  for (std::size_t i = 0; i < sequences.size(); ++i)
    numbers[i] = numberOf.emplace(sets.find(i), numberOf.size() + 1).first->second;
  return numbers;
}

}  // namespace zorvela

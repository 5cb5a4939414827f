#include "formats/sequence_file.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "formats/format.h"
#include "formats/input_bytes.h"
#include "formats/star/star_document.h"
#include "formats/text/delimited_text.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kRemedy =
    "give FASTA, one-letter text, residue names with numbers (.seq), NMR-STAR or NEF";

// --- Names with numbers -------------------------------------------------------------------------

/// A residue of a .seq file.
struct NamedResidue {
  std::string name;
  std::string chain;
  std::int64_t number = 0;
};

/// The rows of a .seq file in order. A residue without a number follows the residue before it.
struct NameList {
  std::vector<NamedResidue> residues;
  bool areNumbered = false;
};

constexpr const char* kSpinSystem = "SS";

/// Tells whether a word is a name for certain, not the number "A12".
bool isKnownName(const std::string& word) {
  return residueType(word).letter != kUnknownResidue || isLinker(word);
}

/// Tells whether a word can be a name: "cPRO", "ARG+", "pro_cis", "LL5".
bool looksLikeName(const std::string& word) {
  constexpr std::size_t kLongestName = 8;
  return word.size() > 1 && word.size() <= kLongestName && isLetter(word[0]) &&
         std::all_of(word.begin(), word.end(), [](char c) {
           return isLetter(c) || isDigit(c) || contains("+-_", {&c, 1});
         });
}

/// Gives the last residue the number "171", or "A12" of chain A; false for any other word.
bool setNumber(const std::string& word, NameList& names) {
  const std::string chain(leading(word, isLetter));
  const std::string_view digits = std::string_view(word).substr(chain.size());
  const auto number = toInteger(digits);
  if (!number || digits.front() == '+' || isKnownName(word)) return false;
  names.residues.back().chain = chain;
  names.residues.back().number = *number;
  names.areNumbered = true;
  return true;
}

/// Adds the residues of a line; false for a line of anything else.
bool addNames(std::string_view line, NameList& names) {
  bool hasName = false;
  bool hasNumber = false;
  for (const std::string& word : wordsOf(line.substr(0, line.find_first_of("#!\"")))) {
    const bool isNumbered = hasName && !hasNumber && setNumber(word, names);
    hasNumber = hasNumber || isNumbered;
    if (isNumbered || (hasNumber && toInteger(word))) continue;  // a spin system may follow the number
    if (!looksLikeName(word)) return false;
    const NamedResidue before = names.residues.empty() ? NamedResidue{} : names.residues.back();
    names.residues.push_back({word, before.chain, before.number + 1});
    hasName = true;
    hasNumber = false;
  }
  return true;
}

FileChain& chainNamed(const std::string& name, SequenceFile& sequence) {
  std::vector<FileChain>& chains = sequence.chains;
  const auto found =
      std::find_if(chains.begin(), chains.end(), [&](const FileChain& chain) { return chain.name == name; });
  if (found != chains.end()) return *found;
  checkLimit(chains.size() + 1, limits::kChains, sequence.file);
  chains.emplace_back().name = name;
  return chains.back();
}

/// False for a text of another kind: most names must be those of amino acids.
bool readNames(std::string_view text, SequenceFile& sequence) {
  NameList names;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    if (!addNames(*line, names)) return false;
    checkLimit(names.residues.size(), limits::kResidues, sequence.file);
  }
  const auto isKnown = [](const NamedResidue& one) {
    return isKnownName(one.name) || one.name == kSpinSystem;
  };
  const auto known = std::count_if(names.residues.begin(), names.residues.end(), isKnown);
  const std::size_t count = names.residues.size();
  if (count < 2 || static_cast<std::size_t>(known) * 2 <= count) return false;
  for (const NamedResidue& one : names.residues) {
    if (one.name == kSpinSystem) sequence.spinSystems.insert(static_cast<int>(one.number));
    if (one.name == kSpinSystem || isLinker(one.name)) continue;
    std::vector<FileResidue>& chain = chainNamed(one.chain, sequence).residues;
    chain.push_back({std::to_string(chain.size() + 1),
                     names.areNumbered ? std::to_string(one.number) : std::string(), one.name});
  }
  return true;
}

// --- Letters ------------------------------------------------------------------------------------

/// Adds one-letter residues, numbered from `first` where it is given; false for a line of anything else.
/// Numbers may count the letters before or after them. With `isCaseKept`, a lower-case c is the cysteine of a
/// disulfide bond.
bool addLetters(std::string_view line, bool isCaseKept, std::optional<int> first,
                std::vector<FileResidue>& residues) {
  if (contains(line, "\"")) return false;
  for (const std::string& word : wordsOf(line)) {
    const auto count = toInteger(word);
    const auto size = static_cast<std::int64_t>(residues.size());
    if (count && (*count == size || *count == size + 1)) continue;
    for (const char letter : word) {
      if (letter == '*') continue;  // the end of a chain
      if (!isLetter(letter) && letter != kUnknownResidue) return false;
      const bool isDisulfide = isCaseKept && letter == kDisulfideCysteine;
      const auto index = static_cast<std::int64_t>(residues.size());
      residues.push_back({std::to_string(index + 1), first ? std::to_string(*first + index) : std::string(),
                          isDisulfide ? threeLetterName(letter) : upper({&letter, 1})});
    }
  }
  return true;
}

/// Returns the text after a label of a FASTA header, such as "START:", up to the next bar or comma.
std::string valueIn(std::string_view header, std::string_view label) {
  const std::size_t at = upper(header).find(label);
  if (at == std::string::npos) return "";
  const std::string_view rest = trimmed(header.substr(at + label.size()));
  return std::string(trimmed(rest.substr(0, rest.find_first_of("|,["))));
}

/// Names a chain by its FASTA header, with "CHAIN: A", "Chain A" or "Chains A, B" or a name in front.
FileChain chainOfHeader(std::string_view header) {
  FileChain chain;
  for (const char* label : {"CHAIN:", "|CHAIN ", "|CHAINS "})
    if (chain.name.empty()) chain.name = valueIn(header, label);
  if (chain.name.empty()) chain.name = header.substr(0, header.find_first_of(" \t|"));
  chain.name = printable(chain.name, kLongestNameKept);
  return chain;
}

void readLetters(std::string_view text, SequenceFile& sequence) {
  const bool isCaseKept = text != lower(text);
  std::vector<FileChain>& chains = sequence.chains;
  std::optional<int> first;
  std::size_t number = 0;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    ++number;
    const std::string_view core = trimmed(*line);
    if (core.empty()) continue;
    if (core.front() == '>') {
      first = toInteger(valueIn(core, "START:"));
      chains.push_back(chainOfHeader(trimmed(core.substr(1))));
      checkLimit(chains.size(), limits::kChains, sequence.file, number);
      continue;
    }
    if (chains.empty()) chains.emplace_back();
    if (!addLetters(core, isCaseKept, first, chains.back().residues))
      throw FileError(sequence.file, number, "is not a sequence: \"" + printable(core, 60) + "\"", kRemedy);
    checkLimit(chains.back().residues.size(), limits::kSequence, sequence.file, number);
  }
}

// --- All ----------------------------------------------------------------------------------------

/// Removes empty chains and those of other molecules.
void keepProteins(SequenceFile& sequence) {
  std::vector<FileChain>& chains = sequence.chains;
  const auto isOther = [](const FileChain& chain) {
    return chain.residues.empty() || chain.polymer == Polymer::other;
  };
  chains.erase(std::remove_if(chains.begin(), chains.end(), isOther), chains.end());
  if (chains.empty()) throw FileError(sequence.file, 0, "has no residue", kRemedy);
  std::size_t residues = 0;
  for (const FileChain& chain : chains) {
    residues += chain.residues.size();
    checkLimit(chain.residues.size(), limits::kSequence, sequence.file);
  }
  checkLimit(residues, limits::kResidues, sequence.file);
}

}  // namespace

SequenceFile sequenceFileOf(std::string bytes, const std::string& file) {
  SequenceFile sequence;
  sequence.file = file;
  std::string text = unpacked(std::move(bytes), file);
  dropByteOrderMark(text);
  if (isStar(text)) {
    for (const Source& source : sourcesOf(std::move(text), file))
      for (FileChain& chain : readSource(source).chains) sequence.chains.push_back(std::move(chain));
  } else if (!readNames(text, sequence)) {
    readLetters(text, sequence);
  }
  keepProteins(sequence);
  return sequence;
}

std::string differenceOf(const SequenceFile& one, const SequenceFile& other) {
  if (one.chains.size() != other.chains.size()) return "the numbers of chains differ";
  for (std::size_t c = 0; c < one.chains.size(); ++c) {
    const std::vector<FileResidue>& residues = one.chains[c].residues;
    const std::vector<FileResidue>& others = other.chains[c].residues;
    const auto isSame = [](const FileResidue& a, const FileResidue& b) {
      return polypeptideResidue(a.name).letter == polypeptideResidue(b.name).letter;
    };
    const auto [first, second] =
        std::mismatch(residues.begin(), residues.end(), others.begin(), others.end(), isSame);
    const std::string position = std::to_string(first - residues.begin() + 1);
    if (first != residues.end() && second != others.end())
      return "residue " + position + " is " + printable(first->name, 20) + " in one and " +
             printable(second->name, 20) + " in the other";
    if (residues.size() != others.size()) return "only one has residue " + position;
  }
  return {};
}

bool looksLikeSequence(std::string_view head) {
  if (!head.empty() && head.front() == '>') return true;
  SequenceFile found;
  try {
    if (readNames(head, found)) return true;
    readLetters(head, found);
  } catch (const FileError&) {
    return false;
  }
  constexpr std::size_t kFewestLetters = 10;
  const auto isCapital = [](const FileResidue& one) {
    return contains(kAminoAcids, one.name) || one.name == "X";
  };
  return !found.chains.empty() && found.chains[0].residues.size() >= kFewestLetters && head == upper(head) &&
         std::all_of(found.chains[0].residues.begin(), found.chains[0].residues.end(), isCapital);
}

}  // namespace zorvela

#include "protein/place_on_sequence.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "names/nomenclature.h"
#include "protein/sequence_fit.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// Programs number spin systems that are not assigned far beyond the sequence.
constexpr std::int64_t kStraysFrom = 50;
// Numbers of one protein; the letters of a sequence whose numbers jump further are not kept by number.
constexpr std::int64_t kWidestNumbers = 10 * static_cast<std::int64_t>(kLongestSequence);

char letterOf(const FileResidue& residue) {
  return withoutThiolState(polypeptideResidue(residue.name).letter);
}

std::string lettersOf(const std::vector<FileResidue>& residues) {
  std::string letters;
  for (const FileResidue& residue : residues) letters += letterOf(residue);
  return letters;
}

// --- The sequence by number ---------------------------------------------------------------------

/// A chain of the sequence file whose residues have numbers as keys.
struct NumberedChain {
  FileChain chain;
  NumberedLetters letters;
  bool isFirstOpen = false;  ///< neither the file nor the user says the number of the first residue
};

[[noreturn]] void throwBadNumber(const SequenceFile& sequence, const std::string& number) {
  throw FileError(sequence.file, 0, "has residue number \"" + printable(number, 20) + "\"",
                  "number its residues with ascending whole numbers");
}

NumberedLetters lettersByNumber(const std::vector<FileResidue>& residues, const SequenceFile& sequence) {
  NumberedLetters byNumber;
  byNumber.first = toInteger(residues.front().number).value_or(1);
  for (const FileResidue& residue : residues) {
    const auto number = readResidueNumber(residue.number);
    if (number && !number->code.empty()) continue;  // 52A shares the number of 52
    const std::int64_t place = number ? number->number - byNumber.first : -1;
    if (place < static_cast<std::int64_t>(byNumber.letters.size()) || place > kWidestNumbers)
      throwBadNumber(sequence, residue.number);
    byNumber.letters.resize(static_cast<std::size_t>(place), ' ');
    byNumber.letters += letterOf(residue);
  }
  return byNumber;
}

/// Gives residues new keys, and all that points to them.
void rekey(const std::unordered_map<std::string, std::string>& keys, FileChain& chain) {
  const auto renew = [&](std::string& key) {
    if (const auto found = keys.find(key); found != keys.end()) key = found->second;
  };
  for (std::string& key : chain.disulfides) renew(key);
  for (FileCisFlag& flag : chain.cisFlags) renew(flag.key);
}

NumberedChain numberedChain(FileChain chain, std::optional<int> firstResidue, const SequenceFile& sequence) {
  NumberedChain numbered;
  const std::string ownFirst = chain.residues.front().number;
  numbered.isFirstOpen = ownFirst.empty() && !firstResidue;
  const auto first = ownFirst.empty() ? 1 : toInteger(ownFirst);
  if (!first) throwBadNumber(sequence, ownFirst);
  const std::int64_t moved = firstResidue ? std::int64_t{*firstResidue} - *first : 0;
  std::unordered_map<std::string, std::string> keys;
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    FileResidue& residue = chain.residues[i];
    if (residue.number.empty()) residue.number = std::to_string(*first + static_cast<std::int64_t>(i));
    if (moved != 0) residue.number = steppedNumber(residue.number, moved).value_or("");
    keys.emplace(residue.key, residue.number);
    residue.key = residue.number;
  }
  rekey(keys, chain);
  numbered.letters = lettersByNumber(chain.residues, sequence);
  numbered.chain = std::move(chain);
  return numbered;
}

// --- The rows by number -------------------------------------------------------------------------

/// A row of the file, or a residue of the file's own sequence, by the number that it has in the sequence
/// given.
struct NumberedRow {
  std::int64_t number = 0;
  const FileShift* row = nullptr;
};

using Rows = std::vector<NumberedRow>;

/// The rows of a chain whose residues have plain numbers.
class ChainRows {
 public:
  ChainRows(const ShiftFile& file, std::size_t chain) {
    const std::vector<FileResidue>& own = file.chains[chain].residues;
    named.resize(own.size());
    for (std::size_t i = 0; i < own.size(); ++i) {
      named[i].number = own[i].number.empty() ? own[i].key : own[i].number;
      named[i].residueName = own[i].name;
      numberOfKey.emplace(own[i].key, named[i].number);
      add(named[i]);
    }
    for (const FileShiftList& list : file.lists)
      for (const FileShift& row : list.shifts)
        if (row.chain == chain) add(row);
  }

  /// The number that people use for the residue of a row.
  const std::string& numberOf(const FileShift& row) const {
    const auto found = row.key.empty() ? numberOfKey.end() : numberOfKey.find(row.key);
    return found == numberOfKey.end() ? keyOf(row) : found->second;
  }

  const Rows& all() const { return rows; }
  const std::unordered_map<std::string, std::string>& numbersOfKeys() const { return numberOfKey; }

 private:
  void add(const FileShift& row) {
    if (const auto number = toInteger(numberOf(row)))
      rows.push_back({std::int64_t{*number} + row.offset.value_or(0), &row});
  }

  std::vector<FileShift> named;  ///< rows for the residues of the file's own sequence
  std::unordered_map<std::string, std::string> numberOfKey;
  Rows rows;
};

/// Evidence of the residues among the rows, without spin systems that are not assigned.
std::vector<ResidueEvidence> evidenceOf(const Rows& rows, const std::set<int>& spinSystems,
                                        std::int64_t lastNumber) {
  std::map<std::int64_t, std::uint32_t> byNumber;
  Exclusion exclusion;
  for (const NumberedRow& one : rows)
    if (spinSystems.count(static_cast<int>(one.number)) == 0) byNumber[one.number] |= exclusion.of(*one.row);
  const auto strays = byNumber.upper_bound(lastNumber + kStraysFrom);
  if (static_cast<std::size_t>(std::distance(strays, byNumber.end())) * 2 < byNumber.size())
    byNumber.erase(strays, byNumber.end());
  std::vector<ResidueEvidence> evidence;
  for (const auto& [number, excluded] : byNumber) evidence.push_back({number, excluded});
  return evidence;
}

// --- Does it fit --------------------------------------------------------------------------------

/// The sequence given and what the shift file says against it.
struct Trial {
  const SequenceFile& sequence;
  const NumberedChain& given;
  const ChainRows& rows;
  std::vector<ResidueEvidence> evidence;
  std::string path;
};

/// "residue 45 (P) has HN 8.21", "residue 45 (P) is called ALA", "residue 145 is not in it".
std::string conflictOf(const ResidueEvidence& residue, const Trial& trial) {
  std::string number = "residue " + std::to_string(residue.number);
  const char letter = trial.given.letters.at(residue.number);
  if (letter == ' ') return number + " is not in it";
  Exclusion exclusion;
  for (const NumberedRow& one : trial.rows.all()) {
    if (one.number != residue.number) continue;
    FileShift unnamed = *one.row;
    unnamed.residueName.clear();
    const std::string there = number + " (" + letter + ") ";
    if (isInConflict({0, exclusion.of(unnamed)}, letter))
      return there + "has " + printable(one.row->atom, 20) + " " + printable(one.row->value, 20);
    if (isInConflict({0, exclusion.of(*one.row)}, letter))
      return there + "is called " + printable(one.row->residueName, 20);
  }
  return number;
}

void checkFit(const Trial& trial) {
  const NumberedLetters& letters = trial.given.letters;
  const std::size_t size = trial.evidence.size();
  const std::size_t conflicts = countConflicts(letters, letters.first, trial.evidence, size);
  const bool isTooMany = static_cast<double>(conflicts) > kMostInConflict * static_cast<double>(size);
  if (conflicts == 0 || (!isTooMany && !trial.given.isFirstOpen)) return;
  const auto fitting = fittingFirst(letters, trial.evidence);
  const bool fitsElsewhere = fitting && *fitting != letters.first;
  if (!isTooMany && !fitsElsewhere) return;
  const auto first =
      std::find_if(trial.evidence.begin(), trial.evidence.end(),
                   [&](const ResidueEvidence& one) { return isInConflict(one, letters.at(one.number)); });
  const std::string other = fitsElsewhere ? std::to_string(*fitting) : "";
  throw SequenceError(
      trial.path, 0,
      "does not fit the sequence of " + trial.sequence.file + ", numbered from " +
          std::to_string(letters.first) + ": " + std::to_string(conflicts) + " of " +
          counted(size, "residue is", "residues are") +
          " in conflict, the first: " + conflictOf(*first, trial),
      fitsElsewhere
          ? "it fits with " + other + " as the number of the first residue; give --first-residue " + other
          : "give the sequence of this protein, and the number of its first residue");
}

/// SequenceError for the first residue that rows call otherwise than the sequence does.
void checkNames(const Trial& trial) {
  for (const NumberedRow& one : trial.rows.all()) {
    const char letter = trial.given.letters.at(one.number);
    const char named = withoutThiolState(polypeptideResidue(one.row->residueName).letter);
    const bool isOpen = letter == ' ' || letter == kUnknownResidue || named == kUnknownResidue;
    if (isOpen || letter == named) continue;
    const std::string called = "residue " + std::to_string(one.number) + " is " +
                               printable(one.row->residueName, 20) + " but " + letter +
                               " in the sequence of " + trial.sequence.file;
    throw SequenceError(trial.path, one.row->line, called, "correct the one that is wrong");
  }
}

void check(const NumberedChain& given, const ChainRows& rows, const SequenceFile& sequence,
           const std::string& path) {
  const Trial trial = {sequence, given, rows,
                       evidenceOf(rows.all(), sequence.spinSystems, given.letters.last()), path};
  checkFit(trial);
  checkNames(trial);
}

// --- Choice of the chain ------------------------------------------------------------------------

/// The only chain of the sequence, the one of that name, else the only one that fits.
NumberedChain chosenChain(const FileChain& chain, const ChainRows& rows, const SequenceFile& sequence,
                          std::optional<int> firstResidue, const std::string& path) {
  std::vector<const FileChain*> candidates;
  for (const FileChain& one : sequence.chains) candidates.push_back(&one);
  const auto named = std::find_if(candidates.begin(), candidates.end(), [&](const FileChain* one) {
    return !chain.name.empty() && equalIgnoringCase(one->name, chain.name);
  });
  if (named != candidates.end()) candidates = {*named};
  std::vector<NumberedChain> fitting;
  for (const FileChain* candidate : candidates) {
    NumberedChain given = numberedChain(*candidate, firstResidue, sequence);
    try {
      check(given, rows, sequence, path);
    } catch (const SequenceError&) {
      if (candidates.size() == 1) throw;
      continue;
    }
    const bool isCopy = !fitting.empty() && fitting.front().letters.letters == given.letters.letters;
    if (!isCopy) fitting.push_back(std::move(given));
  }
  if (fitting.size() == 1) return std::move(fitting.front());
  std::vector<std::string> names;
  for (const FileChain& one : sequence.chains) names.push_back(one.name);
  throw SequenceError(path, 0,
                      std::string(fitting.empty() ? "fits none" : "fits several") + " of the chains of " +
                          sequence.file + ": " + printable(enumerated(names)),
                      "give the sequence of this chain, and the number of its first residue");
}

}  // namespace

bool placeOnSequence(ShiftFile& file, std::size_t chain, const SequenceFile& sequence,
                     std::optional<int> firstResidue, const std::string& path) {
  FileChain& own = file.chains[chain];
  const auto isSame = [&](const FileChain& one) {
    return lettersOf(one.residues) == lettersOf(own.residues);
  };
  if (std::any_of(sequence.chains.begin(), sequence.chains.end(), isSame)) return false;
  const ChainRows rows(file, chain);
  NumberedChain given = chosenChain(own, rows, sequence, firstResidue, path);
  for (FileShiftList& list : file.lists)
    for (FileShift& row : list.shifts)
      if (row.chain == chain) row.key = row.number = rows.numberOf(row);
  rekey(rows.numbersOfKeys(), own);
  own.polymer = Polymer::polypeptide;
  own.residues = std::move(given.chain.residues);
  const auto append = [](auto& to, const auto& more) { to.insert(to.end(), more.begin(), more.end()); };
  append(own.disulfides, given.chain.disulfides);
  append(own.cisFlags, given.chain.cisFlags);
  if (given.isFirstOpen)
    file.notes.push_back("the sequence of " + sequence.file +
                         " has no numbers; its first residue is assumed to be 1");
  return true;
}

}  // namespace zorvela

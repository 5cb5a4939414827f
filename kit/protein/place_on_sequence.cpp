#include "protein/place_on_sequence.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "names/nomenclature.h"
#include "names/plausible_shifts.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// Programs number spin systems that are not assigned far beyond the sequence.
constexpr std::int64_t kStraysFrom = 50;
// Numbers of one protein; the letters of a sequence whose numbers jump further are not kept by number.
constexpr std::int64_t kWidestNumbers = 10 * static_cast<std::int64_t>(kLongestSequence);

char letterOf(std::string_view residueName) {
  return withoutThiolState(polypeptideResidue(residueName).letter);
}

// --- The sequence by number ---------------------------------------------------------------------

/// A chain of the sequence file whose residues have numbers as keys.
struct NumberedChain {
  FileChain chain;
  bool isFirstOpen = false;  ///< neither the file nor the user says the number of the first residue
  std::int64_t first = 1;
  std::string letters;  ///< by number from the first on, a blank for a number without a residue

  std::int64_t last() const { return first + static_cast<std::int64_t>(letters.size()) - 1; }
  /// A blank outside the sequence.
  char at(std::int64_t number) const {
    return number < first || number > last() ? ' ' : letters[static_cast<std::size_t>(number - first)];
  }
};

/// Gives residues new keys, and all that points to them.
void rekey(const std::unordered_map<std::string, std::string>& keys, FileChain& chain) {
  const auto renew = [&](std::string& key) {
    if (const auto found = keys.find(key); found != keys.end()) key = found->second;
  };
  for (std::string& key : chain.disulfides) renew(key);
  for (FileCisFlag& flag : chain.cisFlags) renew(flag.key);
}

NumberedChain numberedChain(FileChain chain, std::optional<int> firstResidue, const std::string& file) {
  const auto check = [&](bool isGood, const std::string& number) {
    if (!isGood)
      throw FileError(file, 0, "has residue number \"" + printable(number, 20) + "\"",
                      "number its residues with ascending whole numbers");
  };
  const std::string ownNumber = chain.residues.front().number;
  const auto ownFirst = ownNumber.empty() ? 1 : toInteger(ownNumber);
  check(ownFirst.has_value(), ownNumber);
  NumberedChain numbered;
  numbered.isFirstOpen = ownNumber.empty() && !firstResidue;
  numbered.first = firstResidue.value_or(*ownFirst);
  std::unordered_map<std::string, std::string> keys;
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    FileResidue& residue = chain.residues[i];
    if (residue.number.empty()) residue.number = std::to_string(*ownFirst + static_cast<std::int64_t>(i));
    if (numbered.first != *ownFirst)
      residue.number = steppedNumber(residue.number, numbered.first - *ownFirst).value_or("");
    keys.emplace(residue.key, residue.number);
    residue.key = residue.number;
    const auto number = readResidueNumber(residue.number);
    if (number && !number->code.empty()) continue;  // 52A shares the number of 52
    const std::int64_t place = number ? number->number - numbered.first : -1;
    check(place >= static_cast<std::int64_t>(numbered.letters.size()) && place <= kWidestNumbers,
          residue.number);
    numbered.letters.resize(static_cast<std::size_t>(place), ' ');
    numbered.letters += letterOf(residue.name);
  }
  rekey(keys, chain);
  numbered.chain = std::move(chain);
  return numbered;
}

// --- The residue types that shifts exclude ------------------------------------------------------

constexpr Types kAllTypes = (Types{1} << kAminoAcids.size()) - 1;

/// No bit for a letter that is open.
Types bitOf(char letter) {
  const std::size_t index = kAminoAcids.find(letter);
  return index == std::string_view::npos ? 0 : Types{1} << index;
}

/// Tells whether a residue type can have a shift. A shift that no type has is folded or wrong, and excludes
/// none.
bool isPossible(char letter, const AtomReading& atom, double ppm) {
  if (!atom.isInTable()) return atom.kind != AtomReading::Kind::foreign;
  return isPlausible(letter, atom.atom, ppm) || !isPlausible(kUnknownResidue, atom.atom, ppm);
}

/// All types except the one that the row names.
Types excludedByName(const FileShift& row) {
  const Types named = bitOf(letterOf(row.residueName));
  return named == 0 ? 0 : kAllTypes & ~named;
}

// --- The rows by number -------------------------------------------------------------------------

/// The rows of a chain whose residues have plain numbers, one for each residue of the file's own sequence
/// among them, by the number that they have in the sequence given.
struct ChainRows {
  std::vector<FileShift> named;  ///< for the residues of the file's own sequence
  std::unordered_map<std::string, std::string> numberOfKey;
  std::vector<std::pair<std::int64_t, const FileShift*>> rows;
  std::map<std::int64_t, Types> excluded;  ///< by residue, without spin systems that are not assigned

  ChainRows(const ShiftFile& file, std::size_t chain, const std::set<int>& spinSystems) {
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
    for (const auto& [number, row] : rows)
      if (spinSystems.count(static_cast<int>(number)) == 0)
        excluded[number] |= excludedByName(*row) | excludedByShift(*row);
  }

  void add(const FileShift& row) {
    if (const auto number = toInteger(numberOf(row)))
      rows.emplace_back(std::int64_t{*number} + row.offset.value_or(0), &row);
  }

  /// The number that people use for the residue of a row.
  const std::string& numberOf(const FileShift& row) const {
    const auto found = row.key.empty() ? numberOfKey.end() : numberOfKey.find(row.key);
    return found == numberOfKey.end() ? keyOf(row) : found->second;
  }
};

// --- Does it fit --------------------------------------------------------------------------------

/// The types that each residue excludes, by number.
using Evidence = std::vector<std::pair<std::int64_t, Types>>;

/// Counts the residues in conflict if the sequence begins with this number; stops beyond `most`.
std::size_t countConflicts(const NumberedChain& given, std::int64_t first, const Evidence& evidence,
                           std::size_t most) {
  std::size_t conflicts = 0;
  for (const auto& [number, excluded] : evidence)
    if (isInConflict(excluded, given.at(number + given.first - first)) && ++conflicts > most) break;
  return conflicts;
}

/// Returns the number of the first residue with the fewest conflicts, if they are within the bound and no
/// other number has as few. Returns nothing for more pairs of residues and numbers than a protein has.
std::optional<std::int64_t> fittingFirst(const NumberedChain& given, const Evidence& evidence) {
  constexpr double kMostPairs = 1e8;
  const std::int64_t from = evidence.front().first - static_cast<std::int64_t>(given.letters.size()) + 1;
  const std::int64_t to = evidence.back().first;
  if (static_cast<double>(to - from) * static_cast<double>(evidence.size()) > kMostPairs) return std::nullopt;
  auto fewest = static_cast<std::size_t>(kMostInConflict * static_cast<double>(evidence.size()));
  std::optional<std::int64_t> fitting;
  bool isFound = false;
  for (std::int64_t first = from; first <= to; ++first) {
    const std::size_t conflicts = countConflicts(given, first, evidence, fewest);
    if (conflicts > fewest) continue;
    const bool isTie = isFound && conflicts == fewest;
    fitting = isTie ? std::nullopt : std::optional(first);
    isFound = true;
    fewest = conflicts;
  }
  return fitting;
}

/// "residue 45 (P) has HN 8.21", "residue 45 (P) is called ALA", "residue 145 is not in it".
std::string conflictOf(std::int64_t residue, const NumberedChain& given, const ChainRows& rows) {
  std::string number = "residue " + std::to_string(residue);
  const char letter = given.at(residue);
  if (letter == ' ') return number + " is not in it";
  const std::string there = number + " (" + letter + ") ";
  for (const auto& [place, row] : rows.rows) {
    if (place != residue) continue;
    if (isInConflict(excludedByShift(*row), letter))
      return there + "has " + printable(row->atom, 20) + " " + printable(row->value, 20);
    if (isInConflict(excludedByName(*row), letter))
      return there + "is called " + printable(row->residueName, 20);
  }
  return number;
}

/// SequenceError where too many residues are in conflict, or another number fits better than an open one.
void checkFit(const NumberedChain& given, const ChainRows& rows, const std::string& sequenceFile,
              const std::string& path) {
  auto strays = rows.excluded.upper_bound(given.last() + kStraysFrom);
  if (static_cast<std::size_t>(std::distance(strays, rows.excluded.end())) * 2 >= rows.excluded.size())
    strays = rows.excluded.end();
  const Evidence evidence(rows.excluded.begin(), strays);
  const std::size_t conflicts = countConflicts(given, given.first, evidence, evidence.size());
  const bool isTooMany =
      static_cast<double>(conflicts) > kMostInConflict * static_cast<double>(evidence.size());
  if (conflicts == 0 || (!isTooMany && !given.isFirstOpen)) return;
  const auto fitting = fittingFirst(given, evidence);
  const bool fitsElsewhere = fitting && *fitting != given.first;
  if (!isTooMany && !fitsElsewhere) return;
  const auto first = std::find_if(evidence.begin(), evidence.end(), [&](const auto& residue) {
    return isInConflict(residue.second, given.at(residue.first));
  });
  const std::string other = fitsElsewhere ? std::to_string(*fitting) : "";
  throw SequenceError(
      path, 0,
      "does not fit the sequence of " + sequenceFile + ", numbered from " + std::to_string(given.first) +
          ": " + std::to_string(conflicts) + " of " + counted(evidence.size(), "residue is", "residues are") +
          " in conflict, the first: " + conflictOf(first->first, given, rows),
      fitsElsewhere
          ? "it fits with " + other + " as the number of the first residue; give --first-residue " + other
          : "give the sequence of this protein, and the number of its first residue");
}

/// SequenceError for the first residue that rows call otherwise than the sequence does.
void checkNames(const NumberedChain& given, const ChainRows& rows, const std::string& sequenceFile,
                const std::string& path) {
  for (const auto& [number, row] : rows.rows) {
    const char letter = given.at(number);
    if ((excludedByName(*row) & bitOf(letter)) == 0) continue;
    throw SequenceError(path, row->line,
                        "residue " + std::to_string(number) + " is " + printable(row->residueName, 20) +
                            " but " + letter + " in the sequence of " + sequenceFile,
                        "correct the one that is wrong");
  }
}

/// The only chain of the sequence, the one of that name, else the only one that fits.
NumberedChain chosenChain(const FileChain& chain, const ChainRows& rows, const SequenceFile& sequence,
                          std::optional<int> firstResidue, const std::string& path) {
  std::vector<FileChain> candidates = sequence.chains;
  const auto named = std::find_if(candidates.begin(), candidates.end(), [&](const FileChain& one) {
    return !chain.name.empty() && equalIgnoringCase(one.name, chain.name);
  });
  if (named != candidates.end()) candidates = {*named};
  std::vector<NumberedChain> fitting;
  for (FileChain& candidate : candidates) {
    NumberedChain given = numberedChain(std::move(candidate), firstResidue, sequence.file);
    try {
      checkFit(given, rows, sequence.file, path);
      checkNames(given, rows, sequence.file, path);
    } catch (const SequenceError&) {
      if (candidates.size() == 1) throw;
      continue;
    }
    const bool isCopy = !fitting.empty() && fitting.front().letters == given.letters;
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

std::string lettersOf(const FileChain& chain) {
  std::string letters;
  for (const FileResidue& residue : chain.residues) letters += letterOf(residue.name);
  return letters;
}

}  // namespace

bool isInConflict(Types excluded, char letter) {
  return letter == ' ' || (excluded & bitOf(letter)) != 0;
}

Types excludedByShift(const FileShift& row) {
  Types excluded = 0;
  const auto shift = readShift(row.value);
  if (shift && shift->ppm != 0 && !isMissingMark(*shift))
    for (const char letter : kAminoAcids)
      if (!isPossible(letter, readAtom(letter, row.atom), shift->ppm)) excluded |= bitOf(letter);
  return excluded;
}

bool placeOnSequence(ShiftFile& file, std::size_t chain, const SequenceFile& sequence,
                     std::optional<int> firstResidue, const std::string& path) {
  FileChain& own = file.chains[chain];
  const std::string letters = lettersOf(own);
  if (std::any_of(sequence.chains.begin(), sequence.chains.end(),
                  [&](const FileChain& one) { return lettersOf(one) == letters; }))
    return false;
  const ChainRows rows(file, chain, sequence.spinSystems);
  NumberedChain given = chosenChain(own, rows, sequence, firstResidue, path);
  for (FileShiftList& list : file.lists)
    for (FileShift& row : list.shifts)
      if (row.chain == chain) row.key = row.number = rows.numberOf(row);
  rekey(rows.numberOfKey, own);
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

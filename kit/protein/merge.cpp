// Several shift lists of one protein as one.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <utility>

#include "formats/limits.h"
#include "names/nomenclature.h"
#include "protein/remarks.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/protein.h"

namespace zorvela {

namespace {

using Residues = std::map<ResidueNumber, char>;

/// The residue with a number; a number that is not one is kept as an insertion code.
ResidueNumber residueOf(const std::string& number) {
  return readResidueNumber(number).value_or(ResidueNumber{0, number});
}

ResidueNumber residueAt(int position, const Protein& part) {
  return residueOf(part.numbers[static_cast<std::size_t>(position) - 1]);
}

std::string textOf(const ResidueNumber& residue) {
  return std::to_string(residue.number) + residue.code;
}

bool areAlike(char a, char b) {
  return a == kUnknownResidue || b == kUnknownResidue || withoutThiolState(a) == withoutThiolState(b);
}

/// Tells whether two values of an atom differ more than those of one sample.
bool differ(const Shift& a, const Shift& b) {
  constexpr double kProton = 0.03;
  constexpr double kCarbonOrNitrogen = 0.3;
  constexpr double kRounding = 1e-6;
  const bool isProton = nameOf(a.atom).front() == 'H';
  return std::abs(a.ppm - b.ppm) > (isProton ? kProton : kCarbonOrNitrogen) + kRounding;
}

void addResidues(const Protein& part, const Protein& first, Residues& residues) {
  for (std::size_t i = 0; i < part.sequence.size(); ++i) {
    const char letter = part.sequence[i];
    char& known = residues.emplace(residueOf(part.numbers[i]), letter).first->second;
    if (!areAlike(known, letter))
      throw Error(part.file, 0,
                  "residue " + printable(part.numbers[i], 20) + " is " + letter + " but " + known + " in " +
                      first.file,
                  "merge lists of one protein only");
    if (known == kUnknownResidue || letter == kDisulfideCysteine) known = letter;
  }
}

/// Numbers between two parts are residues that neither knows.
void fillGaps(const std::string& file, Residues& residues) {
  const int first = residues.begin()->first.number;
  const int last = residues.rbegin()->first.number;
  checkLimit(static_cast<std::size_t>(std::int64_t{last} - first + 1), limits::kSequence, file);
  for (int number = first; number < last; ++number)
    residues.emplace(ResidueNumber{number, ""}, kUnknownResidue);
}

/// Shifts by residue and atom, the first of each.
using ShiftsByAtom = std::map<std::pair<ResidueNumber, std::size_t>, Shift>;

/// Returns the shift that its atom has: this one where it is the first.
Shift& firstOf(const Shift& shift, const Protein& part, ShiftsByAtom& shifts) {
  return shifts.emplace(std::pair(residueAt(shift.position, part), tableRank(shift.atom)), shift)
      .first->second;
}

void takeShifts(const std::vector<Protein>& parts, const std::map<ResidueNumber, int>& positions,
                Protein& merged) {
  ShiftsByAtom shifts;
  std::multimap<ShiftsByAtom::key_type, std::string> differing;
  for (const Protein& part : parts)
    for (const Shift& shift : part.shifts) {
      const Shift& first = firstOf(shift, part, shifts);
      const ResidueNumber residue = residueAt(shift.position, part);
      if (differ(first, shift))
        differing.emplace(std::pair(residue, tableRank(shift.atom)),
                          textOf(residue) + " " + std::string(nameOf(shift.atom)) + " " + shiftText(first) +
                              " (" + part.file + " " + shiftText(shift) + ")");
    }
  std::vector<std::string> texts;
  for (const auto& [atom, text] : differing) texts.push_back(text);
  addNote("shifts that differ by more than 0.3 ppm (1H: 0.03); the first is used: ", texts, merged.notes);
  for (auto& [atom, shift] : shifts) {
    shift.position = positions.at(atom.first);
    merged.shifts.push_back(shift);
  }
}

}  // namespace

Protein mergedProtein(const std::vector<Protein>& parts) {
  if (parts.empty()) throw Error("there is no shift list to merge");
  Residues residues;
  std::vector<std::string> files;
  for (const Protein& part : parts) {
    addResidues(part, parts.front(), residues);
    files.push_back(part.file);
  }
  fillGaps(files.back(), residues);
  Protein merged;
  merged.file = parts.front().file;
  merged.chain = parts.front().chain;
  merged.isSequenceGiven = false;
  std::map<ResidueNumber, int> positions;
  for (const auto& [residue, letter] : residues) {
    merged.sequence += letter;
    merged.numbers.push_back(textOf(residue));
    positions.emplace(residue, static_cast<int>(merged.sequence.size()));
  }
  merged.notes.push_back("merged into one protein: " + enumerated(files));
  takeShifts(parts, positions, merged);
  for (const Protein& part : parts) {
    merged.isSequenceGiven = merged.isSequenceGiven || part.isSequenceGiven;
    merged.deuteration = std::max(merged.deuteration, part.deuteration);
    for (const auto& [position, isCis] : part.cisFlags)
      merged.cisFlags.emplace(positions.at(residueAt(position, part)), isCis);
    for (const std::string& remark : part.remarks)
      if (!hasNumbering(remark)) merged.remarks.push_back(remark);
    for (const std::string& note : part.notes) merged.notes.push_back(part.file + ": " + note);
    for (const std::string& aside : part.asides) merged.asides.push_back(part.file + ": " + aside);
  }
  addNumbering(merged);
  return merged;
}

bool lookLikeOne(const Protein& one, const Protein& other) {
  constexpr int kFewestCommon = 10;
  constexpr std::size_t kMostDiffering = 20;  // one in so many shifts
  Residues residues;
  for (std::size_t i = 0; i < one.sequence.size(); ++i)
    residues.emplace(residueOf(one.numbers[i]), one.sequence[i]);
  int common = 0;
  for (std::size_t i = 0; i < other.sequence.size(); ++i) {
    const auto found = residues.find(residueOf(other.numbers[i]));
    if (found == residues.end()) continue;
    if (!areAlike(found->second, other.sequence[i])) return false;
    if (found->second != kUnknownResidue && other.sequence[i] != kUnknownResidue) ++common;
  }
  ShiftsByAtom shifts;
  for (const Shift& shift : one.shifts) firstOf(shift, one, shifts);
  std::size_t differing = 0;
  for (const Shift& shift : other.shifts)
    if (differ(firstOf(shift, other, shifts), shift)) ++differing;
  const std::size_t shared = one.shifts.size() + other.shifts.size() - shifts.size();
  const bool areBothNew = shared < one.shifts.size() && shared < other.shifts.size();
  return common >= kFewestCommon && areBothNew && differing * kMostDiffering <= shared;
}

}  // namespace zorvela

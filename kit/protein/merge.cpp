// Several shift lists of one protein as one.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <utility>

#include "formats/limits.h"
#include "names/nomenclature.h"
#include "protein/numbering.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/protein.h"

namespace zorvela {

namespace {

/// A residue by its number and insertion code.
using Place = std::pair<int, std::string>;
using Residues = std::map<Place, char>;

Place placeOf(const std::string& number) {
  const auto read = readResidueNumber(number);
  return read ? Place(read->number, read->code) : Place(0, number);
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
    const auto [known, isNew] = residues.emplace(placeOf(part.numbers[i]), part.sequence[i]);
    if (!isNew && !areAlike(known->second, part.sequence[i]))
      throw Error(part.file, 0,
                  "residue " + printable(part.numbers[i], 20) + " is " + part.sequence[i] + " but " +
                      known->second + " in " + first.file,
                  "merge lists of one protein only");
    if (known->second == kUnknownResidue || part.sequence[i] == kDisulfideCysteine)
      known->second = part.sequence[i];
  }
}

/// Numbers between two parts are residues that neither knows.
void fillGaps(const std::string& file, Residues& residues) {
  const std::int64_t size = std::int64_t{residues.rbegin()->first.first} - residues.begin()->first.first + 1;
  checkLimit(static_cast<std::size_t>(size), limits::kSequence, file);
  for (int number = residues.begin()->first.first; number < residues.rbegin()->first.first; ++number)
    residues.emplace(Place(number, ""), kUnknownResidue);
}

/// The shifts of all parts by residue and atom, the first of each first.
using ShiftsByAtom =
    std::map<std::pair<Place, std::size_t>, std::vector<std::pair<const Protein*, const Shift*>>>;

ShiftsByAtom shiftsByAtom(const std::vector<Protein>& parts) {
  ShiftsByAtom shifts;
  for (const Protein& part : parts)
    for (const Shift& shift : part.shifts)
      shifts[{placeOf(part.numbers[static_cast<std::size_t>(shift.position) - 1]), tableRank(shift.atom)}]
          .push_back({&part, &shift});
  return shifts;
}

void takeShifts(const std::vector<Protein>& parts, const std::map<Place, int>& positions, Protein& merged) {
  std::vector<std::string> differing;
  for (const auto& [key, values] : shiftsByAtom(parts)) {
    Shift shift = *values.front().second;
    shift.position = positions.at(key.first);
    for (const auto& [part, other] : values)
      if (differ(shift, *other))
        differing.push_back(std::to_string(key.first.first) + key.first.second + " " +
                            std::string(nameOf(shift.atom)) + " " + shiftText(shift) + " (" + part->file +
                            " " + shiftText(*other) + ")");
    merged.shifts.push_back(shift);
  }
  addNote("shifts that differ by more than 0.3 ppm (1H: 0.03); the first is used: ", differing, merged.notes);
}

/// Remarks and notes of all parts, each note with its file.
void takeWords(const std::vector<Protein>& parts, Protein& merged) {
  for (const Protein& part : parts) {
    for (const std::string& remark : part.remarks)
      if (!hasNumbering(remark)) merged.remarks.push_back(remark);
    for (const std::string& note : part.notes) merged.notes.push_back(part.file + ": " + note);
    for (const std::string& aside : part.asides) merged.asides.push_back(part.file + ": " + aside);
  }
  for (const std::string& remark : numberingRemarks(merged.numbers))
    merged.remarks.push_back(printable(remark));
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
  std::map<Place, int> positions;
  for (const auto& [place, letter] : residues) {
    merged.sequence += letter;
    merged.numbers.push_back(std::to_string(place.first) + place.second);
    positions.emplace(place, static_cast<int>(merged.sequence.size()));
  }
  for (const Protein& part : parts)
    for (const auto& [position, isCis] : part.cisFlags)
      merged.cisFlags.emplace(positions.at(placeOf(part.numbers[static_cast<std::size_t>(position) - 1])),
                              isCis);
  merged.isSequenceGiven =
      std::any_of(parts.begin(), parts.end(), [](const Protein& part) { return part.isSequenceGiven; });
  for (const Protein& part : parts) merged.deuteration = std::max(merged.deuteration, part.deuteration);
  merged.notes.push_back("merged into one protein: " + enumerated(files));
  takeShifts(parts, positions, merged);
  takeWords(parts, merged);
  return merged;
}

bool lookLikeOne(const Protein& one, const Protein& other) {
  constexpr int kFewestCommon = 10;
  constexpr std::size_t kMostDiffering = 20;  // one in so many shifts
  Residues residues;
  for (std::size_t i = 0; i < one.sequence.size(); ++i)
    residues.emplace(placeOf(one.numbers[i]), one.sequence[i]);
  int common = 0;
  for (std::size_t i = 0; i < other.sequence.size(); ++i) {
    const auto found = residues.find(placeOf(other.numbers[i]));
    if (found == residues.end()) continue;
    if (!areAlike(found->second, other.sequence[i])) return false;
    if (found->second != kUnknownResidue && other.sequence[i] != kUnknownResidue) ++common;
  }
  std::size_t shared = 0;
  std::size_t differing = 0;
  const std::vector<Protein> both = {one, other};
  for (const auto& [key, values] : shiftsByAtom(both)) {
    shared += values.size() - 1;
    if (differ(*values.front().second, *values.back().second)) ++differing;
  }
  const bool areBothNew = shared < one.shifts.size() && shared < other.shifts.size();
  return common >= kFewestCommon && areBothNew && differing * kMostDiffering <= shared;
}

}  // namespace zorvela

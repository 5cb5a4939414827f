#include "protein/shifts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <utility>

#include "ZORVELA.h"
#include "names/plausible_shifts.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

std::string linePrefix(const FileShift& row) {
  return row.line > 0 ? "line " + std::to_string(row.line) + ": " : "";
}

/// Describes an ambiguity code; nullptr for certain assignments: 1, and 2 (one of two protons).
const char* ambiguityText(const std::string& code) {
  if (code == "4") return "within the residue";
  if (code == "5") return "between residues";
  if (code == "6") return "between molecules";
  return code == "9" ? "in another way" : nullptr;
}

// --- Residues of rows ---------------------------------------------------------------------------

/// The position, 0 for one outside the sequence.
int within(const ChainSequence& sequence, std::int64_t position) {
  return position >= 1 && position <= sequence.size() ? static_cast<int>(position) : 0;
}

/// Position of the residue that a row names, 0 if the sequence has none for it. `offset` is added to the
/// row's number; with none the row's words for the residue count.
int namedPlaceOf(const FileShift& row, const ChainSequence& sequence, std::int64_t offset) {
  if (offset == 0)
    return row.key.empty() ? sequence.positionOfNumber(row.number) : sequence.positionOfKey(row.key);
  const auto number = toInteger(keyOf(row));
  return number ? within(sequence, *number + offset) : 0;
}

/// Position of the residue that has the shift: the one that the row names, or its neighbour.
int placeOf(const FileShift& row, const ChainSequence& sequence, std::int64_t offset) {
  const int named = namedPlaceOf(row, sequence, offset);
  return row.offset && named != 0 ? within(sequence, std::int64_t{named} + *row.offset) : named;
}

/// Tells whether the row's residue name fits the sequence. An unknown name may be an unusual spelling, but
/// not the name of another molecule.
bool fits(const FileShift& row, const ChainResidue& residue) {
  if (row.residueName == residue.name) return true;  // nearly all rows
  const char letter = polypeptideResidue(row.residueName).letter;
  if (letter != kUnknownResidue) return letter == residue.type.letter;
  return !isOtherMolecule(row.residueName) || equalIgnoringCase(row.residueName, residue.name);
}

bool isMisplaced(const FileShift& row, const ChainSequence& sequence) {
  const int position = placeOf(row, sequence, 0);
  return position == 0 || !fits(row, sequence.at(position));
}

/// The one offset under which (nearly) all residue names agree with the sequence; 0 if there is none.
std::int64_t commonOffset(const ShiftRows& rows, const ChainSequence& sequence) {
  constexpr std::size_t kSampleSize = 200;
  constexpr std::size_t kSmallestSample = 5;
  constexpr int kLongestSearched = 10000;
  std::map<int, char> sample;
  for (const FileShift* row : rows) {
    const auto number = toInteger(keyOf(*row));
    const char letter = polypeptideResidue(row->residueName).letter;
    if (number && !row->offset && letter != kUnknownResidue && sample.size() < kSampleSize)
      sample.emplace(*number, letter);
  }
  if (sample.size() < kSmallestSample || sequence.size() > kLongestSearched) return 0;
  const std::int64_t first = sample.begin()->first;
  const std::int64_t last = sample.rbegin()->first;
  if (last - first > kLongestSearched) return 0;  // no numbers of one protein
  std::vector<std::size_t> votes(static_cast<std::size_t>(sequence.size() + last - first), 0);
  for (const auto& [number, letter] : sample)
    for (int i = 1; i <= sequence.size(); ++i)
      if (sequence.at(i).type.letter == letter) ++votes[static_cast<std::size_t>(i - 1 + last - number)];
  // votes[0] is for residue 1 as the last of the sample.
  const auto best = std::max_element(votes.begin(), votes.end());
  const bool isTie = std::count(votes.begin(), votes.end(), *best) > 1;
  return !isTie && *best * 10 >= sample.size() * 9 ? best - votes.begin() + 1 - last : 0;
}

/// Returns what to add to the numbers of rows to find their residues; 0 in most files.
std::int64_t offsetOf(const ShiftRows& rows, const ChainSequence& sequence) {
  const auto misplaced = std::count_if(rows.begin(), rows.end(),
                                       [&](const FileShift* row) { return isMisplaced(*row, sequence); });
  return static_cast<std::size_t>(misplaced) * 2 > rows.size() ? commonOffset(rows, sequence) : 0;
}

// --- One row ------------------------------------------------------------------------------------

/// A shift that may go into the table.
struct Candidate {
  Shift shift;
  double occupancy = 1;
  bool isPseudo = false;
};

/// The place of HA1 of glycine among the atoms of its residue, until it is settled: the last.
constexpr std::size_t kOlderHA1 = kAtomCount;

using Chosen = std::map<AtomKey, Candidate>;

/// The shifts of a chain that go into its table, and the reasons of those that do not.
struct Collected {
  Chosen chosen;
  std::map<std::string, std::size_t> outside;                   ///< rows by number
  std::map<std::pair<int, std::string>, std::size_t> misnamed;  ///< rows by residue and their name for it
  std::map<std::string, std::vector<std::string>> ambiguous;    ///< atoms by BMRB code
  std::vector<std::string> pseudo;
  std::vector<std::string> older;
  std::vector<std::string> foreign;
  std::vector<std::string> hydroxylRing;
  std::vector<std::string> ofNeighbours;  ///< atoms whose shift is kept under a neighbour alone
  std::size_t ofNeighboursTwice = 0;      ///< such shifts of residues that have one of their own
  LimitedNotes badValues{"values that are not numbers"};
  LimitedNotes duplicates{"atoms that are given twice"};
  std::size_t withoutValue = 0;
  std::size_t missingMarks = 0;
  std::size_t repeated = 0;
  std::size_t otherAtoms = 0;
};

void addOnce(std::vector<std::string>& items, const std::string& item) {
  if (items.empty() || items.back() != item) items.push_back(item);
}

// The hydroxyl group moves CG of hydroxyproline to 70 ppm and CB along with it: no proline is alike.
bool isOfHydroxylRing(const ResidueReading& type, const std::string& atom) {
  return type.isHydroxyproline && (equalIgnoringCase(atom, "CB") || equalIgnoringCase(atom, "CG"));
}

/// Of two shifts for one atom the one that names it alone counts, then the one with the higher occupancy,
/// then the first.
void offer(const AtomKey& key, Candidate candidate, const FileShift& row, const ChainResidue& residue,
           Collected& found) {
  const auto [entry, isNew] = found.chosen.emplace(key, candidate);
  if (isNew) return;
  Candidate& kept = entry->second;
  const bool isBetter =
      kept.isPseudo != candidate.isPseudo ? kept.isPseudo : candidate.occupancy > kept.occupancy;
  if (isBetter) std::swap(kept, candidate);
  if (kept.shift.ppm == candidate.shift.ppm) {
    ++found.repeated;
    return;
  }
  const std::string name(key.second == kOlderHA1 ? "HA1" : nameOf(kept.shift.atom));
  const std::string text = shiftText(kept.shift);
  found.duplicates.add(linePrefix(row) + name + " of residue " + residue.number + " is given as " + text +
                       " and " + shiftText(candidate.shift) + " ppm: " + text + " is used");
}

/// A row whose residue is known.
void take(const FileShift& row, int position, const ChainResidue& residue, Collected& found) {
  const AtomReading atom = readAtom(residue.type.letter, row.atom);
  const std::string numbered = residue.number + " " + row.atom;
  const auto shift = readShift(row.value);
  if (atom.kind == AtomReading::Kind::other) {
    ++found.otherAtoms;
  } else if (row.value.empty()) {
    ++found.withoutValue;
  } else if (!shift) {
    found.badValues.add(linePrefix(row) + numbered + ": \"" + printable(row.value, 30) +
                        "\" is not a number; ignored");
  } else if (shift->ppm == 0 || isMissingMark(*shift)) {
    // Nothing in a backbone resonates at exactly 0 ppm, where the reference does: a spreadsheet's empty cell.
    ++found.missingMarks;
  } else if (atom.kind == AtomReading::Kind::foreign) {
    found.foreign.push_back(numbered);
  } else if (isOfHydroxylRing(residue.type, row.atom)) {
    found.hydroxylRing.push_back(numbered);
  } else {
    const bool isPseudo = atom.kind == AtomReading::Kind::pseudo;
    if (ambiguityText(row.ambiguity) != nullptr) addOnce(found.ambiguous[row.ambiguity], numbered);
    if (isPseudo && !row.offset) found.pseudo.push_back(residue.number);
    Candidate candidate{*shift, row.occupancy, isPseudo};
    candidate.shift.position = position;
    candidate.shift.atom = atom.atom;
    offer({position, atom.isOlderName ? kOlderHA1 : tableRank(atom.atom)}, candidate, row, residue, found);
    candidate.shift.atom = Atom::HA3;
    if (isPseudo) offer(atomKey(position, Atom::HA3), candidate, row, residue, found);
  }
}

// --- All rows -----------------------------------------------------------------------------------

void rename(const AtomKey& from, Atom atom, Chosen& chosen) {
  auto node = chosen.extract(from);
  if (node.empty()) return;
  node.mapped().shift.atom = atom;
  node.key() = atomKey(from.first, atom);
  chosen.insert(std::move(node));
}

// HA1 and HA2 are the older names of HA2 and HA3; beside an HA3, HA1 can only be the other one.
void settleOlderGlycine(const ChainSequence& sequence, Collected& found) {
  Chosen& chosen = found.chosen;
  std::vector<AtomKey> older;
  for (const auto& [key, candidate] : chosen)
    if (key.second == kOlderHA1) older.push_back(key);
  for (const AtomKey& key : older) {
    const std::string& number = sequence.at(key.first).number;
    const AtomKey second = atomKey(key.first, Atom::HA2);
    if (chosen.count(atomKey(key.first, Atom::HA3)) == 0) rename(second, Atom::HA3, chosen);
    if (chosen.count(second) == 0) {
      rename(key, Atom::HA2, chosen);
      found.older.push_back(number);
    } else {
      chosen.erase(key);
      found.foreign.push_back(number + " HA1");
    }
  }
}

/// The rows of residues' own shifts, or those that are kept under a neighbour.
void collect(const ShiftRows& rows, bool areOwn, std::int64_t offset, const ChainSequence& sequence,
             Collected& found) {
  for (const FileShift* row : rows) {
    if (row->offset.has_value() == areOwn) continue;
    if (row->atom.empty() && row->value.empty()) continue;  // only names a residue
    const int position = placeOf(*row, sequence, offset);
    if (position == 0)
      ++found.outside[row->number.empty() ? row->key : row->number];
    else if (!fits(*row, sequence.at(position)))
      ++found.misnamed[{position, row->residueName}];
    else
      take(*row, position, sequence.at(position), found);
  }
  settleOlderGlycine(sequence, found);
}

/// Tells whether a residue has a shift for an atom. One alpha proton of glycine may be the mean of both.
bool hasOwn(const Chosen& own, const AtomKey& key) {
  const AtomKey first = atomKey(key.first, Atom::HA2);
  const AtomKey second = atomKey(key.first, Atom::HA3);
  const bool isOfGlycine = key == first || key == second;
  return own.count(key) > 0 || (isOfGlycine && own.count(first) + own.count(second) > 0);
}

/// A residue's own shift counts. Seen from a neighbour, where other peaks show it, it differs by 0.12 ppm in
/// the median.
void addOfNeighbours(const Chosen& ofNeighbours, const ChainSequence& sequence, Collected& found) {
  const Chosen own = found.chosen;
  for (const auto& [key, candidate] : ofNeighbours) {
    if (hasOwn(own, key)) {
      const bool isCounted = candidate.isPseudo && candidate.shift.atom == Atom::HA3;
      if (!isCounted) ++found.ofNeighboursTwice;
      continue;
    }
    found.chosen.emplace(key, candidate);
    found.ofNeighbours.push_back(sequence.at(key.first).number + " " +
                                 std::string(nameOf(candidate.shift.atom)));
  }
}

// --- Notes --------------------------------------------------------------------------------------

void noteMisnamed(const Collected& found, const ChainSequence& sequence, std::vector<std::string>& notes) {
  LimitedNotes otherNames("residues with another name in the rows");
  for (const auto& [called, count] : found.misnamed) {
    const ChainResidue& residue = sequence.at(called.first);
    otherNames.add("residue " + residue.number + " is " + called.second + " in " +
                   counted(count, "shift row", "shift rows") + " but " +
                   (residue.name.empty() ? "unknown" : residue.name) + " in the sequence; ignored");
  }
  otherNames.appendTo(notes);
}

/// "1 row without a value ignored", "2 rows without a value ignored"; nothing for none.
void noteCount(std::size_t count, const std::string& one, const std::string& many, const std::string& text,
               std::vector<std::string>& notes) {
  if (count > 0) notes.push_back(counted(count, one, many) + text);
}

void addNotes(const Collected& found, const ChainSequence& sequence, std::vector<std::string>& notes) {
  noteMisnamed(found, sequence, notes);
  for (const auto& [code, atoms] : found.ambiguous)
    notes.push_back(counted(atoms.size(), "assignment is", "assignments are") + " ambiguous " +
                    ambiguityText(code) + " (code " + code + "); used all the same: " + enumerated(atoms));
  addNote("one shift for both alpha protons of glycine, written as HA2 and HA3: ", found.pseudo, notes);
  addNote("HA1 and HA2 of glycine read as HA2 and HA3: ", found.older, notes);
  addNote(kForeignAtoms, found.foreign, notes);
  addNote("CB and CG of hydroxyproline are unlike those of proline; ignored: ", found.hydroxylRing, notes);
  addNote(counted(found.ofNeighbours.size(), "shift", "shifts") +
              " listed under a neighbour (n-1) used; the residue has none of its own: ",
          found.ofNeighbours, notes);
  noteCount(found.ofNeighboursTwice, "shift", "shifts",
            " listed under a neighbour (n-1) not used; the residue has its own", notes);
  found.badValues.appendTo(notes);
  found.duplicates.appendTo(notes);
  std::vector<std::string> numbers;
  std::size_t outside = 0;
  for (const auto& [number, rows] : found.outside) {
    numbers.push_back(number.empty() ? "(no number)" : number);
    outside += rows;
  }
  addNote(counted(outside, "shift", "shifts") + " ignored; the sequence has no such residue: ", numbers,
          notes);
  noteCount(found.withoutValue, "row", "rows", " without a value ignored", notes);
  noteCount(found.missingMarks, "placeholder for a missing shift", "placeholders for missing shifts",
            " (0, or 999 and above) ignored", notes);
  noteCount(found.repeated, "shift is", "shifts are", " given twice with the same value", notes);
}

}  // namespace

std::vector<Shift> makeShifts(const ChainSequence& sequence, const ShiftRows& rows,
                              std::vector<std::string>& notes, std::vector<std::string>& asides) {
  const std::int64_t offset = offsetOf(rows, sequence);
  Collected found;
  collect(rows, false, offset, sequence, found);
  const Chosen ofNeighbours = std::exchange(found.chosen, {});
  collect(rows, true, offset, sequence, found);
  addOfNeighbours(ofNeighbours, sequence, found);
  if (offset != 0)
    notes.push_back("the shift rows number the residues differently from the sequence; " +
                    std::to_string(offset) + " was added to make the residue names fit");
  addNotes(found, sequence, notes);
  noteOtherAtoms(found.otherAtoms, asides);
  std::vector<Shift> shifts;
  shifts.reserve(found.chosen.size());
  for (const auto& [key, candidate] : found.chosen) shifts.push_back(candidate.shift);
  return shifts;
}

std::optional<Shift> readShift(const std::string& text) {
  const auto decimal = toDecimal(text);
  if (!decimal) return std::nullopt;
  const std::size_t point = decimal->find('.');
  const std::size_t decimals = point == std::string::npos ? 0 : decimal->size() - point - 1;
  Shift shift;
  shift.ppm = std::strtod(decimal->c_str(), nullptr);
  shift.decimals = static_cast<std::uint8_t>(decimals);
  return shift;
}

bool isMissingMark(const Shift& shift) {
  return std::abs(shift.ppm) >= kMissingBound;
}

void noteOtherAtoms(std::size_t count, std::vector<std::string>& asides) {
  noteCount(count, "shift", "shifts", " of other atoms (side chain and the like) not needed", asides);
}

std::size_t countTableShifts(const ShiftRows& rows) {
  return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), [](const FileShift* row) {
    const char letter = polypeptideResidue(row->residueName).letter;
    return !row->value.empty() && readAtom(letter, row->atom).isInTable();
  }));
}

void noteImplausible(Protein& protein) {
  std::vector<std::string> shifts;
  for (const Shift& shift : protein.shifts) {
    const auto index = static_cast<std::size_t>(shift.position) - 1;
    const char residue = protein.sequence[index];
    if (isPlausible(residue, shift.atom, shift.ppm)) continue;
    const PlausibleRange range = plausibleRange(residue, shift.atom);
    shifts.push_back(std::string(nameOf(shift.atom)) + " of " + residue +
                     printable(protein.numbers[index], 20) + " at " + shiftText(shift) + " ppm (" +
                     fixedText(range.low, 1) + " to " + fixedText(range.high, 1) + ")");
  }
  addNote("out of range for the residue type, so check the assignment; used all the same: ", shifts,
          protein.notes);
}

}  // namespace zorvela

#include "protein/shifts.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

#include "protein/numbering.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr double kMissingFrom = 999;

double toNumber(const std::string& shift) {
  return std::strtod(shift.c_str(), nullptr);
}

bool isMissing(double ppm) {
  return std::abs(ppm) >= kMissingFrom;
}

/// A shift that may go into the table.
struct Candidate {
  Shift shift;
  double occupancy = 1;
  bool isPseudo = false;
};

std::string linePrefix(const FileShift& row) {
  return row.line > 0 ? "line " + std::to_string(row.line) + ": " : "";
}

/// What ambiguity codes other than 1 (unique) and 2 (one of two protons) say.
std::string ambiguityText(const std::string& code) {
  if (code == "4") return "within the residue";
  if (code == "5") return "between residues";
  if (code == "6") return "between molecules";
  return "in another way";
}

bool isAmbiguous(const std::string& code) {
  return code == "4" || code == "5" || code == "6" || code == "9";
}

/// Places rows on the residues of a sequence.
class RowPlacer {
 public:
  RowPlacer(const ChainSequence& chainSequence, const ShiftRows& rows) : sequence(chainSequence) {
    if (countMisplaced(rows) * 2 > rows.size()) offset = commonOffset(rows);
  }

  /// Residue of the row, 0 if the sequence has none for it.
  int place(const FileShift& row) const {
    if (offset != 0) {
      const auto key = toInteger(row.key.empty() ? row.number : row.key);
      return key ? residueAt(static_cast<long>(*key) + offset) : 0;
    }
    const auto byKey = sequence.byKey.find(row.key);
    if (!row.key.empty()) return byKey != sequence.byKey.end() ? byKey->second : 0;
    const auto byNumber = sequence.byNumber.find(row.number);
    return byNumber != sequence.byNumber.end() ? byNumber->second : 0;
  }

  /// Whether the row's residue name fits the sequence. One that is not known may be a spelling of its own,
  /// but not that of another molecule at the same number.
  bool fits(const FileShift& row, int resid) const {
    if (row.residueName == sequence.name(resid)) return true;  // nearly all rows
    const char letter = polypeptideResidue(row.residueName).letter;
    if (letter != kUnknownResidue) return letter == sequence.letter(resid);
    return !isOtherMolecule(row.residueName) || equalIgnoringCase(row.residueName, sequence.name(resid));
  }

  /// What is added to the rows' numbers to find their residue; 0 in most files.
  long appliedOffset() const { return offset; }

 private:
  int residueAt(long position) const {
    return position >= 1 && position <= sequence.size() ? static_cast<int>(position) : 0;
  }

  std::size_t countMisplaced(const ShiftRows& rows) const {
    std::size_t count = 0;
    for (const FileShift* row : rows) {
      const int resid = place(*row);
      if (resid == 0 || !fits(*row, resid)) ++count;
    }
    return count;
  }

  /// The one offset under which (nearly) all residue names agree with the sequence; 0 if there is none.
  long commonOffset(const ShiftRows& rows) const {
    constexpr std::size_t kSampleSize = 200;
    constexpr std::size_t kSmallestSample = 5;
    constexpr int kLongestSearched = 10000;
    std::map<int, char> sample;
    for (const FileShift* row : rows) {
      const auto key = toInteger(row->key.empty() ? row->number : row->key);
      const char letter = polypeptideResidue(row->residueName).letter;
      if (key && letter != kUnknownResidue && sample.size() < kSampleSize) sample.emplace(*key, letter);
    }
    if (sample.size() < kSmallestSample || sequence.size() > kLongestSearched) return 0;
    const long first = sample.begin()->first;
    const long last = sample.rbegin()->first;
    if (last - first > kLongestSearched) return 0;  // no numbers of one protein
    std::vector<std::size_t> votes(static_cast<std::size_t>(sequence.size() + last - first), 0);
    for (const auto& [key, letter] : sample)
      for (int i = 1; i <= sequence.size(); ++i)
        if (sequence.letter(i) == letter) ++votes[static_cast<std::size_t>(i - 1 + last - key)];
    // votes[0] is for residue 1 as the last of the sample.
    const auto best = std::max_element(votes.begin(), votes.end());
    const bool isTie = std::count(votes.begin(), votes.end(), *best) > 1;
    return !isTie && *best * 10 >= sample.size() * 9 ? best - votes.begin() + 1 - last : 0;
  }

  const ChainSequence& sequence;
  long offset = 0;
};

/// Residue and rank of an atom: the order of the table, in which HA1 of glycine, until it is settled, is
/// last.
using AtomKey = std::pair<int, std::size_t>;

AtomKey keyOf(int resid, std::string_view atom) {
  return {resid, atomRank(atom)};
}

/// The shifts of a chain that go into its table, and the reasons of those that do not.
struct Collected {
  std::map<AtomKey, Candidate> chosen;
  std::map<std::string, std::size_t> outside;                   ///< rows by number
  std::map<std::pair<int, std::string>, std::size_t> misnamed;  ///< rows by residue and their name for it
  std::map<std::string, std::vector<std::string>> ambiguous;    ///< atoms by BMRB code
  std::vector<std::string> otherElements;
  std::vector<std::string> pseudo;
  std::vector<std::string> older;
  std::vector<std::string> foreign;
  std::vector<std::string> hydroxylRing;
  LimitedNotes badValues{"values that are no numbers"};
  LimitedNotes duplicates{"atoms that are given twice"};
  std::size_t withoutValue = 0;
  std::size_t missingMarks = 0;
  std::size_t repeated = 0;
  std::size_t otherAtoms = 0;
};

// --- One row ------------------------------------------------------------------------------------

void addOnce(std::vector<std::string>& items, const std::string& item) {
  if (items.empty() || items.back() != item) items.push_back(item);
}

/// Whether the column of the elements holds names of atoms: it says nothing then.
bool doElementsRepeatNames(const ShiftRows& rows) {
  return std::any_of(rows.begin(), rows.end(), [](const FileShift* row) {
    return equalIgnoringCase(row->element, row->atom) && isTableAtom(upper(row->atom)) &&
           row->atom.size() > 1 && !equalIgnoringCase(row->atom, "CA");
  });
}

/// Whether an atom is of another element than its name says: the CA of calcium. Deuterium is hydrogen here,
/// and so are the pseudo atoms (QA).
bool isOfOtherElement(const FileShift& row, const AtomReading& atom) {
  const std::string element = upper(row.element);
  const auto first = std::find_if(element.begin(), element.end(), isLetter);  // 13C
  if (first == element.end()) return false;
  const std::string symbol(first, element.end());
  const std::string name = atom.names[0] != nullptr ? atom.names[0] : upper(row.atom);
  const auto own = std::find_if(name.begin(), name.end(), isLetter);  // 1HA
  if (own == name.end()) return false;
  return symbol != std::string(1, *own) && !(*own == 'H' && (symbol == "D" || symbol == "T"));
}

// The hydroxyl group moves CG of hydroxyproline to 70 ppm and CB along with it: no proline is alike.
bool isOfHydroxylRing(const ResidueType& type, const std::string& atom) {
  return type.isHydroxyproline && (equalIgnoringCase(atom, "CB") || equalIgnoringCase(atom, "CG"));
}

/// The shift of a row as a plain number; nothing, with the reason, where it has none.
std::optional<std::string> usableValue(const FileShift& row, const std::string& numbered, Collected& found) {
  if (row.value.empty()) {
    ++found.withoutValue;
    return std::nullopt;
  }
  auto shift = toDecimal(row.value);
  if (!shift) {
    found.badValues.add(linePrefix(row) + numbered + ": \"" + printable(row.value, 30) +
                        "\" is no number; left out");
    return std::nullopt;
  }
  // Nothing in a backbone resonates at exactly 0 ppm, where the reference does: a spreadsheet's empty cell.
  if (const double ppm = toNumber(*shift); ppm == 0 || isMissing(ppm)) {
    ++found.missingMarks;
    return std::nullopt;
  }
  return shift;
}

/// Of two shifts for one atom the one that names it alone counts, then the one with the higher occupancy,
/// then the first.
void offer(Candidate candidate, const FileShift& row, const ChainSequence& sequence, Collected& found) {
  const AtomKey key = keyOf(candidate.shift.resid, candidate.shift.atom);
  const auto [entry, isNew] = found.chosen.emplace(key, candidate);
  if (isNew) return;
  Candidate& kept = entry->second;
  const bool isBetter =
      kept.isPseudo != candidate.isPseudo ? kept.isPseudo : candidate.occupancy > kept.occupancy;
  if (isBetter) std::swap(kept, candidate);
  if (toNumber(kept.shift.shift) == toNumber(candidate.shift.shift)) {
    ++found.repeated;
    return;
  }
  found.duplicates.add(linePrefix(row) + kept.shift.atom + " of residue " +
                       sequence.number(kept.shift.resid) + " is given as " + kept.shift.shift + " and " +
                       candidate.shift.shift + " ppm: " + kept.shift.shift + " is used");
}

/// A row whose residue is known.
void take(const FileShift& row, int resid, bool hasElement, const ChainSequence& sequence, Collected& found) {
  const AtomReading atom = readAtom(sequence.letter(resid), row.atom);
  if (atom.kind == AtomReading::Kind::other) {
    ++found.otherAtoms;
    return;
  }
  const std::string numbered = sequence.number(resid) + " " + row.atom;
  if (hasElement && isOfOtherElement(row, atom)) {
    addOnce(found.otherElements, numbered + " (" + row.element + ")");
    return;
  }
  const auto shift = usableValue(row, numbered, found);
  if (!shift) return;
  if (atom.kind == AtomReading::Kind::foreign) {
    found.foreign.push_back(numbered);
    return;
  }
  if (isOfHydroxylRing(sequence.type(resid), row.atom)) {
    found.hydroxylRing.push_back(numbered);
    return;
  }
  const bool isPseudo = atom.kind == AtomReading::Kind::pseudo;
  if (isAmbiguous(row.ambiguity)) addOnce(found.ambiguous[row.ambiguity], numbered);
  if (isPseudo) found.pseudo.push_back(sequence.number(resid));
  for (const char* name : atom.names)
    if (name != nullptr) offer({{resid, name, *shift}, row.occupancy, isPseudo}, row, sequence, found);
}

// --- All rows -----------------------------------------------------------------------------------

Collected collect(const ShiftRows& rows, const RowPlacer& placer, const ChainSequence& sequence) {
  Collected found;
  const bool haveElements = !doElementsRepeatNames(rows);
  for (const FileShift* row : rows) {
    if (row->atom.empty() && row->value.empty()) continue;  // only names a residue
    const int resid = placer.place(*row);
    if (resid == 0)
      ++found.outside[row->number.empty() ? row->key : row->number];
    else if (!placer.fits(*row, resid))
      ++found.misnamed[{resid, row->residueName}];
    else
      take(*row, resid, haveElements && !row->element.empty(), sequence, found);
  }
  return found;
}

void rename(const AtomKey& from, const std::string& atom, std::map<AtomKey, Candidate>& chosen) {
  auto node = chosen.extract(from);
  if (node.empty()) return;
  node.mapped().shift.atom = atom;
  node.key().second = atomRank(atom);
  chosen.insert(std::move(node));
}

// HA1 and HA2 are the older names of HA2 and HA3; beside an HA3, HA1 can only be the other one.
void settleOlderGlycine(const ChainSequence& sequence, Collected& found) {
  std::map<AtomKey, Candidate>& chosen = found.chosen;
  std::vector<int> residues;
  for (const auto& [key, candidate] : chosen)
    if (candidate.shift.atom == "HA1") residues.push_back(key.first);
  for (const int resid : residues) {
    const bool hasThird = chosen.count(keyOf(resid, "HA3")) > 0;
    if (!hasThird) rename(keyOf(resid, "HA2"), "HA3", chosen);
    if (chosen.count(keyOf(resid, "HA2")) == 0) {
      rename(keyOf(resid, "HA1"), "HA2", chosen);
      found.older.push_back(sequence.number(resid));
    } else {
      chosen.erase(keyOf(resid, "HA1"));
      found.foreign.push_back(sequence.number(resid) + " HA1");
    }
  }
}

// --- Notes --------------------------------------------------------------------------------------

void noteMisnamed(const Collected& found, const ChainSequence& sequence, std::vector<std::string>& notes) {
  LimitedNotes otherNames("residues that the rows call otherwise");
  for (const auto& [residue, count] : found.misnamed) {
    const std::string& name = sequence.name(residue.first);
    otherNames.add("residue " + sequence.number(residue.first) + " is " + residue.second + " in " +
                   counted(count, "shift row", "shift rows") + " but " + (name.empty() ? "unknown" : name) +
                   " in the sequence: left out");
  }
  otherNames.appendTo(notes);
}

void noteAtoms(const Collected& found, std::vector<std::string>& notes) {
  const auto add = [&](const char* text, const std::vector<std::string>& atoms) {
    if (!atoms.empty()) notes.push_back(text + enumerated(atoms));
  };
  add("atoms of another element than their name says, left out: ", found.otherElements);
  for (const auto& [code, atoms] : found.ambiguous)
    notes.push_back(counted(atoms.size(), "assignment is", "assignments are") + " ambiguous " +
                    ambiguityText(code) + " (code " + code + "), kept: " + enumerated(atoms));
  add("one shift for both alpha protons of glycine, written as HA2 and HA3: ", found.pseudo);
  add("HA1 and HA2 of glycine read as HA2 and HA3: ", found.older);
  add("atoms that the residue type has not, left out: ", found.foreign);
  add("CB and CG of hydroxyproline are unlike those of proline, left out: ", found.hydroxylRing);
}

void noteCounts(const Collected& found, std::vector<std::string>& notes) {
  std::vector<std::string> numbers;
  std::size_t outside = 0;
  for (const auto& [number, rows] : found.outside) {
    numbers.push_back(number.empty() ? "(no number)" : number);
    outside += rows;
  }
  if (outside > 0)
    notes.push_back(counted(outside, "shift", "shifts") +
                    " left out, the sequence has no such residue: " + enumerated(numbers));
  if (found.withoutValue > 0)
    notes.push_back(counted(found.withoutValue, "row", "rows") + " without a value left out");
  if (found.missingMarks > 0)
    notes.push_back(counted(found.missingMarks, "mark of a missing shift", "marks of missing shifts") +
                    " (0, or 999 and above) left out");
  if (found.repeated > 0)
    notes.push_back(counted(found.repeated, "shift is", "shifts are") + " given twice with the same value");
}

}  // namespace

std::vector<Shift> makeShifts(const ChainSequence& sequence, const ShiftRows& rows,
                              std::vector<std::string>& notes, std::vector<std::string>& asides) {
  const RowPlacer placer(sequence, rows);
  Collected found = collect(rows, placer, sequence);
  settleOlderGlycine(sequence, found);
  if (placer.appliedOffset() != 0)
    notes.push_back(
        "the shift rows number the residues differently from the sequence; by the residue names, " +
        std::to_string(placer.appliedOffset()) + " was added");
  noteMisnamed(found, sequence, notes);
  noteAtoms(found, notes);
  found.badValues.appendTo(notes);
  found.duplicates.appendTo(notes);
  noteCounts(found, notes);
  if (found.otherAtoms > 0)
    asides.push_back(counted(found.otherAtoms, "shift", "shifts") +
                     " of other atoms (side chain and the like) not needed");
  std::vector<Shift> shifts;
  shifts.reserve(found.chosen.size());
  for (auto& [key, candidate] : found.chosen) shifts.push_back(std::move(candidate.shift));
  return shifts;
}

bool isBefore(const Shift& a, const Shift& b) {
  if (a.resid != b.resid) return a.resid < b.resid;
  return atomRank(a.atom) < atomRank(b.atom);
}

bool isMissingMark(const std::string& shift) {
  return isMissing(toNumber(shift));
}

std::size_t countTableShifts(const ShiftRows& rows) {
  std::size_t count = 0;
  for (const FileShift* row : rows) {
    const char letter = polypeptideResidue(row->residueName).letter;
    const auto kind = readAtom(letter, row->atom).kind;
    if (!row->value.empty() && (kind == AtomReading::Kind::table || kind == AtomReading::Kind::pseudo))
      ++count;
  }
  return count;
}

}  // namespace zorvela

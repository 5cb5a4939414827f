#include "protein/sequence.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "formats/limits.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// A longer gap becomes a single "?", which separates its neighbours too: residue numbers that jump to another
// range are not a missing loop. The second limit bounds the memory for a file with many gaps.
constexpr int kLongestGap = 1000;
constexpr int kMostFilled = 5000;
constexpr std::size_t kLongestNumber = 20;

/// Returns the residues that a row names: its own and, where it has the shift of a neighbour, that one first.
std::vector<FileResidue> residuesOf(const FileShift& row) {
  const FileResidue named = {keyOf(row), row.number, row.offset ? std::string() : row.residueName};
  if (!row.offset) return {named};
  const auto neighbour = steppedNumber(named.key, *row.offset);
  if (!neighbour) return {named};
  return {{*neighbour, row.number == named.key ? *neighbour : std::string(), row.residueName}, named};
}

/// A number that several residues have stays with the first of them.
std::vector<FileResidue> residuesOfRows(const ShiftRows& rows, std::vector<std::string>& notes) {
  std::map<std::string, std::size_t> places;  // those of one number, as 7 and 007, stay in this order
  std::map<std::pair<ResidueNumber, std::size_t>, FileResidue> derived;
  std::set<std::string> withTwoNames;
  LimitedNotes differing("residues with two names");
  bool haveNumbers = false;
  for (const FileShift* row : rows)
    for (const FileResidue& named : residuesOf(*row)) {
      const auto order = readResidueNumber(named.key);
      if (!order || isIonOrWater(named.name)) continue;  // noted where the shifts are placed
      const std::size_t place = places.emplace(named.key, places.size()).first->second;
      FileResidue& residue = derived.emplace(std::pair(*order, place), named).first->second;
      if (residue.name.empty()) residue.name = named.name;
      if (residue.number.empty()) residue.number = named.number;
      haveNumbers = haveNumbers || !residue.number.empty();
      const bool isOther = !named.name.empty() && !equalIgnoringCase(residue.name, named.name);
      if (isOther && withTwoNames.insert(named.key).second)
        differing.add("residue " + (residue.number.empty() ? residue.key : residue.number) +
                      " is called both " + residue.name + " and " + named.name + ": " + residue.name +
                      " is used");
    }
  differing.appendTo(notes);
  std::vector<FileResidue> residues;
  std::set<std::string> taken;
  std::vector<std::string> twice;
  for (auto& [order, residue] : derived) {
    // The numbers that people use are the rows' own; where no row has one, the places count.
    if (!haveNumbers) residue.number = residue.key;
    if (!residue.number.empty() && !taken.insert(residue.number).second)
      twice.push_back(std::exchange(residue.number, {}));
    residues.push_back(std::move(residue));
  }
  addNote("two residues have the same number; the first keeps it: ", twice, notes);
  return residues;
}

/// Adds the residues that are missing before the next one to the sequence, none if the numbers follow, and
/// their positions to the gaps.
void addMissing(const FileResidue& next, std::vector<FileResidue>& residues, std::vector<int>& gaps,
                std::int64_t& filled) {
  const auto first = readResidueNumber(residues.back().key);
  const auto last = readResidueNumber(next.key);
  if (!first || !last || next.bondedToPrevious) return;
  const bool isNumbered = residues.back().number == residues.back().key;
  const std::int64_t count = std::int64_t{last->number} - first->number - 1;
  if (count <= 0) return;
  const bool isLong = count > kLongestGap || filled + count > kMostFilled;
  if (!isLong) filled += count;
  for (std::int64_t i = 1; i <= (isLong ? 1 : count); ++i) {
    const std::string key = std::to_string(first->number + i);
    residues.push_back({key, isNumbered ? key : "", ""});
    gaps.push_back(static_cast<int>(residues.size()));
  }
}

/// Leaves out ions and water, which are not residues of the chain.
std::vector<FileResidue> withGapsFilled(std::vector<FileResidue> residues, std::vector<int>& gaps) {
  std::vector<FileResidue> whole;
  whole.reserve(residues.size());
  std::int64_t filled = 0;
  for (FileResidue& residue : residues) {
    if (isIonOrWater(residue.name)) continue;
    if (!whole.empty()) addMissing(residue, whole, gaps, filled);
    whole.push_back(std::move(residue));
  }
  return whole;
}

/// Names the gaps by the numbers that people use, and the residues in them that only shift rows name.
void noteGaps(const std::vector<int>& gaps, const ChainSequence& sequence, std::vector<std::string>& notes) {
  std::vector<std::string> ranges;
  std::vector<std::string> named;
  int before = 0;     // the last position in a gap without a name
  std::string first;  // number of the first of such positions in a row
  for (const int position : gaps) {
    const ChainResidue& residue = sequence.at(position);
    if (!residue.name.empty()) {
      named.push_back(residue.number + " (" + residue.name + ")");
      continue;
    }
    if (position == before + 1)
      ranges.back() = first + " to " + residue.number;
    else
      ranges.push_back(first = residue.number);
    before = position;
  }
  addNote("the sequence has gaps; written as ?: ", ranges, notes);
  addNote("residues missing in the sequence are named in the shift rows: ", named, notes);
}

/// Tells whether the sequence leaves the type of the residue open.
bool isOpenName(const std::string& name) {
  return name.empty() || equalIgnoringCase(name, "X") || equalIgnoringCase(name, "XXX") ||
         equalIgnoringCase(name, "UNK");
}

// --- Numbers --------------------------------------------------------------------------------------

/// A number that no residue has yet: so many steps from a known one; nothing if it is taken or there is none.
std::optional<std::string> freeNumber(const std::string& known, std::int64_t steps,
                                      const std::unordered_set<std::string>& taken) {
  const auto number = steppedNumber(known, steps);
  return number && taken.count(*number) == 0 ? number : std::nullopt;
}

/// Compares numbers without their insertion codes.
bool standsAbove(const std::string& number, const std::string& other) {
  const auto first = readResidueNumber(other);
  const auto second = readResidueNumber(number);
  return first && second && second->number > first->number;
}

/// The number before with the first free insertion code, as inserted residues have it: 10A, 10B.
std::optional<std::string> insertedNumber(const std::string& before,
                                          const std::unordered_set<std::string>& taken) {
  const auto number = readResidueNumber(before);
  if (!number) return std::nullopt;
  for (char code = 'A'; code <= 'Z'; ++code) {
    std::string candidate = std::to_string(number->number) + code;
    if (taken.count(candidate) == 0) return candidate;
  }
  return std::nullopt;
}

/// Numbers the residues that have no number, counting on from the neighbour before or, where that number is
/// taken, back from the next known one; 10A comes between 10 and 11. Known numbers stay. A chain without any
/// is numbered 1, 2, 3 ...
void completeNumbers(std::vector<FileResidue>& residues) {
  std::unordered_set<std::string> taken;
  for (const FileResidue& residue : residues) taken.insert(residue.number);
  if (taken.count("") == 0) return;
  std::size_t next = 0;  // the nearest residue after this one whose number is known
  std::size_t place = 0;
  for (std::size_t i = 0; i < residues.size(); ++i) {
    if (!residues[i].number.empty()) continue;
    next = std::max(next, i);
    while (next < residues.size() && residues[next].number.empty()) ++next;
    std::optional<std::string> number;
    if (i > 0) number = freeNumber(residues[i - 1].number, 1, taken);
    if (!number && next < residues.size()) {
      const auto steps = static_cast<std::int64_t>(next - i);
      number = freeNumber(residues[next].number, -steps, taken);
      if (number && i > 0 && !standsAbove(*number, residues[i - 1].number)) number.reset();
    }
    if (!number && i > 0) number = insertedNumber(residues[i - 1].number, taken);
    while (!number)
      if (std::string free = std::to_string(++place); taken.count(free) == 0) number = std::move(free);
    taken.insert(*number);
    residues[i].number = std::move(*number);
  }
}

// --- The whole ------------------------------------------------------------------------------------

/// Rows name the residues that the sequence leaves open, as X in one-letter text.
ChainSequence sequenceOf(std::vector<FileResidue> residues, const ShiftRows& rows) {
  for (FileResidue& residue : residues) {
    // One word in the remark that keeps it.
    residue.number = printable(residue.number, kLongestNumber);
    std::replace(residue.number.begin(), residue.number.end(), ' ', '_');
  }
  completeNumbers(residues);
  ChainSequence sequence;
  for (std::size_t i = 0; i < residues.size(); ++i) {
    sequence.byKey.emplace(residues[i].key, static_cast<int>(i) + 1);
    sequence.byNumber.emplace(residues[i].number, static_cast<int>(i) + 1);
  }
  for (const FileShift* row : rows) {
    const int position = row->offset || row->residueName.empty() ? 0 : sequence.positionOfKey(keyOf(*row));
    if (position == 0) continue;
    std::string& name = residues[static_cast<std::size_t>(position) - 1].name;
    if (isOpenName(name)) name = row->residueName;
  }
  for (FileResidue& residue : residues) {
    residue.type = polypeptideResidue(residue.name);
    if (residue.thiol != Thiol::unknown) residue.type.thiol = residue.thiol;
  }
  sequence.residues = std::move(residues);
  return sequence;
}

void noteUnusualResidues(const ChainSequence& sequence, std::vector<std::string>& notes) {
  std::map<std::string, std::vector<std::string>> modified;
  std::map<std::string, std::vector<std::string>> unknown;
  for (const ChainResidue& residue : sequence.residues) {
    if (residue.name.empty()) continue;
    if (residue.type.letter == kUnknownResidue)
      unknown[residue.name].push_back(residue.number);
    else if (residue.type.isModified)
      modified[residue.name + " is read as " + residue.type.letter].push_back(residue.number);
  }
  for (const auto& [text, numbers] : modified)
    notes.push_back("modified residue " + text + ": " + enumerated(numbers));
  for (const auto& [name, numbers] : unknown)
    notes.push_back(name + " is not a standard residue; written as ?: " + enumerated(numbers));
}

int positionIn(const std::unordered_map<std::string, int>& positions, const std::string& text) {
  const auto found = positions.find(text);
  return found == positions.end() ? 0 : found->second;
}

}  // namespace

const std::string& keyOf(const FileShift& row) {
  return row.key.empty() ? row.number : row.key;
}

Polymer polymerByNames(const FileChain& chain, const ShiftRows& rows) {
  int aminoAcids = 0;
  int nucleotides = 0;
  const auto count = [&](const std::string& name) {
    const bool isAminoAcid = polypeptideResidue(name).letter != kUnknownResidue;
    const bool mayBeEither = name.size() == 1 && isAminoAcid && isNucleotide(name);
    if (isAminoAcid && !mayBeEither) ++aminoAcids;
    if (!isAminoAcid && isNucleotide(name)) ++nucleotides;
  };
  for (const FileResidue& residue : chain.residues) count(residue.name);
  if (chain.residues.empty())
    for (const FileShift* row : rows) count(row->residueName);
  // A, C, G alone are a nucleic acid.
  return aminoAcids > 0 && aminoAcids >= nucleotides ? Polymer::polypeptide : Polymer::other;
}

int ChainSequence::positionOfKey(const std::string& key) const {
  return positionIn(byKey, key);
}

int ChainSequence::positionOfNumber(const std::string& number) const {
  return positionIn(byNumber, number);
}

ChainSequence makeSequence(std::vector<FileResidue> residues, const ShiftRows& rows,
                           std::vector<std::string>& notes) {
  const bool isGiven = !residues.empty();
  std::vector<int> gaps;
  residues = withGapsFilled(isGiven ? std::move(residues) : residuesOfRows(rows, notes), gaps);
  ChainSequence sequence = sequenceOf(std::move(residues), rows);
  noteGaps(gaps, sequence, notes);
  if (!isGiven) notes.push_back("the file has no sequence; it was built from the residues with shifts");
  noteUnusualResidues(sequence, notes);
  return sequence;
}

}  // namespace zorvela

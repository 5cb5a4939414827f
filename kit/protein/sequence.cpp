#include "protein/sequence.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <numeric>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "formats/limits.h"
#include "protein/numbering.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// A longer gap becomes a single "?", which separates its neighbours too: residue numbers that jump to another
// range are not a missing loop. The second limit bounds the memory for a file with many gaps.
constexpr int kLongestGap = 1000;
constexpr int kMostFilled = 5000;
constexpr std::size_t kLongestNumber = 20;

/// A residue that only its rows name, with its number in parts for sorting.
struct DerivedResidue {
  ResidueNumber order;
  FileResidue residue;
};

bool standsBefore(const DerivedResidue& a, const DerivedResidue& b) {
  if (a.order.number != b.order.number) return a.order.number < b.order.number;
  return a.order.code < b.order.code;
}

void noteOtherName(const FileResidue& residue, const std::string& otherName, LimitedNotes& notes) {
  const std::string& number = residue.number.empty() ? residue.key : residue.number;
  notes.add("residue " + number + " is called both " + residue.name + " and " + otherName + ": " +
            residue.name + " is used");
}

/// The numbers that people use are the rows' own; where no row has one, the places count.
void numberByPlace(std::vector<DerivedResidue>& derived) {
  const auto hasNumber = [](const DerivedResidue& one) { return !one.residue.number.empty(); };
  if (std::any_of(derived.begin(), derived.end(), hasNumber)) return;
  for (DerivedResidue& one : derived) one.residue.number = one.residue.key;
}

/// A number that several residues have stays with the first of them.
void keepNumbersOnce(std::vector<FileResidue>& residues, std::vector<std::string>& notes) {
  std::unordered_set<std::string> taken;
  std::vector<std::string> twice;
  for (FileResidue& residue : residues) {
    if (residue.number.empty() || taken.insert(residue.number).second) continue;
    twice.push_back(residue.number);
    residue.number.clear();
  }
  addNote("two residues have the same number; the first keeps it: ", twice, notes);
}

/// Returns the residues that a row names: its own and, where it has the shift of a neighbour, that one first.
std::vector<FileResidue> residuesOf(const FileShift& row) {
  const FileResidue named = {keyOf(row), row.number, row.offset ? std::string() : row.residueName};
  if (!row.offset) return {named};
  const auto neighbour = steppedNumber(named.key, *row.offset);
  if (!neighbour) return {named};
  return {{*neighbour, row.number == named.key ? *neighbour : std::string(), row.residueName}, named};
}

std::vector<FileResidue> residuesOfRows(const ShiftRows& rows, std::vector<std::string>& notes) {
  std::vector<DerivedResidue> derived;
  std::unordered_map<std::string, std::size_t> indexOf;
  std::unordered_map<std::string, std::string> otherNames;
  LimitedNotes differing("residues with two names");
  const auto add = [&](const FileResidue& named) {
    const auto order = readResidueNumber(named.key);
    if (!order || isIonOrWater(named.name)) return;  // noted where the shifts are placed
    const auto [entry, isNew] = indexOf.emplace(named.key, derived.size());
    if (isNew) {
      derived.push_back({*order, named});
      return;
    }
    FileResidue& residue = derived[entry->second].residue;
    if (residue.name.empty()) residue.name = named.name;
    if (residue.number.empty()) residue.number = named.number;
    const bool isOther = !named.name.empty() && !equalIgnoringCase(residue.name, named.name);
    if (isOther && otherNames.emplace(named.key, named.name).second)
      noteOtherName(residue, named.name, differing);
  };
  for (const FileShift* row : rows)
    for (const FileResidue& named : residuesOf(*row)) add(named);
  differing.appendTo(notes);
  numberByPlace(derived);
  std::stable_sort(derived.begin(), derived.end(), standsBefore);
  std::vector<FileResidue> residues;
  residues.reserve(derived.size());
  for (DerivedResidue& one : derived) residues.push_back(std::move(one.residue));
  keepNumbersOnce(residues, notes);
  return residues;
}

/// Residues that are missing in the sequence: the first, counted from 1, and how many.
struct Gap {
  int first = 0;
  int count = 0;
};

/// Missing residues between two neighbours of the sequence, none if the numbers follow.
std::vector<FileResidue> missingBetween(const FileResidue& before, const FileResidue& after, int& filled) {
  std::vector<FileResidue> missing;
  const auto first = readResidueNumber(before.key);
  const auto last = readResidueNumber(after.key);
  if (!first || !last || after.bondedToPrevious) return missing;
  const std::int64_t count = static_cast<std::int64_t>(last->number) - first->number - 1;
  if (count <= 0) return missing;
  const bool isFilled = count <= kLongestGap && filled + count <= kMostFilled;
  for (std::int64_t i = 1; i <= (isFilled ? count : 1); ++i) {
    FileResidue gap;
    gap.key = std::to_string(first->number + i);
    if (before.number == before.key) gap.number = gap.key;
    missing.push_back(gap);
  }
  if (isFilled) filled += static_cast<int>(count);
  return missing;
}

/// Removes ions and water, which are not residues of the chain.
std::vector<FileResidue> withGapsFilled(std::vector<FileResidue> residues, std::vector<Gap>& gaps) {
  const auto isNone = [](const FileResidue& residue) { return isIonOrWater(residue.name); };
  residues.erase(std::remove_if(residues.begin(), residues.end(), isNone), residues.end());
  std::vector<FileResidue> allMissing;
  int filled = 0;
  for (std::size_t i = 1; i < residues.size(); ++i) {
    std::vector<FileResidue> missing = missingBetween(residues[i - 1], residues[i], filled);
    if (missing.empty()) continue;
    const auto before = static_cast<int>(i + allMissing.size());
    gaps.push_back({before + 1, static_cast<int>(missing.size())});
    std::move(missing.begin(), missing.end(), std::back_inserter(allMissing));
  }
  if (gaps.empty()) return residues;
  std::vector<FileResidue> whole;
  auto residue = residues.begin();
  auto missing = allMissing.begin();
  for (const Gap& gap : gaps) {
    while (static_cast<int>(whole.size()) + 1 < gap.first) whole.push_back(std::move(*residue++));
    for (int i = 0; i < gap.count; ++i) whole.push_back(std::move(*missing++));
  }
  std::move(residue, residues.end(), std::back_inserter(whole));
  return whole;
}

/// Names the gaps by the numbers that people use, and the residues in them that only shift rows name.
void noteGaps(const std::vector<Gap>& gaps, const ChainSequence& sequence, std::vector<std::string>& notes) {
  std::vector<std::string> ranges;
  std::vector<std::string> named;
  for (const Gap& gap : gaps) {
    const int end = gap.first + gap.count;
    int first = gap.first;  // of the stretch without names that ends here
    for (int i = gap.first; i <= end; ++i) {
      const ChainResidue& residue = sequence.at(i);
      if (i < end && residue.name.empty()) continue;
      if (i - first == 1) ranges.push_back(sequence.at(first).number);
      if (i - first > 1) ranges.push_back(sequence.at(first).number + " to " + sequence.at(i - 1).number);
      if (i < end) named.push_back(residue.number + " (" + residue.name + ")");
      first = i + 1;
    }
  }
  addNote("the sequence has gaps; written as ?: ", ranges, notes);
  addNote("residues missing in the sequence are named in the shift rows: ", named, notes);
}

/// Tells whether the sequence leaves the type of the residue open.
bool isOpenName(const std::string& name) {
  return name.empty() || equalIgnoringCase(name, "X") || equalIgnoringCase(name, "XXX") ||
         equalIgnoringCase(name, "UNK");
}

/// Names that rows give to residues which the sequence leaves open, as X in one-letter text.
void takeNamesFromRows(std::vector<FileResidue>& residues, const ShiftRows& rows) {
  std::unordered_map<std::string, FileResidue*> open;
  for (FileResidue& residue : residues)
    if (isOpenName(residue.name)) open.emplace(residue.key, &residue);
  if (open.empty()) return;
  for (const FileShift* row : rows) {
    if (row->offset) continue;
    const auto found = open.find(keyOf(*row));
    if (found != open.end() && isOpenName(found->second->name) && !row->residueName.empty())
      found->second->name = row->residueName;
  }
}

/// One word in the remark that keeps it.
std::string numberOf(const FileResidue& residue) {
  std::string number = printable(residue.number, kLongestNumber);
  std::replace(number.begin(), number.end(), ' ', '_');
  return number;
}

ResidueReading typeOf(const FileResidue& residue) {
  ResidueReading type = polypeptideResidue(residue.name);
  if (residue.thiol != Thiol::unknown) type.thiol = residue.thiol;
  return type;
}

/// Positions in the order of the keys or numbers, those of equals in the order of the sequence.
std::vector<int> positionsBy(std::string ChainResidue::*name, const ChainSequence& sequence) {
  std::vector<int> positions(sequence.residues.size());
  std::iota(positions.begin(), positions.end(), 1);
  std::stable_sort(positions.begin(), positions.end(),
                   [&](int a, int b) { return sequence.at(a).*name < sequence.at(b).*name; });
  return positions;
}

int firstWith(const std::string& text, std::string ChainResidue::*name, const std::vector<int>& positions,
              const ChainSequence& sequence) {
  const auto found = std::lower_bound(
      positions.begin(), positions.end(), text,
      [&](int position, const std::string& key) { return sequence.at(position).*name < key; });
  return found != positions.end() && sequence.at(*found).*name == text ? *found : 0;
}

ChainSequence sequenceOf(std::vector<FileResidue> residues) {
  std::vector<std::string> numbers;
  numbers.reserve(residues.size());
  for (const FileResidue& residue : residues) numbers.push_back(numberOf(residue));
  completeNumbers(numbers);
  ChainSequence sequence;
  for (std::size_t i = 0; i < residues.size(); ++i) {
    residues[i].number = std::move(numbers[i]);
    residues[i].type = typeOf(residues[i]);
  }
  sequence.residues = std::move(residues);
  sequence.byKey = positionsBy(&ChainResidue::key, sequence);
  sequence.byNumber = positionsBy(&ChainResidue::number, sequence);
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

struct NameCounts {
  int aminoAcids = 0;
  int nucleotides = 0;
  int lettersOfBoth = 0;

  void add(const std::string& name) {
    const bool isLetter = name.size() == 1;
    const bool isAminoAcid =
        isLetter ? !threeLetterName(name[0]).empty() : residueType(name).letter != kUnknownResidue;
    if (isLetter && isAminoAcid && isNucleotide(name))
      ++lettersOfBoth;
    else if (isAminoAcid)
      ++aminoAcids;
    else if (isNucleotide(name))
      ++nucleotides;
  }
};

}  // namespace

const std::string& keyOf(const FileShift& row) {
  return row.key.empty() ? row.number : row.key;
}

Polymer polymerByNames(const FileChain& chain, const ShiftRows& rows) {
  NameCounts counts;
  for (const FileResidue& residue : chain.residues) counts.add(residue.name);
  if (chain.residues.empty())
    for (const FileShift* row : rows) counts.add(row->residueName);
  if (counts.aminoAcids == 0) return Polymer::other;  // A, C, G alone are a nucleic acid
  return counts.aminoAcids >= counts.nucleotides ? Polymer::polypeptide : Polymer::other;
}

int ChainSequence::positionOfKey(const std::string& key) const {
  return firstWith(key, &ChainResidue::key, byKey, *this);
}

int ChainSequence::positionOfNumber(const std::string& number) const {
  return firstWith(number, &ChainResidue::number, byNumber, *this);
}

ChainSequence makeSequence(std::vector<FileResidue> residues, const ShiftRows& rows,
                           std::vector<std::string>& notes) {
  const bool isGiven = !residues.empty();
  std::vector<Gap> gaps;
  residues = withGapsFilled(isGiven ? std::move(residues) : residuesOfRows(rows, notes), gaps);
  takeNamesFromRows(residues, rows);
  ChainSequence sequence = sequenceOf(std::move(residues));
  noteGaps(gaps, sequence, notes);
  if (!isGiven) notes.push_back("the file has no sequence; it was built from the residues with shifts");
  noteUnusualResidues(sequence, notes);
  return sequence;
}

}  // namespace zorvela

#include "protein/own_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <map>
#include <set>
#include <utility>

#include "formats/shift_model.h"
#include "names/nomenclature.h"
#include "protein/disulfides.h"
#include "protein/numbering.h"
#include "protein/shifts.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using TableRow = decltype(GDB::entries)::mapped_type;

constexpr std::size_t kColumnsKept = 4;  // RESID, RESNAME, ATOMNAME, SHIFT

// --- Sequence -----------------------------------------------------------------------------------

[[noreturn]] void throwTooLong(const std::string& file) {
  throw FileError(file, 0, "has a sequence of more than " + std::to_string(kLongestSequence) + " residues",
                  "no protein is that long: check the file");
}

/// Residues with the table's own numbers, which need not begin with 1.
struct TableSequence {
  int first = 1;
  std::string letters;
};

TableSequence statedSequence(const GDB& table, const std::string& file) {
  TableSequence sequence;
  sequence.first = table.firstSeqResid;
  if (table.residNames.size() > kLongestSequence) throwTooLong(file);
  if (sequence.first > std::numeric_limits<int>::max() - static_cast<int>(table.residNames.size()))
    throw FileError(file, 0, "FIRST_RESID " + std::to_string(sequence.first) + " is too large",
                    "give the number of the first residue");
  for (const auto& [resid, name] : table.residNames) sequence.letters += name;
  return sequence;
}

// The letters that the program's reader takes into a sequence.
bool isSequenceLetter(char c) {
  return contains(kAminoAcids, {&c, 1}) || c == kDisulfideCysteine || c == kKnownCisProline ||
         contains(kOtherLetters, {&c, 1});
}

/// Of a table without a sequence: its rows give the residues, "?" stands for those between.
TableSequence sequenceOfRows(const GDB& table, const std::string& file) {
  std::map<int, char> letters;
  for (const auto& [number, row] : table.entries) {
    const std::string& name = GDB::cell(row, "RESNAME");
    if (const auto resid = toInteger(GDB::cell(row, "RESID")))
      letters.emplace(*resid, name.size() == 1 && isSequenceLetter(name[0]) ? name[0] : kUnknownResidue);
  }
  if (letters.empty()) throw FileError(file, 0, "the table has neither a sequence nor rows", kTableRemedy);
  TableSequence sequence;
  sequence.first = letters.begin()->first;
  const long length = static_cast<long>(letters.rbegin()->first) - sequence.first + 1;
  if (length > static_cast<long>(kLongestSequence)) throwTooLong(file);
  sequence.letters.assign(static_cast<std::size_t>(length), kUnknownResidue);
  for (const auto& [resid, letter] : letters)
    sequence.letters[static_cast<std::size_t>(static_cast<long>(resid) - sequence.first)] = letter;
  return sequence;
}

// --- Rows ---------------------------------------------------------------------------------------

/// The shifts of a table, and what of its rows is not used or stands out.
struct TableShifts {
  std::vector<Shift> shifts;
  std::set<std::pair<int, std::string>> taken;
  std::set<std::string> misnamed;
  std::vector<std::string> outside;
  std::vector<std::string> unusable;
  std::vector<std::string> marks;
  std::vector<std::string> repeated;
  std::size_t otherAtoms = 0;
};

/// Names in the table's own words stay, whatever the residue; others are read as in any file.
std::vector<std::string> tableNames(char letter, const std::string& atom) {
  const bool isOfGlycine = letter == 'G' && (atom == "HA" || atom == "HA1");
  const bool isSideChain = atom == "CG" && letter != kProline && letter != kKnownCisProline;
  if (isTableAtom(atom) && !isOfGlycine && !isSideChain) return {atom};
  std::vector<std::string> names;
  for (const char* name : readAtom(letter, atom).names)
    if (name != nullptr) names.emplace_back(name);
  return names;
}

void addShift(const Shift& shift, const std::string& label, TableShifts& found) {
  if (shift.atom != "HA1" && found.taken.emplace(shift.resid, shift.atom).second)
    found.shifts.push_back(shift);
  else
    found.repeated.push_back(label);
}

void readShift(const TableRow& row, int position, char letter, TableShifts& found) {
  const std::string atom = printable(GDB::cell(row, "ATOMNAME"), 20);
  const std::string label = printable(GDB::cell(row, "RESID"), 20) + " " + atom;
  const auto shift = toDecimal(GDB::cell(row, "SHIFT"));
  const std::vector<std::string> names = tableNames(letter, atom);
  if (names.empty())
    ++found.otherAtoms;
  else if (!shift)
    found.unusable.push_back(label + " (" + printable(GDB::cell(row, "SHIFT"), 20) + ")");
  else
    for (const std::string& name : names) addShift({position, name, *shift}, label, found);
  if (shift && isMissingMark(*shift)) found.marks.push_back(label);
}

void readRow(const TableRow& row, const TableSequence& sequence, TableShifts& found) {
  const std::string& residText = GDB::cell(row, "RESID");
  const auto resid = toInteger(residText);
  const long position = resid ? static_cast<long>(*resid) - sequence.first + 1 : 0;
  if (position < 1 || position > static_cast<long>(sequence.letters.size())) {
    found.outside.push_back(printable(residText, 20));
    return;
  }
  const char letter = sequence.letters[static_cast<std::size_t>(position) - 1];
  if (GDB::cell(row, "RESNAME") != std::string(1, letter))
    found.misnamed.insert(residText + " (" + printable(GDB::cell(row, "RESNAME"), 10) + ", sequence " +
                          letter + ")");
  readShift(row, static_cast<int>(position), letter, found);
}

TableShifts readRows(const GDB& table, const TableSequence& sequence) {
  TableShifts found;
  for (const auto& [number, row] : table.entries) readRow(row, sequence, found);
  std::stable_sort(found.shifts.begin(), found.shifts.end(), isBefore);
  return found;
}

// --- Remarks and notes --------------------------------------------------------------------------

/// Takes over the remarks; those that give numbers speak of residues from 1 afterwards.
void takeRemarks(const GDB& table, int first, Protein& protein) {
  protein.remarks = table.remarks;
  protein.numbers = numbersFromRemarks(protein.remarks, static_cast<int>(protein.sequence.size()), first);
  if (first == 1) return;
  bool isStated = false;
  for (std::string& remark : protein.remarks) {
    if (!hasNumbering(remark)) continue;
    remark = shiftedNumbering(remark, static_cast<long>(first) - 1);
    isStated = true;
  }
  if (isStated) return;
  for (const std::string& remark : numberingRemarks(protein.numbers)) protein.remarks.push_back(remark);
}

void noteRows(const TableShifts& found, std::vector<std::string>& notes) {
  if (!found.outside.empty())
    notes.push_back(counted(found.outside.size(), "row", "rows") +
                    " left out, the sequence has no such residue: " + enumerated(found.outside));
  if (!found.misnamed.empty())
    notes.push_back("residue names differ from the sequence, which is used: " +
                    enumerated({found.misnamed.begin(), found.misnamed.end()}));
  if (!found.unusable.empty())
    notes.push_back("values that are no shift left out: " + enumerated(found.unusable));
  // A missing mark counts as a shift where the program counts them; so it stays, and both agree.
  if (!found.marks.empty())
    notes.push_back("values of 999 and above, for missing shifts, kept: " + enumerated(found.marks));
  if (!found.repeated.empty())
    notes.push_back("given before, the first is used: " + enumerated(found.repeated));
}

void noteOtherParts(const GDB& table, std::vector<std::string>& notes) {
  if (table.columnNames.size() > kColumnsKept) notes.push_back("further columns of the table are not kept");
  const auto isOther = [](const std::string& line) {
    return line.rfind("SEQUENCE", 0) != 0 && line.rfind("FIRST_RESID", 0) != 0;
  };
  if (std::any_of(table.dataLines.begin(), table.dataLines.end(), isOther))
    notes.push_back("further DATA lines of the table are not kept");
}

void noteOxidised(Protein& protein) {
  std::vector<std::string> oxidised;
  for (const Shift& shift : protein.shifts) {
    const std::size_t i = static_cast<std::size_t>(shift.resid) - 1;
    if (shift.atom == "CB" && protein.sequence[i] == 'C' && looksOxidised(shift.shift))
      oxidised.push_back(protein.numbers[i]);
  }
  if (!oxidised.empty())
    protein.notes.push_back(
        "cysteines with CB above " + fixedText(kOxidisedFrom, 0) +
        " ppm stand as reduced (C) in the table, write c for those in a disulfide bond: " +
        enumerated(oxidised));
}

}  // namespace

Protein proteinOfTable(const GDB& table, const std::string& file, const std::vector<std::string>& notes) {
  const bool hasSequence = !table.residNames.empty();
  const TableSequence sequence = hasSequence ? statedSequence(table, file) : sequenceOfRows(table, file);
  TableShifts found = readRows(table, sequence);
  if (found.shifts.empty())
    throw FileError(file, 0, "holds no backbone shifts of a protein",
                    "this table holds: " + counted(table.entries.size(), "row", "rows") + ", " +
                        counted(sequence.letters.size(), "residue", "residues"));
  Protein protein;
  protein.file = file;
  protein.sequence = sequence.letters;
  protein.notes = notes;
  if (!hasSequence)
    protein.notes.push_back(
        "the table has no DATA SEQUENCE line: the sequence is put together from its rows");
  protein.shifts = std::move(found.shifts);
  takeRemarks(table, sequence.first, protein);
  if (sequence.first != 1)
    protein.notes.push_back("residue " + std::to_string(sequence.first) + " of the table is residue 1 now");
  noteRows(found, protein.notes);
  if (found.otherAtoms > 0)
    protein.asides.push_back(counted(found.otherAtoms, "shift", "shifts") +
                             " of other atoms (side chain and the like) not needed");
  noteOtherParts(table, protein.notes);
  noteOxidised(protein);
  return protein;
}

}  // namespace zorvela

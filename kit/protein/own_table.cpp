#include "protein/own_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <utility>

#include "formats/shift_model.h"
#include "names/nomenclature.h"
#include "protein/deuteration.h"
#include "protein/disulfides.h"
#include "protein/numbering.h"
#include "protein/shifts.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

/// The cells of a row, as the table writes them.
struct TableRow {
  const std::string& number;
  const std::string& residue;
  const std::string& atom;
  const std::string& shift;
};

TableRow cellsOf(const GDB::Row& row) {
  return {GDB::cell(row, "RESID"), GDB::cell(row, "RESNAME"), GDB::cell(row, "ATOMNAME"),
          GDB::cell(row, "SHIFT")};
}

constexpr std::size_t kColumnsKept = 4;  // RESID, RESNAME, ATOMNAME, SHIFT

// --- Sequence -----------------------------------------------------------------------------------

/// Residues with the table's own numbers, which need not begin with 1.
struct TableSequence {
  int first = 1;
  std::string letters;
};

TableSequence statedSequence(const GDB& table, const std::string& file) {
  TableSequence sequence;
  sequence.first = table.firstSeqResid;
  checkLimit(table.residNames.size(), limits::kSequence, file);
  if (sequence.first > std::numeric_limits<int>::max() - static_cast<int>(table.residNames.size()))
    throw FileError(file, 0, "FIRST_RESID " + std::to_string(sequence.first) + " is too large",
                    "give the number of the first residue");
  for (const auto& [resid, name] : table.residNames) sequence.letters += name;
  return sequence;
}

/// Of a table without a sequence: its rows give the residues, "?" stands for those between.
TableSequence sequenceOfRows(const GDB& table, const std::string& file) {
  std::map<int, char> letters;
  for (const auto& [number, row] : table.entries) {
    const std::string& name = cellsOf(row).residue;
    if (const auto resid = toInteger(cellsOf(row).number))
      letters.emplace(*resid, name.size() == 1 && isSequenceLetter(name[0]) ? name[0] : kUnknownResidue);
  }
  if (letters.empty()) throw FileError(file, 0, "the table has neither a sequence nor rows", kTableRemedy);
  TableSequence sequence;
  sequence.first = letters.begin()->first;
  const std::int64_t length = static_cast<std::int64_t>(letters.rbegin()->first) - sequence.first + 1;
  checkLimit(static_cast<std::size_t>(length), limits::kSequence, file);
  sequence.letters.assign(static_cast<std::size_t>(length), kUnknownResidue);
  for (const auto& [resid, letter] : letters)
    sequence.letters[static_cast<std::size_t>(static_cast<std::int64_t>(resid) - sequence.first)] = letter;
  return sequence;
}

// --- Rows ---------------------------------------------------------------------------------------

/// The shifts of a table, and the rows that are not used or are unusual.
struct TableShifts {
  std::vector<Shift> shifts;
  std::set<std::pair<int, Atom>> taken;
  std::set<std::string> misnamed;
  std::vector<std::string> outside;
  std::vector<std::string> unusable;
  std::vector<std::string> marks;
  std::vector<std::string> repeated;
  std::size_t otherAtoms = 0;
};

/// Names in the table's own words stay, whatever the residue; others are read as in any file.
AtomReading readTableAtom(char letter, const std::string& name) {
  const auto atom = atomNamed(name);
  const bool isOfGlycine = letter == 'G' && atom == Atom::HA;
  const bool isSideChain = atom == Atom::CG && !isProline(letter);
  if (!atom || isOfGlycine || isSideChain) return readAtom(letter, name);
  return {AtomReading::Kind::table, *atom};
}

/// Takes a shift, unless its atom has one. HA1 of glycine is not settled here.
void addShift(const Shift& shift, const std::string& label, TableShifts& found) {
  if (found.taken.emplace(shift.position, shift.atom).second)
    found.shifts.push_back(shift);
  else
    found.repeated.push_back(label);
}

void readShiftCells(const TableRow& row, int position, char letter, TableShifts& found) {
  const std::string name = printable(row.atom, 20);
  const std::string label = printable(row.number, 20) + " " + name;
  auto shift = readShift(row.shift);
  const AtomReading atom = readTableAtom(letter, name);
  if (shift && isMissingMark(*shift)) found.marks.push_back(label);
  if (!atom.isInTable()) {
    ++found.otherAtoms;
  } else if (!shift) {
    found.unusable.push_back(label + " (" + printable(row.shift, 20) + ")");
  } else if (atom.isOlderName) {
    found.repeated.push_back(label);
  } else {
    shift->position = position;
    shift->atom = atom.atom;
    addShift(*shift, label, found);
    shift->atom = Atom::HA3;
    if (atom.kind == AtomReading::Kind::pseudo) addShift(*shift, label, found);
  }
}

void readRow(const TableRow& row, const TableSequence& sequence, TableShifts& found) {
  const auto resid = toInteger(row.number);
  const std::int64_t position = resid ? static_cast<std::int64_t>(*resid) - sequence.first + 1 : 0;
  if (position < 1 || position > static_cast<std::int64_t>(sequence.letters.size())) {
    found.outside.push_back(printable(row.number, 20));
    return;
  }
  const char letter = sequence.letters[static_cast<std::size_t>(position) - 1];
  if (!row.residue.empty() && row.residue != std::string(1, letter))
    found.misnamed.insert(row.number + " (" + printable(row.residue, 10) + ", sequence " + letter + ")");
  readShiftCells(row, static_cast<int>(position), letter, found);
}

TableShifts readRows(const GDB& table, const TableSequence& sequence) {
  TableShifts found;
  for (const auto& [number, row] : table.entries) readRow(cellsOf(row), sequence, found);
  std::stable_sort(found.shifts.begin(), found.shifts.end(), isBefore);
  return found;
}

// --- Remarks and notes --------------------------------------------------------------------------

/// Takes over the remarks; those that give numbers speak of residues from 1 afterwards.
void takeRemarks(const GDB& table, int first, Protein& protein) {
  protein.remarks = table.remarks;
  protein.deuteration = deuterationFromRemarks(protein.remarks);
  protein.numbers = numbersFromRemarks(protein.remarks, static_cast<int>(protein.sequence.size()), first);
  if (first == 1) return;
  bool isStated = false;
  for (std::string& remark : protein.remarks) {
    if (!hasNumbering(remark)) continue;
    remark = shiftedNumbering(remark, static_cast<std::int64_t>(first) - 1);
    isStated = true;
  }
  if (isStated) return;
  for (const std::string& remark : numberingRemarks(protein.numbers)) protein.remarks.push_back(remark);
}

void noteRows(const TableShifts& found, std::vector<std::string>& notes) {
  addNote(counted(found.outside.size(), "row", "rows") + " ignored; the sequence has no such residue: ",
          found.outside, notes);
  addNote("residue names differ from the sequence; the sequence is used: ",
          {found.misnamed.begin(), found.misnamed.end()}, notes);
  addNote("values that are not numbers; ignored: ", found.unusable, notes);
  // A missing mark counts as a shift where the program counts them; so it stays, and both agree.
  addNote("values of 999 and above (placeholders for missing shifts) kept: ", found.marks, notes);
  addNote("given twice; the first is used: ", found.repeated, notes);
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
  for (const std::size_t place : oxidisedByShift(protein)) oxidised.push_back(protein.numbers[place]);
  addNote("cysteines with CB above " + fixedText(kOxidisedFrom, 0) +
              " ppm are reduced (C) in the table; write c for those in a disulfide bond: ",
          oxidised, protein.notes);
}

}  // namespace

ShiftFile wordsOfTable(const GDB& table) {
  ShiftFile file;
  file.format = "shift table";
  file.chains.emplace_back();
  file.chains.front().polymer = Polymer::polypeptide;
  for (const auto& [resid, name] : table.residNames) {
    const std::string number = std::to_string(resid);
    file.chains.front().residues.push_back({number, number, name});
  }
  file.lists.emplace_back();
  if (const double share = deuterationFromRemarks(table.remarks); share > 0)
    file.lists.front().deuteration[0] = share;
  for (const auto& [place, row] : table.entries) {
    const TableRow cells = cellsOf(row);
    FileShift shift;
    shift.chain = 0;
    shift.key = shift.number = cells.number;
    shift.residueName = cells.residue;
    shift.atom = cells.atom;
    shift.value = cells.shift;
    file.lists.front().shifts.push_back(std::move(shift));
  }
  return file;
}

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
  protein.isSequenceGiven = hasSequence;
  protein.notes = notes;
  if (!hasSequence)
    protein.notes.push_back("the table has no DATA SEQUENCE line; the sequence was built from its rows");
  protein.shifts = std::move(found.shifts);
  takeRemarks(table, sequence.first, protein);
  if (sequence.first != 1)
    protein.notes.push_back("residue " + std::to_string(sequence.first) + " of the table is now residue 1");
  noteRows(found, protein.notes);
  noteOtherAtoms(found.otherAtoms, protein.asides);
  noteOtherParts(table, protein.notes);
  noteOxidised(protein);
  return protein;
}

}  // namespace zorvela

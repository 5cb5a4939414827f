#include "protein/own_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <set>

#include "formats/shift_model.h"
#include "names/nomenclature.h"
#include "protein/disulfides.h"
#include "protein/remarks.h"
#include "protein/shifts.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kNumberColumn = "RESID";
constexpr const char* kResidueColumn = "RESNAME";
constexpr const char* kAtomColumn = "ATOMNAME";
constexpr const char* kShiftColumn = "SHIFT";
constexpr std::size_t kColumnsKept = 4;

// --- Sequence -----------------------------------------------------------------------------------

/// Residues with the table's own numbers, which need not begin with 1.
struct TableSequence {
  int first = 1;
  std::string letters;
};

/// The rows give the residues of a table without a sequence, "?" stands for those between.
TableSequence sequenceOf(const GDB& table, const std::string& file) {
  if (table.firstSeqResid > std::numeric_limits<int>::max() - static_cast<int>(table.residNames.size()))
    throw FileError(file, 0, "FIRST_RESID " + std::to_string(table.firstSeqResid) + " is too large",
                    "give the number of the first residue");
  std::map<int, char> letters;
  for (const auto& [resid, name] : table.residNames) letters.emplace(resid, name.front());
  if (letters.empty())
    for (const auto& [number, row] : table.entries) {
      const std::string& name = GDB::cell(row, kResidueColumn);
      if (const auto resid = toInteger(GDB::cell(row, kNumberColumn)))
        letters.emplace(*resid, name.size() == 1 && isSequenceLetter(name[0]) ? name[0] : kUnknownResidue);
    }
  if (letters.empty()) throw FileError(file, 0, "the table has neither a sequence nor rows", kTableRemedy);
  const std::int64_t first = letters.begin()->first;
  const auto length = static_cast<std::size_t>(letters.rbegin()->first - first + 1);
  checkLimit(length, limits::kSequence, file);
  TableSequence sequence{letters.begin()->first, std::string(length, kUnknownResidue)};
  for (const auto& [resid, letter] : letters)
    sequence.letters[static_cast<std::size_t>(resid - first)] = letter;
  return sequence;
}

// --- Rows ---------------------------------------------------------------------------------------

/// The shifts of a table, and the rows that are not used or are unusual.
struct TableShifts {
  std::map<AtomKey, Shift> shifts;
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

void readRow(const GDB::Row& row, const TableSequence& sequence, TableShifts& found) {
  const std::string number = printable(GDB::cell(row, kNumberColumn), 20);
  const std::string residue = printable(GDB::cell(row, kResidueColumn), 10);
  const std::string name = printable(GDB::cell(row, kAtomColumn), 20);
  const std::string& value = GDB::cell(row, kShiftColumn);
  const auto resid = toInteger(number);
  const std::int64_t place = resid ? std::int64_t{*resid} - sequence.first : -1;
  if (place < 0 || place >= static_cast<std::int64_t>(sequence.letters.size())) {
    found.outside.push_back(number);
    return;
  }
  const char letter = sequence.letters[static_cast<std::size_t>(place)];
  if (!residue.empty() && residue != std::string(1, letter))
    found.misnamed.insert(number + " (" + residue + ", sequence " + letter + ")");
  const std::string label = number + " " + name;
  const AtomReading atom = readTableAtom(letter, name);
  auto shift = readShift(value);
  if (shift && isMissingMark(*shift)) found.marks.push_back(label);
  const auto take = [&](Atom of) {
    shift->position = static_cast<int>(place) + 1;
    shift->atom = of;
    if (!found.shifts.emplace(atomKey(shift->position, shift->atom), *shift).second)
      found.repeated.push_back(label);
  };
  if (!atom.isInTable()) {
    ++found.otherAtoms;
  } else if (!shift) {
    found.unusable.push_back(label + " (" + printable(value, 20) + ")");
  } else if (atom.isOlderName) {  // not settled here
    found.repeated.push_back(label);
  } else {
    take(atom.atom);
    if (atom.kind == AtomReading::Kind::pseudo) take(Atom::HA3);
  }
}

// --- Remarks and notes --------------------------------------------------------------------------

/// Takes over the remarks; those that give numbers speak of residues from 1 afterwards.
void takeRemarks(const GDB& table, int first, Protein& protein) {
  protein.remarks = table.remarks;
  protein.deuteration = deuterationFromRemarks(protein.remarks);
  protein.numbers = numbersFromRemarks(protein.remarks, static_cast<int>(protein.sequence.size()), first);
  if (first == 1) return;
  if (std::none_of(protein.remarks.begin(), protein.remarks.end(), hasNumbering))
    addNumbering(protein);
  else
    for (std::string& remark : protein.remarks) remark = shiftedNumbering(remark, std::int64_t{first} - 1);
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
  for (const Shift& shift : protein.shifts) {
    const std::size_t place = static_cast<std::size_t>(shift.position) - 1;
    if (shift.atom == Atom::CB && protein.sequence[place] == 'C' && shift.ppm > kOxidisedFrom)
      oxidised.push_back(protein.numbers[place]);
  }
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
    FileShift& shift = file.lists.front().shifts.emplace_back();
    shift.chain = 0;
    shift.key = shift.number = GDB::cell(row, kNumberColumn);
    shift.residueName = GDB::cell(row, kResidueColumn);
    shift.atom = GDB::cell(row, kAtomColumn);
    shift.value = GDB::cell(row, kShiftColumn);
  }
  return file;
}

Protein proteinOfTable(const GDB& table, const std::string& file, const std::vector<std::string>& notes) {
  const TableSequence sequence = sequenceOf(table, file);
  TableShifts found;
  for (const auto& [number, row] : table.entries) readRow(row, sequence, found);
  if (found.shifts.empty())
    throw FileError(file, 0, "holds no backbone shifts of a protein",
                    "this table holds: " + counted(table.entries.size(), "row", "rows") + ", " +
                        counted(sequence.letters.size(), "residue", "residues"));
  Protein protein;
  protein.file = file;
  protein.sequence = sequence.letters;
  protein.isSequenceGiven = !table.residNames.empty();
  protein.notes = notes;
  if (!protein.isSequenceGiven)
    protein.notes.push_back("the table has no DATA SEQUENCE line; the sequence was built from its rows");
  for (const auto& [atom, shift] : found.shifts) protein.shifts.push_back(shift);
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

// Reads text with a line of column names: one row per shift, or one row per residue with a column per atom.
// All rows together decide how their labels are read and which columns are refused; then the shifts are read.
#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <utility>

#include "formats/foreign_text.h"
#include "formats/format.h"
#include "formats/found_rows.h"
#include "formats/text/cells.h"
#include "formats/text/csv_columns.h"
#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kOwnColumnsRemedy = "give names and numbers of residues in columns of their own";
constexpr const char* kCheckColumns = "check that each column has the values that its name promises";

// --- The residue of a row -----------------------------------------------------------------------

/// The residue of a row.
struct RowResidue {
  ResidueLabel label;  ///< of the cell that gives the number
  std::string name;    ///< as the file writes it; empty where it gives none
  std::string chain;   ///< by its column or by a label
  bool isByCounter = false;
  std::string unassigned;  ///< the cell with a spin system that is not assigned; usually empty
  std::string fault;       ///< why it is not known, or its atom if that is in the same cell; usually empty

  bool isKnown() const { return unassigned.empty() && fault.empty(); }
};

const std::string& cellAt(const std::vector<std::string>& cells, std::size_t column) {
  static const std::string kNone;
  return column < cells.size() ? cells[column] : kNone;
}

/// Reads the number of a residue from the columns that may give it, in order of trust.
void findNumber(const std::vector<std::string>& cells, const CsvColumns& columns, RowResidue& residue) {
  std::vector<std::size_t> sources = {columns.number, columns.assignment};
  sources.insert(sources.end(), columns.residues.begin(), columns.residues.end());
  sources.insert(sources.end(), {columns.name, columns.counter});
  std::string filled;
  for (const std::size_t column : sources) {
    const std::string& cell = cellAt(cells, column);
    if (filled.empty()) filled = cell;
    if (isUnassignedLabel(cell)) {
      residue.unassigned = cell;
      return;
    }
    auto label = readLabel(cell, column == columns.assignment);
    if (!label || label->number.empty()) continue;
    residue.label = std::move(*label);
    residue.isByCounter = column == columns.counter;
    if (columns.lackAtoms() && residue.label.atom.empty())
      residue.fault = quotedCell(filled) + " names no atom";
    return;
  }
  residue.fault = quotedCell(filled) + " is not a residue number";
}

/// Tells whether a cell has no name; an unknown residue has one: "X", "?".
bool isNoName(const std::string& cell) {
  return isNoValue(cell) && cell != "?" && !equalIgnoringCase(cell, "X");
}

void findName(const std::vector<std::string>& cells, const CsvColumns& columns, RowResidue& residue) {
  std::vector<std::size_t> sources = {columns.name};
  sources.insert(sources.end(), columns.residues.begin(), columns.residues.end());
  const std::size_t ownColumns = sources.size();
  sources.insert(sources.end(), {columns.assignment, columns.number, columns.counter});
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const std::string& cell = cellAt(cells, sources[i]);
    if (isNoName(cell)) continue;
    const auto label = readLabel(cell, sources[i] == columns.assignment);
    const bool isOfRow = label && (label->number.empty() || label->number == residue.label.number);
    if (isOfRow && !label->name.empty() && !isNoName(label->name)) {
      residue.name = label->name;
      if (residue.chain.empty()) residue.chain = label->chain;
      return;
    }
    // An unknown name is kept where another column gives the number.
    if (i < ownColumns && (!label || label->number != residue.label.number)) {
      residue.name = cell;
      return;
    }
  }
}

RowResidue residueOf(const CsvRow& row, const CsvColumns& columns) {
  RowResidue residue;
  residue.fault = row.fault;
  if (!row.fault.empty()) return residue;
  findNumber(row.cells, columns, residue);
  const std::string& chain = cellAt(row.cells, columns.chain);
  residue.chain = chain.empty() ? residue.label.chain : chain;
  findName(row.cells, columns, residue);
  return residue;
}

/// Calls `use` with each row that has a residue.
void forEachResidue(const CsvTable& table, const std::function<void(const CsvRow&, RowResidue&)>& use) {
  forEachRow(table.layout, [&](const CsvRow& row) {
    RowResidue residue = residueOf(row, table.columns);
    if (residue.isKnown()) use(row, residue);
  });
}

// --- The shifts of a row ------------------------------------------------------------------------

/// A shift in a row: of its residue, or of the neighbour that the column or the label means.
struct RowShift {
  AtomColumn column;
  std::string residueName;
  std::string value;
};

/// Returns the shifts of a row; one without atom and value only names the residue.
std::vector<RowShift> shiftsIn(const CsvRow& row, const RowResidue& residue, const CsvColumns& columns) {
  // The name beside a column "CA-1", or in a label "G12-1", is that of the residue with the number.
  const bool isNeighboursName = residue.label.offset && residue.name == residue.label.name;
  const std::string name = isNeighboursName ? "" : residue.name;
  const auto valueIn = [&](std::size_t column) {
    return isNoValue(row.cells[column]) ? std::string() : row.cells[column];
  };
  if (columns.areLong()) {
    AtomColumn column = {columns.shift, cellAt(row.cells, columns.atom), {}};
    if (columns.atom == kNoColumn) column.atom = residue.label.atom;
    column.offset = takeOffset(column.atom);
    const std::string value = valueIn(columns.shift);
    if (value.empty() && isNoValue(column.atom)) column.atom.clear();
    return {{column, column.offset ? "" : name, value}};
  }
  std::vector<RowShift> shifts(1);
  shifts.front().residueName = name;
  for (const AtomColumn& column : columns.atoms)
    if (const std::string value = valueIn(column.column); !value.empty())
      shifts.push_back({column, column.offset ? "" : name, value});
  return shifts;
}

// --- The table as a whole -----------------------------------------------------------------------

/// Counts of the cells of a column.
struct ColumnContents {
  Tally texts;       ///< among the filled cells, those that are not numbers
  Tally impossible;  ///< among the shifts, those out of range for their atom or not numbers
};

/// Counts and faults of all rows.
struct Survey {
  std::size_t shifts = 0;        ///< with those that only name a residue
  std::set<std::string> chains;  ///< their names
  std::vector<ColumnContents> columns;
  Tally misfits;               ///< rows with too few or too many cells
  Tally unplaced;              ///< rows without a residue
  Tally twoLetters;            ///< rows with a letter on either side of the number; all: with unassigned
  Tally splitDecimals;         ///< rows whose shift seems to be cut at its comma; all: with unassigned
  Tally dashed;                ///< rows with a dash between name and number
  bool isCounterUsed = false;  ///< a number may count the rows
  bool areCodesNames = true;   ///< letters after residue numbers (82P) are names, not insertion codes
  Unassigned unassigned;
  LimitedNotes ignored{"lines ignored"};
};

/// Tells whether the letter after the number is a name, or the row has a longer name in the same cell
/// (82PRO), and no other name.
bool isCodeAName(const RowResidue& residue) {
  const ResidueLabel& label = residue.label;
  if (label.code.empty() == label.name.empty()) return false;
  return label.code.empty() || residue.name.empty() ||
         polypeptideResidue(residue.name).letter == polypeptideResidue(upper(label.code)).letter;
}

/// Tells whether "52,4" may be cut at its comma, with the second half in a column that is not used.
bool isSplitDecimal(const CsvRow& row, const CsvTable& table) {
  const std::size_t half = table.columns.shift;
  const auto isWhole = [](const std::string& cell) {
    return !cell.empty() && std::all_of(cell.begin(), cell.end(), isDigit);
  };
  return table.columns.areLong() && table.layout.separator == Separator::comma &&
         half + 1 < row.cells.size() && !table.columns.areUsing(half + 1) && isWhole(row.cells[half]) &&
         isWhole(row.cells[half + 1]);
}

/// LimitError for more shifts or chains than the text can have, before more work is done.
void surveyRow(const CsvRow& row, const CsvTable& table, const Source& source, Survey& survey) {
  const RowResidue residue = residueOf(row, table.columns);
  survey.misfits.add(row.line, row.fault);
  if (row.fault.empty()) survey.unplaced.add(row.line, residue.fault);
  if (!residue.fault.empty())
    survey.ignored.add("line " + std::to_string(row.line) + " ignored: " + residue.fault);
  if (!residue.unassigned.empty()) survey.unassigned.add(residue.unassigned);
  if (!residue.fault.empty()) return;
  const ResidueLabel& label = residue.label;
  const bool hasTwo = !label.name.empty() && !label.code.empty();
  survey.twoLetters.add(row.line, hasTwo ? quotedCell(label.name + label.number + label.code) : "");
  survey.splitDecimals.add(row.line, residue.isKnown() && isSplitDecimal(row, table) ? "cut" : "");
  if (!residue.unassigned.empty()) return;
  survey.dashed.add(row.line, label.hasDash ? quotedCell(residue.name + "-" + label.number) : "");
  survey.isCounterUsed = survey.isCounterUsed || residue.isByCounter;
  survey.areCodesNames = survey.areCodesNames && isCodeAName(residue);
  for (std::size_t i = 0; i < row.cells.size(); ++i)
    if (const std::string& cell = row.cells[i]; !isNoValue(cell))
      survey.columns[i].texts.add(row.line, numberIn(cell) ? "" : cell);
  const std::vector<RowShift> shifts = shiftsIn(row, residue, table.columns);
  survey.shifts += shifts.size();
  checkLimit(survey.shifts, limits::shiftRows(source.text.size()), source.file, row.line);
  survey.chains.insert(residue.chain);
  checkLimit(survey.chains.size(), limits::kNamedChains, source.file, row.line);
  for (const RowShift& shift : shifts) {
    const auto ppm = numberIn(shift.value);
    if (shift.value.empty() || (ppm && isMissing(*ppm))) continue;
    const std::string& atom = shift.column.atom;
    const bool isPossible = ppm && (table.columns.areLong() ? canBeShift(shift.residueName, atom, *ppm)
                                                            : canBeShiftOf(atom, *ppm));
    survey.columns[shift.column.column].impossible.add(
        row.line, isPossible ? "" : quotedCell(shift.value) + " for " + printable(atom, 20));
  }
}

/// Tells whether the residues of each chain ascend, with each dash as a minus sign or not.
bool doNumbersAscend(const CsvTable& table, bool isMinus) {
  std::map<std::string, std::set<int>> chains;
  bool doAscend = true;
  forEachResidue(table, [&](const CsvRow&, const RowResidue& residue) {
    const auto digits = toInteger(residue.label.number);
    if (!digits || residue.label.name.empty()) return;
    const int number = isMinus && residue.label.hasDash ? -*digits : *digits;
    std::set<int>& seen = chains[residue.chain];
    if (seen.insert(number).second && number != *seen.rbegin()) doAscend = false;
  });
  return doAscend;
}

/// Tells whether the dash of labels such as "G-2" is a minus sign: it is one if the numbers ascend only then.
/// If every label has a dash (Gly-12), it is a separator. FileError where neither is certain.
bool areDashesMinus(const CsvTable& table, const Tally& dashed, const std::string& file) {
  if (dashed.count == 0) return false;
  const bool isMinus = doNumbersAscend(table, true);
  if (isMinus != doNumbersAscend(table, false)) return isMinus;
  if (dashed.count == dashed.all) return false;
  throw FileError(file, dashed.line,
                  "cannot tell whether \"-\" in " + dashed.first + " is a minus sign or a dash",
                  kOwnColumnsRemedy);
}

/// Tells whether the only column of residue numbers counts the rows: it goes up by one in each, although the
/// atoms differ.
bool areRowsCounted(const CsvTable& table) {
  constexpr std::size_t kFewestRows = 3;
  std::size_t rows = 0;
  std::size_t inTurn = 0;
  std::optional<std::string> next;
  std::set<std::string> atoms;
  forEachResidue(table, [&](const CsvRow& row, const RowResidue& residue) {
    const std::string& number = residue.label.number;
    if (residue.isByCounter && (rows == 0 || next == number)) ++inTurn;
    ++rows;
    next = nextNumber(number);
    if (atoms.size() < 2) atoms.insert(upper(shiftsIn(row, residue, table.columns).front().column.atom));
  });
  return rows >= kFewestRows && inTurn == rows && atoms.size() > 1;
}

std::string outOfRange(const Tally& impossible) {
  return "most values (" + impossible.share() + ") are out of range for their atoms, such as " +
         impossible.first;
}

/// Throws FileError for a table whose columns are not certain.
void refuseDoubtful(const Survey& survey, const CsvTable& table, const std::string& file) {
  const auto refuse = [&](const Tally& tally, const std::string& what, const char* remedy) {
    if (tally.areMost()) throw FileError(file, tally.line, what, remedy);
  };
  const CsvColumns& columns = table.columns;
  const Tally& misfits = survey.misfits;
  const Tally& unplaced = survey.unplaced;
  refuse(misfits, "most rows (" + misfits.share() + ") do not fit the columns; the first: " + misfits.first,
         "give every row a cell for each column, an empty one where there is no shift, and numbers with a "
         "decimal point");
  refuse(unplaced,
         "most rows (" + unplaced.share() + ") name no residue" +
             (columns.lackAtoms() ? " with its atom: " : ": ") + unplaced.first,
         "is this a table of shifts? It needs columns resid, resname, atom and shift");
  refuse(survey.twoLetters, "cannot tell which letter of " + survey.twoLetters.first + " names the residue",
         kOwnColumnsRemedy);
  if (!columns.areLong()) return;
  if (survey.isCounterUsed && areRowsCounted(table))
    throw FileError(file, 0, "the only column of numbers besides the shifts counts the rows",
                    "add a column of residue numbers (resid)");
  constexpr std::size_t kFewestSplit = 3;
  if (const Tally& split = survey.splitDecimals; split.count >= kFewestSplit && split.count == split.all)
    throw FileError(file, 0, "the shifts seem to be cut at their decimal commas",
                    "write decimal points, or semicolons between the columns");
  const Tally& impossible = survey.columns[columns.shift].impossible;
  refuse(impossible, outOfRange(impossible), kCheckColumns);
}

/// Returns the name of a column for messages.
std::string titleOf(std::size_t column, const CsvTable& table) {
  const std::string& name = table.layout.names[column];
  return name.empty() ? std::to_string(column + 1) + " (without a name)" : printable(name, 40);
}

/// Removes atom columns whose values are mostly out of range (secondary shifts, other atoms), and notes all
/// columns of numbers that are not used.
void removeColumns(const Survey& survey, CsvTable& table, const std::string& file,
                   std::vector<std::string>& notes) {
  CsvColumns& columns = table.columns;
  if (!columns.doubled.empty())
    notes.push_back("more than one column for " + enumerated(columns.doubled) + ": none of them is used");
  std::vector<std::string> others;
  for (std::size_t i = 0; i < survey.columns.size(); ++i) {
    const Tally& texts = survey.columns[i].texts;
    const bool isUsed = columns.areUsing(i) || (survey.isCounterUsed && i == columns.counter);
    if (texts.count < texts.all && !texts.areMost() && !isUsed) others.push_back(titleOf(i, table));
  }
  std::vector<std::string> wrong;
  const auto isWrong = [&](const AtomColumn& one) {
    const Tally& impossible = survey.columns[one.column].impossible;
    if (!impossible.areMost()) return false;
    wrong.push_back("column " + titleOf(one.column, table) + " ignored: " + outOfRange(impossible));
    return true;
  };
  columns.atoms.erase(std::remove_if(columns.atoms.begin(), columns.atoms.end(), isWrong),
                      columns.atoms.end());
  if (!wrong.empty() && columns.atoms.empty())
    throw FileError(file, 0, "no column holds shifts of its atom: " + wrong.front(), kCheckColumns);
  notes.insert(notes.end(), wrong.begin(), wrong.end());
  addNote("columns of numbers that are not used: ", others, notes);
}

// --- The shifts ---------------------------------------------------------------------------------

/// Settles the number of a residue with its sign and code, and a name that looks like a code.
void settle(bool areDashesMinus, bool areCodesNames, RowResidue& residue) {
  ResidueLabel& label = residue.label;
  if (areDashesMinus && label.hasDash && label.number != "0") label.number.insert(0, 1, '-');
  if (!areCodesNames)
    label.number += label.code;
  else if (!label.code.empty() && residue.name.empty())
    residue.name = label.name = label.code;
}

/// Reads the shifts of rows whose labels are clear. A value out of range for its atom is left out where only
/// its place names the atom.
void readShifts(const CsvTable& table, bool areDashesMinus, bool areCodesNames, FoundRows& found,
                std::vector<std::string>& notes) {
  bool hasComma = false;
  LimitedNotes impossible("values ignored");
  forEachResidue(table, [&](const CsvRow& row, RowResidue& residue) {
    settle(areDashesMinus, areCodesNames, residue);
    for (RowShift& one : shiftsIn(row, residue, table.columns)) {
      FileShift shift;
      shift.number = residue.label.number;
      shift.offset = residue.label.offset ? residue.label.offset : one.column.offset;
      shift.residueName = std::move(one.residueName);
      shift.atom = std::move(one.column.atom);
      shift.value = valueText(one.value);
      shift.line = row.line;
      hasComma = hasComma || shift.value != withLatinLetters(one.value);
      const auto ppm = numberIn(shift.value);
      if (!table.columns.areLong() && ppm && !isMissing(*ppm) &&
          !canBeShift(shift.residueName, shift.atom, *ppm))
        impossible.add("line " + std::to_string(shift.line) + ": " + shift.atom + " " +
                       printable(shift.value, 20) + " of residue " + shift.number +
                       " is out of range, ignored; is it in the wrong column?");
      else
        found.add(residue.chain, std::move(shift));
    }
  });
  if (hasComma) notes.push_back("decimal commas read as points");
  impossible.appendTo(notes);
}

}  // namespace

bool isCsv(const Source& source) {
  return !source.star;
}

ShiftFile readCsv(const Source& source) {
  refuseForeignText(source.text, source.file);
  const std::string text = withQuotedLinesJoined(source.text);
  std::vector<std::string> notes;
  CsvTable table = findTable(text, source.file, notes);
  findPlaces(table.layout);
  Survey survey;
  survey.columns.resize(table.layout.names.size());
  forEachRow(table.layout, [&](const CsvRow& row) { surveyRow(row, table, source, survey); });
  refuseDoubtful(survey, table, source.file);
  survey.ignored.appendTo(notes);
  survey.unassigned.appendTo(notes);
  removeColumns(survey, table, source.file, notes);
  if (table.layout.isByPlace) notes.push_back("rows with gaps read by the places of the column names");
  FoundRows found(text, source.file);
  readShifts(table, areDashesMinus(table, survey.dashed, source.file), survey.areCodesNames, found, notes);
  return std::move(found).file(std::move(notes));
}

}  // namespace zorvela

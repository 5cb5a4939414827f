// Reads text with a line of column names: one row per shift, or one row per residue with a column per atom.
// The rows are read once; all of them together then decide how their labels are read and which are refused.
#include <algorithm>
#include <set>
#include <utility>

#include "formats/foreign_text.h"
#include "formats/format.h"
#include "formats/text/csv_cells.h"
#include "formats/text/csv_columns.h"
#include "formats/text/csv_rows.h"
#include "formats/text/csv_without_names.h"
#include "formats/text/found_rows.h"
#include "formats/text/residue_label.h"
#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kColumnsRemedy =
    "give NMR-STAR, NEF, the program's shift table, or text with a header line such as "
    "resid,resname,atom,shift";
constexpr const char* kOwnColumnsRemedy = "give names and numbers of residues in columns of their own";
constexpr const char* kCheckColumns = "check that each column has the values that its name promises";
// There may be a page of titles and comments above the column names.
constexpr std::size_t kMostLinesAbove = 50;

// --- Column names -------------------------------------------------------------------------------

[[noreturn]] void throwNoHeader(std::string_view line, std::size_t number, const CsvColumns& found,
                                const std::string& file) {
  const std::size_t start = line.find_first_not_of("# \t");
  const std::string shownLine = printable(trimmed(start == line.npos ? line : line.substr(start)), 60);
  const bool isPartly = found.shift != kNoColumn || found.atom != kNoColumn;
  throw FileError(file, number,
                  isPartly ? "the columns lack " + found.missing()
                           : "is not a known kind of shift file; it begins with \"" + shownLine + "\"",
                  kColumnsRemedy);
}

/// Returns the table below the first line that names enough columns, or one whose columns are clear without
/// names.
CsvTable findTable(std::string_view text, const std::string& file, std::vector<std::string>& notes) {
  std::size_t pos = 0;
  std::size_t line = 0;
  std::string_view first;
  std::size_t firstLine = 0;
  CsvColumns firstColumns;
  for (std::size_t above = 0; above < kMostLinesAbove; ++above) {
    const auto header = nextFilledLine(text, pos, line);
    if (!header) break;
    const auto layout = layoutOf(*header, text, pos, line);
    const CsvColumns columns = layout ? readColumns(layout->names) : CsvColumns();
    if (columns.areEnough()) {
      if (above > 0) notes.push_back(lineRange(firstLine, line - 1) + " above the column names ignored");
      return {*layout, columns};
    }
    if (above > 0) continue;
    first = *header;
    firstLine = line;
    firstColumns = columns;
  }
  const PlainTable plain = tableWithoutNames(text);
  if (plain.oddLine > 0)
    throw FileError(file, plain.oddLine, "is not like the rows above it, and the table has no column names",
                    "correct or remove this row, or add a line of column names");
  if (!plain.table) throwNoHeader(first, firstLine, firstColumns, file);
  notes.push_back("no column names; by their contents, the columns are " +
                  enumerated(plain.table->layout.names));
  return *plain.table;
}

// --- Rows ---------------------------------------------------------------------------------------

/// Rows or values with a fault: how many, and the first of them.
struct Tally {
  std::size_t count = 0;
  std::size_t line = 0;
  std::string first;

  void add(std::size_t atLine, const std::string& what) {
    if (count++ > 0) return;
    line = atLine;
    first = what;
  }
  bool areMostOf(std::size_t all) const { return count * 2 > all; }
};

/// Counts of the cells of a column.
struct ColumnContents {
  std::size_t filled = 0;
  std::size_t numbers = 0;
  std::size_t values = 0;      ///< of an atom column: cells that should be shifts
  std::size_t impossible = 0;  ///< of these: no numbers, or far from any shift of the atom
  std::string example;         ///< the first of these

  bool isWrong() const { return impossible * 2 > values; }
};

/// The parts of a residue label whose meaning is known only after all rows are read.
struct OpenLabel {
  char code = 0;         ///< a letter right after the number
  bool hasName = false;  ///< the name is in the same cell
  bool hasDash = false;
  bool isByCounter = false;        ///< the number may count the rows
  std::size_t column = kNoColumn;  ///< of the atom, where there is one row per residue
};

/// The rows as they are in the file.
struct CsvContents {
  explicit CsvContents(FoundRows none) : found(std::move(none)) {}

  FoundRows found;                ///< each `number` without code and sign; see `labels`
  std::vector<OpenLabel> labels;  ///< one for each shift
  std::vector<ColumnContents> columns;
  std::size_t rows = 0;
  std::size_t values = 0;         ///< of a table with one row per shift
  std::size_t splitDecimals = 0;  ///< rows whose shift seems to be cut at its comma
  Tally misfits;                  ///< rows with too few or too many cells
  Tally unplaced;                 ///< rows without a residue
  Tally twoLetters;               ///< rows with a letter on either side of the number
  Tally impossible;               ///< of `values`: those out of range for their atom
  LimitedNotes ignored{"lines ignored"};
};

class RowReader {
 public:
  RowReader(std::string_view wholeText, const CsvTable& csvTable, const std::string& name)
      : text(wholeText), table(csvTable), columns(csvTable.columns), contents(FoundRows(wholeText, name)) {}

  CsvContents read() {
    contents.columns.resize(table.layout.width());
    forEachRow(text, table.layout, [this](const CsvRow& row) {
      ++contents.rows;
      if (row.fault.empty())
        readRow(row);
      else
        ignore(row, row.fault, contents.misfits);
    });
    return std::move(contents);
  }

 private:
  void ignore(const CsvRow& row, const std::string& why, Tally& tally) {
    tally.add(row.line, why);
    contents.ignored.add("line " + std::to_string(row.line) + " ignored: " + why);
  }

  void readRow(const CsvRow& row) {
    const RowResidue residue = residueOf(row.cells, columns);
    if (!residue.unassigned.empty()) {
      contents.found.unassigned.add(residue.unassigned);
      return;
    }
    if (const std::string why = whyNotPlaced(residue, row.cells, columns); !why.empty()) {
      ignore(row, why, contents.unplaced);
      return;
    }
    const ResidueLabel& label = residue.label;
    if (!label.name.empty() && !label.code.empty())
      contents.twoLetters.add(row.line, label.name + label.number + label.code);
    for (std::size_t i = 0; i < row.cells.size(); ++i) countCell(row.cells[i], contents.columns[i]);
    if (columns.areLong()) {
      readLongRow(row, residue);
      return;
    }
    add(row, residue, {}, {});  // the residue is there, with shifts or without
    for (const AtomColumn& column : columns.atoms)
      if (!isNoValue(row.cells[column.column])) readAtomCell(row, residue, column);
  }

  static void countCell(const std::string& cell, ColumnContents& column) {
    if (isNoValue(cell)) return;
    ++column.filled;
    if (isNumber(cell)) ++column.numbers;
  }

  void readAtomCell(const CsvRow& row, const RowResidue& residue, const AtomColumn& column) {
    const std::string& value = row.cells[column.column];
    add(row, residue, value, column);
    if (isMissingNumber(value)) return;
    ColumnContents& held = contents.columns[column.column];
    ++held.values;
    if (!canBeShiftOf(column.atom, value) && held.impossible++ == 0) held.example = value;
  }

  void readLongRow(const CsvRow& row, const RowResidue& residue) {
    std::string atom = columns.atom != kNoColumn ? row.cells[columns.atom] : residue.label.atom;
    const std::optional<int> offset = takeOffset(atom);
    const std::string value = isNoValue(row.cells[columns.shift]) ? "" : row.cells[columns.shift];
    // A row without atom and value still names a residue.
    if (value.empty() && isNoValue(atom)) atom.clear();
    add(row, residue, value, {kNoColumn, atom, offset});
    if (isSplitDecimal(row)) ++contents.splitDecimals;
    if (value.empty() || isMissingNumber(value)) return;
    ++contents.values;
    if (!canBeShiftIn(residue.name, atom, value))
      contents.impossible.add(row.line, quotedCell(value) + " for " + printable(atom, 20));
  }

  /// Tells whether "52,4" may be cut at its comma, with the second half in a column that is not used.
  bool isSplitDecimal(const CsvRow& row) const {
    const std::size_t next = columns.shift + 1;
    if (table.layout.separator != Separator::comma || next >= row.cells.size() || columns.areUsing(next))
      return false;
    const auto isWhole = [](const std::string& cell) {
      return !cell.empty() && std::all_of(cell.begin(), cell.end(), isDigit);
    };
    return isWhole(row.cells[columns.shift]) && isWhole(row.cells[next]);
  }

  void add(const CsvRow& row, const RowResidue& residue, const std::string& value, const AtomColumn& column) {
    const ResidueLabel& label = residue.label;
    FileShift shift;
    shift.number = label.number;
    shift.offset = label.offset ? label.offset : column.offset;
    // The name beside a column "CA-1", or in a label "G12-1", is that of the residue with the number.
    if (!column.offset && !(label.offset && residue.name == label.name)) shift.residueName = residue.name;
    shift.atom = column.atom;
    shift.value = value;
    shift.line = row.line;
    contents.found.add(residue.chain, std::move(shift));
    contents.labels.push_back({label.code.empty() ? '\0' : label.code.front(), !label.name.empty(),
                               label.hasDash, residue.isByCounter, column.column});
  }

  std::string_view text;
  const CsvTable& table;
  const CsvColumns& columns;
  CsvContents contents;
};

// --- What the labels mean -----------------------------------------------------------------------

/// Tells whether the residues of each chain ascend, with each dash as a minus sign or not.
bool doNumbersAscend(const CsvContents& contents, bool isMinus) {
  std::vector<std::set<int>> chains(contents.found.chains.size());
  for (std::size_t i = 0; i < contents.found.shifts.size(); ++i) {
    const auto digits = toInteger(contents.found.shifts[i].number);
    if (!digits || !contents.labels[i].hasName) continue;
    const int number = isMinus && contents.labels[i].hasDash ? -*digits : *digits;
    std::set<int>& seen = chains[contents.found.shifts[i].chain];
    if (seen.insert(number).second && number != *seen.rbegin()) return false;
  }
  return true;
}

/// Tells whether the dash of labels such as "G-2" is a minus sign: it is one if the numbers ascend only then.
/// If every label has a dash (Gly-12), it is a separator. FileError where neither is certain.
bool areDashesMinus(const CsvContents& contents, const std::string& file) {
  const auto& labels = contents.labels;
  const auto hasDash = [](const OpenLabel& label) { return label.hasDash; };
  const auto dashed = std::find_if(labels.begin(), labels.end(), hasDash);
  if (dashed == labels.end()) return false;
  const bool isMinus = doNumbersAscend(contents, true);
  if (isMinus != doNumbersAscend(contents, false)) return isMinus;
  if (std::all_of(labels.begin(), labels.end(), hasDash)) return false;
  const FileShift& shift = contents.found.shifts[static_cast<std::size_t>(dashed - labels.begin())];
  throw FileError(file, shift.line,
                  "cannot tell whether \"-\" in " + quotedCell(shift.residueName + "-" + shift.number) +
                      " is a minus sign or a dash",
                  kOwnColumnsRemedy);
}

/// Tells whether the letters after residue numbers (82P) are names, not insertion codes: every row has one or
/// a longer name in the same cell (82PRO), and no other name.
bool areCodesNames(const CsvContents& contents) {
  for (std::size_t i = 0; i < contents.labels.size(); ++i) {
    const OpenLabel& label = contents.labels[i];
    if ((label.code != 0) == label.hasName) return false;
    const std::string& name = contents.found.shifts[i].residueName;
    if (label.code != 0 && !name.empty() &&
        polypeptideResidue(name).letter != polypeptideResidue(upper({&label.code, 1})).letter)
      return false;
  }
  return true;
}

/// Tells whether the only column of residue numbers counts the rows: it goes up by one in each, although the
/// atoms differ.
bool areRowsCounted(const CsvContents& contents) {
  constexpr std::size_t kFewestRows = 3;
  const auto& shifts = contents.found.shifts;
  if (shifts.size() < kFewestRows) return false;
  bool haveSeveralAtoms = false;
  for (std::size_t i = 0; i < shifts.size(); ++i) {
    if (!contents.labels[i].isByCounter) return false;
    if (i > 0 && nextNumber(shifts[i - 1].number) != shifts[i].number) return false;
    haveSeveralAtoms = haveSeveralAtoms || !equalIgnoringCase(shifts[i].atom, shifts.front().atom);
  }
  return haveSeveralAtoms;
}

/// "3 of 5"
std::string share(const Tally& tally, std::size_t all) {
  return std::to_string(tally.count) + " of " + std::to_string(all);
}

/// Throws FileError for a table whose columns are not certain.
void refuseDoubtful(const CsvContents& contents, const CsvColumns& columns, const std::string& file) {
  const Tally& misfits = contents.misfits;
  const Tally& unplaced = contents.unplaced;
  const std::size_t whole = contents.rows - misfits.count;
  if (misfits.areMostOf(contents.rows))
    throw FileError(
        file, misfits.line,
        "most rows (" + share(misfits, contents.rows) +
            ") do not fit the columns; the first: " + misfits.first,
        "give every row a cell for each column, an empty one where there is no shift, and numbers "
        "with a decimal point");
  if (unplaced.areMostOf(whole))
    throw FileError(file, unplaced.line,
                    "most rows (" + share(unplaced, whole) + ") name no residue" +
                        (columns.lackAtoms() ? " with its atom: " : ": ") + unplaced.first,
                    "is this a table of shifts? It needs columns resid, resname, atom and shift");
  if (contents.twoLetters.areMostOf(whole - unplaced.count))
    throw FileError(
        file, contents.twoLetters.line,
        "cannot tell which letter of " + quotedCell(contents.twoLetters.first) + " names the residue",
        kOwnColumnsRemedy);
  if (columns.areLong() && areRowsCounted(contents))
    throw FileError(file, 0, "the only column of numbers besides the shifts counts the rows",
                    "add a column of residue numbers (resid)");
  constexpr std::size_t kFewestSplit = 3;
  if (contents.splitDecimals >= kFewestSplit && contents.splitDecimals == whole - unplaced.count)
    throw FileError(file, 0, "the shifts seem to be cut at their decimal commas",
                    "write decimal points, or semicolons between the columns");
  if (contents.impossible.areMostOf(contents.values))
    throw FileError(file, contents.impossible.line,
                    "most values (" + share(contents.impossible, contents.values) +
                        ") are out of range for their atoms, such as " + contents.impossible.first,
                    kCheckColumns);
}

// --- What is kept -------------------------------------------------------------------------------

/// Returns the name of a column for messages.
std::string titleOf(std::size_t column, const CsvTable& table) {
  const std::string& name = table.layout.names[column];
  return name.empty() ? std::to_string(column + 1) + " (without a name)" : printable(name, 40);
}

/// Notes the columns that are not used: atom columns whose values are mostly out of range (secondary shifts,
/// other atoms), and other columns of numbers.
void noteColumns(const CsvContents& contents, const CsvTable& table, const std::string& file,
                 std::vector<std::string>& notes) {
  const CsvColumns& columns = table.columns;
  if (!columns.doubled.empty())
    notes.push_back("more than one column for " + enumerated(columns.doubled) + ": none of them is used");
  std::vector<std::string> wrong;
  for (const AtomColumn& one : columns.atoms)
    if (const ColumnContents& held = contents.columns[one.column]; held.isWrong())
      wrong.push_back("column " + titleOf(one.column, table) + " ignored: " +
                      std::to_string(held.impossible) + " of its " + std::to_string(held.values) +
                      " values are out of range for " + one.atom + ", such as " + quotedCell(held.example));
  if (!wrong.empty() && wrong.size() == columns.atoms.size())
    throw FileError(file, 0, "no column holds shifts of its atom: " + wrong.front(), kCheckColumns);
  notes.insert(notes.end(), wrong.begin(), wrong.end());
  const bool isCounterUsed = std::any_of(contents.labels.begin(), contents.labels.end(),
                                         [](const OpenLabel& label) { return label.isByCounter; });
  std::vector<std::string> others;
  for (std::size_t i = 0; i < contents.columns.size(); ++i) {
    const ColumnContents& held = contents.columns[i];
    const bool isUsed = columns.areUsing(i) || (isCounterUsed && i == columns.counter);
    if (held.numbers > 0 && held.numbers * 2 >= held.filled && !isUsed) others.push_back(titleOf(i, table));
  }
  if (!others.empty()) notes.push_back("columns of numbers that are not used: " + enumerated(others));
}

/// Settles numbers with their signs and codes, and names that look like codes.
void settleLabels(CsvContents& contents, const std::string& file) {
  const bool isMinus = areDashesMinus(contents, file);
  const bool isName = areCodesNames(contents);
  for (std::size_t i = 0; i < contents.found.shifts.size(); ++i) {
    FileShift& shift = contents.found.shifts[i];
    const OpenLabel& label = contents.labels[i];
    if (isMinus && label.hasDash && shift.number != "0") shift.number.insert(0, 1, '-');
    if (label.code != 0 && !isName) shift.number += label.code;
    if (label.code != 0 && isName && !shift.offset && shift.residueName.empty())
      shift.residueName = label.code;
    shift.key = shift.number;
  }
}

/// Removes the shifts of wrong columns, and values out of range for their atom.
void dropImpossible(CsvContents& contents, std::vector<std::string>& notes) {
  LimitedNotes impossible("values ignored");
  std::size_t kept = 0;
  for (std::size_t i = 0; i < contents.found.shifts.size(); ++i) {
    FileShift& shift = contents.found.shifts[i];
    const std::size_t column = contents.labels[i].column;
    if (column != kNoColumn) {
      if (contents.columns[column].isWrong()) continue;
      if (isNumber(shift.value) && !isMissingNumber(shift.value) &&
          !canBeShiftIn(shift.residueName, shift.atom, shift.value)) {
        impossible.add("line " + std::to_string(shift.line) + ": " + shift.atom + " " +
                       printable(shift.value, 20) + " of residue " + shift.number +
                       " is out of range, ignored; is it in the wrong column?");
        continue;
      }
    }
    if (kept != i) contents.found.shifts[kept] = std::move(shift);
    ++kept;
  }
  contents.found.shifts.resize(kept);
  impossible.appendTo(notes);
}

/// Writes numbers with a decimal point.
void writePoints(std::vector<FileShift>& shifts, std::vector<std::string>& notes) {
  bool hasComma = false;
  for (FileShift& shift : shifts) {
    std::string value = valueText(shift.value);
    hasComma = hasComma || value != withLatinLetters(shift.value);
    shift.value = std::move(value);
  }
  if (hasComma) notes.push_back("decimal commas read as points");
}

}  // namespace

bool isCsv(const Source& source) {
  return !source.star;
}

ShiftFile readCsv(const Source& source) {
  refuseForeignText(source.text, source.file);
  const bool hasQuotes = contains(source.text, "\"");
  const std::string joined = hasQuotes ? withQuotedLinesJoined(source.text) : std::string();
  const std::string& text = hasQuotes ? joined : source.text;
  std::vector<std::string> notes;
  CsvTable table = findTable(text, source.file, notes);
  findPlaces(text, table.layout);
  CsvContents contents = RowReader(text, table, source.file).read();
  refuseDoubtful(contents, table.columns, source.file);
  contents.ignored.appendTo(notes);
  contents.found.unassigned.appendTo(notes);
  noteColumns(contents, table, source.file, notes);
  if (table.layout.isByPlace) notes.push_back("rows with gaps read by the places of the column names");
  settleLabels(contents, source.file);
  writePoints(contents.found.shifts, notes);
  dropImpossible(contents, notes);
  return std::move(contents.found).file(std::move(notes));
}

}  // namespace zorvela

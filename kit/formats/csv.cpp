// Reads text with a line of column names: one row per shift, or one row per residue with a column per atom.
// The text is gone through twice: a survey of what the columns hold, which decides how labels are read and
// what is refused, and then the rows themselves.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "ZORVELA.h"
#include "formats/csv_cells.h"
#include "formats/csv_columns.h"
#include "formats/csv_rows.h"
#include "formats/csv_without_names.h"
#include "formats/foreign_text.h"
#include "formats/format.h"
#include "formats/residue_label.h"
#include "protein/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kColumnsRemedy =
    "give NMR-STAR, NEF, the program's shift table, or text with a header line such as "
    "resid,resname,atom,shift";
constexpr const char* kCellsRemedy =
    "give every row a cell for each column, an empty one where there is no shift, and numbers with a decimal "
    "point";
// A title or a comment may stand above the column names, but no more than a page of it.
constexpr std::size_t kMostLinesAbove = 50;
// Longer names would fill every row of a report.
constexpr std::size_t kLongestChainName = 200;

/// 0, 999 and above: what programs write for a shift that is missing.
bool isMissingMark(const std::string& value) {
  const auto number = toDecimal(valueText(value));
  const double ppm = number ? std::strtod(number->c_str(), nullptr) : 1;
  return ppm == 0 || std::abs(ppm) >= kMissingBound;
}

// --- The residue of a row -------------------------------------------------------------------------

/// What the cells of a row say of its residue.
struct RowResidue {
  ResidueLabel label;  ///< of the cell that gives the number
  std::string name;
  std::string atom;        ///< of an assignment
  std::string chain;       ///< by its column or by a label
  std::string strayLabel;  ///< one that names another chain
  bool isByCounter = false;
};

const std::string& cellAt(const std::vector<std::string>& cells, std::size_t column) {
  static const std::string kNone;
  return column < cells.size() ? cells[column] : kNone;
}

/// The columns that may give the number of a residue, in order of trust.
std::vector<std::size_t> numberSources(const CsvColumns& columns) {
  std::vector<std::size_t> sources = {columns.number, columns.assignment};
  sources.insert(sources.end(), columns.residues.begin(), columns.residues.end());
  sources.push_back(columns.name);
  sources.push_back(columns.counter);
  return sources;
}

/// The same for its name.
std::vector<std::size_t> nameSources(const CsvColumns& columns) {
  std::vector<std::size_t> sources = {columns.name};
  sources.insert(sources.end(), columns.residues.begin(), columns.residues.end());
  sources.insert(sources.end(), {columns.assignment, columns.number, columns.counter});
  return sources;
}

void takeChain(const ResidueLabel& label, const std::string& cell, RowResidue& residue) {
  if (label.chain.empty()) return;
  if (residue.chain.empty()) residue.chain = label.chain;
  if (residue.chain != label.chain) residue.strayLabel = cell;
}

void findNumber(const std::vector<std::string>& cells, const CsvColumns& columns, RowResidue& residue) {
  for (const std::size_t column : numberSources(columns)) {
    if (column == kNoColumn) continue;
    const bool isAssignment = column == columns.assignment;
    auto label = readLabel(cellAt(cells, column), isAssignment);
    if (!label || label->number.empty()) continue;
    residue.label = std::move(*label);
    residue.isByCounter = column == columns.counter;
    if (isAssignment) residue.atom = residue.label.atom;
    takeChain(residue.label, cellAt(cells, column), residue);
    return;
  }
}

void findName(const std::vector<std::string>& cells, const CsvColumns& columns, RowResidue& residue) {
  for (const std::size_t column : nameSources(columns)) {
    const std::string& cell = cellAt(cells, column);
    if (cell.empty()) continue;
    const auto label = readLabel(cell, column == columns.assignment);
    if (label && !label->name.empty() && (label->number.empty() || label->number == residue.label.number)) {
      residue.name = label->name;
      takeChain(*label, cell, residue);
      return;
    }
    // A name that is not known stays as it is, where the number is known without it.
    const bool mayBeName =
        column == columns.name ||
        std::find(columns.residues.begin(), columns.residues.end(), column) != columns.residues.end();
    if (mayBeName && (!label || label->number != residue.label.number)) {
      residue.name = cell;
      return;
    }
  }
}

RowResidue residueOf(const std::vector<std::string>& cells, const CsvColumns& columns) {
  RowResidue residue;
  residue.chain = cellAt(cells, columns.chain);
  findNumber(cells, columns, residue);
  findName(cells, columns, residue);
  return residue;
}

// --- The survey -----------------------------------------------------------------------------------

/// What a column holds.
struct ColumnContents {
  std::size_t filled = 0;
  std::size_t numbers = 0;
  std::size_t values = 0;      ///< of an atom column: cells that should be shifts
  std::size_t impossible = 0;  ///< of these: no numbers, or far from any shift of the atom
  std::string example;         ///< the first of these
};

/// How many of something were looked at, and how many of them will not do.
struct Refusals {
  std::size_t looked = 0;
  std::size_t refused = 0;
  std::size_t line = 0;  ///< of the first
  std::string first;

  /// `why` gives the reason as text; only the first is asked for.
  template <class Why>
  void add(bool isRefused, std::size_t atLine, const Why& why) {
    ++looked;
    if (isRefused && refused++ == 0) {
      line = atLine;
      first = why();
    }
  }
  bool areMost() const { return refused * 2 > looked; }
};

/// The suffix letters of residue numbers ("82P"): names where every row has one, or a longer name in the same
/// cell ("82PRO"); else insertion codes.
struct NumberCodes {
  bool isAny = false;
  bool areAll = true;
  bool areNamed = false;  ///< some row has a name beside it
  bool areNames = true;   ///< that of the row, in all rows

  void add(const RowResidue& residue) {
    const std::string& code = residue.label.code;
    isAny = isAny || !code.empty();
    areAll = areAll && code.empty() != residue.label.name.empty();  // P52A has an insertion code
    if (residue.name.empty() || !residue.label.name.empty()) return;
    areNamed = true;
    areNames = areNames && !code.empty() &&
               polypeptideResidue(residue.name).letter == polypeptideResidue(upper(code)).letter;
  }
  bool standForNames() const { return isAny && areAll && (!areNamed || areNames); }
};

/// A column of numbers that goes up by one in each row: a residue has one row only if the table has one
/// atom only.
struct RowCounter {
  bool isSteady = true;
  std::size_t rows = 0;
  std::optional<int> last;
  std::unordered_set<std::string> atoms;

  void add(const RowResidue& residue, const std::string& atom) {
    const auto number = toInteger(residue.label.number);
    isSteady =
        isSteady && residue.isByCounter && number && (!last || *number == static_cast<long>(*last) + 1);
    last = number;
    ++rows;
    constexpr std::size_t kEnough = 2;
    if (atoms.size() < kEnough) atoms.insert(upper(atom));
  }
  bool countsRows() const { return isSteady && rows > 2 && atoms.size() > 1; }
};

/// All that decides how the rows are read.
struct Survey {
  std::vector<ColumnContents> columns;
  Refusals cells;     ///< rows by their number of cells
  Refusals residues;  ///< rows by their residue
  Refusals shifts;    ///< of a table with one row per shift
  DashMeaning dashes;
  std::string dashed;  ///< the first label with a dash
  NumberCodes codes;
  Refusals letters;  ///< rows with a letter on either side of the residue number
  RowCounter counter;
  std::size_t splitDecimals = 0;  ///< rows with whole numbers for shift and in the next column
  bool isCutShort = false;        ///< the first rows were enough to refuse the table
};

std::string quoted(const std::string& text) {
  constexpr std::size_t kLongest = 40;
  return "\"" + printable(text, kLongest) + "\"";
}

class CsvReader {
 public:
  CsvReader(std::string_view wholeText, const std::string& name) : text(wholeText), fileName(name) {
    file.lists.emplace_back();
  }

  ShiftFile read() {
    if (const auto foreign = foreignText(text))
      throw FileError(fileName, foreign->line, "is no shift file but " + foreign->what,
                      "give the file with the chemical shifts");
    findTable();
    findPlaces(text, layout);
    look();
    refuseDoubtful();
    leaveOutColumns();
    file.lists[0].shifts.reserve(shifts);
    forEachRow(text, layout, [this](const CsvRow& row) {
      readRow(row);
      return Rows::goOn;
    });
    nameResidues();
    addNotes();
    return std::move(file);
  }

 private:
  // --- Column names ---------------------------------------------------------------------------

  /// The first line that names enough columns, or columns that are plain without.
  void findTable() {
    std::size_t pos = 0;
    std::size_t line = 0;
    std::size_t firstLine = 0;
    std::string first;
    CsvColumns firstColumns;
    for (std::size_t above = 0; above < kMostLinesAbove; ++above) {
      const auto header = nextFilledLine(text, pos, line);
      if (!header) break;
      const auto found = layoutOf(*header, text, pos, line);
      const CsvColumns named = found ? readColumns(found->names) : CsvColumns();
      if (named.areEnough()) {
        layout = *found;
        columns = named;
        if (above > 0) noteLinesAbove(firstLine, line - 1);
        return;
      }
      if (above > 0) continue;
      firstLine = line;
      const std::size_t start = header->find_first_not_of("# \t");
      first = printable(trimmed(header->substr(start == std::string::npos ? 0 : start)), 60);
      firstColumns = named;
    }
    if (const auto plain = tableWithoutNames(text)) {
      layout = plain->layout;
      columns = plain->columns;
      file.notes.push_back("no column names: by what the columns hold, they are " + plainOrder());
      return;
    }
    throwNoHeader(first, firstLine, firstColumns);
  }

  /// "residue number, residue name, atom, shift" in the file's order.
  std::string plainOrder() const {
    std::vector<std::string> names(layout.width());
    const auto set = [&names](std::size_t column, const char* name) {
      if (column < names.size()) names[column] = name;
    };
    set(columns.counter, "residue number");
    set(columns.name, "residue name");
    for (const std::size_t column : columns.residues) set(column, "residue");
    set(columns.assignment, "residue with atom");
    set(columns.atom, "atom");
    set(columns.shift, "shift");
    return enumerated(names);
  }

  void noteLinesAbove(std::size_t first, std::size_t last) {
    file.notes.push_back((first == last ? "line " + std::to_string(first)
                                        : "lines " + std::to_string(first) + " to " + std::to_string(last)) +
                         " above the column names not used");
  }

  [[noreturn]] void throwNoHeader(const std::string& line, std::size_t number,
                                  const CsvColumns& found) const {
    const bool isPartly = found.shift != kNoColumn || found.atom != kNoColumn;
    throw FileError(fileName, number,
                    isPartly ? "the columns lack " + found.missing()
                             : "is no shift file that is known; it begins with \"" + line + "\"",
                    kColumnsRemedy);
  }

  // --- Survey ---------------------------------------------------------------------------------

  void countShifts(std::size_t more, std::size_t line) {
    shifts += more;
    if (shifts > mostShiftRows(text.size()))
      throw FileError(fileName, line,
                      "is beyond the first " + std::to_string(mostShiftRows(text.size())) + " shifts",
                      "split it into one file per protein");
  }

  void look() {
    survey.columns.resize(layout.width());
    forEachRow(text, layout, [this](const CsvRow& row) {
      survey.cells.add(!row.fault.empty(), row.line, [&row] { return row.fault; });
      if (row.fault.empty()) lookAt(row);
      survey.isCutShort = areMostForCertain();
      return survey.isCutShort ? Rows::stop : Rows::goOn;
    });
  }

  /// Whether the rows that will not do are more than half of all, however many shifts follow.
  bool areMostForCertain() const {
    const std::size_t most = mostShiftRows(text.size());
    return survey.residues.refused > most || survey.cells.refused > 2 * most;
  }

  /// "3 of 5"
  std::string share(const Refusals& rows) const {
    return std::to_string(rows.refused) + " of " + (survey.isCutShort ? "the first " : "") +
           std::to_string(rows.looked);
  }

  void lookAt(const CsvRow& row) {
    const RowResidue residue = residueOf(row.cells, columns);
    survey.residues.add(!isPlaced(residue), row.line, [&] { return whyNotPlaced(residue, row.cells); });
    if (!isPlaced(residue)) return;
    countShifts(1, row.line);
    survey.dashes.add(residue.chain, residue.label);
    if (residue.label.hasDash && survey.dashed.empty())
      survey.dashed = residue.label.name + "-" + residue.label.number;
    survey.codes.add(residue);
    survey.letters.add(!residue.label.name.empty() && !residue.label.code.empty(), row.line,
                       [&residue] { return residue.label.name + residue.label.number + residue.label.code; });
    for (std::size_t i = 0; i < row.cells.size(); ++i) lookAtCell(row.cells[i], survey.columns[i]);
    for (const auto& [column, atom] : columns.atoms) lookAtShift(row, column, atom);
    if (columns.areLong()) lookAtLongRow(row, residue);
  }

  static void lookAtCell(const std::string& cell, ColumnContents& contents) {
    if (isNoValue(cell)) return;
    ++contents.filled;
    if (isNumber(cell)) ++contents.numbers;
  }

  void lookAtShift(const CsvRow& row, std::size_t column, const std::string& atom) {
    const std::string& value = row.cells[column];
    if (isNoValue(value)) return;
    countShifts(1, row.line);
    if (isMissingMark(value)) return;
    ColumnContents& contents = survey.columns[column];
    ++contents.values;
    if (!canBeShiftOf(atom, value) && contents.impossible++ == 0) contents.example = value;
  }

  void lookAtLongRow(const CsvRow& row, const RowResidue& residue) {
    const std::string& atom = columns.atom != kNoColumn ? row.cells[columns.atom] : residue.atom;
    const std::string& value = row.cells[columns.shift];
    survey.counter.add(residue, atom);
    if (isSplitDecimal(row)) ++survey.splitDecimals;
    if (isNoValue(value) || isMissingMark(value)) return;
    survey.shifts.add(!isPossible(residue.name, atom, value), row.line,
                      [&] { return quoted(value) + " for " + printable(atom, 20); });
  }

  static bool isPossible(const std::string& residue, const std::string& atom, const std::string& value) {
    if (!isNumber(value)) return false;
    const AtomReading reading = readAtom(polypeptideResidue(residue).letter, atom);
    return reading.names[0] == nullptr || canBeShiftOf(reading.names[0], value);
  }

  /// "52,4" cut at its comma, with the second half in a column that nobody needs.
  bool isSplitDecimal(const CsvRow& row) const {
    const std::size_t next = columns.shift + 1;
    if (layout.separator != Separator::comma || next >= row.cells.size() || columns.areUsing(next))
      return false;
    const auto isDigits = [](const std::string& cell) {
      return !cell.empty() && std::all_of(cell.begin(), cell.end(), isDigit);
    };
    return isDigits(row.cells[columns.shift]) && isDigits(row.cells[next]);
  }

  /// Whether the row says which residue it is of, and of which chain, once, and, where that stands in the
  /// same cell, which atom.
  bool isPlaced(const RowResidue& residue) const {
    return !residue.label.number.empty() && !(lacksAtomColumn() && residue.atom.empty()) &&
           residue.strayLabel.empty();
  }

  bool lacksAtomColumn() const { return columns.areLong() && columns.atom == kNoColumn; }

  std::string whyNotPlaced(const RowResidue& residue, const std::vector<std::string>& cells) const {
    if (!residue.strayLabel.empty()) return quoted(residue.strayLabel) + " is of another chain than the row";
    const char* what = residue.label.number.empty() ? " is no residue number" : " names no atom";
    for (const std::size_t column : numberSources(columns))
      if (!cellAt(cells, column).empty()) return quoted(cellAt(cells, column)) + what;
    return quoted("") + what;
  }

  /// Refuses a table in which it is open what stands where.
  void refuseDoubtful() const {
    constexpr std::size_t kFewRows = 3;
    if (survey.cells.areMost())
      throw FileError(fileName, survey.cells.line,
                      "most rows (" + share(survey.cells) + ") do not fit the columns, the first by " +
                          survey.cells.first,
                      kCellsRemedy);
    if (survey.residues.areMost())
      throw FileError(fileName, survey.residues.line,
                      "most rows (" + share(survey.residues) + ") name no residue" +
                          (lacksAtomColumn() ? " with its atom: " : ": ") + survey.residues.first,
                      "is this a table of shifts? It needs columns resid, resname, atom and shift");
    if (survey.dashes.meaning() == Dash::unclear)
      throw FileError(fileName, 0,
                      "it is open whether " + quoted(survey.dashed) + " has a minus sign or a dash",
                      "give names and numbers of residues in columns of their own");
    if (survey.letters.areMost())
      throw FileError(fileName, survey.letters.line,
                      "it is open which letter of " + quoted(survey.letters.first) + " names the residue",
                      "give names and numbers of residues in columns of their own");
    if (survey.counter.countsRows())
      throw FileError(fileName, 0, "the only column of numbers beside the shifts counts the rows",
                      "add a column of residue numbers (resid)");
    if (survey.splitDecimals >= kFewRows && survey.splitDecimals == survey.residues.looked)
      throw FileError(fileName, 0, "the shifts seem to be cut at their decimal commas",
                      "write decimal points, or semicolons between the columns");
    if (survey.shifts.areMost())
      throw FileError(fileName, survey.shifts.line,
                      "most values (" + share(survey.shifts) +
                          ") can be no shifts of their atoms: " + survey.shifts.first,
                      "check that the columns hold what their names say");
  }

  /// An atom column whose values are mostly none of its shifts (secondary shifts, other atoms) is not used.
  void leaveOutColumns() {
    const std::size_t before = columns.atoms.size();
    const auto isWrong = [this](const auto& one) {
      const ColumnContents& contents = survey.columns[one.first];
      if (contents.impossible * 2 <= contents.values) return false;
      wrongColumns.push_back("column " + titleOf(one.first) +
                             " left out: " + std::to_string(contents.impossible) + " of its " +
                             std::to_string(contents.values) + " values can be no " + one.second +
                             " shifts, such as " + quoted(contents.example));
      return true;
    };
    auto& atoms = columns.atoms;
    atoms.erase(std::remove_if(atoms.begin(), atoms.end(), isWrong), atoms.end());
    if (before > 0 && atoms.empty())
      throw FileError(fileName, 0, "no column holds shifts of its atom: " + wrongColumns.front(),
                      "check that the columns hold what their names say");
  }

  /// How messages name a column.
  std::string titleOf(std::size_t column) const {
    const std::string& name = layout.names[column];
    return name.empty() ? std::to_string(column + 1) + " (without a name)" : printable(name, 40);
  }

  // --- Rows -----------------------------------------------------------------------------------

  void readRow(const CsvRow& row) {
    if (!row.fault.empty()) {
      addBadLine(row.line, row.fault);
      return;
    }
    const RowResidue residue = residueOf(row.cells, columns);
    if (!isPlaced(residue)) {
      addBadLine(row.line, whyNotPlaced(residue, row.cells));
      return;
    }
    FileShift shift;
    nameResidue(residue, shift);
    shift.line = row.line;
    shift.chain = chainOf(residue.chain, row.line);
    isCounterUsed = isCounterUsed || residue.isByCounter;
    if (columns.areLong())
      addShift(std::move(shift), columns.atom != kNoColumn ? row.cells[columns.atom] : residue.atom,
               row.cells[columns.shift]);
    else
      addAtomColumns(shift, row.cells);
  }

  void nameResidue(const RowResidue& residue, FileShift& shift) const {
    const ResidueLabel& label = residue.label;
    const bool isMinus = label.hasDash && survey.dashes.meaning() == Dash::minus && label.number != "0";
    const bool isCodeName = survey.codes.standForNames();
    shift.key = (isMinus ? "-" : "") + label.number + (isCodeName ? "" : label.code);
    shift.number = shift.key;
    shift.residueName = residue.name.empty() && isCodeName ? label.code : residue.name;
  }

  void addShift(FileShift row, const std::string& atom, const std::string& value) {
    row.atom = atom;
    if (!isNoValue(value)) {
      row.value = valueText(value);
      decimalCommas = decimalCommas || row.value != withLatinLetters(value);
    }
    // A row without atom and value still says that there is such a residue.
    if (row.value.empty() && isNoValue(atom)) row.atom.clear();
    addRow(std::move(row));
  }

  void addAtomColumns(const FileShift& row, const std::vector<std::string>& cells) {
    addRow(row);
    for (const auto& [column, atom] : columns.atoms) {
      const std::string& value = cells[column];
      if (isNoValue(value)) continue;
      if (isNumber(value) && !isMissingMark(value) && !isPossible(row.residueName, atom, value))
        impossible.add("line " + std::to_string(row.line) + ": " + printable(value, 20) +
                       " can be no shift of " + atom + " of residue " + row.number +
                       ", so perhaps of another column; left out");
      else
        addShift(row, atom, value);
    }
  }

  void addRow(FileShift row) { file.lists[0].shifts.push_back(std::move(row)); }

  std::size_t chainOf(const std::string& name, std::size_t line) {
    const auto [entry, isNew] = chainIndex.emplace(name, file.chains.size());
    if (isNew) {
      if (file.chains.size() == kMostListsOrChains)
        throw FileError(fileName, line, "has more than " + std::to_string(kMostListsOrChains) + " chains",
                        "check the column of chain names");
      file.chains.emplace_back();
      file.chains.back().name = printable(name, kLongestChainName);
      if (name.size() > kLongestChainName)
        file.notes.push_back("a chain name of " + std::to_string(name.size()) +
                             " bytes is cut: " + printable(name, 20));
    }
    return entry->second;
  }

  void addBadLine(std::size_t line, const std::string& what) {
    badLines.add("line " + std::to_string(line) + " left out: " + what);
  }

  // --- Names ----------------------------------------------------------------------------------

  /// One-letter names become three-letter ones. A lower-case c is a disulfide cysteine, but not in a file
  /// that writes all its letters in lower case.
  void nameResidues() {
    auto& rows = file.lists[0].shifts;
    bool isNamed = false;
    bool hasUpperLetter = false;
    for (const FileShift& row : rows) {
      isNamed = isNamed || !row.residueName.empty();
      const bool isLetter = row.residueName.size() == 1;
      hasUpperLetter = hasUpperLetter || (isLetter && row.residueName[0] >= 'A' && row.residueName[0] <= 'Z');
    }
    if (!rows.empty() && !isNamed)
      throw FileError(fileName, 0, "the rows have no residue names",
                      "add a column resname with one- or three-letter names");
    for (FileShift& row : rows)
      if (row.residueName.size() == 1) row.residueName = nameOfLetter(row.residueName, hasUpperLetter);
  }

  static std::string nameOfLetter(const std::string& letter, bool isCaseKept) {
    const bool isDisulfide = isCaseKept && letter.front() == kDisulfideCysteine;
    const std::string name = threeLetterName(isDisulfide ? kDisulfideCysteine : upper(letter).front());
    return name.empty() ? letter : name;
  }

  // --- Notes ----------------------------------------------------------------------------------

  bool isUsed(std::size_t column) const {
    return columns.areUsing(column) || (isCounterUsed && column == columns.counter);
  }

  /// Numbers that look like data and are not used.
  void noteOtherColumns() {
    std::vector<std::string> others;
    for (std::size_t i = 0; i < survey.columns.size(); ++i) {
      const ColumnContents& contents = survey.columns[i];
      const bool isWrong = contents.impossible * 2 > contents.values;  // has a note of its own
      if (contents.numbers > 0 && contents.numbers * 2 >= contents.filled && !isUsed(i) && !isWrong)
        others.push_back(titleOf(i));
    }
    if (!others.empty()) file.notes.push_back("columns of numbers that are not used: " + enumerated(others));
  }

  void addNotes() {
    badLines.appendTo(file.notes);
    if (!columns.doubled.empty())
      file.notes.push_back("more than one column for " + enumerated(columns.doubled) +
                           ": none of them is used");
    file.notes.insert(file.notes.end(), wrongColumns.begin(), wrongColumns.end());
    noteOtherColumns();
    if (layout.isByPlace) file.notes.push_back("rows with gaps read by where the column names stand");
    if (decimalCommas) file.notes.push_back("decimal commas read as points");
    impossible.appendTo(file.notes);
  }

  std::string_view text;
  std::string fileName;
  CsvLayout layout;
  CsvColumns columns;
  Survey survey;
  std::size_t shifts = 0;  ///< or rows that only name a residue
  ShiftFile file;
  std::unordered_map<std::string, std::size_t> chainIndex;
  std::vector<std::string> wrongColumns;
  bool decimalCommas = false;
  bool isCounterUsed = false;
  LimitedNotes badLines{"lines left out"};
  LimitedNotes impossible{"values left out"};
};

}  // namespace

bool isCsv(const Source& source) {
  return !source.star;
}

ShiftFile readCsv(const Source& source) {
  return CsvReader(source.text, source.file).read();
}

}  // namespace zorvela

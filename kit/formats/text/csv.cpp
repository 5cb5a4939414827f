// Reads text with a line of column names: one row per shift, or one row per residue with a column per atom.
// The text is gone through twice: a survey of what the columns hold, which decides how labels are read and
// what is refused, and then the rows themselves.
#include <algorithm>
#include <unordered_map>
#include <utility>

#include "formats/foreign_text.h"
#include "formats/format.h"
#include "formats/text/csv_cells.h"
#include "formats/text/csv_columns.h"
#include "formats/text/csv_residue.h"
#include "formats/text/csv_rows.h"
#include "formats/text/csv_survey.h"
#include "formats/text/csv_without_names.h"
#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kColumnsRemedy =
    "give NMR-STAR, NEF, the program's shift table, or text with a header line such as "
    "resid,resname,atom,shift";
// A title or a comment may stand above the column names, but no more than a page of it.
constexpr std::size_t kMostLinesAbove = 50;

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
    survey = surveyOf(text, layout, columns, fileName);
    refuseDoubtful(survey, columns, fileName);
    leaveOutColumns();
    file.lists[0].shifts.reserve(survey.shiftCount);
    forEachRow(text, layout, [this](const CsvRow& row) { readRow(row); });
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

  // --- Columns that are not used --------------------------------------------------------------

  /// An atom column whose values are mostly none of its shifts (secondary shifts, other atoms) is not used.
  void leaveOutColumns() {
    const std::size_t before = columns.atoms.size();
    const auto isWrong = [this](const auto& one) {
      const ColumnContents& contents = survey.columns[one.first];
      if (contents.impossible * 2 <= contents.values) return false;
      wrongColumns.push_back("column " + titleOf(one.first) +
                             " left out: " + std::to_string(contents.impossible) + " of its " +
                             std::to_string(contents.values) + " values can be no " + one.second +
                             " shifts, such as " + quotedCell(contents.example));
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
    if (!isPlaced(residue, columns)) {
      addBadLine(row.line, whyNotPlaced(residue, row.cells, columns));
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
      if (isNumber(value) && !isMissingNumber(value) && !canBeShiftIn(row.residueName, atom, value))
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
      checkLimit(file.chains.size() + 1, limits::kNamedChains, fileName, line);
      file.chains.emplace_back();
      file.chains.back().name = printable(nameOf(name, file.notes), kLongestName + 3);
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
  CsvSurvey survey;
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

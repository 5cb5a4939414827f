// Reads text with a line of column names: one row per shift, or one row per residue with a column per atom.
#include <algorithm>
#include <unordered_map>
#include <utility>

#include "formats/csv_columns.h"
#include "formats/format.h"
#include "protein/nomenclature.h"
#include "util/delimited_text.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kColumnsRemedy =
    "give NMR-STAR, NEF, the program's shift table, or text with a header line such as "
    "resid,resname,atom,shift";
// A title or a comment may stand above the column names, but no more than a page of it.
constexpr std::size_t kMostLinesAbove = 50;

/// What people write for a value that is not there.
bool isNoValue(const std::string& cell) {
  const std::string text = lower(cell);
  return text.empty() || text == "-" || text == "--" || text == "." || text == "?" || text == "na" ||
         text == "n/a" || text == "nan" || text == "none" || text == "null" || text == "nd" ||
         text == "n.d." || text == "n.a." || text == "*";
}

/// A residue number as a spreadsheet writes it: "12.0" is 12.
std::string tidyNumber(std::string cell) {
  const std::size_t dot = cell.find('.');
  if (dot != std::string::npos && dot > 0 && cell.find_first_not_of('0', dot + 1) == std::string::npos)
    cell.resize(dot);
  if (const auto number = toInteger(cell)) return std::to_string(*number);
  return cell;
}

struct ResidueCell {
  std::string number;
  std::string name;
};

/// "12", "12A", "G12", "Gly-12", "Gly".
ResidueCell readResidueCell(const std::string& cell) {
  if (cell.empty() || !isLetter(cell.front())) return {tidyNumber(cell), ""};
  const std::size_t digits = cell.find_first_of("0123456789");
  if (digits == std::string::npos) return {"", cell};
  std::size_t end = digits;
  while (end > 0 && !isLetter(cell[end - 1])) --end;
  return {tidyNumber(cell.substr(digits)), cell.substr(0, end)};
}

class CsvReader {
 public:
  CsvReader(std::string_view wholeText, const std::string& name) : text(wholeText), fileName(name) {
    file.lists.emplace_back();
  }

  ShiftFile read() {
    readHeader();
    while (const auto line = nextLine(text, pos)) {
      ++lineNumber;
      readRow(*line);
    }
    nameResidues();
    addNotes();
    return std::move(file);
  }

 private:
  // --- Header ---------------------------------------------------------------------------------

  /// The first line that names enough columns; a "#" in front of it does not count.
  void readHeader() {
    std::string firstLine;
    std::size_t firstLineNumber = 0;
    CsvColumns firstColumns;
    for (std::size_t above = 0; above < kMostLinesAbove;) {
      const auto line = nextLine(text, pos);
      if (!line) break;
      ++lineNumber;
      const std::string_view core = withoutMark(*line);
      if (core.empty()) continue;
      separator = separatorOf(core);
      const auto cells = splitCells(core, separator);
      if (cells) columns = readColumns(*cells);
      if (cells && columns.areEnough()) {
        if (above > 0) noteLinesAbove(firstLineNumber);
        return;
      }
      if (above++ > 0) continue;
      firstLine = printable(core, 60);
      firstLineNumber = lineNumber;
      firstColumns = columns;
    }
    throwNoHeader(firstLine, firstLineNumber, firstColumns);
  }

  static std::string_view withoutMark(std::string_view line) {
    line = trimmed(line);
    while (!line.empty() && line.front() == '#') line.remove_prefix(1);
    return trimmed(line);
  }

  void noteLinesAbove(std::size_t first) {
    const std::size_t last = lineNumber - 1;
    file.notes.push_back((first == last ? "line " + std::to_string(first)
                                        : "lines " + std::to_string(first) + " to " + std::to_string(last)) +
                         " above the column names not used");
  }

  [[noreturn]] void throwNoHeader(const std::string& line, std::size_t number,
                                  const CsvColumns& found) const {
    if (line.empty()) throw FileError(fileName, 0, "holds nothing but blank lines", kColumnsRemedy);
    const bool isPartly = found.shift != kNoColumn || found.atom != kNoColumn;
    throw FileError(fileName, number,
                    isPartly ? "the columns lack " + found.missing()
                             : "is no shift file that is known; it begins with \"" + line + "\"",
                    kColumnsRemedy);
  }

  // --- Rows -----------------------------------------------------------------------------------

  void readRow(std::string_view line) {
    const std::string_view core = trimmed(line);
    if (core.empty() || core.front() == '#') return;
    // Outer tabs are cells; outer blanks are not.
    const auto cells = splitCells(separator == Separator::tab ? line : core, separator);
    if (!cells) {
      addBadLine("a double quote is not closed");
      return;
    }
    if (std::all_of(cells->begin(), cells->end(), [](const std::string& cell) { return cell.empty(); }))
      return;
    FileShift row = readResidue(*cells);
    if (!readResidueNumber(row.key)) {
      const std::string cell = row.key.empty() ? cellAt(*cells, columns.number) : row.key;
      addBadLine("\"" + printable(cell, 30) + "\" is no residue number");
      return;
    }
    row.chain = chainOf(cellAt(*cells, columns.chain));
    row.line = lineNumber;
    if (columns.atom != kNoColumn && columns.shift != kNoColumn)
      addShift(std::move(row), cellAt(*cells, columns.atom), cellAt(*cells, columns.shift));
    else
      addAtomColumns(row, *cells);
  }

  static std::string cellAt(const std::vector<std::string>& cells, std::size_t column) {
    return column < cells.size() ? cells[column] : std::string();
  }

  FileShift readResidue(const std::vector<std::string>& cells) const {
    FileShift row;
    row.residueName = cellAt(cells, columns.name);
    const ResidueCell own = readResidueCell(cellAt(cells, columns.number));
    row.key = own.number;
    if (row.residueName.empty()) row.residueName = own.name;
    for (const std::size_t column : columns.residues) {
      const ResidueCell cell = readResidueCell(cellAt(cells, column));
      if (row.key.empty()) row.key = cell.number;
      if (row.residueName.empty()) row.residueName = cell.name;
    }
    row.number = row.key;
    return row;
  }

  void addShift(FileShift row, const std::string& atom, const std::string& value) {
    row.atom = atom;
    if (!isNoValue(value)) row.value = withPoint(value);
    // A row without atom and value still says that there is such a residue.
    if (row.value.empty() && isNoValue(atom)) row.atom.clear();
    addRow(std::move(row));
  }

  void addAtomColumns(const FileShift& row, const std::vector<std::string>& cells) {
    addRow(row);
    for (const auto& [column, atom] : columns.atoms) {
      const std::string value = cellAt(cells, column);
      if (!isNoValue(value)) addShift(row, atom, value);
    }
  }

  void addRow(FileShift row) {
    if (file.lists[0].shifts.size() == kMostShiftRows)
      throw FileError(fileName, lineNumber,
                      "is beyond the first " + std::to_string(kMostShiftRows) + " shifts",
                      "split it into one file per protein");
    file.lists[0].shifts.push_back(std::move(row));
  }

  /// A decimal comma as a point, where commas do not part the cells.
  std::string withPoint(std::string value) {
    const std::size_t comma = value.find(',');
    if (comma == std::string::npos || value.find('.') != std::string::npos) return value;
    value[comma] = '.';
    decimalCommas = true;
    return value;
  }

  std::size_t chainOf(const std::string& name) {
    const auto [entry, isNew] = chainIndex.emplace(name, file.chains.size());
    if (isNew) {
      if (file.chains.size() == kMostListsOrChains)
        throw FileError(fileName, lineNumber,
                        "has more than " + std::to_string(kMostListsOrChains) + " chains",
                        "check the column of chain names");
      file.chains.emplace_back();
      file.chains.back().name = name;
    }
    return entry->second;
  }

  void addBadLine(const std::string& what) {
    badLines.add("line " + std::to_string(lineNumber) + " left out: " + what);
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

  void addNotes() {
    badLines.appendTo(file.notes);
    if (decimalCommas) file.notes.push_back("decimal commas read as points");
  }

  std::string_view text;
  std::string fileName;
  std::size_t pos = 0;
  std::size_t lineNumber = 0;
  Separator separator = Separator::comma;
  CsvColumns columns;
  ShiftFile file;
  std::unordered_map<std::string, std::size_t> chainIndex;
  bool decimalCommas = false;
  LimitedNotes badLines{"lines left out"};
};

}  // namespace

bool isCsv(const Source& source) {
  return !source.star;
}

ShiftFile readCsv(const Source& source) {
  return CsvReader(source.text, source.file).read();
}

}  // namespace zorvela

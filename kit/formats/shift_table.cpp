// Reads the program's own shift table, through the program's own reader.
#include <algorithm>
#include <array>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "GDB.h"
#include "formats/format.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// Far more than the longest protein has; the program's table keeps every cell as a text.
constexpr std::size_t kMostTableRows = 100000;
// Each takes some 100 bytes there, and three times as much in the names of the columns.
constexpr std::size_t kCellsOfAnyFile = 400000;
constexpr std::size_t kBytesPerCell = 6;
constexpr std::size_t kCellsPerName = 3;
constexpr std::array<const char*, 4> kColumns = {"RESID", "RESNAME", "ATOMNAME", "SHIFT"};

std::string_view firstWord(std::string_view line) {
  std::size_t start = 0;
  while (start < line.size() && GDB::isSpace(line[start])) ++start;
  std::size_t end = start;
  while (end < line.size() && !GDB::isSpace(line[end])) ++end;
  return line.substr(start, end - start);
}

std::size_t countWords(std::string_view line, std::size_t most) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < line.size() && count <= most; ++i)
    if (!GDB::isSpace(line[i]) && (i == 0 || GDB::isSpace(line[i - 1]))) ++count;
  return count;
}

/// What is known of a table above the line that is looked at.
struct LinesAbove {
  std::size_t mostCells = 0;  // of the whole table
  std::size_t cells = 0;
  std::size_t count = 0;
  std::size_t sequence = 0;  // residues

  std::size_t columns = 0;
  std::size_t rows = 0;
  bool hasFormat = false;
};

void addCells(std::size_t cells, LinesAbove& above, const std::string& file) {
  above.cells += cells;
  if (above.cells > above.mostCells)
    throw FileError(file, above.count + 1, "has too many columns and rows for a shift table of this size",
                    "leave out the columns but RESID RESNAME ATOMNAME SHIFT");
}

void checkFormat(std::string_view line, const LinesAbove& above, const std::string& file) {
  const std::string items(line.substr(line.find("FORMAT") + 6));
  // The program's reader looks at the items only if there is one for each column.
  if (static_cast<std::size_t>(std::count(items.begin(), items.end(), '%')) != above.columns) return;
  for (std::size_t at = items.find('%'); at != std::string::npos;) {
    const std::size_t next = items.find('%', at + 1);
    const std::string item = items.substr(at, next == std::string::npos ? next : next - at);
    if (!GDB::checkFormat(item))
      throw FileError(file, above.count + 1, "bad FORMAT item \"" + printable(trimmed(item), 40) + "\"",
                      kTableRemedy);
    at = next;
  }
}

void checkRow(std::string_view line, LinesAbove& above, const std::string& file, LimitedNotes& skipped) {
  const std::size_t number = above.count + 1;
  if (++above.rows > kMostTableRows)
    throw FileError(file, number, "is beyond the first " + std::to_string(kMostTableRows) + " rows",
                    "split it into one table per protein");
  if (above.hasFormat && countWords(line, above.columns) == above.columns) {
    addCells(above.columns, above, file);
    return;
  }
  skipped.add("line " + std::to_string(number) + " is no row of the table, left out: \"" +
              printable(trimmed(line), 40) + "\"");
}

/// Residues of a DATA SEQUENCE line, counted before anything is made of them.
void checkSequence(std::string_view line, LinesAbove& above, const std::string& file) {
  const std::string_view data = trimmed(line.substr(line.find("DATA") + 4));
  if (firstWord(data) != "SEQUENCE") return;
  const std::string_view letters = data.substr(std::string_view("SEQUENCE").size());
  above.sequence += static_cast<std::size_t>(
      std::count_if(letters.begin(), letters.end(), [](char c) { return !GDB::isSpace(c); }));
  if (above.sequence > kLongestSequence)
    throw FileError(file, above.count + 1,
                    "has a sequence of more than " + std::to_string(kLongestSequence) + " residues",
                    "no protein is that long: check the file");
}

/// Looks for what the program's reader passes over or stops at.
void checkLine(std::string_view line, LinesAbove& above, const std::string& file, LimitedNotes& skipped) {
  const std::string_view word = firstWord(line);
  if (word == "VARS") {
    above.columns = countWords(line, line.size()) - 1;
    addCells(kCellsPerName * above.columns, above, file);
  } else if (word == "FORMAT") {
    checkFormat(line, above, file);
    above.hasFormat = true;
  } else if (word == "DATA") {
    checkSequence(line, above, file);
  } else if (!word.empty() && word != "REMARK") {
    checkRow(line, above, file, skipped);
  }
  ++above.count;
}

/// The text for the program's reader: a bare REMARK or DATA line gets the blank that it needs.
std::string checkedText(std::string_view text, const std::string& file, LimitedNotes& skipped) {
  std::string result;
  result.reserve(text.size() + 1);
  LinesAbove above;
  above.mostCells = kCellsOfAnyFile + text.size() / kBytesPerCell;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    checkLine(*line, above, file, skipped);
    result.append(*line);
    if (*line == "REMARK" || *line == "DATA") result += ' ';
    result += '\n';
  }
  return result;
}

void checkColumns(const GDB& table, const std::string& file) {
  for (const char* column : kColumns) {
    const auto isColumn = [column](const auto& entry) { return entry.second == column; };
    if (std::none_of(table.columnNames.begin(), table.columnNames.end(), isColumn))
      throw FileError(file, 0, "the table has no column " + std::string(column), kTableRemedy);
  }
}

}  // namespace

bool isShiftTable(const Source& source) {
  if (source.star) return false;
  bool varsSeen = false;
  for (std::size_t pos = 0; const auto line = nextLine(source.text, pos);) {
    const std::string_view word = firstWord(*line);
    varsSeen = varsSeen || word == "VARS";
    if (varsSeen && word == "FORMAT") return true;
  }
  return false;
}

ShiftFile readShiftTable(const Source& source) {
  LimitedNotes skipped("lines that are no table lines left out");
  std::istringstream text(checkedText(source.text, source.file, skipped));
  text.exceptions(std::ios::badbit);  // else memory that ends is taken for the end of the text
  ShiftFile file;
  file.table.emplace();
  if (const auto fault = file.table->readTable(text))
    throw FileError(source.file, 0, GDB::simplifyWhiteSpace(fault->message.c_str()), kTableRemedy);
  checkColumns(*file.table, source.file);
  skipped.appendTo(file.notes);
  return file;
}

}  // namespace zorvela

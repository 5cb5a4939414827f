// Reads the program's own shift table, through the program's own reader.
#include <algorithm>
#include <sstream>
#include <string_view>

#include "GDB.h"
#include "formats/format.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// Four words for each of 100,000 rows, and as many residues as a protein has.
constexpr std::size_t kLargestTable = 400000 + kLongestSequence;

std::string_view firstTableWord(std::string_view line) {
  line.remove_prefix(leading(line, [](char c) { return GDB::isSpace(c); }).size());
  return leading(line, [](char c) { return !GDB::isSpace(c); });
}

std::size_t countWords(std::string_view line) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < line.size(); ++i)
    if (!GDB::isSpace(line[i]) && (i == 0 || GDB::isSpace(line[i - 1]))) ++count;
  return count;
}

/// Returns the text for the program's reader: a bare REMARK or DATA line gets the blank that it needs.
std::string readableText(std::string_view text) {
  std::string result;
  result.reserve(text.size() + 1);
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    result.append(*line);
    if (*line == "REMARK" || *line == "DATA") result += ' ';
    result += '\n';
  }
  return result;
}

/// Names the lines that the reader skipped.
void noteSkipped(std::string_view text, const std::vector<std::size_t>& skipped,
                 std::vector<std::string>& notes) {
  LimitedNotes limited("lines ignored that are not rows of the table");
  std::size_t number = 0;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);)
    if (std::binary_search(skipped.begin(), skipped.end(), ++number))
      limited.add("line " + std::to_string(number) + " is not a row of the table, ignored: \"" +
                  printable(trimmed(*line), 40) + "\"");
  limited.appendTo(notes);
}

/// Estimates the memory of a table: its words, without those of remarks, and the letters of its sequence,
/// some 100 bytes each. The name of a column counts three times, for its format.
std::size_t tableSize(std::string_view text) {
  std::size_t size = 0;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    const std::string_view word = firstTableWord(*line);
    if (word == "REMARK") continue;
    const std::size_t words = countWords(*line);
    size += word == "VARS" ? 3 * words : word == "DATA" ? line->size() : words;
  }
  return size;
}

}  // namespace

bool isShiftTable(const Source& source) {
  if (source.star) return false;
  bool varsSeen = false;
  for (std::size_t pos = 0; const auto line = nextLine(source.text, pos);) {
    const std::string_view word = firstTableWord(*line);
    varsSeen = varsSeen || (word == "VARS" && !contains(*line, "X_AXIS"));  // X_AXIS: a peak list
    if (varsSeen && word == "FORMAT") return true;
  }
  return false;
}

bool hasColumn(const GDB& table, std::string_view name) {
  return std::any_of(table.columnNames.begin(), table.columnNames.end(),
                     [name](const auto& column) { return column.second == name; });
}

ShiftFile readShiftTable(const Source& source) {
  if (tableSize(source.text) > kLargestTable)
    throw FileError(source.file, 0, "is too large for the shift table of a protein",
                    "keep only the columns RESID RESNAME ATOMNAME SHIFT, or split it");
  std::istringstream text(readableText(source.text));
  text.exceptions(std::ios::badbit);  // otherwise the end of memory looks like the end of the text
  ShiftFile file;
  file.table.emplace();
  TableLines lines;
  if (const auto fault = file.table->readTable(text, &lines))
    throw FileError(source.file, fault->line, printable(GDB::simplifyWhiteSpace(fault->message)),
                    kTableRemedy);
  // The sequence may have the names of the residues.
  for (const char* column : {"RESID", "ATOMNAME", "SHIFT"})
    if (!hasColumn(*file.table, column))
      throw FileError(source.file, 0, "the table has no column " + std::string(column), kTableRemedy);
  noteSkipped(source.text, lines.skipped, file.notes);
  return file;
}

}  // namespace zorvela

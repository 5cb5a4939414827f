#include "formats/text/csv_rows.h"

#include <algorithm>
#include <utility>

#include "formats/found_rows.h"
#include "util/text.h"

namespace zorvela {

namespace {

// No table of shifts has a longer line of names; the bounds keep the search for it short.
constexpr std::size_t kLongestHeader = 20000;
constexpr std::size_t kMostColumns = 500;

/// Tells whether a line is a rule, as below the column names of a drawn table.
bool isRule(std::string_view line) {
  return line.find_first_not_of("-=+|: \t") == std::string_view::npos &&
         line.find_first_of("-=") != std::string_view::npos && line.find("--") != std::string_view::npos;
}

bool isToSkip(std::string_view line) {
  const std::string_view core = trimmed(line);
  return core.empty() || core.front() == '#' || isRule(core);
}

/// Returns the cells of a line. Outer tabs are cells; outer blanks are not.
std::optional<std::vector<std::string>> cellsOf(std::string_view line, Separator separator,
                                                std::size_t most = kMostColumns) {
  return splitCells(separator == Separator::tab ? line : trimmed(line), separator, most);
}

/// Returns the column above a cell: the only one above any part of it, or of several the only one that begins
/// or ends with it. The number of columns if there is none.
std::size_t columnAbove(const PlacedCell& cell, const std::vector<PlacedCell>& names) {
  std::vector<std::size_t> above;
  std::vector<std::size_t> aligned;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (cell.start >= names[i].end || names[i].start >= cell.end) continue;
    above.push_back(i);
    if (cell.start == names[i].start || cell.end == names[i].end) aligned.push_back(i);
  }
  if (above.size() == 1) return above.front();
  return aligned.size() == 1 ? aligned.front() : names.size();
}

/// Returns the cells below their names; nothing if one is below no name, or two are below one.
std::optional<std::vector<std::string>> cellsByPlace(std::string_view line, const CsvLayout& layout) {
  std::vector<std::string> cells(layout.names.size());
  const auto placed = placedCells(line, layout.separator, cells.size());
  if (!placed || placed->size() > cells.size() || contains(line, "\t")) return std::nullopt;
  for (const PlacedCell& cell : *placed) {
    const std::size_t column = columnAbove(cell, layout.places);
    if (column >= cells.size() || !cells[column].empty()) return std::nullopt;
    cells[column] = cell.text;
  }
  return cells;
}

/// Returns a row of blank-separated cells without the tail in brackets, in which a program names its source.
std::string_view withoutTail(std::string_view line) {
  const std::size_t tail = line.rfind(" (");
  return tail != std::string_view::npos && trimmed(line).back() == ')' ? line.substr(0, tail) : line;
}

void cutRow(std::string_view line, const CsvLayout& layout, CsvRow& row) {
  if (layout.separator == Separator::blank) line = withoutTail(line);
  const std::size_t width = layout.names.size();
  auto cells = layout.isByPlace ? cellsByPlace(line, layout) : cellsOf(line, layout.separator, width);
  if (!cells) {
    row.fault =
        layout.isByPlace ? "its cells are not below the column names" : "a double quote is not closed";
    return;
  }
  row.cells = std::move(*cells);
  const bool hasMore = row.cells.size() > width;
  // Spreadsheets write empty cells after the last column.
  if (hasMore && row.cells.back().find_first_not_of(" \t,;|\"") == std::string::npos) row.cells.pop_back();
  if (row.cells.size() != width)
    row.fault = (hasMore ? "more than " + counted(width, "cell", "cells")
                         : counted(row.cells.size(), "cell", "cells")) +
                " for " + counted(width, "column", "columns");
}

/// Returns the place after a quoted cell that begins at `start`; 0 where the quote has no end nearby.
std::size_t endOfQuoted(std::string_view text, std::size_t start) {
  constexpr std::size_t kLongestCell = 2000;
  const std::size_t last = std::min(text.size(), start + kLongestCell);
  for (std::size_t i = start + 1; i < last; ++i) {
    if (text[i] != '"') continue;
    const std::string_view next = text.substr(i + 1, 1);
    if (next != "\"") return contains(",;|\t\r\n ", next) ? i + 1 : 0;
    ++i;
  }
  return 0;
}

/// Returns the number of lines of a row, whose quoted cells may run over several.
std::size_t linesOf(std::string_view row) {
  return 1 + static_cast<std::size_t>(std::count(row.begin(), row.end(), '\v'));
}

/// Returns the line with a blank for each "#" in front, so that the names keep their places.
std::string withoutMark(std::string_view line) {
  std::string text(line);
  for (char& c : text) {
    if (c == '#') c = ' ';
    if (!isBlank(c)) break;
  }
  return text;
}

/// Returns the cells of the first two rows, or of those that there are.
std::vector<std::vector<std::string>> firstCells(std::string_view rows, Separator separator) {
  std::vector<std::vector<std::string>> found;
  for (std::size_t pos = 0; found.size() < 2;) {
    const auto line = nextLine(rows, pos);
    if (!line || line->size() > kLongestHeader) break;
    if (!isToSkip(*line)) found.push_back(cellsOf(*line, separator).value_or(std::vector<std::string>()));
  }
  return found;
}

/// Tells whether a "#" in front is the name of the first column.
bool isMarkAName(std::string_view header, std::string_view rows) {
  const std::string_view core = trimmed(header);
  if (core.size() < 2 || core.front() != '#') return false;
  const Separator separator = separatorOf(core);
  if (separator != Separator::blank)
    return trimmed(core.substr(1, core.find(static_cast<char>(separator)) - 1)).empty();
  const auto names = cellsOf(core, separator);
  const auto below = firstCells(rows, separator);
  return isBlank(core[1]) && names && !below.empty() && names->size() == below.front().size();
}

/// Tells whether the rows begin with a count from 0 that the names lack.
bool areCounted(const std::vector<std::vector<std::string>>& rows, std::size_t names) {
  if (rows.size() < 2) return false;
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (rows[i].size() != names + 1 || rows[i].front() != std::to_string(i)) return false;
  return true;
}

}  // namespace

std::string withQuotedLinesJoined(std::string text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isStart = text[i] == '"' && (i == 0 || contains(",;|\t\r\n", {&text[i - 1], 1}));
    const std::size_t end = isStart ? endOfQuoted(text, i) : 0;
    for (; i + 1 < end; ++i) {
      const bool isPair = text[i] == '\r' && text[i + 1] == '\n';
      if (text[i] == '\r' || text[i] == '\n') text[i] = isPair ? ' ' : '\v';
    }
  }
  return text;
}

std::optional<std::string_view> nextFilledLine(std::string_view text, std::size_t& pos, std::size_t& line) {
  while (const auto next = nextLine(text, pos)) {
    line += linesOf(*next);
    if (!trimmed(*next).empty()) return next;
  }
  return std::nullopt;
}

void forEachRow(const CsvLayout& layout, const std::function<void(const CsvRow&)>& use) {
  std::size_t number = layout.line;
  for (std::size_t pos = 0; const auto line = nextLine(layout.rows, pos);) {
    CsvRow row;
    row.line = number + 1;
    number += linesOf(*line);
    if (isToSkip(*line)) continue;
    cutRow(*line, layout, row);
    const auto isEmpty = [](const std::string& cell) { return cell.empty(); };
    if (row.fault.empty() && std::all_of(row.cells.begin(), row.cells.end(), isEmpty)) continue;
    use(row);
  }
}

std::optional<CsvLayout> layoutOf(std::string_view header, std::string_view rows, std::size_t line) {
  if (header.size() > kLongestHeader || isRule(trimmed(header))) return std::nullopt;
  const bool isMark = !isMarkAName(header, rows);
  const std::string plain = isMark ? withoutMark(header) : std::string(header);
  CsvLayout layout;
  layout.rows = rows;
  layout.line = line;
  layout.separator = separatorOf(trimmed(plain));
  // A tab at the start follows the empty name of a first column; a tab at the end means nothing.
  if (layout.separator == Separator::blank && contains(plain, "\t")) layout.separator = Separator::tab;
  layout.names = cellsOf(plain, layout.separator).value_or(std::vector<std::string>());
  if (layout.names.size() > kMostColumns) return std::nullopt;
  // Empty cells at the end are not columns.
  while (!layout.names.empty() && layout.names.back().empty()) layout.names.pop_back();
  const auto below = firstCells(rows, layout.separator);
  const bool isComment = isMark && plain != header && !below.empty() && below[0].size() > layout.names.size();
  if (layout.names.empty() || isComment) return std::nullopt;
  if (layout.separator == Separator::blank)
    layout.places = placedCells(plain, layout.separator).value_or(std::vector<PlacedCell>());
  if (areCounted(below, layout.names.size())) layout.names.insert(layout.names.begin(), "");
  return layout;
}

void findPlaces(CsvLayout& layout) {
  if (layout.separator != Separator::blank || layout.places.size() != layout.names.size()) return;
  const auto misfits = [&](bool isByPlace) {
    layout.isByPlace = isByPlace;
    Tally tally;
    forEachRow(layout, [&](const CsvRow& row) { tally.add(row.line, row.fault); });
    return tally;
  };
  if (misfits(false).count == 0) return;
  const Tally byPlace = misfits(true);
  layout.isByPlace = byPlace.count * 2 < byPlace.all;
}

}  // namespace zorvela

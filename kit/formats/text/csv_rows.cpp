#include "formats/text/csv_rows.h"

#include <algorithm>
#include <utility>

#include "util/text.h"

namespace zorvela {

namespace {

// No table of shifts has a longer head; the bounds keep the search for it short.
constexpr std::size_t kLongestHeader = 20000;
constexpr std::size_t kMostColumns = 500;

/// A line of nothing but dashes and the like, as below the head of a drawn table.
bool isRule(std::string_view line) {
  return line.find_first_not_of("-=+|: \t") == std::string_view::npos &&
         line.find_first_of("-=") != std::string_view::npos && line.find("--") != std::string_view::npos;
}

bool isNoRow(std::string_view line) {
  const std::string_view core = trimmed(line);
  return core.empty() || core.front() == '#' || isRule(core);
}

std::string widthFault(std::size_t cells, std::size_t width, bool isAtLeast) {
  return (isAtLeast ? "more than " : "") + counted(cells, "cell", "cells") + " for " +
         counted(width, "column", "columns");
}

/// Whether what stands after the last column is nothing but empty cells.
bool isEmptyRest(const std::string& rest) {
  return rest.find_first_not_of(" \t,;|\"") == std::string::npos;
}

void cutBySeparator(std::string_view line, const CsvLayout& layout, CsvRow& row) {
  auto cells = splitCells(line, layout.separator, layout.width());
  if (!cells) {
    row.fault = "a double quote is not closed";
    return;
  }
  row.cells = std::move(*cells);
  if (row.cells.size() > layout.width() && isEmptyRest(row.cells.back())) row.cells.pop_back();
  if (row.cells.size() > layout.width())
    row.fault = widthFault(layout.width(), layout.width(), true);
  else if (row.cells.size() < layout.width())
    row.fault = widthFault(row.cells.size(), layout.width(), false);
}

/// The one column above a cell: the only one that it reaches under, or of several the only one that begins or
/// ends with it.
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

/// The cells below their names; nothing if one stands below none, or two below one.
std::optional<std::vector<std::string>> cellsByPlace(std::string_view line, const CsvLayout& layout) {
  const auto placed = placedCells(line, layout.width() + 1);
  if (!placed || placed->size() > layout.width() || line.find('\t') != std::string_view::npos)
    return std::nullopt;
  std::vector<std::string> cells(layout.width());
  for (const PlacedCell& cell : *placed) {
    const std::size_t column = columnAbove(cell, layout.places);
    if (column >= cells.size() || !cells[column].empty()) return std::nullopt;
    cells[column] = cell.text;
  }
  return cells;
}

/// Without the tail in brackets in which a program says where a row of blank-separated cells is from.
std::string_view withoutTail(std::string_view line) {
  const std::size_t tail = line.rfind(" (");
  return tail != std::string_view::npos && trimmed(line).back() == ')' ? line.substr(0, tail) : line;
}

void cutRow(std::string_view line, const CsvLayout& layout, CsvRow& row) {
  if (layout.separator == Separator::blank) line = withoutTail(line);
  if (!layout.isByPlace) {
    // Outer tabs are cells; outer blanks are not.
    cutBySeparator(layout.separator == Separator::tab ? line : trimmed(line), layout, row);
    return;
  }
  auto cells = cellsByPlace(line, layout);
  if (cells)
    row.cells = std::move(*cells);
  else
    row.fault = "its cells do not stand below the column names";
}

/// The place after a quoted cell that begins at `start`; 0 where the quote has no end nearby.
std::size_t endOfQuoted(std::string_view text, std::size_t start) {
  constexpr std::size_t kLongestCell = 2000;
  const std::size_t last = std::min(text.size(), start + kLongestCell);
  for (std::size_t i = start + 1; i < last; ++i) {
    if (text[i] != '"') continue;
    const bool isTwice = i + 1 < text.size() && text[i + 1] == '"';
    if (isTwice)
      ++i;
    else
      return i + 1 == text.size() || contains(",;|\t\r\n ", text.substr(i + 1, 1)) ? i + 1 : 0;
  }
  return 0;
}

/// Lines that quoted cells of a row run over, beyond the first.
std::size_t linesWithin(std::string_view row) {
  return static_cast<std::size_t>(std::count(row.begin(), row.end(), '\v'));
}

/// The line with a blank for each "#" in front: the places stay.
std::string withoutMark(std::string_view line) {
  std::string text(line);
  for (char& c : text) {
    if (c == '#') c = ' ';
    if (!isBlank(c)) break;
  }
  return text;
}

std::size_t countCells(std::string_view line, Separator separator) {
  const auto cells = splitCells(separator == Separator::tab ? line : trimmed(line), separator, kMostColumns);
  return cells ? cells->size() : 0;
}

/// The names as they stand in the line.
std::vector<std::string> namesOf(std::string_view line, Separator separator) {
  const auto cells = splitCells(separator == Separator::tab ? line : trimmed(line), separator, kMostColumns);
  std::vector<std::string> names = cells.value_or(std::vector<std::string>());
  if (names.size() > kMostColumns) names.clear();
  // Empty cells at the end are no columns.
  while (!names.empty() && names.back().empty()) names.pop_back();
  return names;
}

/// Whether a "#" in front is the name of the first column.
bool isMarkAName(std::string_view header, std::string_view text, std::size_t pos, std::size_t line) {
  const std::string_view core = trimmed(header);
  if (core.size() < 2 || core.front() != '#') return false;
  const Separator separator = separatorOf(core);
  if (separator != Separator::blank)
    return trimmed(core.substr(1, core.find(static_cast<char>(separator)) - 1)).empty();
  if (!isBlank(core[1])) return false;
  const auto below = nextFilledLine(text, pos, line);
  return below && below->size() <= kLongestHeader &&
         countCells(*below, separator) == countCells(core, separator);
}

/// The cells of the first rows below a line, at most so many.
std::vector<std::vector<std::string>> cellsBelow(std::string_view text, std::size_t pos, Separator separator,
                                                 std::size_t most) {
  std::vector<std::vector<std::string>> rows;
  while (rows.size() < most) {
    const auto line = nextLine(text, pos);
    if (!line || line->size() > kLongestHeader) break;
    if (isNoRow(*line)) continue;
    const std::string_view row = separator == Separator::tab ? *line : trimmed(*line);
    rows.push_back(splitCells(row, separator, kMostColumns).value_or(std::vector<std::string>()));
  }
  return rows;
}

/// Whether the rows begin with a count from 0 that the names lack.
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
    line += 1 + linesWithin(*next);
    if (!trimmed(*next).empty()) return next;
  }
  return std::nullopt;
}

void forEachRow(std::string_view text, const CsvLayout& layout,
                const std::function<void(const CsvRow&)>& use) {
  std::size_t number = layout.line;
  for (std::size_t pos = layout.start; const auto line = nextLine(text, pos);) {
    CsvRow row;
    row.line = number + 1;
    number += 1 + linesWithin(*line);
    if (isNoRow(*line)) continue;
    cutRow(*line, layout, row);
    const auto isEmpty = [](const std::string& cell) { return cell.empty(); };
    if (row.fault.empty() && std::all_of(row.cells.begin(), row.cells.end(), isEmpty)) continue;
    use(row);
  }
}

std::optional<CsvLayout> layoutOf(std::string_view header, std::string_view text, std::size_t pos,
                                  std::size_t line) {
  if (header.size() > kLongestHeader || isRule(trimmed(header))) return std::nullopt;
  const bool isMark = !isMarkAName(header, text, pos, line);
  const std::string plain = isMark ? withoutMark(header) : std::string(header);
  CsvLayout layout;
  layout.separator = separatorOf(trimmed(plain));
  // A tab at the start is the empty name of a first column, one at the end is nothing.
  if (layout.separator == Separator::blank && plain.find('\t') != std::string::npos)
    layout.separator = Separator::tab;
  layout.names = namesOf(plain, layout.separator);
  const auto below = cellsBelow(text, pos, layout.separator, 2);
  const bool isComment = isMark && plain != header && !below.empty() && below[0].size() > layout.width();
  if (layout.names.empty() || isComment) return std::nullopt;
  if (layout.separator == Separator::blank)
    layout.places = placedCells(plain).value_or(std::vector<PlacedCell>());
  if (areCounted(below, layout.width())) layout.names.insert(layout.names.begin(), "");
  layout.start = pos;
  layout.line = line;
  return layout;
}

void findPlaces(std::string_view text, CsvLayout& layout) {
  if (layout.separator != Separator::blank || layout.places.size() != layout.width()) return;
  std::size_t rows = 0;
  std::size_t whole = 0;
  std::size_t placed = 0;
  forEachRow(text, layout, [&](const CsvRow& row) {
    ++rows;
    if (row.fault.empty()) ++whole;
  });
  if (whole == rows) return;
  layout.isByPlace = true;
  forEachRow(text, layout, [&](const CsvRow& row) {
    if (row.fault.empty()) ++placed;
  });
  layout.isByPlace = placed * 2 > rows;
}

}  // namespace zorvela

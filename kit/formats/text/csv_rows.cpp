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

void cutRow(std::string_view line, const CsvLayout& layout, CsvRow& row) {
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

}  // namespace

std::optional<std::string_view> nextFilledLine(std::string_view text, std::size_t& pos, std::size_t& line) {
  while (const auto next = nextLine(text, pos)) {
    ++line;
    if (!trimmed(*next).empty()) return next;
  }
  return std::nullopt;
}

void forEachRow(std::string_view text, const CsvLayout& layout,
                const std::function<void(const CsvRow&)>& use) {
  std::size_t number = layout.line;
  for (std::size_t pos = layout.start; const auto line = nextLine(text, pos);) {
    ++number;
    if (isNoRow(*line)) continue;
    CsvRow row;
    row.line = number;
    cutRow(*line, layout, row);
    const auto isEmpty = [](const std::string& cell) { return cell.empty(); };
    if (row.fault.empty() && std::all_of(row.cells.begin(), row.cells.end(), isEmpty)) continue;
    use(row);
  }
}

std::optional<CsvLayout> layoutOf(std::string_view header, std::string_view text, std::size_t pos,
                                  std::size_t line) {
  if (header.size() > kLongestHeader || isRule(trimmed(header))) return std::nullopt;
  const std::string plain = isMarkAName(header, text, pos, line) ? std::string(header) : withoutMark(header);
  CsvLayout layout;
  layout.separator = separatorOf(trimmed(plain));
  // A tab at the start is the empty name of a first column, one at the end is nothing.
  if (layout.separator == Separator::blank && plain.find('\t') != std::string::npos)
    layout.separator = Separator::tab;
  layout.names = namesOf(plain, layout.separator);
  if (layout.names.empty()) return std::nullopt;
  if (layout.separator == Separator::blank)
    layout.places = placedCells(plain).value_or(std::vector<PlacedCell>());
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

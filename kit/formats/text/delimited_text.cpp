#include "formats/text/delimited_text.h"

#include <algorithm>

#include "util/text.h"

namespace zorvela {

namespace {

/// Moves `pos` after the blanks in front of a cell, up to a tab that is a separator.
void skipBlanks(std::string_view line, Separator separator, std::size_t& pos) {
  pos = std::min(line.find_first_not_of(separator == Separator::tab ? " " : " \t", pos), line.size());
}

void skipToEnd(std::string_view line, Separator separator, std::size_t& pos) {
  const std::size_t end = separator == Separator::blank ? line.find_first_of(" \t", pos)
                                                        : line.find(static_cast<char>(separator), pos);
  pos = std::min(end, line.size());
}

/// Returns the cell whose opening quote is at `pos`. Nothing if the quote is not closed.
std::optional<std::string> quotedCell(std::string_view line, Separator separator, std::size_t& pos) {
  std::string cell;
  for (++pos; pos < line.size(); ++pos) {
    if (line[pos] != '"') {
      cell.push_back(line[pos]);
    } else if (pos + 1 < line.size() && line[pos + 1] == '"') {
      cell.push_back(line[++pos]);
    } else {
      skipToEnd(line, separator, pos);
      return std::string(trimmed(cell));
    }
  }
  return std::nullopt;
}

std::optional<std::string> nextCell(std::string_view line, Separator separator, std::size_t& pos) {
  skipBlanks(line, separator, pos);
  if (pos < line.size() && line[pos] == '"') return quotedCell(line, separator, pos);
  const std::size_t start = pos;
  skipToEnd(line, separator, pos);
  return std::string(trimmed(line.substr(start, pos - start)));
}

std::string_view withoutOuterBars(std::string_view line) {
  line = trimmed(line);
  if (!line.empty() && line.front() == '|') line.remove_prefix(1);
  if (!line.empty() && line.back() == '|') line.remove_suffix(1);
  return line;
}

/// Counts the characters of UTF-8.
std::size_t characters(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text)
    if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) ++count;
  return count;
}

}  // namespace

Separator separatorOf(std::string_view line) {
  for (const Separator separator : {Separator::bar, Separator::tab, Separator::semicolon, Separator::comma})
    if (line.find(static_cast<char>(separator)) != std::string_view::npos) return separator;
  return Separator::blank;
}

std::optional<std::vector<std::string>> splitCells(std::string_view line, Separator separator,
                                                   std::size_t most) {
  if (separator == Separator::bar) line = withoutOuterBars(line);
  const bool isBlankSeparated = separator == Separator::blank;
  std::vector<std::string> cells;
  constexpr std::size_t kUsualCells = 8;
  cells.reserve(std::min(most, kUsualCells));
  std::size_t pos = 0;
  if (isBlankSeparated) skipBlanks(line, separator, pos);
  while (!isBlankSeparated || pos < line.size()) {
    if (cells.size() == most) {
      cells.emplace_back(line.substr(pos));
      break;
    }
    std::optional<std::string> cell = nextCell(line, separator, pos);
    if (!cell) return std::nullopt;
    cells.push_back(std::move(*cell));
    if (pos >= line.size()) break;
    ++pos;  // the separator
    if (isBlankSeparated) skipBlanks(line, separator, pos);
  }
  return cells;
}

std::optional<std::vector<PlacedCell>> placedCells(std::string_view line, std::size_t most) {
  std::vector<PlacedCell> cells;
  std::size_t column = 0;
  for (std::size_t pos = 0; cells.size() < most;) {
    const std::size_t before = pos;
    skipBlanks(line, Separator::blank, pos);
    if (pos >= line.size()) break;
    column += characters(line.substr(before, pos - before));
    const std::size_t start = pos;
    std::optional<std::string> cell = nextCell(line, Separator::blank, pos);
    if (!cell) return std::nullopt;
    const std::size_t end = column + characters(line.substr(start, pos - start));
    cells.push_back({std::move(*cell), column, end});
    column = end;
  }
  return cells;
}

}  // namespace zorvela

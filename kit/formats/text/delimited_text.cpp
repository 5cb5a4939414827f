#include "formats/text/delimited_text.h"

#include <algorithm>

#include "util/text.h"

namespace zorvela {

namespace {

/// Returns the cell that begins at `pos`, which moves after it. Nothing if a quote is not closed.
std::optional<std::string> nextCell(std::string_view line, Separator separator, std::size_t& pos) {
  const std::size_t start = pos;
  const bool isQuoted = line.substr(pos, 1) == "\"";
  std::string quoted;
  if (isQuoted) {
    for (++pos; pos < line.size() && (line[pos] != '"' || line.substr(pos + 1, 1) == "\""); ++pos) {
      if (line[pos] == '"') ++pos;
      quoted.push_back(line[pos]);
    }
    if (pos == line.size()) return std::nullopt;
  }
  const std::size_t end = separator == Separator::blank ? line.find_first_of(" \t", pos)
                                                        : line.find(static_cast<char>(separator), pos);
  pos = std::min(end, line.size());
  return std::string(trimmed(isQuoted ? quoted : line.substr(start, pos - start)));
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

std::optional<std::vector<PlacedCell>> placedCells(std::string_view line, Separator separator,
                                                   std::size_t most) {
  if (separator == Separator::bar) line = withoutOuterBars(line);
  const char* blanks = separator == Separator::tab ? " " : " \t";
  std::vector<PlacedCell> cells;
  std::size_t column = 0;
  for (std::size_t pos = 0, before = 0;; ++pos) {
    pos = std::min(line.find_first_not_of(blanks, pos), line.size());
    if (separator == Separator::blank && pos == line.size()) break;
    const std::size_t start = pos;
    const bool isRest = cells.size() == most;
    auto text = isRest ? std::string(line.substr(start)) : nextCell(line, separator, pos);
    if (!text) return std::nullopt;
    column += characters(line.substr(before, start - before));
    const std::size_t end = column + characters(line.substr(start, pos - start));
    cells.push_back({std::move(*text), column, end});
    if (isRest || pos == line.size()) break;
    column = end;
    before = pos;
  }
  return cells;
}

std::optional<std::vector<std::string>> splitCells(std::string_view line, Separator separator,
                                                   std::size_t most) {
  auto placed = placedCells(line, separator, most);
  if (!placed) return std::nullopt;
  std::vector<std::string> cells;
  cells.reserve(placed->size());
  for (PlacedCell& cell : *placed) cells.push_back(std::move(cell.text));
  return cells;
}

std::vector<std::string> wordsOf(std::string_view line, std::size_t most) {
  return splitCells(line, Separator::blank, most).value_or(std::vector<std::string>{std::string(line)});
}

}  // namespace zorvela

// Lines of cells: text separated by commas, semicolons, tabs or blanks.
#include "util/delimited_text.h"

#include "util/text.h"

namespace zorvela {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

/// Cuts one line, cell by cell.
class CellCutter {
 public:
  CellCutter(std::string_view text, Separator between) : line(text), separator(between) {}

  std::optional<std::vector<std::string>> cut() {
    std::vector<std::string> cells;
    if (separator == Separator::blank) skipBlanks();
    while (separator != Separator::blank || pos < line.size()) {
      std::optional<std::string> cell = nextCell();
      if (!cell) return std::nullopt;
      cells.push_back(std::move(*cell));
      if (pos >= line.size()) break;
      ++pos;  // the separator
      if (separator == Separator::blank) skipBlanks();
    }
    return cells;
  }

 private:
  bool isEnd(char c) const {
    return separator == Separator::blank ? isBlank(c) : c == static_cast<char>(separator);
  }

  void skipBlanks() {
    while (pos < line.size() && isBlank(line[pos]) && line[pos] != static_cast<char>(separator)) ++pos;
    while (separator == Separator::blank && pos < line.size() && isBlank(line[pos])) ++pos;
  }

  std::optional<std::string> nextCell() {
    skipBlanks();
    if (pos < line.size() && line[pos] == '"') return quotedCell();
    const std::size_t start = pos;
    while (pos < line.size() && !isEnd(line[pos])) ++pos;
    return std::string(trimmed(line.substr(start, pos - start)));
  }

  std::optional<std::string> quotedCell() {
    std::string cell;
    for (++pos; pos < line.size(); ++pos) {
      if (line[pos] != '"') {
        cell.push_back(line[pos]);
      } else if (pos + 1 < line.size() && line[pos + 1] == '"') {
        cell.push_back(line[++pos]);
      } else {
        ++pos;
        while (pos < line.size() && !isEnd(line[pos])) ++pos;
        return std::string(trimmed(cell));
      }
    }
    return std::nullopt;
  }

  std::string_view line;
  Separator separator;
  std::size_t pos = 0;
};

}  // namespace

Separator separatorOf(std::string_view line) {
  for (const Separator separator : {Separator::tab, Separator::semicolon, Separator::comma})
    if (line.find(static_cast<char>(separator)) != std::string_view::npos) return separator;
  return Separator::blank;
}

std::optional<std::vector<std::string>> splitCells(std::string_view line, Separator separator) {
  return CellCutter(line, separator).cut();
}

}  // namespace zorvela

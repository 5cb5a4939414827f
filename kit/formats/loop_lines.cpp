#include "formats/loop_lines.h"

#include <algorithm>

namespace zorvela {

namespace {

std::vector<OddLine> linesOf(std::string_view text, const std::vector<std::size_t>& begins) {
  // CR alone ends the lines in the files of old Macintosh programs.
  const char newline = text.find('\n') == std::string_view::npos ? '\r' : '\n';
  std::vector<OddLine> lines;
  std::size_t number = 1;
  std::size_t done = 0;
  for (const std::size_t begin : begins) {
    const std::string_view between = text.substr(done, begin - done);
    number += static_cast<std::size_t>(std::count(between.begin(), between.end(), newline));
    done = begin;
    if (lines.empty() || lines.back().number != number) lines.push_back({number, 0});
    ++lines.back().values;
  }
  return lines;
}

}  // namespace

std::optional<OddLine> firstOddLine(std::string_view text, const std::vector<std::size_t>& begins,
                                    std::size_t columns) {
  const std::vector<OddLine> lines = linesOf(text, begins);
  const auto whole = static_cast<std::size_t>(std::count_if(
      lines.begin(), lines.end(), [columns](const OddLine& line) { return line.values == columns; }));
  if (2 * whole <= lines.size()) return std::nullopt;
  OddLine first;  // of a row that is wrapped
  std::size_t pending = 0;
  for (const OddLine& line : lines) {
    if (pending == 0 && line.values % columns == 0) continue;
    if (pending == 0) first = line;
    pending += line.values;
    if (pending > columns) return first;
    if (pending == columns) pending = 0;
  }
  if (pending > 0) return first;
  return std::nullopt;
}

}  // namespace zorvela

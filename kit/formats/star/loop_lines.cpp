#include "formats/star/loop_lines.h"

#include <algorithm>

namespace zorvela {

namespace {

std::uint32_t small(std::size_t number) {
  return static_cast<std::uint32_t>(number);
}

std::vector<LoopLine> linesOf(std::string_view text, const std::vector<std::size_t>& begins) {
  // CR alone ends the lines in the files of old Macintosh programs.
  const char newline = text.find('\n') == std::string_view::npos ? '\r' : '\n';
  std::vector<LoopLine> lines;
  std::size_t number = 1;
  std::size_t done = 0;
  for (std::size_t value = 0; value < begins.size(); ++value) {
    const std::string_view between = text.substr(done, begins[value] - done);
    number += static_cast<std::size_t>(std::count(between.begin(), between.end(), newline));
    done = begins[value];
    if (lines.empty() || lines.back().number != number) lines.push_back({small(value), small(number)});
  }
  return lines;
}

}  // namespace

LoopLayout loopLayout(const std::vector<LoopLine>& lines, std::size_t valueCount, std::size_t columns) {
  LoopLayout layout;
  std::size_t pending = 0;  // values of a row that is wrapped
  std::size_t firstPending = 0;
  const auto endOf = [&](std::size_t line) {
    return line + 1 < lines.size() ? lines[line + 1].firstValue : small(valueCount);
  };
  const auto addBad = [&](std::size_t end) {
    layout.bad.push_back({lines[firstPending], lines[end - 1], endOf(firstPending), endOf(end - 1)});
    pending = 0;
  };
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::size_t count = endOf(i) - lines[i].firstValue;
    if (count % columns == 0) {
      ++layout.wholeLines;
      if (pending > 0) addBad(i);
      continue;
    }
    if (pending == 0) firstPending = i;
    pending += count;
    if (pending == columns) pending = 0;
  }
  if (pending > 0) addBad(lines.size());
  return layout;
}

std::optional<OddLine> firstOddLine(std::string_view text, const std::vector<std::size_t>& begins,
                                    std::size_t columns) {
  const std::vector<LoopLine> lines = linesOf(text, begins);
  const LoopLayout layout = loopLayout(lines, begins.size(), columns);
  if (layout.bad.empty() || 2 * layout.wholeLines <= lines.size()) return std::nullopt;
  const BadLines& first = layout.bad.front();
  return OddLine{first.first.number, first.endOfFirst - first.first.firstValue};
}

}  // namespace zorvela

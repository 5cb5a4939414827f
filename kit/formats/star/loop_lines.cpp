#include "formats/star/loop_lines.h"

namespace zorvela {

LoopLayout loopLayout(const LoopLines& loop, std::size_t columns) {
  const std::vector<LoopLine>& lines = loop.list;
  LoopLayout layout;
  std::size_t pending = 0;  // values of a row that is wrapped
  std::size_t firstPending = 0;
  const auto endOf = [&](std::size_t line) {
    return line + 1 < lines.size() ? lines[line + 1].firstValue : loop.values;
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

std::optional<OddLine> firstOddLine(const LoopLines& lines, std::size_t columns) {
  const LoopLayout layout = loopLayout(lines, columns);
  if (layout.bad.empty() || 2 * layout.wholeLines <= lines.list.size()) return std::nullopt;
  const BadLines& first = layout.bad.front();
  return OddLine{first.first.number, first.endOfFirst - first.first.firstValue};
}

}  // namespace zorvela

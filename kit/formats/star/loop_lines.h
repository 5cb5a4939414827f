// Finds the rows of a STAR loop by its lines.
//
// A row may have one line, share it with others or be wrapped over several. Lines with any other number of
// values lack some or have some left over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace zorvela {

/// A line of a loop, with the first of the values that begin on it. Small, as a file has millions.
struct LoopLine {
  std::uint32_t firstValue = 0;  ///< from 0
  std::uint32_t number = 0;      ///< from 1
};

/// The lines of a loop that have values.
struct LoopLines {
  std::vector<LoopLine> list;
  std::uint32_t values = 0;

  /// Adds a value that begins on a line.
  void add(std::size_t line) {
    const auto number = static_cast<std::uint32_t>(line);
    if (list.empty() || list.back().number != number) list.push_back({values, number});
    ++values;
  }
};

/// Lines whose values do not make whole rows.
struct BadLines {
  LoopLine first;
  LoopLine last;
  std::uint32_t endOfFirst = 0;  ///< after the values of the first line
  std::uint32_t endValue = 0;    ///< after those of the last
};

/// The lines of a loop with whole rows, and the others.
struct LoopLayout {
  std::size_t wholeLines = 0;  ///< with the values of one or more rows
  std::vector<BadLines> bad;
};

/// Separates them; `columns` is above 0.
LoopLayout loopLayout(const LoopLines& lines, std::size_t columns);

/// A line of a loop that does not hold whole rows.
struct OddLine {
  std::size_t number = 0;  ///< from 1
  std::size_t values = 0;  ///< that begin on it
};

/// Returns the first line of a loop with a value missing or left over, if most of its lines hold whole rows.
/// Nothing where the lines do not show the rows.
std::optional<OddLine> firstOddLine(const LoopLines& lines, std::size_t columns);

}  // namespace zorvela

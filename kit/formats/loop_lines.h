// Which line of a STAR loop has too few or too many values.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace zorvela {

/// A line of a loop that does not hold whole rows.
struct OddLine {
  std::size_t number = 0;  ///< from 1
  std::size_t values = 0;  ///< that begin on it
};

/// The first line of a loop with a value missing or left over, if most of its lines hold one value for each
/// column: a row may also share its line with others, or be wrapped over several. Nothing where the lines say
/// nothing of the rows. `begins`: the places of all values of the loop in the text, in order.
std::optional<OddLine> firstOddLine(std::string_view text, const std::vector<std::size_t>& begins,
                                    std::size_t columns);

}  // namespace zorvela

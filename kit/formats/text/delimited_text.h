// Lines of cells: text separated by bars, tabs, semicolons, commas or blanks.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zorvela {

/// The character between the cells. A blank means any run of blanks and tabs; there may also be bars at both
/// ends of the line (Markdown).
enum class Separator : char { bar = '|', tab = '\t', semicolon = ';', comma = ',', blank = ' ' };

/// Returns the separator of a line of column names: of bar, tab, semicolon and comma the first that occurs,
/// else blanks.
Separator separatorOf(std::string_view line);

/// No limit on the number of cells.
inline constexpr std::size_t kAllCells = static_cast<std::size_t>(-1);

/// A cell and its place, in characters from the start of the line.
struct PlacedCell {
  std::string text;
  std::size_t start = 0;
  std::size_t end = 0;  ///< after its last character
};

/// Returns the cells of a line without outer blanks. A cell may be in double quotes, with "" for a quote in
/// it. After the first `most` cells the rest of the line is one more. Nothing where a quote is not closed on
/// the line.
std::optional<std::vector<PlacedCell>> placedCells(std::string_view line, Separator separator,
                                                   std::size_t most = kAllCells);

/// Returns the texts of these cells.
std::optional<std::vector<std::string>> splitCells(std::string_view line, Separator separator,
                                                   std::size_t most = kAllCells);

/// Returns the words between blanks, as `splitCells` does; the whole line is one where a quote is not closed.
std::vector<std::string> wordsOf(std::string_view line, std::size_t most = kAllCells);

}  // namespace zorvela

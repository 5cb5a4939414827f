// Lines of cells: text separated by commas, semicolons, tabs or blanks.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zorvela {

/// What stands between the cells. A blank stands for any run of blanks and tabs.
enum class Separator : char { comma = ',', semicolon = ';', tab = '\t', blank = ' ' };

/// The separator that a line of column names uses: of tab, semicolon and comma the first that occurs,
/// else blanks.
Separator separatorOf(std::string_view line);

/// The cells of a line without outer blanks. A cell may stand in double quotes, with "" for a quote in it.
/// Nothing where a quote is not closed on the line.
std::optional<std::vector<std::string>> splitCells(std::string_view line, Separator separator);

}  // namespace zorvela

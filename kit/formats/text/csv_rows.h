// The rows of a table in text: the line of column names, and the cells of each column.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/text/delimited_text.h"

namespace zorvela {

/// The way in which the rows of a table are cut into cells.
struct CsvLayout {
  Separator separator = Separator::comma;
  std::vector<std::string> names;  ///< of the columns; as many empty ones where the table has no names
  std::vector<PlacedCell> places;  ///< of the names, where blanks separate the columns
  bool isByPlace = false;          ///< the names are above the cells, so that rows may have gaps
  std::string_view rows;           ///< the text below the names
  std::size_t line = 0;            ///< lines above it
};

/// A line that is or should be a row. The cells of a row with a fault are not used.
struct CsvRow {
  std::size_t line = 0;  ///< from 1
  std::vector<std::string> cells;
  std::string fault;  ///< "9 cells, the header has 7"; empty for a row that is whole
};

/// Returns the text with each cell in quotes on one line: line feeds in it become vertical tabs, which the
/// functions below count as lines. A quote without an end is an ordinary character.
std::string withQuotedLinesJoined(std::string text);

/// Calls `use` with each row in turn; skips empty lines, comments and the rules of drawn tables.
void forEachRow(const CsvLayout& layout, const std::function<void(const CsvRow&)>& use);

/// Returns the next line that is not blank and moves the position and line after it. Nothing at the end.
std::optional<std::string_view> nextFilledLine(std::string_view text, std::size_t& pos, std::size_t& line);

/// Returns the layout by a line of column names, with the text below it and its number, from 1. Nothing for
/// a line that cannot have column names. A "#" in front is the name of the first column where the row below
/// has a cell for it. Otherwise it is a mark, and the line is a comment where that row has more cells. Rows
/// may begin with a count from 0 that has no name, as in a printed data frame. The first name is empty then.
std::optional<CsvLayout> layoutOf(std::string_view header, std::string_view rows, std::size_t line);

/// Sets `isByPlace` where most cells are below the names of their columns and some rows have gaps.
void findPlaces(CsvLayout& layout);

}  // namespace zorvela

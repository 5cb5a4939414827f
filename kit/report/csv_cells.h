// Lines of a CSV file: RFC 4180, with line feeds.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace zorvela {

/// A cell, in quotes where it has commas, quotes or line ends.
std::string csvCell(const std::string& text);

/// Writes a line of cells.
void writeCsvLine(const std::vector<std::string>& cells, std::ostream& out);

}  // namespace zorvela

// Lines of a CSV file: RFC 4180, with line feeds.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace zorvela {

/// Writes a line of cells.
void writeCsvLine(const std::vector<std::string>& cells, std::ostream& out);

}  // namespace zorvela

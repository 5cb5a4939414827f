// Lines of a CSV file.
#include "report/csv_cells.h"

#include <ostream>

namespace zorvela {

std::string csvCell(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

void writeCsvLine(const std::vector<std::string>& cells, std::ostream& out) {
  for (std::size_t i = 0; i < cells.size(); ++i) out << (i > 0 ? "," : "") << csvCell(cells[i]);
  out << '\n';
}

}  // namespace zorvela

// Lines of a CSV file.
#include "report/csv_cells.h"

#include <ostream>

#include "util/text.h"

namespace zorvela {

void writeCsvLine(const std::vector<std::string>& cells, std::ostream& out) {
  for (std::size_t i = 0; i < cells.size(); ++i) out << (i > 0 ? "," : "") << csvCell(cells[i]);
  out << '\n';
}

}  // namespace zorvela

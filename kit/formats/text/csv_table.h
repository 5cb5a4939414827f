// A table of shifts within a text: by its line of column names, or without one by its cells.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/text/csv_columns.h"
#include "formats/text/csv_rows.h"

namespace zorvela {

/// A table whose columns are known.
struct CsvTable {
  CsvLayout layout;
  CsvColumns columns;
};

/// Finds the table below the first line that names enough columns; titles and comments may be above it.
/// Without such a line, the columns must be clear from their cells: residue number, residue name, atom and
/// shift; or residue ("G12"), atom and shift; or assignment ("G12CA") and shift; in any order, and no other
/// column. Several numbers after a residue are never clear: nothing shows which atoms they belong to.
/// FileError where there is no table. Notes say what was passed over or concluded.
CsvTable findTable(std::string_view text, const std::string& file, std::vector<std::string>& notes);

}  // namespace zorvela

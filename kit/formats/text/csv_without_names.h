// Tables without a line of column names, whose columns are clear from their cells.
#pragma once

#include <optional>
#include <string_view>

#include "formats/text/csv_columns.h"
#include "formats/text/csv_rows.h"

namespace zorvela {

/// A table whose columns are known.
struct CsvTable {
  CsvLayout layout;
  CsvColumns columns;
};

/// A text without column names.
struct PlainTable {
  std::optional<CsvTable> table;
  std::size_t oddLine = 0;  ///< the first row that does not fit the table of the rows above it
};

/// Finds the columns of a text without column names: residue number, residue name, atom and shift; or residue
/// ("G12"), atom and shift; or assignment ("G12CA") and shift; in any order, and no other column. Nothing
/// where a row has other cells, or where there are two ways to read them. Several numbers after a residue are
/// never clear: nothing shows which atoms they belong to.
PlainTable tableWithoutNames(std::string_view text);

}  // namespace zorvela

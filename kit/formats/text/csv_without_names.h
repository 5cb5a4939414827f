// Tables without a line of column names, where the columns are plain by what they hold.
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
  std::size_t oddLine =
      0;  ///< the row that keeps the text from being a table, where those above it are rows of one
};

/// The columns of a text without column names: residue number, residue name, atom and shift; or residue
/// ("G12"), atom and shift; or assignment ("G12CA") and shift; in any order, and no other column. Nothing
/// where that is not so in every row, or can be read in two ways. A residue with several numbers after it is
/// never plain: nobody says which atoms they are of.
PlainTable tableWithoutNames(std::string_view text);

}  // namespace zorvela

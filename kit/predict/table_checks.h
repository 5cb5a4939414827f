// Rejects a damaged table: cut short, with decimal commas, with nan.
#pragma once

#include <string>

#include "GDB.h"

namespace zorvela {

/// A table and the text that it was read from.
struct ReadTable {
  const GDB& table;
  const TableLines& lines;
  const std::string& text;
  const std::string& file;  ///< name in messages
};

/// Throws TableError, with the file and the line if known, unless a reference table is complete: every
/// column, one row for each residue type (the 20, c and p; in Pro.seq.tab B, J, O, U, X and ? too) or
/// shift index, every value a finite number, limits in order, deviations above zero, shares that add up to 1,
/// a line end after the last line. `name` is that of the file as in `kTableNames`.
void checkTable(const std::string& name, const ReadTable& read);

}  // namespace zorvela

// Text cells, rows and headers of the tables that training writes.
#pragma once

#include <string>
#include <vector>

#include "GDB.h"
#include "names/nomenclature.h"

namespace zorvela {

/// The names of the backbone atoms, in the order of shift indices.
std::vector<std::string> backboneNames();
/// Rows that take their values from another type: disulfide cysteine, and proline known to be cis.
inline const std::string kDisulfide(1, kDisulfideCysteine);
inline const std::string kKnownCis(1, kPassedProlineCode);

/// The 20 types, then the two that are written in lower case: the rows of a table by residue type.
std::vector<std::string> rowNames();

/// An empty table; columns and formats are those of its VARS and FORMAT lines.
GDB startTable(const std::vector<std::string>& remarks, const std::string& columns,
               const std::string& formats);
/// Adds a row with one cell for each column.
void addRow(GDB& table, const std::vector<std::string>& cells);

/// A number with so many decimals; never -0.
std::string fixed(double value, int decimals);
/// The number that `fixed` prints with three decimals, as the tables hold it.
float thousandths(double value);
/// A number as short as it can be written ("2", "0.5").
std::string shortest(double value);
/// The text so many times.
std::string repeated(const std::string& text, std::size_t times);

}  // namespace zorvela

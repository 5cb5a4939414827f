// Numbers as text, and the tables that training writes.
#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "GDB.h"
#include "names/nomenclature.h"

namespace zorvela {

/// Returns values as printf writes them, at most 255 characters.
template <class... Values>
std::string formatted(const char* format, Values... values) {
  std::array<char, 256> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

/// A number with so many decimals; never -0.
std::string fixed(double value, int decimals);
/// The number that `fixed` prints with three decimals, as the tables hold it.
float thousandths(double value);

/// Rows that take their values from another type: disulfide cysteine, and proline known to be cis.
inline const std::string kDisulfide(1, kDisulfideCysteine);
inline const std::string kKnownCis(1, kPassedProlineCode);

/// The 20 types, then the two that are written in lower case: the rows of a table by residue type.
std::vector<std::string> rowNames();

/// Makes a table; columns and formats are those of its VARS and FORMAT lines. A row has a cell for each
/// column.
GDB tableOf(const std::vector<std::string>& remarks, const std::string& columns, const std::string& formats,
            const std::vector<std::vector<std::string>>& rows);

}  // namespace zorvela

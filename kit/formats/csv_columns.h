// Which column of a CSV file holds what, by the many names that spreadsheets and programs use.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace zorvela {

/// Index of a column that is not there.
inline constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

/// The columns of a CSV file.
struct CsvColumns {
  std::size_t number = kNoColumn;     ///< residue number
  std::size_t name = kNoColumn;       ///< residue name
  std::vector<std::size_t> residues;  ///< number, name or both in one ("G12"), decided by what they hold
  std::size_t atom = kNoColumn;
  std::size_t shift = kNoColumn;
  std::size_t chain = kNoColumn;
  std::vector<std::pair<std::size_t, std::string>> atoms;  ///< one column per atom, where there is no `atom`

  /// Whether a residue, an atom and a shift can be read from them.
  bool areEnough() const;
  /// What is missing, for a message: "residue number, atom".
  std::string missing() const;
};

/// Reads a line of column names. Case, blanks, dots and underscores in them do not count.
CsvColumns readColumns(const std::vector<std::string>& names);

}  // namespace zorvela

// Finds a table of shifts within a text, and its columns. It knows columns by the many names that
// spreadsheets and programs use, or without names by their cells.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/text/csv_rows.h"

namespace zorvela {

/// Index of a column that is not there.
inline constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

/// A column with the shifts of an atom.
struct AtomColumn {
  std::size_t column = kNoColumn;
  std::string atom;           ///< name in the table; empty where there is none
  std::optional<int> offset;  ///< see `FileShift::offset`: -1 for "CA-1"
};

/// Removes a step to a neighbour from a name and returns it: -1 for "CA-1", "CA(i-1)", "CA i-1"; not for
/// "HA1".
std::optional<int> takeOffset(std::string& name);

/// The columns of a CSV file.
struct CsvColumns {
  std::size_t number = kNoColumn;      ///< residue number
  std::size_t name = kNoColumn;        ///< residue name
  std::vector<std::size_t> residues;   ///< number, name or both in one ("G12"), by the cells
  std::size_t counter = kNoColumn;     ///< a number that may be the residue's ("#", "Index", no name at all)
  std::size_t assignment = kNoColumn;  ///< residue and atom in one ("S81CA")
  std::size_t atom = kNoColumn;
  std::size_t shift = kNoColumn;
  std::size_t chain = kNoColumn;
  std::vector<AtomColumn> atoms;     ///< one column per atom, where there is no `atom`
  std::vector<std::string> doubled;  ///< atoms that more than one column claims; none of these is in `atoms`

  /// Tells whether the number of a residue can be read from them.
  bool haveResidue() const;
  /// Tells whether a residue, an atom and a shift can be read from them.
  bool areEnough() const { return haveResidue() && (areLong() || atoms.size() > 1); }
  /// Tells whether there is one row per shift, not one per residue.
  bool areLong() const { return shift != kNoColumn && (atom != kNoColumn || assignment != kNoColumn); }
  /// Tells whether there is one row per shift, with its atom in the cell of the residue.
  bool lackAtoms() const { return areLong() && atom == kNoColumn; }
  /// Tells whether the column is read.
  bool areUsing(std::size_t column) const;
  /// Names the missing columns for a message: "residue number, atom".
  std::string missing() const;
};

/// Reads a line of column names. Case, blanks, dots, underscores, brackets and units in them do not matter.
CsvColumns readColumns(const std::vector<std::string>& names);

/// Returns the atom in a column name; its `column` is not set. Such names are "CA", "Cα (ppm)", "13CA",
/// "dCA", "CA shift", "Calpha", "CG(Pro)", "CA(i)", "CA(i-1)".
AtomColumn atomOfColumn(const std::string& name);

/// A table whose columns are known.
struct CsvTable {
  CsvLayout layout;
  CsvColumns columns;
};

/// Finds the table below the first line that names enough columns; titles and comments may be above it.
/// Without such a line, the columns must be clear from their cells. Their order does not matter, but other
/// columns are not allowed. They are residue number, residue name, atom and shift; or residue ("G12"), atom
/// and shift; or assignment ("G12CA") and shift. Several numbers after a residue are never clear: nothing
/// shows which atoms they belong to. FileError where there is no table. Notes name the lines above it, or the
/// columns found.
CsvTable findTable(std::string_view text, const std::string& file, std::vector<std::string>& notes);

}  // namespace zorvela

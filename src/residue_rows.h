// The rows of a shift table by residue.
#pragma once

#include <string>  // for std::string
#include <vector>  // for std::vector

#include "GDB.h"

/// Indexes the rows of a table by residue in one pass; a search for each residue would make a run quadratic.
/// Valid until rows or cells of the table change. A row belongs to a residue only if its RESID is the plain
/// decimal number: 007 is not residue 7.
class ResidueRows {
 public:
  struct Entry {
    int resid;
    const std::string* atomName;
    const GDB::Row* row;
  };
  using Place = std::vector<Entry>::const_iterator;

  /// The rows of one residue, in the order of the table.
  struct Residue {
    Place first;
    Place end;

    /// The first row of that atom; nullptr if there is none.
    const GDB::Row* find(const std::string& atomName) const;
    /// The shift of an atom (ppm); `absent` if it has no row.
    float shiftOf(const std::string& atomName, float absent) const;
  };

  explicit ResidueRows(const GDB& table);
  Residue of(int resid) const;

 private:
  std::vector<Entry> entries;  // by residue, then in the order of the table
};

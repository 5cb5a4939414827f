// Which residue a row of a CSV file is of.
#pragma once

#include <string>
#include <vector>

#include "formats/text/csv_columns.h"
#include "formats/text/residue_label.h"

namespace zorvela {

/// What the cells of a row say of its residue.
struct RowResidue {
  ResidueLabel label;      ///< of the cell that gives the number
  std::string name;        ///< as the file writes it; empty where it gives none
  std::string atom;        ///< of an assignment
  std::string chain;       ///< by its column or by a label
  std::string strayLabel;  ///< one that names another chain
  bool isByCounter = false;
};

/// Reads the cells of a row; each column is asked in order of trust.
RowResidue residueOf(const std::vector<std::string>& cells, const CsvColumns& columns);

/// Whether the row says for certain which residue it is of and, where that stands in the same cell, which
/// atom.
bool isPlaced(const RowResidue& residue, const CsvColumns& columns);

/// Why it is not, for a message: the cell and what it lacks.
std::string whyNotPlaced(const RowResidue& residue, const std::vector<std::string>& cells,
                         const CsvColumns& columns);

}  // namespace zorvela

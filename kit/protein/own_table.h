// From the program's own shift table to a protein.
#pragma once

#include <string>
#include <vector>

#include "GDB.h"
#include "formats/shift_model.h"
#include "zorvela/protein.h"

namespace zorvela {

/// Returns the protein of a table that has the columns RESID, ATOMNAME and SHIFT, and RESNAME or a sequence.
/// Its sequence, disulfide cysteines and shifts do not change, so that zorvela predicts the same from it and
/// from its import. `notes` of the file go in front of those of the protein. Throws a FileError for a table
/// without backbone shifts, without residues or of more residues than a protein has.
Protein proteinOfTable(const GDB& table, const std::string& file, const std::vector<std::string>& notes);

/// Returns the raw content of the table, for a sequence that the user gives.
ShiftFile wordsOfTable(const GDB& table);

}  // namespace zorvela

// From a file's own words to proteins: chains and lists chosen, residues renumbered, names made uniform.
#pragma once

#include <string>
#include <vector>

#include "formats/shift_model.h"
#include "zorvela/protein.h"
#include "zorvela/read.h"

namespace zorvela {

/// The wanted proteins of a file, at least one; see `readShiftBytes`. `path` is how messages name the file.
/// FileError for a file without shifts of a protein or with more than any has; ChoiceError for a chain or
/// list that it has not.
std::vector<Protein> makeProteins(ShiftFile file, const std::string& path, const ImportOptions& options);

}  // namespace zorvela

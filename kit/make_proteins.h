// From a file's own words to proteins: chains and lists chosen, residues renumbered, names made uniform.
#pragma once

#include <string>  // for std::string
#include <vector>  // for std::vector

#include "protein.h"
#include "shift_file.h"
#include "shift_model.h"

namespace kit {

/// The wanted proteins of a file; see `readShiftFile`.
std::vector<Protein> makeProteins(ShiftFile file, const std::string& path, const ImportOptions& options);

}  // namespace kit

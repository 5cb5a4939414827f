// From a file's own words to proteins: chains and lists chosen, residues renumbered, names made uniform.
#pragma once

#include <string>
#include <vector>

#include "formats/shift_model.h"
#include "zorvela/protein.h"
#include "zorvela/read.h"

namespace zorvela {

/// The wanted proteins of a file; see `readShiftFile`.
std::vector<Protein> makeProteins(ShiftFile file, const std::string& path, const ImportOptions& options);

}  // namespace zorvela

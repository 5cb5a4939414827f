// Makes proteins of raw file content: chooses chains and lists, renumbers residues, makes names uniform.
#pragma once

#include <string>
#include <vector>

#include "formats/shift_model.h"
#include "zorvela/protein.h"
#include "zorvela/read.h"

namespace zorvela {

/// Returns the wanted proteins of a file, at least one; see `readShiftBytes`. `path` names the file in
/// messages. Throws a FileError for a file without shifts of a protein or with more than any has, and a
/// ChoiceError for a chain or list that it does not have.
std::vector<Protein> makeProteins(ShiftFile file, const std::string& path, const ImportOptions& options);

}  // namespace zorvela

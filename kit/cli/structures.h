// Structures named with --structure.
#pragma once

#include <string>
#include <vector>

#include "zorvela/structure.h"

namespace zorvela {

/// Error where two paths lead to one file: its models would count twice.
void mustBeGivenOnce(const std::vector<std::string>& structures);

/// The structure in a file; see `readStructureFile`. --structure takes all that is named after it, so that
/// the FileError of a file with shifts says where its name belongs.
ProteinStructure readStructureArgument(const std::string& path);

}  // namespace zorvela

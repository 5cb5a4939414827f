// The reference tables as part of the program.
#pragma once

#include <map>
#include <string>

namespace zorvela {

/// Folder of the tables in reports: their folder in the source tree.
inline constexpr const char* kEmbeddedTablesFolder = "tab";

/// Returns the texts of the seven tables by the names of their files.
std::map<std::string, std::string> embeddedTables();

}  // namespace zorvela

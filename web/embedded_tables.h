// The reference tables as part of the program.
#pragma once

#include <map>
#include <string>

namespace zorvela {

/// What reports name as the folder of the tables: where they stand in the source tree.
inline constexpr const char* kEmbeddedTablesFolder = "tab";

/// Name of the file to its text, for all seven tables.
std::map<std::string, std::string> embeddedTables();

}  // namespace zorvela

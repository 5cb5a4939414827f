// The folder of the tables: option, environment, beside the program, installation.
#include "cli/reference_tables.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "cli/process.h"
#include "zorvela/error.h"

namespace zorvela {

std::string findTables(const std::string& given) {
  if (!given.empty()) return given;
  const char* home = std::getenv("ZORVELA_DIR");
  if (home != nullptr && *home != '\0') return std::string(home) + "/tab";
  const std::string program = programFolder();
  for (const char* place : {"/tab", "/../share/zorvela/tab"}) {
    const std::string beside = program + place;
    std::error_code error;
    if (!program.empty() && std::filesystem::is_directory(beside, error)) return beside;
  }
  return "./tab";
}

Tables loadTables(const std::string& folder) {
  try {
    return tablesFromFolder(folder);
  } catch (const TableError& e) {
    throw TableError(e.what() +
                     std::string("; name the folder of the seven reference tables with --tables or "
                                 "its parent with ZORVELA_DIR"));
  }
}

}  // namespace zorvela

// The folder of the tables: option, environment, beside the program, installation.
#include "cli/reference_tables.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "cli/process.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

/// The tables that lie with the program, in an unpacked folder or an installation. Empty where none do.
std::string installedTables() {
  const std::string program = programFolder();
  for (const char* place : {"/tab", "/../share/zorvela/tab"}) {
    std::string beside = program + place;
    std::error_code error;
    if (!program.empty() && std::filesystem::is_directory(beside, error)) return beside;
  }
  return {};
}

/// Corrections in each other's place, say, look as good as the right ones.
void mustBeOurs(const Tables& tables, const std::string& folder) {
  std::error_code unknown;
  if (!std::filesystem::equivalent(folder, installedTables(), unknown) || unknown) return;
  if (const std::string found = statisticsOf(tables).fingerprint; found != kShippedTables)
    throw TableError(folder, 0,
                     "the installed tables (fingerprint " + found + ") are not those of this program (" +
                         kShippedTables + ")",
                     "install it again");
}

}  // namespace

std::string findTables(const std::string& given) {
  if (!given.empty()) return given;
  const char* home = std::getenv("ZORVELA_DIR");
  if (home != nullptr && *home != '\0') return std::string(home) + "/tab";
  const std::string installed = installedTables();
  return installed.empty() ? "./tab" : installed;
}

Tables loadTables(const std::string& folder) {
  try {
    Tables tables = tablesFromFolder(folder);
    mustBeOurs(tables, folder);
    return tables;
  } catch (const TableError& e) {
    throw TableError(e.what() +
                     std::string("; name the folder of the seven reference tables with --tables or "
                                 "its parent with ZORVELA_DIR"));
  }
}

}  // namespace zorvela

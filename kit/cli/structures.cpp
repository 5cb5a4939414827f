#include "cli/structures.h"

#include <filesystem>
#include <set>
#include <system_error>

#include "zorvela/error.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

bool isShiftFile(const std::string& path) {
  try {
    readShiftFile(path, {});
    return true;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

void mustBeGivenOnce(const std::vector<std::string>& structures) {
  std::set<std::string> files;
  for (const std::string& path : structures) {
    std::error_code unknown;  // of a file that is not there: said when it is read
    const std::string file = std::filesystem::canonical(path, unknown).string();
    if (!unknown && !files.insert(file).second)
      throw Error(path, 0, "is given twice", "name each structure once");
  }
}

ProteinStructure readStructureArgument(const std::string& path) {
  try {
    return readStructureFile(path);
  } catch (const FileError&) {
    if (!isShiftFile(path)) throw;
    throw FileError(path, 0, "holds shifts and no structure",
                    "name shift files before --structure, or after --");
  }
}

}  // namespace zorvela

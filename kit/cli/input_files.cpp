// Files by device and number.
#include "cli/input_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <system_error>

#include "zorvela/error.h"

namespace zorvela {

namespace {

const std::string kStandardStream = "-";

/// Of a plain file that is there; `standardStream` is what "-" stands for.
std::optional<std::pair<dev_t, ino_t>> identityOf(const std::string& path, int standardStream) {
  struct stat info {};
  const int status = path == kStandardStream ? fstat(standardStream, &info) : stat(path.c_str(), &info);
  if (status != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  return std::pair(info.st_dev, info.st_ino);
}

}  // namespace

void InputFiles::add(const std::string& path) {
  if (path == kStandardStream && ++standardInputs > 1)
    throw Error("standard input", 0, "is given twice as -", "give - once, and other files by name");
  if (const auto identity = identityOf(path, STDIN_FILENO)) files.insert(*identity);
}

void InputFiles::add(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) add(path);
}

void InputFiles::addFolder(const std::string& folder) {
  std::error_code error;
  for (std::filesystem::directory_iterator file(folder, error), end; !error && file != end;
       file.increment(error))
    add(file->path().string());
}

void InputFiles::mustNotHold(const std::string& output) const {
  const auto identity = identityOf(output, STDOUT_FILENO);
  if (!identity || files.count(*identity) == 0) return;
  throw Error(output == kStandardStream ? "standard output" : output, 0, "is an input file",
              "choose another place with --output");
}

void mustDiffer(const std::vector<std::string>& outputs) {
  std::set<std::string> names;
  std::set<std::pair<dev_t, ino_t>> files;
  for (const std::string& output : outputs) {
    if (output.empty() || output == kStandardStream) continue;
    const auto identity = identityOf(output, STDOUT_FILENO);
    std::error_code unknown;
    const std::string name = std::filesystem::weakly_canonical(output, unknown).string();
    const bool isNewName = identity || unknown || names.insert(name).second;
    if (!isNewName || (identity && !files.insert(*identity).second))
      throw Error(output, 0, "would hold two outputs", "give each its own file");
  }
}

}  // namespace zorvela

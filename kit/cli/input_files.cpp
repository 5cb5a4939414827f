// Files by device and number.
#include "cli/input_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <system_error>

#include "cli/input.h"
#include "cli/output_place.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

const std::string kStandardStream = "-";

using Identity = std::pair<dev_t, ino_t>;

/// Of what is there; `standardStream` is what "-" stands for.
std::optional<struct stat> statusOf(const std::string& path, int standardStream) {
  struct stat info {};
  const int status = path == kStandardStream ? fstat(standardStream, &info) : stat(path.c_str(), &info);
  if (status != 0) return std::nullopt;
  return info;
}

Identity identityOf(const struct stat& info) {
  return {info.st_dev, info.st_ino};
}

bool isPipe(const struct stat& info) {
  return S_ISFIFO(info.st_mode) || S_ISSOCK(info.st_mode);
}

/// A name in a folder, however the path leads there. Nothing where it leads to no folder, which writing will
/// say.
std::optional<std::pair<Identity, std::string>> entryOf(const std::string& path) {
  try {
    const std::string place = afterLinks(path);
    if (const auto folder = statusOf(folderOf(place), -1))
      return std::pair(identityOf(*folder), baseName(place));
  } catch (const std::system_error&) {
  }
  return std::nullopt;
}

}  // namespace

void InputFiles::add(const std::string& path) {
  if (path == kStandardStream && ++standardInputs > 1)
    throw Error("standard input", 0, "is given twice as -", "give - once, and other files by name");
  const auto info = statusOf(path, STDIN_FILENO);
  if (!info) return;
  if (S_ISREG(info->st_mode)) files.insert(identityOf(*info));
  if (isPipe(*info) && !pipes.insert(identityOf(*info)).second)
    throw Error(inputName(path), 0, "is a pipe that is given twice", "give it once, and other files by name");
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
  const auto info = statusOf(output, STDOUT_FILENO);
  if (!info || files.count(identityOf(*info)) == 0) return;
  throw Error(output == kStandardStream ? "standard output" : output, 0, "is an input file",
              "choose another place with --output");
}

void mustDiffer(const std::vector<std::string>& outputs) {
  std::set<std::pair<Identity, std::string>> entries;
  std::set<Identity> files;
  for (const std::string& output : outputs) {
    if (output.empty() || output == kStandardStream) continue;
    const auto info = statusOf(output, STDOUT_FILENO);
    if (info && !S_ISREG(info->st_mode)) continue;
    const auto entry = entryOf(output);
    // To some file systems names that differ in case are one; a hard link is replaced without harm to the
    // other.
    const bool isNewFile = !info || info->st_nlink > 1 || files.insert(identityOf(*info)).second;
    if (!isNewFile || (entry && !entries.insert(*entry).second))
      throw Error(output, 0, "would hold two outputs", "give each its own file");
  }
}

}  // namespace zorvela

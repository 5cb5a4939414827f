#include "cli/input_files.h"

#include <set>
#include <system_error>

#include "cli/whole_file.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

const std::string kStandardStream = "-";

}  // namespace

void InputFiles::add(const fs::path& file) {
  std::error_code noFile;
  const std::uintmax_t size = fs::file_size(file, noFile);
  if (!noFile) files.emplace(size, file);
}

void InputFiles::add(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    const bool isStandardInput = path == kStandardStream;
    if (isStandardInput && hasStandardInput)
      throw Error("standard input", 0, "is given twice as -", "give - once, and other files by name");
    hasStandardInput = hasStandardInput || isStandardInput;
    add(fs::path(isStandardInput ? "/dev/stdin" : path));
  }
}

void InputFiles::addFolder(const std::string& folder) {
  std::error_code error;
  for (fs::directory_iterator file(folder, error), end; !error && file != end; file.increment(error))
    add(file->path());
}

void InputFiles::mustNotHold(const std::string& output) const {
  const bool isStandardOutput = output == kStandardStream;
  const fs::path place = isStandardOutput ? "/dev/stdout" : output;
  std::error_code noFile;
  const auto [first, last] = files.equal_range(fs::file_size(place, noFile));
  for (auto file = first; file != last; ++file)
    if (fs::equivalent(file->second, place, noFile))
      throw Error(isStandardOutput ? "standard output" : output, 0, "is an input file",
                  "choose another place with --output");
}

void mustDiffer(const std::vector<std::string>& outputs) {
  std::set<fs::path> places;
  for (const std::string& output : outputs) {
    std::error_code unknown;  // what is wrong with a path is said when it is written
    const fs::file_status status = fs::status(output, unknown);
    const bool isFile = fs::is_regular_file(status) || status.type() == fs::file_type::not_found;
    if (output.empty() || output == kStandardStream || !isFile) continue;
    if (!places.insert(fs::weakly_canonical(fs::absolute(afterLinks(output)))).second)
      throw Error(output, 0, "would hold two outputs", "give each its own file");
  }
}

}  // namespace zorvela

#include "cli/input_files.h"

#include <set>
#include <system_error>

#include "cli/whole_file.h"  // for afterLinks
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

const fs::path kStandardOutput = "/dev/stdout";
const fs::path kStandardError = "/dev/stderr";

/// Tells whether the output is standard output by its name. Its messages may go to the same file: > log 2>&1.
bool isStandardName(const std::string& output) {
  return output == "-" || output == kStandardOutput;
}

/// The file that an output goes to, also one that is not there yet; "-" for a standard output that is not a
/// file. Empty for devices and other pipes, which may take several outputs.
fs::path placeOf(const std::string& output) {
  std::error_code unknown;  // what is wrong with a path is said when it is written
  if (isStandardName(output))
    return fs::is_regular_file(kStandardOutput, unknown) ? fs::canonical(kStandardOutput, unknown) : "-";
  const fs::file_status status = fs::status(output, unknown);
  if (!fs::is_regular_file(status) && status.type() != fs::file_type::not_found) return {};
  return fs::weakly_canonical(fs::absolute(afterLinks(output)));
}

}  // namespace

void InputFiles::addFile(const fs::path& file) {
  std::error_code noFile;
  const std::uintmax_t size = fs::file_size(file, noFile);
  if (!noFile) files.emplace(size, file);
}

void InputFiles::add(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    const bool isStandardInput = path == "-";
    if (isStandardInput && hasStandardInput)
      throw Error("standard input", 0, "is given twice as -", "give - once, and other files by name");
    hasStandardInput = hasStandardInput || isStandardInput;
    addFile(isStandardInput ? "/dev/stdin" : path);
    std::error_code noFolder;
    for (fs::directory_iterator file(path, noFolder), end; !noFolder && file != end; file.increment(noFolder))
      addFile(file->path());
  }
}

void InputFiles::mustNotHold(const std::vector<std::string>& outputs) const {
  std::set<fs::path> places;
  for (const std::string& output : outputs) {
    if (output.empty()) continue;
    const bool isStandard = isStandardName(output);
    const std::string name = isStandard ? "standard output" : output;
    const fs::path file = isStandard ? kStandardOutput : fs::path(output);
    std::error_code noFile;
    if (!isStandard && fs::is_regular_file(file, noFile) && fs::equivalent(file, kStandardError, noFile))
      throw Error(name, 0, "receives the messages (standard error)", "choose another place with --output");
    const auto [first, last] = files.equal_range(fs::file_size(file, noFile));
    for (auto input = first; input != last; ++input)
      if (fs::equivalent(input->second, file, noFile))
        throw Error(name, 0, "is an input file", "choose another place with --output");
    const fs::path place = placeOf(output);
    if (!place.empty() && !places.insert(place).second)
      throw Error(name, 0, "would hold two outputs", "give each its own file");
  }
}

}  // namespace zorvela

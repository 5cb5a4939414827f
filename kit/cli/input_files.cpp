#include "cli/input_files.h"

#include <set>
#include <system_error>

#include "cli/whole_file.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

const std::string kStandardStream = "-";
const fs::path kStandardOutput = "/dev/stdout";
const fs::path kStandardError = "/dev/stderr";

bool isStandardStream(const std::string& output) {
  return output == kStandardStream || output == kStandardOutput;
}

/// The file that an output goes to, also one that is not there yet; "-" for a standard output that is not a
/// file. Empty for devices and other pipes, which may take several outputs.
fs::path placeOf(const std::string& output) {
  if (output.empty()) return {};
  const bool isStandard = isStandardStream(output);
  const fs::path place = isStandard ? kStandardOutput : fs::path(output);
  std::error_code unknown;  // what is wrong with a path is said when it is written
  const fs::file_status status = fs::status(place, unknown);
  if (fs::is_regular_file(status) && isStandard) return fs::canonical(place, unknown);
  if (fs::is_regular_file(status) || (!isStandard && status.type() == fs::file_type::not_found))
    return fs::weakly_canonical(fs::absolute(afterLinks(output)));
  return isStandard ? fs::path(kStandardStream) : fs::path();
}

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
  const bool isStandardOutput = isStandardStream(output);
  const fs::path place = isStandardOutput ? kStandardOutput : fs::path(output);
  std::error_code noFile;
  if (!isStandardOutput && fs::is_regular_file(place, noFile) &&
      fs::equivalent(place, kStandardError, noFile))
    throw Error(output, 0, "receives the messages (standard error)", "choose another place with --output");
  const auto [first, last] = files.equal_range(fs::file_size(place, noFile));
  for (auto file = first; file != last; ++file)
    if (fs::equivalent(file->second, place, noFile))
      throw Error(isStandardOutput ? "standard output" : output, 0, "is an input file",
                  "choose another place with --output");
}

void mustDiffer(const std::vector<std::string>& outputs) {
  std::set<fs::path> places;
  for (const std::string& output : outputs) {
    const fs::path place = placeOf(output);
    if (!place.empty() && !places.insert(place).second)
      throw Error(isStandardStream(output) ? "standard output" : output, 0, "would hold two outputs",
                  "give each its own file");
  }
}

}  // namespace zorvela

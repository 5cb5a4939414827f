// Files by device and number.
#include "cli/input_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include "zorvela/error.h"

namespace zorvela {

namespace {
const std::string kStandardStream = "-";
}

InputFiles::InputFiles(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    struct stat info {};
    const int status = path == kStandardStream ? fstat(STDIN_FILENO, &info) : stat(path.c_str(), &info);
    if (status == 0 && S_ISREG(info.st_mode)) files.emplace(info.st_dev, info.st_ino);
  }
}

void InputFiles::mustNotHold(const std::string& output) const {
  struct stat info {};
  if (output == kStandardStream || stat(output.c_str(), &info) != 0) return;
  if (files.count({info.st_dev, info.st_ino}) > 0)
    throw Error(output, 0, "is an input file", "choose another place with --output");
}

}  // namespace zorvela

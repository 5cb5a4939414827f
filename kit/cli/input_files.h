// No output takes the place of a file that was read.
#pragma once

#include <sys/types.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace zorvela {

/// The files that a command reads, told apart by device and number and not by name.
class InputFiles {
 public:
  /// "-" is standard input. A path that is not there is none.
  explicit InputFiles(const std::vector<std::string>& paths);
  /// Error if `output` is one of them. "-", a pipe or a device never is.
  void mustNotHold(const std::string& output) const;

 private:
  std::set<std::pair<dev_t, ino_t>> files;
};

}  // namespace zorvela

// No output takes the place of a file that is read, or of another output.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace zorvela {

/// The files that a command reads, told apart by device and number and not by name. Every sub-command
/// fills one, asks it about each output, and only then begins to work.
class InputFiles {
 public:
  InputFiles() = default;
  /// "-" is standard input: an Error where it is there twice, or a pipe by any name, as nobody could say who
  /// gets which part.
  explicit InputFiles(const std::vector<std::string>& paths) { add(paths); }
  /// A path that is not there, or empty, adds none.
  void add(const std::string& path);
  void add(const std::vector<std::string>& paths);
  /// All files of a folder; none where it cannot be read.
  void addFolder(const std::string& folder);
  /// Error if `output` is one of them. "-" is standard output. A pipe or a device never is, nor an empty
  /// path.
  void mustNotHold(const std::string& output) const;

 private:
  std::set<std::pair<dev_t, ino_t>> files;
  std::set<std::pair<dev_t, ino_t>> pipes;
  std::size_t standardInputs = 0;
};

/// Error if two of the outputs are the same file, also one that is not there yet and to which a link leads.
/// "-", empty paths and what is no plain file do not count.
void mustDiffer(const std::vector<std::string>& outputs);

}  // namespace zorvela

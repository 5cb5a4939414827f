// No output takes the place of a file that is read, or of another output.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace zorvela {

/// The files that a command reads, told apart by the file and not by its name. Every sub-command fills one,
/// asks it about each output, and only then begins to work.
class InputFiles {
 public:
  InputFiles() = default;
  /// "-" is standard input: an Error where it is there twice.
  explicit InputFiles(const std::vector<std::string>& paths) { add(paths); }
  /// Adds files; a path that is not there, or empty, adds none.
  void add(const std::vector<std::string>& paths);
  /// Adds all files of a folder; none where it cannot be read.
  void addFolder(const std::string& folder);
  /// Throws an Error if `output` is one of them. "-" is standard output. A pipe or a device never is, nor an
  /// empty path.
  void mustNotHold(const std::string& output) const;

 private:
  void add(const std::filesystem::path& file);

  /// By size: only files of the same size are looked at closely.
  std::multimap<std::uintmax_t, std::filesystem::path> files;
  bool hasStandardInput = false;
};

/// Throws an Error if two of the outputs are the same file, also one that is not there yet and to which a
/// link leads, or standard output and a file that it goes to. Empty paths and devices do not count.
void mustDiffer(const std::vector<std::string>& outputs);

}  // namespace zorvela

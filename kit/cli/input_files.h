// No output takes the place of a file that is read, or of another output.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace zorvela {

/// The files that a command reads, told apart by the file and not by its name. Every sub-command fills one,
/// asks it about all its outputs, and only then begins to work.
class InputFiles {
 public:
  /// Adds files, and all files of folders; a path that is not there, or empty, adds none. "-" is standard
  /// input: an Error where it is there twice.
  void add(const std::vector<std::string>& paths);
  /// Throws an Error if an output is one of them, or goes to the same file as another output, also one that
  /// is not there yet. "-" is standard output. Empty paths do not count; pipes and devices may take several.
  void mustNotHold(const std::vector<std::string>& outputs) const;

 private:
  void addFile(const std::filesystem::path& file);

  /// By size: only files of the same size are looked at closely.
  std::multimap<std::uintmax_t, std::filesystem::path> files;
  bool hasStandardInput = false;
};

}  // namespace zorvela

// Input files of the command line: one by one, as folders, or in a list. "-" is standard input.
#pragma once

#include <string>
#include <vector>

#include "cli/command_line.h"
#include "zorvela/read.h"

namespace zorvela {

/// Files as the command line names them.
struct FileArguments {
  std::vector<std::string> files;
  std::string list;          ///< a file with more names; empty for none
  bool endWithZero = false;  ///< of the names in the list: a zero byte, not a line end, as `find -print0`
};

/// Adds FILE, --files-from and --null.
void addFiles(Command& command, FileArguments& given, const std::string& text);

/// Returns the files in order, those of the list last. A folder gives its files with shifts in order of name;
/// how many others it has is said. Ends the sub-command where none are named; an Error for a list that cannot
/// be read or names none.
std::vector<std::string> namedFiles(const FileArguments& given);

/// Returns the files of a folder, in order of name. Pipes would be waited for, and hidden files are the
/// system's own: neither counts. A FileError where it cannot be read.
std::vector<std::string> filesIn(const std::string& folder);

/// Tells by its first bytes whether a file is a sequence.
bool isSequenceFile(const std::string& path);

/// Returns the bytes of a file. A FileError where it cannot be read.
std::string inputBytes(const std::string& path);

/// Returns the proteins of a file; see `readShiftFile`. `Protein::file` is the path.
std::vector<Protein> readInput(const std::string& path, const ImportOptions& options);

/// Returns the name of an input in messages: the path, or "standard input" for "-".
std::string inputName(const std::string& path);

/// Returns "data/p" for "data/p.prot" and "data/p.seq.gz": the path without ".gz" and the ending.
std::string inputStem(const std::string& path);

}  // namespace zorvela

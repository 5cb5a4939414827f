// The files that a sub-command is given: one by one, as folders, or in a list.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/command_line.h"

namespace zorvela {

/// Files as the command line names them.
struct FileArguments {
  std::vector<std::string> files;
  std::string list;          ///< a file with more names; "-" is standard input, empty none
  bool endWithZero = false;  ///< of the names in the list: a zero byte, not a line end, as `find -print0`
};

/// Adds FILE, --files-from and --null. Where there are no files, `without` may say why.
void addFiles(
    Command& command, FileArguments& given, const std::string& text,
    const std::function<void()>& without = [] {});

/// Adds --chain, which takes one name each time.
void addChains(Command& command, std::vector<std::string>& chains);

/// Adds --list, which takes one name each time.
void addLists(Command& command, std::vector<std::string>& lists, const std::string& text);

/// Returns the files of a folder, in order of name. Pipes would be waited for, and hidden files are the
/// system's own: neither counts. A FileError where it cannot be read.
std::vector<std::string> filesIn(const std::string& folder);

/// Returns the files in order, those of the list last. A folder gives its files with shifts in order of name;
/// how many others it has is said. An Error for a list that cannot be read or names none.
std::vector<std::string> namedFiles(const FileArguments& given);

}  // namespace zorvela

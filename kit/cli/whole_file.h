// Files that are written as a whole or not at all.
#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>

namespace zorvela {

/// Writes a file as a whole or not at all: `write` fills a temporary file in the same folder, which takes the
/// place of `path` when it is complete. On any failure, also a full disk, an Error is thrown and the file
/// that was there stays. The temporary file is removed then, and by an interrupt.
///
/// A replaced file keeps its permissions, and one that may not be written is not replaced. Links are
/// followed, also one whose target is not there yet. "-" and /dev/stdout are standard output; a terminal, a
/// pipe and a device are written directly.
void writeWhole(const std::string& path, const std::function<void(std::ostream&)>& write);

/// Writes a text as a file, as above.
void writeWhole(const std::string& path, const std::string& text);

/// Sends what std::cout holds; an Error where it cannot be written.
void flushStandardOutput();

/// Makes a folder, and those that it is in; an Error where it cannot be made.
void makeFolder(const std::string& folder);

/// Follows the links of a path, also to a target that is not there. std::filesystem::filesystem_error for
/// links in a circle.
std::filesystem::path afterLinks(const std::filesystem::path& path);

}  // namespace zorvela

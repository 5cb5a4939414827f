// Files that are written as a whole or not at all.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace zorvela {

/// Writes a file as a whole or not at all: `write` fills a temporary file beside `path`, which is then
/// renamed over it. On any failure, also a full disk, the temporary file is removed and a Error
/// thrown. An interrupted run (SIGHUP, SIGINT, SIGTERM) removes the temporary file as well. A path that
/// is no regular file (a terminal, a pipe, /dev/null) and "-" (standard output) are written directly.
/// One file at a time: a second call waits for the first, so `write` must not call it.
void writeWhole(const std::string& path, const std::function<void(std::ostream&)>& write);

}  // namespace zorvela

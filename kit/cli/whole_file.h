// Files that are written as a whole or not at all.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace zorvela {

/// Writes a file as a whole or not at all: `write` fills a file without a name, which gets the name of
/// `path` when it is complete and on the disk. On any failure, also a full disk, an Error is thrown and
/// the file that stood there stays. Nothing is left behind, not even by a kill, where the file system has
/// such files; elsewhere a temporary file in the same folder takes their place, which an interrupt removes.
///
/// The permissions of a replaced file are kept, but not its set-user-id and set-group-id bits. A link is
/// followed, also one whose target is not there yet. "-" (standard output), a terminal, a pipe, a device
/// and a path to something open (/dev/stdout, /proc/self/fd/3) are written directly. `write` may be called
/// twice, for the same bytes. One file at a time: a second call waits for the first, so `write` must not
/// call it.
void writeWhole(const std::string& path, const std::function<void(std::ostream&)>& write);

/// Sends what std::cout holds; an Error where it cannot be written.
void flushStandardOutput();

}  // namespace zorvela

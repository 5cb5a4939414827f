// What all sub-commands of zorvela-kit share: errors with a remedy, whole-or-nothing output, progress.
#pragma once

#include <cstddef>     // for std::size_t
#include <functional>  // for std::function
#include <iosfwd>      // for std::ostream
#include <memory>      // for std::unique_ptr
#include <stdexcept>   // for std::runtime_error
#include <string>      // for std::string

#include "GDB.h"

namespace kit {

/// An error that the user can mend. `what()` is one line: file, line where there is one, what is wrong
/// and what to do. `main` writes it to standard error and ends with status 1.
class UserError : public std::runtime_error {
 public:
  explicit UserError(const std::string& what) : std::runtime_error(what) {}
  /// "file: what; remedy" or, with a line above 0, "file:line: what; remedy". An empty remedy is left out.
  UserError(const std::string& file, std::size_t line, const std::string& what, const std::string& remedy);
};

/// Thrown at the end of a command whose errors are reported already: `main` adds no message and ends
/// with status 1.
class ReportedFailure : public std::exception {};

/// Writes a file as a whole or not at all: `write` fills a temporary file beside `path`, which is then
/// renamed over it. On any failure, also a full disk, the temporary file is removed and a UserError
/// thrown. An interrupted run (SIGHUP, SIGINT, SIGTERM) removes the temporary file as well. A path that
/// is no regular file (a terminal, a pipe, /dev/null) and "-" (standard output) are written directly.
/// One file at a time: a second call waits for the first, so `write` must not call it.
void writeWhole(const std::string& path, const std::function<void(std::ostream&)>& write);

/// Makes the program's own classes throw a UserError where they would end the process. Once, at start.
void throwInsteadOfExit();

/// Reads a table in the program's format. What the reader would write to standard error becomes the
/// text of the UserError. Not while other threads write to std::cerr.
GDB loadTable(const std::string& path, const std::string& remedy);

/// Text from a file, safe to show: control characters, which a terminal would obey, become "?".
std::string withoutControls(std::string text);

/// Whether a stream of the process (0, 1, 2) is a terminal that understands control sequences.
bool isCapableTerminal(int descriptor);

/// A progress bar on standard error: shown only on a terminal, and only for work above a second.
class Progress {
 public:
  Progress(const std::string& what, std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// One more of `total` is done. May be called from several threads.
  void step();

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace kit

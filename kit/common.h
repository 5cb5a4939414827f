// What all sub-commands of zorvela-kit share: errors with a remedy, whole-or-nothing output, progress.
#pragma once

#include <cstddef>    // for std::size_t
#include <functional> // for std::function
#include <iosfwd>     // for std::ostream
#include <stdexcept>  // for std::runtime_error
#include <string>     // for std::string

namespace kit {

/// An error that the user can mend. `what()` is one line: file, line where there is one, what is wrong
/// and what to do. `main` writes it to standard error and ends with status 1.
class UserError : public std::runtime_error {
 public:
  explicit UserError(const std::string& what) : std::runtime_error(what) {}
  /// "file: what; remedy" or, with a line above 0, "file:line: what; remedy".
  UserError(const std::string& file, std::size_t line, const std::string& what, const std::string& remedy);
};

/// Writes a file as a whole or not at all: `write` fills a temporary file beside `path`, which is then
/// renamed over it. On any failure, also a full disk, the temporary file is removed and a UserError
/// thrown. An interrupted run (SIGINT, SIGTERM) removes the temporary file as well. A path that is no
/// regular file (a terminal, a pipe, /dev/null) and "-" (standard output) are written directly.
void writeWhole(const std::string& path, const std::function<void(std::ostream&)>& write);

/// Makes the program's own classes throw a UserError where they would end the process. Once, at start.
void throwInsteadOfExit();

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
  State* state;
};

}  // namespace kit

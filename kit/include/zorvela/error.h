// The exceptions of the library: errors that the user can fix, each in one line.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace zorvela {

/// An error that the user can fix. `what()` is one line: file, line if known, what is wrong and what to do.
/// The types below tell what is at fault.
class Error : public std::runtime_error {
 public:
  explicit Error(const std::string& what) : std::runtime_error(what) {}
  /// Makes "file: what; remedy" or, with a line above 0, "file:line: what; remedy". Omits an empty remedy.
  Error(const std::string& file, std::size_t line, const std::string& what, const std::string& remedy);

  /// Returns the file at fault as the caller named it; empty if there is none.
  const std::string& file() const { return m_file; }
  /// Returns the line at fault, from 1; 0 if it is not known.
  std::size_t line() const { return m_line; }

 private:
  std::string m_file;
  std::size_t m_line = 0;
};

/// A file with shifts cannot be read, is in no known format or has no shifts of a protein.
class FileError : public Error {
 public:
  using Error::Error;
};

/// Shifts need the sequence of their protein, or do not fit the one that was given or its numbers.
class SequenceError : public FileError {
 public:
  using FileError::FileError;
};

/// A file has no such chain or shift list.
class ChoiceError : public Error {
 public:
  using Error::Error;
};

/// A reference table cannot be read or is not whole.
class TableError : public Error {
 public:
  using Error::Error;
};

}  // namespace zorvela

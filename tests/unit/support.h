// What the unit tests share: a directory of their own, environment variables, captured output, small tables.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "GDB.h"

namespace support {

/// A new, empty directory, removed with all that is in it.
class TempDir {
 public:
  TempDir() : directory(testing::TempDir() + "zorvela_XXXXXX") {
    if (!mkdtemp(directory.data())) throw std::runtime_error("cannot make " + directory);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
  }

  const std::string& path() const { return directory; }
  std::string file(const std::string& name) const { return directory + "/" + name; }
  /// Writes a file and gives its path.
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(file(name), std::ios::binary) << text;
    return file(name);
  }

 private:
  std::string directory;
};

inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// Sets an environment variable, or unsets it, until the end of the scope.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : variable(name) {
    if (const char* old = std::getenv(name)) before = old;
    set(value);
  }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;
  ~ScopedEnv() { set(before ? before->c_str() : nullptr); }

 private:
  void set(const char* value) const {
    if (value)
      setenv(variable.c_str(), value, 1);
    else
      unsetenv(variable.c_str());
  }

  std::string variable;
  std::optional<std::string> before;
};

/// What an action writes to standard output and to standard error.
struct Output {
  std::string out;
  std::string err;
};

template <class Action>
Output outputOf(Action action) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  action();
  Output output;
  output.out = testing::internal::GetCapturedStdout();
  output.err = testing::internal::GetCapturedStderr();
  return output;
}

/// For a death test whose matcher shall see standard output as well, in the order of writing.
inline void sendOutputToError() {
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

/// The table that a file with this text holds.
inline GDB tableOf(const std::string& text) {
  const TempDir dir;
  return GDB(dir.write("table.tab", text));
}

/// The rows of a table as plain maps: row number, column name, cell text.
using PlainRows = std::map<int, std::map<std::string, std::string>>;
inline PlainRows rowsOf(const GDB& table) {
  PlainRows rows;
  for (const auto& [number, row] : table.entries)
    for (const auto& [col, text] : row) rows[number][col] = text;
  return rows;
}

/// Adds a row with several cells.
inline void addRow(GDB& table, const GDB::Row& row) {
  const int number = table.getEntryCount() + 1;
  for (const auto& [col, value] : row) table.setEntry(number, col, value);
}

}  // namespace support

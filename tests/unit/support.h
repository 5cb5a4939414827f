// Helpers of the unit tests: environment variables, captured output, small tables.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include "GDB.h"
#include "support/temp_dir.h"

namespace support {

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

/// The text that an action writes to standard output and to standard error.
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

/// Returns the table of a file with this text.
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

/// Returns a small table of random-coil shifts; all values are exact in single precision.
inline GDB randomCoil() {
  return tableOf(
      "VARS RESNAME N HA C CA CB HN\nFORMAT %s %f %f %f %f %f %f\n"
      "A 124 4.25 178 52.5 19 8.25\n"
      "G 109 4 174 45 0 8.5\n"
      "K 120.5 4.5 176.5 56.5 33 8\n"
      "P 136.5 4.5 177 63.5 32 0\n");
}

}  // namespace support

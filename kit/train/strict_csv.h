// A CSV file of data for training: a header, then lines with as many fields as the header.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zorvela {

/// The remedy for a wrong line.
inline constexpr const char* kCorrectLine = "correct or remove the line";

class StrictCsv {
 public:
  struct Row {
    std::size_t line = 0;  ///< in the file, from 1
    std::vector<std::string> fields;
  };

  /// Reads the file. Empty lines are skipped; a field may be quoted, blanks around it do not count, nor does
  /// the apostrophe of `csvCell` before a name that a spreadsheet would take for a formula. Error where the
  /// file cannot be read or has no header, where a quote is not closed on its line, or a line has another
  /// number of fields than the header.
  explicit StrictCsv(const std::string& path);

  /// Index of a column; Error where the header lacks it.
  std::size_t column(const std::string& name) const;
  /// Index of a column; the number of columns where the header lacks it.
  std::size_t findColumn(const std::string& name) const;

  /// A whole number in a field; Error where it is not one or does not fit.
  int integer(const Row& row, std::size_t column) const;
  /// A finite decimal number in a field; Error where it is not one.
  double number(const Row& row, std::size_t column) const;
  /// An Error that names the file, the line of the row and the cause.
  [[noreturn]] void fail(const Row& row, const std::string& what, const std::string& remedy) const;

  std::string path;
  std::vector<std::string> header;
  std::vector<Row> rows;
};

}  // namespace zorvela

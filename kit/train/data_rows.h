// A CSV file of data for training: a header, then lines with as many fields as the header.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace zorvela {

/// A line of the file. The functions throw an Error that names the file, the line and the cause.
struct DataRow {
  std::string path;
  std::size_t line = 0;                       ///< in the file, from 1
  std::map<std::string, std::string> fields;  ///< by column

  const std::string& text(const std::string& column) const { return fields.at(column); }
  /// A whole number that fits an int.
  int integer(const std::string& column) const;
  /// A finite decimal number.
  double number(const std::string& column) const;
  [[noreturn]] void fail(const std::string& what,
                         const std::string& remedy = "correct or remove the line") const;
};

/// Reads the lines of a file, without the empty ones. A field may be quoted; blanks around it do not count.
/// `csvCell` puts an apostrophe before a name that a spreadsheet would take for a formula. The apostrophe
/// does not count either. Error where the file cannot be read, is empty, or its header lacks one of the
/// columns. Error also where a quote is not closed on its line. Error for a line with another number of
/// fields than the header.
std::vector<DataRow> readDataRows(const std::string& path, const std::vector<std::string>& columns);

}  // namespace zorvela

// Columns of text for a terminal.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace zorvela {

/// Rows of text in columns as wide as their widest cell, two blanks between them. Cells are made safe to
/// show.
class TextTable {
 public:
  using Cells = std::vector<std::string>;

  explicit TextTable(const Cells& titles) { add(titles, false); }
  /// Adds a row, in bold colour if `standsOut`. `below`: whole lines that follow it.
  void add(Cells cells, bool standsOut, std::string below = "");
  void write(bool colour, std::ostream& out) const;

 private:
  struct Row {
    Cells cells;
    bool standsOut;
    std::string below;
  };

  std::string line(const Cells& cells) const;

  std::vector<Row> rows;
  std::vector<std::size_t> widths;
};

/// The text of a cell without a value.
inline const std::string kAbsentCell = "-";

}  // namespace zorvela

// The shift rows of a file while they are read.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/shift_model.h"

namespace zorvela {

/// Counts shifts of spin systems that are not assigned to a residue, for one note.
struct Unassigned {
  std::size_t count = 0;
  std::string example;  ///< the file's name for the first of them

  void add(const std::string& name) {
    if (count++ == 0) example = name;
  }
  /// Adds the note, if there are any.
  void appendTo(std::vector<std::string>& notes) const;
};

/// Rows of chains that are found by their names.
class FoundRows {
 public:
  /// `name` is how messages name the file with the text.
  FoundRows(std::string_view text, const std::string& name);

  /// Adds a row to a chain, "" where it names none. FileError for more rows or chains than the text can have.
  void add(const std::string& chain, FileShift shift);

  /// Returns the rows as a file with one list. One-letter residue names become three-letter ones.
  ShiftFile file(std::vector<std::string> notes) &&;

  std::vector<FileShift> shifts;
  std::vector<std::string> chains;  ///< their names
  Unassigned unassigned;

 private:
  const std::string& fileName;
  Limit limit;
  std::unordered_map<std::string, std::size_t> chainIndex;
};

}  // namespace zorvela

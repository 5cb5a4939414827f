// The shift rows of a file while they are read, and those that are not used.
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

/// Counts rows or values with a fault, and keeps the first of them.
struct Tally {
  std::size_t count = 0;
  std::size_t all = 0;
  std::size_t line = 0;
  std::string first;

  /// Adds a row or value, with an empty text where it has no fault.
  void add(std::size_t atLine, const std::string& fault) {
    ++all;
    if (fault.empty() || count++ > 0) return;
    line = atLine;
    first = fault;
  }
  bool areMost() const { return count * 2 > all; }
  /// "3 of 5"
  std::string share() const { return std::to_string(count) + " of " + std::to_string(all); }
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

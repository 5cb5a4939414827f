// Shifts of spin systems that are not assigned to a residue.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "util/text.h"

namespace zorvela {

/// Counts them, for one note.
struct Unassigned {
  std::size_t count = 0;
  std::string example;  ///< the file's name for the first of them

  void add(const std::string& name) {
    if (count++ == 0) example = name;
  }
  /// Adds the note, if there are any.
  void appendTo(std::vector<std::string>& notes) const {
    if (count == 0) return;
    notes.push_back(counted(count, "shift", "shifts") + " not assigned to a residue ignored" +
                    (count == 1 ? ", that of " : ", such as those of ") + printable(example, 40));
  }
};

}  // namespace zorvela

// Shifts that a file keeps for spin systems which are not assigned to a residue.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "util/text.h"

namespace zorvela {

/// Counts them, for one note.
struct Unassigned {
  std::size_t count = 0;
  std::string example;  ///< how the file calls the first of them

  void add(const std::string& name) {
    if (count++ == 0) example = name;
  }
  /// Adds the note, if there are any.
  void appendTo(std::vector<std::string>& notes) const {
    if (count > 0)
      notes.push_back(counted(count, "shift", "shifts") +
                      " not assigned to a residue left out, such as those of " + printable(example, 40));
  }
};

}  // namespace zorvela

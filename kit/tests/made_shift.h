// Shifts written as in a table.
#pragma once

#include <string>

#include "names/nomenclature.h"
#include "protein/shifts.h"

namespace made {

/// The shift of a residue: 1, "CA", "55.1".
inline zorvela::Shift shift(int position, const std::string& atom, const std::string& text) {
  zorvela::Shift result = zorvela::readShift(text).value();
  result.position = position;
  result.atom = zorvela::atomNamed(atom).value();
  return result;
}

}  // namespace made

// Shifts written as in a table.
#pragma once

#include <string>
#include <vector>

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

/// "52A CA 56.1" of each shift, by the numbers of the file.
inline std::vector<std::string> shiftsOf(const zorvela::Protein& protein) {
  std::vector<std::string> texts;
  for (const zorvela::Shift& shift : protein.shifts)
    texts.push_back(protein.numbers[static_cast<std::size_t>(shift.position) - 1] + " " +
                    std::string(nameOf(shift.atom)) + " " + shiftText(shift));
  return texts;
}

}  // namespace made

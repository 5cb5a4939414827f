#include "protein/implausible_shifts.h"

#include <cstdlib>

#include "names/plausible_shifts.h"
#include "util/number.h"

namespace zorvela {

std::vector<std::string> implausibleShifts(const Protein& protein) {
  std::vector<std::string> found;
  for (const Shift& shift : protein.shifts) {
    const auto index = static_cast<std::size_t>(shift.resid) - 1;
    if (shift.resid < 1 || index >= protein.sequence.size()) continue;
    const char residue = protein.sequence[index];
    if (isPlausible(residue, shift.atom, std::strtod(shift.shift.c_str(), nullptr))) continue;
    const PlausibleRange range = plausibleRange(residue, shift.atom);
    found.push_back(shift.atom + " of " + residue + protein.numbers[index] + " at " + shift.shift + " ppm (" +
                    fixedText(range.low, 1) + " to " + fixedText(range.high, 1) + ")");
  }
  return found;
}

}  // namespace zorvela

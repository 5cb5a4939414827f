#include "protein/implausible_shifts.h"

#include <string>
#include <vector>

#include "names/plausible_shifts.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

void noteImplausible(Protein& protein) {
  constexpr std::size_t kLongestNote = 1000;
  std::vector<std::string> shifts;
  for (const Shift& shift : protein.shifts) {
    const auto index = static_cast<std::size_t>(shift.position) - 1;
    const char residue = protein.sequence[index];
    if (isPlausible(residue, shift.atom, shift.ppm)) continue;
    const PlausibleRange range = plausibleRange(residue, shift.atom);
    shifts.push_back(std::string(nameOf(shift.atom)) + " of " + residue + protein.numbers[index] + " at " +
                     shiftText(shift) + " ppm (" + fixedText(range.low, 1) + " to " +
                     fixedText(range.high, 1) + ")");
  }
  if (shifts.empty()) return;
  protein.notes.push_back("out of range for the residue type, so check the assignment; used all the same: " +
                          printable(enumerated(shifts), kLongestNote));
}

}  // namespace zorvela

#include "protein/implausible_shifts.h"

#include "names/plausible_shifts.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

std::vector<std::string> implausibleShifts(const Protein& protein) {
  std::vector<std::string> found;
  for (const Shift& shift : protein.shifts) {
    const auto index = static_cast<std::size_t>(shift.position) - 1;
    const char residue = protein.sequence[index];
    if (isPlausible(residue, shift.atom, shift.ppm)) continue;
    const PlausibleRange range = plausibleRange(residue, shift.atom);
    found.push_back(std::string(nameOf(shift.atom)) + " of " + residue + protein.numbers[index] + " at " +
                    shiftText(shift) + " ppm (" + fixedText(range.low, 1) + " to " +
                    fixedText(range.high, 1) + ")");
  }
  return found;
}

void noteImplausible(Protein& protein) {
  constexpr std::size_t kLongestNote = 1000;
  const std::vector<std::string> shifts = implausibleShifts(protein);
  if (shifts.empty()) return;
  protein.notes.push_back("outside the range of the residue type, so perhaps assigned wrongly; kept: " +
                          printable(enumerated(shifts), kLongestNote));
}

}  // namespace zorvela

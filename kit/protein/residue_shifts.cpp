#include "protein/residue_shifts.h"

#include <algorithm>

namespace zorvela {

ShiftRange shiftsOf(const Protein& protein, int first, int last) {
  const auto isBefore = [](const Shift& shift, int position) { return shift.position < position; };
  const auto isAfter = [](int position, const Shift& shift) { return position < shift.position; };
  const auto begin = std::lower_bound(protein.shifts.begin(), protein.shifts.end(), first, isBefore);
  return {begin, std::upper_bound(begin, protein.shifts.end(), last, isAfter)};
}

}  // namespace zorvela

#include "predict/secondary_shifts.h"

#include <cmath>

namespace zorvela {

std::optional<double> shiftAt(const SecondaryShifts& residue, AtomPlace place) {
  const float shift = residue[place];
  if (!std::isfinite(shift) || shift > kMissingSecondaryShift) return std::nullopt;
  return shift;
}

std::vector<SecondaryShifts> secondaryShifts(const ZORVELA& run) {
  std::vector<SecondaryShifts> residues(run.resTable.entries.size() / kAtomsPerResidue);
  std::size_t cell = 0;
  for (const auto& [number, row] : run.resTable.entries) {
    residues[cell / kAtomsPerResidue][cell % kAtomsPerResidue] = GDB::toFloat(GDB::cell(row, "SHIFT"));
    ++cell;
  }
  return residues;
}

}  // namespace zorvela

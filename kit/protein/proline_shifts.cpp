// CB - CG of a proline.
#include "protein/proline_shifts.h"

#include <algorithm>

namespace zorvela {

Call callOfCbMinusCg(double ppm) {
  if (ppm >= kCisCbMinusCgFrom) return Call::cis;
  return ppm <= kTransCbMinusCgUpTo ? Call::trans : Call::undecided;
}

std::optional<double> cbMinusCg(const Protein& protein, int position) {
  std::optional<double> cb;
  std::optional<double> cg;
  const auto isBefore = [](const Shift& shift, int place) { return shift.position < place; };
  auto shift = std::lower_bound(protein.shifts.begin(), protein.shifts.end(), position, isBefore);
  for (; shift != protein.shifts.end() && shift->position == position; ++shift) {
    if (shift->atom == Atom::CB) cb = shift->ppm;
    if (shift->atom == Atom::CG) cg = shift->ppm;
  }
  if (!cb || !cg) return std::nullopt;
  return *cb - *cg;
}

}  // namespace zorvela

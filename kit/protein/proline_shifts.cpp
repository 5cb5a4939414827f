// CB - CG of a proline.
#include "protein/proline_shifts.h"

#include "protein/residue_shifts.h"

namespace zorvela {

std::optional<double> cbMinusCg(const Protein& protein, int position) {
  std::optional<double> cb;
  std::optional<double> cg;
  for (const Shift& shift : shiftsOf(protein, position, position)) {
    if (shift.atom == Atom::CB) cb = shift.ppm;
    if (shift.atom == Atom::CG) cg = shift.ppm;
  }
  if (!cb || !cg) return std::nullopt;
  return *cb - *cg;
}

}  // namespace zorvela

// CB - CG of a proline.
#include "protein/proline_shifts.h"

#include <cstdlib>

#include "protein/residue_shifts.h"

namespace zorvela {

std::optional<double> cbMinusCg(const Protein& protein, int position) {
  std::optional<double> cb;
  std::optional<double> cg;
  for (const Shift& shift : shiftsOf(protein, position, position)) {
    if (shift.atom == "CB") cb = std::strtod(shift.shift.c_str(), nullptr);
    if (shift.atom == "CG") cg = std::strtod(shift.shift.c_str(), nullptr);
  }
  if (!cb || !cg) return std::nullopt;
  return *cb - *cg;
}

}  // namespace zorvela

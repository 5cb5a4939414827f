// CB - CG of a proline.
#include "protein/proline_shifts.h"

#include <algorithm>
#include <cstdlib>

namespace zorvela {

std::optional<double> cbMinusCg(const Protein& protein, int position) {
  std::optional<double> cb;
  std::optional<double> cg;
  const auto first = std::lower_bound(protein.shifts.begin(), protein.shifts.end(), position,
                                      [](const Shift& shift, int resid) { return shift.resid < resid; });
  for (auto shift = first; shift != protein.shifts.end() && shift->resid == position; ++shift) {
    if (shift->atom == "CB") cb = std::strtod(shift->shift.c_str(), nullptr);
    if (shift->atom == "CG") cg = std::strtod(shift->shift.c_str(), nullptr);
  }
  if (!cb || !cg) return std::nullopt;
  return *cb - *cg;
}

}  // namespace zorvela

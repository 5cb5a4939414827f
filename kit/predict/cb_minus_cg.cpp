#include "predict/cb_minus_cg.h"

namespace zorvela {

Call callOfCbMinusCg(double ppm) {
  if (ppm >= kCisCbMinusCgFrom) return Call::cis;
  return ppm <= kTransCbMinusCgUpTo ? Call::trans : Call::undecided;
}

std::optional<double> cbMinusCg(const Protein& protein, int position) {
  const Shift* cb = shiftOf(protein, position, Atom::CB);
  const Shift* cg = shiftOf(protein, position, Atom::CG);
  return cb != nullptr && cg != nullptr ? std::optional(cb->ppm - cg->ppm) : std::nullopt;
}

}  // namespace zorvela

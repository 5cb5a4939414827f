// CB - CG of a proline, which depends on the bond before it.
#pragma once

#include <optional>

#include "zorvela/protein.h"

namespace zorvela {

/// CB - CG of a proline (ppm) from which it is cis, and up to which it is trans: the ring carbons move apart
/// in cis prolines (Schubert et al., J Biomol NMR 24:149, 2002). Between the two both are possible.
inline constexpr double kCisCbMinusCgFrom = 8.0;
inline constexpr double kTransCbMinusCgUpTo = 6.5;

/// Returns CB - CG of a residue (ppm); nothing where one of the two is missing. `position` counts from 1.
std::optional<double> cbMinusCg(const Protein& protein, int position);

}  // namespace zorvela

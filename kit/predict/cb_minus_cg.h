// What CB - CG of a proline tells by itself: the ring carbons move apart in cis prolines.
#pragma once

#include <optional>

#include "zorvela/calls.h"
#include "zorvela/protein.h"

namespace zorvela {

/// CB - CG of a proline (ppm) from which it is cis, and up to which it is trans. Source: Schubert et al.,
/// J Biomol NMR 24:149, 2002.
inline constexpr double kCisCbMinusCgFrom = 8.0;
inline constexpr double kTransCbMinusCgUpTo = 6.5;

/// Returns cis or trans by these bounds; undecided between them.
Call callOfCbMinusCg(double ppm);

/// Returns CB - CG of a residue (ppm); nothing if one of the two is missing. `position` counts from 1.
std::optional<double> cbMinusCg(const Protein& protein, int position);

}  // namespace zorvela

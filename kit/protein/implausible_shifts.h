// The shifts of a protein that are likely to be assigned to the wrong atom or residue.
#pragma once

#include "zorvela/protein.h"

namespace zorvela {

/// Adds a note that names the shifts outside their plausible range, if there are any: "CA of M1 at 73.5 ppm
/// (46.4 to 66.4)".
void noteImplausible(Protein& protein);

}  // namespace zorvela

// The shifts of a protein that are likely to be assigned to the wrong atom or residue.
#pragma once

#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

/// The shifts outside their plausible range, as "CA of M1 at 73.5 ppm (46.4 to 66.4)".
std::vector<std::string> implausibleShifts(const Protein& protein);

/// Adds a note that names them, if there are any.
void noteImplausible(Protein& protein);

}  // namespace zorvela

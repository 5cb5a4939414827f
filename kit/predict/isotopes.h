// Isotope shifts: how much deuterons on carbon lower the shifts of a residue.
#pragma once

#include "zorvela/core.h"

namespace zorvela {

/// The isotope shift (ppm, 0 or below) of CA, CB, or CG of proline in a residue whose hydrogens on carbon are
/// all deuterons; those on N, O and S have exchanged with the solvent. 0 for other atoms and residue types.
double isotopeShift(char type, Atom atom);

}  // namespace zorvela

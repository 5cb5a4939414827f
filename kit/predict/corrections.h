// Corrections of the shifts of a chain before predicting: referencing offsets and isotope shifts.
#pragma once

#include <map>
#include <string>

#include "zorvela/core.h"

namespace zorvela {

/// Values to subtract from the shifts of each atom (ppm): CA, CB, CG, HA, C.
using Offsets = std::map<std::string, double>;

struct Corrections {
  Offsets offsets;
  double deuteration = 0;           ///< share of the hydrogens on carbon that are deuterons, 0 to 1
  bool isDeuterationGiven = false;  ///< by the user, who then means it with --as-referenced, too

  bool empty() const { return offsets.empty() && deuteration == 0; }
};

/// Returns a shift of an atom in a residue of this type without offset and isotope shift, to six decimals;
/// HA2 and HA3 of glycine as HA.
double corrected(double shift, char type, Atom atom, const Corrections& corrections);

/// Returns "13C is 2.03 ppm too high, HA is 0.31 ppm too low, carbon is deuterated (85 %), which lowers it;
/// corrected before predicting (--as-referenced keeps it)".
std::string correctionText(const Corrections& corrections);

/// Returns "Corrected: 2.03 ppm subtracted from CA, CB and CG of proline, 0.31 ppm added to HA, isotope
/// shifts of deuterium (85 %) subtracted from CA, CB and CG of proline".
std::string correctionRemark(const Corrections& corrections);

}  // namespace zorvela

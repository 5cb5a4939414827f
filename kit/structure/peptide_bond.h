// Omega of one peptide bond, or what the CA atoms alone say of it.
#pragma once

#include <string>
#include <vector>

#include "structure/coordinates.h"
#include "zorvela/structure.h"

namespace zorvela {

/// Tells whether two residues are bonded: C and N, or without one of them the CA atoms, as near as in a
/// peptide bond in any conformation.
bool areBonded(const BackboneResidue& before, const BackboneResidue& after);

/// The bond between two residues in each conformation that has its atoms, the most occupied one first, among
/// equals the one that the file has first. Empty where they are not bonded.
std::vector<ModelBond> peptideBonds(const BackboneResidue& before, const BackboneResidue& after);

/// Why two neighbours in a file are not bonded: "no bond to K116: C - N 4.5 A".
std::string whyNotBonded(const BackboneResidue& before, const BackboneResidue& after);

}  // namespace zorvela

// Which residues of a model are one molecule, also where several share the name of a chain.
#pragma once

#include <string>
#include <vector>

#include "structure/coordinates.h"

namespace zorvela {

/// The amino acids of one molecule, in the order of the chain.
struct Molecule {
  std::string name;  ///< of the chain
  std::string key;   ///< the same in all models
  std::vector<const BackboneResidue*> residues;
};

/// The molecules of a model. A part of a chain goes on from the one before it if it is bonded to it, or if
/// numbers between them are left out, as for residues that were not seen. A residue that stands behind the
/// others, as MSE after TER, goes to its number if it is bonded there.
std::vector<Molecule> moleculesOf(const BackboneModel& model);

}  // namespace zorvela

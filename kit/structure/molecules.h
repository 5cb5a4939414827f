// Which residues of a model are one molecule, also where several share the name of a chain.
#pragma once

#include <string>
#include <vector>

#include "structure/coordinates.h"

namespace zorvela {

/// Residues of a model.
using Residues = std::vector<const BackboneResidue*>;

/// The amino acids of one molecule, in the order of the chain.
struct Molecule {
  std::string name;  ///< of the chain
  std::string key;   ///< the same in all models
  Residues residues;
};

/// Returns the molecules of a model. A part of a chain continues the one before it if it is bonded to it, or
/// if numbers are missing between them, as for residues that were not seen. A residue after the others, such
/// as MSE after TER, goes to its number if it is bonded there.
std::vector<Molecule> moleculesOf(const BackboneModel& model);

}  // namespace zorvela

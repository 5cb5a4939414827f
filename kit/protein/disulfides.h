// Which cysteines are oxidised.
#pragma once

#include "protein/sequence.h"
#include "zorvela/protein.h"

namespace zorvela {

/// A cysteine with a CB above this (ppm) is taken as oxidised: reduced ones lie about 28, disulfides
/// about 41 (Sharma and Rajarathnam, J Biomol NMR 18:165, 2000).
inline constexpr double kOxidisedFrom = 33.0;

/// Writes c into the protein's sequence for each cysteine in a disulfide bond. The state of
/// the bond or residue in the file counts first, then the state of all cysteines of the chain, then CB. Notes
/// name the decisions, and the residues where CB contradicts the file.
void markDisulfides(const FileChain& chain, const ChainSequence& sequence, Protein& protein);

}  // namespace zorvela

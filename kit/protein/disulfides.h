// Which cysteines are in a disulfide bond: by the file's own words, else by their CB shift.
#pragma once

#include "protein/sequence.h"
#include "zorvela/protein.h"

namespace zorvela {

/// A cysteine with a CB above this (ppm) is taken as oxidised: reduced ones lie about 28, disulfides
/// about 41 (Sharma and Rajarathnam, J Biomol NMR 18:165, 2000).
inline constexpr double kOxidisedFrom = 33.0;

/// Whether a CB shift is above that.
bool looksOxidised(const Shift& beta);

/// Writes c into the protein's sequence for each cysteine in a disulfide bond. First counts what the file
/// says of the bond or the residue, then what it says of all cysteines of the chain, then CB. What was
/// decided, and where CB contradicts the file, goes to the notes.
void markDisulfides(const FileChain& chain, const ChainSequence& sequence, Protein& protein);

}  // namespace zorvela

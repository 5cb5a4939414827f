// Finds the cysteines in a disulfide bond: by the file, else by their CB shift.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "protein/sequence.h"
#include "zorvela/protein.h"

namespace zorvela {

/// A cysteine with a CB above this (ppm) is taken as oxidised: reduced ones lie about 28, disulfides
/// about 41 (Sharma and Rajarathnam, J Biomol NMR 18:165, 2000).
inline constexpr double kOxidisedFrom = 33.0;

/// Tells whether a CB shift is above that.
bool looksOxidised(const Shift& beta);

/// Returns the places (from 0) of the reduced cysteines (C) whose CB shift looks oxidised.
std::vector<std::size_t> oxidisedByShift(const Protein& protein);

/// Returns the note on cysteines that are in a disulfide bond by CB, without the residues.
std::string bondedByShiftText();

/// Writes c into the protein's sequence for each cysteine in a disulfide bond. The state of
/// the bond or residue in the file counts first, then the state of all cysteines of the chain, then CB. Notes
/// name the decisions, and the residues where CB contradicts the file.
void markDisulfides(const FileChain& chain, const ChainSequence& sequence, Protein& protein);

}  // namespace zorvela

// The state of a residue by its shifts: an oxidised cysteine, a cis proline.
#pragma once

#include <optional>

#include "protein/sequence.h"
#include "zorvela/calls.h"
#include "zorvela/protein.h"

namespace zorvela {

/// A cysteine with a CB above this (ppm) is taken as oxidised: reduced ones lie about 28, disulfides
/// about 41 (Sharma and Rajarathnam, J Biomol NMR 18:165, 2000).
inline constexpr double kOxidisedFrom = 33.0;

/// Writes c into the protein's sequence for each cysteine in a disulfide bond. The state of
/// the bond or residue in the file counts first, then the state of all cysteines of the chain, then CB. Notes
/// name the decisions, and the residues where CB contradicts the file.
void markDisulfides(const FileChain& chain, const ChainSequence& sequence, Protein& protein);

/// CB - CG of a proline (ppm) from which it is cis, and up to which it is trans: the ring carbons move apart
/// in cis prolines (Schubert et al., J Biomol NMR 24:149, 2002).
inline constexpr double kCisCbMinusCgFrom = 8.0;
inline constexpr double kTransCbMinusCgUpTo = 6.5;

/// Returns cis or trans by these bounds; undecided between them.
Call callOfCbMinusCg(double ppm);

/// Returns CB - CG of a residue (ppm); nothing if one of the two is missing. `position` counts from 1.
std::optional<double> cbMinusCg(const Protein& protein, int position);

}  // namespace zorvela

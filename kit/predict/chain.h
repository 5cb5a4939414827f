// A protein as the core sees it: residues with their observed shifts.
#pragma once

#include <cstddef>
#include <vector>

#include "predict/corrections.h"
#include "zorvela/core.h"
#include "zorvela/protein.h"

namespace zorvela {

/// Makes residues of a protein, with its shifts less what is to be subtracted from them.
std::vector<Residue> residuesOf(const Protein& protein, const Corrections& corrections = {});

/// Tells whether a residue (from 0) is a proline inside the sequence with enough shifts around it.
bool isPredictable(const std::vector<Residue>& residues, std::size_t place);

/// The triplet around such a proline.
Triplet tripletAt(const std::vector<Residue>& residues, const std::vector<BackboneValues>& secondary,
                  std::size_t place);

/// CG of a proline as it is compared.
float cgOf(const Residue& residue);

}  // namespace zorvela

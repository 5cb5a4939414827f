// Turns the factors of a probability into contributions.
#pragma once

#include <vector>

#include "zorvela/core.h"
#include "zorvela/evidence.h"

namespace zorvela {

/// Returns the contributions to the prediction of residue `place` (from 0) of the sequence.
Evidence evidenceOf(const Model& model, const std::vector<Residue>& sequence, std::size_t place,
                    const Triplet& triplet, const CisPrediction& prediction);

}  // namespace zorvela

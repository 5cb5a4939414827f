// From the factors of a probability to contributions.
#pragma once

#include <vector>

#include "zorvela/core.h"
#include "zorvela/evidence.h"

namespace zorvela {

/// What the prediction of residue `place` (from 0) of the sequence is made of.
Evidence evidenceOf(const Model& model, const std::vector<Residue>& sequence, std::size_t place,
                    const Triplet& triplet, const CisPrediction& prediction);

}  // namespace zorvela

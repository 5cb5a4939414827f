// From the factors of a probability to contributions.
#pragma once

#include <vector>

#include "predict/next_shift.h"
#include "zorvela/core.h"
#include "zorvela/evidence.h"

namespace zorvela {

/// What the prediction of residue `place` (from 0) of the sequence is made of.
Evidence evidenceOf(const Model& model, const std::vector<Residue>& sequence, std::size_t place,
                    const Triplet& triplet, const CisPrediction& prediction);

/// A shift of a proline's triplet as if it were still to be measured: what the model expects of it. `type` is
/// that of the shift's residue.
MissingShift missingShift(const Model& model, char type, std::size_t index);

}  // namespace zorvela

// From the program's own factors to contributions.
#pragma once

#include "ZORVELA.h"
#include "predict/next_shift.h"
#include "zorvela/evidence.h"
#include "zorvela/protein.h"

namespace zorvela {

/// What a prediction of `run` is made of. `protein` is the one that the run holds; it gives the observed
/// shifts.
Evidence evidenceOf(ZORVELA& run, const Protein& protein, const ProlinePrediction& prediction);

/// A shift of a proline's triplet as if it were still to be measured: what the tables of the run expect of
/// it.
MissingShift missingShift(ZORVELA& run, int prolineResid, int index);

}  // namespace zorvela

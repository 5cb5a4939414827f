// Compares the call of each proline with its bond in structures.
#pragma once

#include <vector>

#include "zorvela/finding.h"
#include "zorvela/predict.h"
#include "zorvela/protein.h"
#include "zorvela/structure.h"

namespace zorvela {

/// Adds the findings of structures to the results of one shift file: the finding of each proline, the
/// matching chains and the notes. A chain of a structure belongs to the most similar protein, if it is the
/// same protein (see `kSameProteinFrom`). If several are equally similar, as in a homodimer, it belongs to
/// all of them. If the structure has a chain named like each of them, it belongs to the one of its own name.
/// `proteins` and `results` have the same order.
void compareWithStructures(const std::vector<Protein>& proteins,
                           const std::vector<ProteinStructure>& structures,
                           std::vector<ProteinResult>& results);

}  // namespace zorvela

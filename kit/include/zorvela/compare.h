// Compares the call of each proline with its bond in structures.
#pragma once

#include <cstddef>
#include <string>
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

/// Returns a line for each structure chain without a match: "model.pdb, chain C (25 residues) has no shifts".
std::vector<std::string> chainsWithoutShifts(const std::vector<ChainMatch>& matches,
                                             const std::vector<ProteinStructure>& structures);

}  // namespace zorvela

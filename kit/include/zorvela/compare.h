// Shifts against structures: for each proline the call from the shifts beside the bond in the structures.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "zorvela/finding.h"
#include "zorvela/predict.h"
#include "zorvela/protein.h"
#include "zorvela/structure.h"

namespace zorvela {

/// Puts what the structures say into the results of the proteins of one shift file: the finding of each
/// proline, the matching chains and the notes. A chain of a structure belongs to the protein that it is most
/// alike, if it is the same protein (see `kSameProteinFrom`). Where several are equally alike, as the copies
/// of a homodimer, it belongs to all of them; or to the one of its own name, if the structure has a chain of
/// the name of each. `proteins` and `results` go together one by one.
void compareWithStructures(const std::vector<Protein>& proteins,
                           const std::vector<ProteinStructure>& structures,
                           std::vector<ProteinResult>& results);

/// The structure chains that are in none of the matches, each as a line: "model.pdb, chain C (25 residues)
/// has no shifts".
std::vector<std::string> chainsWithoutShifts(const std::vector<ChainMatch>& matches,
                                             const std::vector<ProteinStructure>& structures);

}  // namespace zorvela

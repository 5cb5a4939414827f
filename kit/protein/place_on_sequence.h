// Puts the rows of a shift list on the sequence that lies beside it, where they fit.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "formats/sequence_file.h"
#include "formats/shift_model.h"

namespace zorvela {

/// Gives a chain of a shift file the residues of the sequence: of its only chain, of the one with the same
/// name, else of the only one that fits. Returns false, and changes nothing, where the file has the same
/// sequence itself. `firstResidue` is the number of the first residue; without it the sequence's own numbers
/// count, or it begins with 1. `path` is how messages name the shift file.
///
/// SequenceError where too many residues are in conflict, naming the number that fits if there is one; where
/// the number is open; and for the first residue that the file calls otherwise.
bool placeOnSequence(ShiftFile& file, std::size_t chain, const SequenceFile& sequence,
                     std::optional<int> firstResidue, const std::string& path);

}  // namespace zorvela

// The shifts of a chain that the table holds: rows placed on the sequence, atoms named as in the table.
#pragma once

#include <string>
#include <vector>

#include "protein/sequence.h"
#include "zorvela/protein.h"

namespace zorvela {

/// The backbone, CB and proline CG shifts among the rows, in the order of the table, one per atom. All
/// others are counted in the notes, with the reason; other atoms, which every file has, in the asides.
std::vector<Shift> makeShifts(const ChainSequence& sequence, const ShiftRows& rows,
                              std::vector<std::string>& notes, std::vector<std::string>& asides);

/// Whether a shift stands before another one in the table: by residue, then N, HN, HA, HA2, HA3, C, CA,
/// CB, CG.
bool isBefore(const Shift& a, const Shift& b);

/// Whether the text of a shift is the mark of a missing one (999 or above, as in 9999.000).
bool isMissingMark(const std::string& shift);

/// How many rows have a value for an atom of the table.
std::size_t countTableShifts(const ShiftRows& rows);

}  // namespace zorvela

// The shifts of a chain that the table holds: rows placed on the sequence, atoms named as in the table.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "protein/sequence.h"
#include "zorvela/protein.h"

namespace zorvela {

/// The backbone, CB and proline CG shifts among the rows, in the order of the table, one per atom. All
/// others are counted in the notes, with the reason; other atoms, which every file has, in the asides.
std::vector<Shift> makeShifts(const ChainSequence& sequence, const ShiftRows& rows,
                              std::vector<std::string>& notes, std::vector<std::string>& asides);

/// A shift by its text in a file, of no residue and atom yet; nothing if the text is not a number.
std::optional<Shift> readShift(const std::string& text);

/// Whether it is the mark of a missing shift (999 or above, as in 9999.000).
bool isMissingMark(const Shift& shift);

/// Whether a shift stands before another one in the table.
bool isBefore(const Shift& a, const Shift& b);

/// Says how many shifts are of atoms that no table holds.
void noteOtherAtoms(std::size_t count, std::vector<std::string>& asides);

/// How many rows have a value for an atom of the table.
std::size_t countTableShifts(const ShiftRows& rows);

}  // namespace zorvela

// The shifts of a chain that the table holds: rows placed on the sequence, atoms named as in the table.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "protein/sequence.h"
#include "zorvela/protein.h"

namespace zorvela {

/// Returns the backbone, CB and proline CG shifts among the rows, in the order of the table, one per atom.
/// Notes count the others, with the reason; `asides` count other atoms, which every file has.
std::vector<Shift> makeShifts(const ChainSequence& sequence, const ShiftRows& rows,
                              std::vector<std::string>& notes, std::vector<std::string>& asides);

/// The note on atoms that a residue type does not have, without the atoms.
inline constexpr const char* kForeignAtoms = "atoms that this residue type does not have; ignored: ";

/// Reads a shift, without residue and atom; nothing if the text is not a number.
std::optional<Shift> readShift(const std::string& text);

/// Tells whether it is a placeholder for a missing shift (999 or above, as in 9999.000).
bool isMissingMark(const Shift& shift);

/// Position of a residue and place of its atom in the table: the order of its shifts.
using AtomKey = std::pair<int, std::size_t>;
inline AtomKey atomKey(int position, Atom atom) {
  return {position, tableRank(atom)};
}

/// Notes how many shifts belong to atoms that no table holds.
void noteOtherAtoms(std::size_t count, std::vector<std::string>& asides);

/// Counts the rows with a value for an atom of the table.
std::size_t countTableShifts(const ShiftRows& rows);

/// Adds a note that names the shifts outside their plausible range, if there are any: "CA of M1 at 73.5 ppm
/// (46.4 to 66.4)".
void noteImplausible(Protein& protein);

}  // namespace zorvela

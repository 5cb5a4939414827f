// The backbone atoms of a structure file as gemmi's models.
//
// Only what omega needs is handed to gemmi: the atoms N, CA and C of whatever residue. All else in a
// structure file (side chains, waters, cell, symmetry, history) is passed over, so that memory stays small
// and a fault in a part that nobody reads does not stop the reading.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gemmi/model.hpp>  // for gemmi::Structure

namespace zorvela {

/// What was read, and what could not be used.
struct Coordinates {
  gemmi::Structure structure;
  std::vector<std::string> notes;
};

/// More models than any ensemble has.
inline constexpr std::size_t kMostModels = 10000;

/// Whether a text has the records of a PDB file.
bool isPdb(std::string_view text);

/// Reads PDB text. FileError with the line for an atom line that is cut or whose coordinates are not in
/// their columns, and for models that are not closed. `name` is how messages name the file.
Coordinates readPdbCoordinates(const std::string& text, const std::string& name);

/// Reads mmCIF text. FileError with the line for text that breaks the rules of CIF.
Coordinates readMmcifCoordinates(const std::string& text, const std::string& name);

}  // namespace zorvela

// The sequence of a chain: residues in order, gaps filled, numbers kept, names reduced to one letter.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "formats/shift_model.h"
#include "names/nomenclature.h"

namespace zorvela {

/// Rows of one chain.
using ShiftRows = std::vector<const FileShift*>;

/// How a row points to its residue: its key, else its number.
const std::string& keyOf(const FileShift& row);

/// A residue of a chain, or a place in a gap.
struct ChainResidue {
  std::string name;     ///< as the file writes it; empty for a gap
  std::string number;   ///< the file's own
  ResidueReading type;  ///< with what the file says of the thiol of this residue
};

/// Residues have positions from 1, as in the table.
struct ChainSequence {
  std::vector<ChainResidue> residues;
  std::unordered_map<std::string, int> byKey;     ///< position by `FileResidue::key`
  std::unordered_map<std::string, int> byNumber;  ///< position by number

  int size() const { return static_cast<int>(residues.size()); }
  const ChainResidue& at(int position) const { return residues[static_cast<std::size_t>(position) - 1]; }
};

/// The sequence that the file gives; where it gives none, that of the rows, sorted by residue number.
/// Missing residues between two numbers become "?".
ChainSequence makeSequence(const FileChain& chain, const ShiftRows& rows, std::vector<std::string>& notes);

/// Polymer type of a chain by the names of its residues or, without a sequence, of its rows.
Polymer polymerByNames(const FileChain& chain, const ShiftRows& rows);

}  // namespace zorvela

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

/// Returns the key of the row's residue, else its number.
const std::string& keyOf(const FileShift& row);

/// A residue with its type, or a place in a gap, which has no name. Each has a number.
using ChainResidue = FileResidue;

/// Residues have positions from 1, as in the table.
struct ChainSequence {
  std::vector<ChainResidue> residues;
  std::unordered_map<std::string, int> byKey;     ///< position of the first residue with a key
  std::unordered_map<std::string, int> byNumber;  ///< position of the first residue with a number

  int size() const { return static_cast<int>(residues.size()); }
  const ChainResidue& at(int position) const { return residues[static_cast<std::size_t>(position) - 1]; }
  /// Returns the position of the residue with a key, or with a number; 0 if there is none.
  int positionOfKey(const std::string& key) const;
  int positionOfNumber(const std::string& number) const;
};

/// Returns the sequence of the file; without one, that of the rows, sorted by residue number. Missing
/// residues between two numbers become "?".
ChainSequence makeSequence(std::vector<FileResidue> residues, const ShiftRows& rows,
                           std::vector<std::string>& notes);

/// Returns the polymer type of a chain by the names of its residues or, without a sequence, of its rows.
Polymer polymerByNames(const FileChain& chain, const ShiftRows& rows);

}  // namespace zorvela

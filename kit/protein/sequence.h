// The sequence of a chain: residues in order, gaps filled, numbers kept, names reduced to one letter.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "formats/shift_model.h"
#include "names/nomenclature.h"

namespace zorvela {

/// Rows of one chain.
using ShiftRows = std::vector<const FileShift*>;

/// Residues are numbered from 1, as in the table.
struct ChainSequence {
  std::string letters;  ///< without c: disulfides are settled later
  std::vector<ResidueType> types;
  std::vector<std::string> names;                 ///< as the file writes them; empty for a gap
  std::vector<std::string> numbers;               ///< the file's own
  std::vector<Thiol> thiols;                      ///< what the file says of the single residue
  std::unordered_map<std::string, int> byKey;     ///< residue by `FileResidue::key`
  std::unordered_map<std::string, int> byNumber;  ///< residue by number

  int size() const { return static_cast<int>(letters.size()); }
  /// The residue's own number, for messages.
  const std::string& number(int resid) const { return numbers[static_cast<std::size_t>(resid) - 1]; }
  /// As the file writes it.
  const std::string& name(int resid) const { return names[static_cast<std::size_t>(resid) - 1]; }
  char letter(int resid) const { return letters[static_cast<std::size_t>(resid) - 1]; }
  const ResidueType& type(int resid) const { return types[static_cast<std::size_t>(resid) - 1]; }
};

/// The sequence that the file gives; where it gives none, that of the rows, sorted by residue number.
/// Missing residues between two numbers become "?". Of more residues than tables may have (kMostResiduesMade)
/// only somewhat more than that limit.
ChainSequence makeSequence(const FileChain& chain, const ShiftRows& rows, std::vector<std::string>& notes);

/// Polymer type of a chain by the names of its residues or, without a sequence, of its rows.
Polymer polymerByNames(const FileChain& chain, const ShiftRows& rows);

}  // namespace zorvela

// Atoms that a file gives twice: which of them is used, and the note that says so.
#pragma once

#include <string>
#include <vector>

#include <gemmi/model.hpp>  // for gemmi::Residue

namespace zorvela {

/// Fills residues with atoms that differ in name or conformation: of two that do not the first is used.
class DistinctAtoms {
 public:
  /// Adds an atom to a residue of a chain, or notes that it is not used.
  void add(const gemmi::Atom& atom, gemmi::Residue& residue, const std::string& chain);
  /// One line that names the residues, where there are any.
  std::vector<std::string> notes() const;

 private:
  std::vector<std::string> repeated;  // residues
};

/// "residue PRO 17A of chain B", safe to show.
std::string residueText(const gemmi::Residue& residue, const std::string& chain);

}  // namespace zorvela

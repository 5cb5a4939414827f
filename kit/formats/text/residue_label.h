// Residues as people label them in tables: "12", "G12", "Gly-12", "82P", "82 PRO", "S81CA", "Alanine",
// "A:SER81".
#pragma once

#include <optional>
#include <string>

namespace zorvela {

/// What a cell says of a residue; empty is what it does not say.
struct ResidueLabel {
  std::string chain;  ///< one letter or digit
  std::string number;
  std::string code;      ///< one letter right after a number: insertion code, or the name ("82P")
  std::string name;      ///< as the cell writes it
  std::string atom;      ///< of an assignment ("CA" in "S81CA")
  bool hasDash = false;  ///< "-" between name and number, which may be a minus sign; it is not in `number`
};

/// Reads the cell. Nothing where it is none of the forms above or has more in it, as "((resid" or "126.962".
/// With `holdsAtom`, what follows the number is an atom name.
std::optional<ResidueLabel> readLabel(const std::string& cell, bool holdsAtom = false);

}  // namespace zorvela

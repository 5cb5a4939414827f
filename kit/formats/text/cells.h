// Reads single cells of a table: values, and residues as people and assignment programs label them. Such
// labels are "12", "G12", "Gly-12", "82P", "82 PRO", "S81CA", "12GlyCa", "Alanine", "A:SER81", "1G7",
// "G12-1", "NA:A.81.SER.CA".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zorvela {

/// The parts of a residue label; those that the cell lacks are empty.
struct ResidueLabel {
  std::string chain;
  std::string number;
  std::string code;           ///< one letter right after a number: insertion code, or the name ("82P")
  std::string name;           ///< as the cell writes it
  std::string atom;           ///< of an assignment ("CA" in "S81CA")
  std::optional<int> offset;  ///< see `FileShift::offset`: -1 for "G12-1"
  bool hasDash = false;  ///< "-" between name and number, which may be a minus sign; it is not in `number`
};

/// Reads the cell. Nothing where it has none of the forms above or has more in it, as "((resid" or "126.962".
/// With `holdsAtom`, what follows the residue is an atom name.
std::optional<ResidueLabel> readLabel(const std::string& cell, bool holdsAtom = false);

/// Tells whether the cell names a spin system that is not assigned to a residue: "?", "X205", "@12",
/// "{5}[123]".
bool isUnassignedLabel(const std::string& cell);

/// Tells whether a cell has no value: it is empty, "-", "n.a.", "NaN" ...
bool isNoValue(const std::string& cell);

/// Returns a value as text for `toDecimal`: a decimal comma becomes a point, any dash a minus sign. A cell
/// with both point and comma is returned as it is.
std::string valueText(const std::string& cell);

/// Reads the number in a cell, by `valueText`; nothing where there is another text.
std::optional<double> numberIn(const std::string& cell);

/// Tells whether programs write this number (ppm) for a missing shift: 0, or 999 and above.
bool isMissing(double ppm);

/// Tells whether an atom, as the table names it, can have this shift (ppm) in a diamagnetic protein. Other
/// atoms can have any. The bounds are wide: they separate columns, not right assignments from wrong ones.
bool canBeShiftOf(std::string_view atom, double ppm);

/// Does the same for an atom of a residue, as the file names them. Atoms that the table lacks can have any
/// shift.
bool canBeShift(const std::string& residue, const std::string& atom, double ppm);

/// Returns the cell in quotes for a message; a long one is cut.
std::string quotedCell(const std::string& cell);

}  // namespace zorvela

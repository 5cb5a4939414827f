// Reads single cells of a CSV file.
#pragma once

#include <optional>
#include <string>

namespace zorvela {

/// Tells whether a cell has no value: it is empty, "-", "n.a.", "NaN" ...
bool isNoValue(const std::string& cell);

/// Returns a value as text for `toDecimal`: a decimal comma becomes a point, any dash a minus sign. A cell
/// with both point and comma is returned as it is.
std::string valueText(const std::string& cell);

/// Reads the number in a cell, by `valueText`; nothing where there is another text.
std::optional<double> numberIn(const std::string& cell);

/// Tells whether programs write this number (ppm) for a missing shift: 0, or 999 and above.
bool isMissing(double ppm);

/// Tells whether an atom of a residue, as the file names them, can have this shift (ppm) in a diamagnetic
/// protein; atoms that the table lacks can have any. The bounds are wide: they separate the columns of a
/// table, not right assignments from wrong ones.
bool canBeShift(const std::string& residue, const std::string& atom, double ppm);

/// Returns the cell in quotes for a message; a long one is cut.
std::string quotedCell(const std::string& cell);

}  // namespace zorvela

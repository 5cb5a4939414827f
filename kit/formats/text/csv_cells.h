// Reads single cells of a CSV file.
#pragma once

#include <string>

namespace zorvela {

/// Tells whether a cell has no value: it is empty, "-", "n.a.", "NaN" ...
bool isNoValue(const std::string& cell);

/// Returns a value as text for `toDecimal`: a decimal comma becomes a point, any dash a minus sign. A cell
/// with both point and comma is returned as it is.
std::string valueText(const std::string& cell);

/// Tells whether the cell is a number, by `valueText`.
bool isNumber(const std::string& cell);

/// Tells whether a table atom (N, HN, CA ...) can have this shift (ppm) in a diamagnetic protein. The bounds
/// are wide: they separate the columns of a table, not right assignments from wrong ones.
bool canBeShiftOf(const std::string& atom, const std::string& value);

/// Tells whether an atom and residue, as the file names them, can have this shift; other atoms can have any.
bool canBeShiftIn(const std::string& residue, const std::string& atom, const std::string& value);

/// Tells whether the cell is a number that programs write for a missing shift: 0, or 999 and above.
bool isMissingNumber(const std::string& cell);

/// Returns the cell in quotes for a message; a long one is cut.
std::string quotedCell(const std::string& cell);

}  // namespace zorvela

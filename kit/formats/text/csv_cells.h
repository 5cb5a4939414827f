// What single cells of a CSV file say.
#pragma once

#include <string>

namespace zorvela {

/// What people write for a value that is not there: nothing, "-", "n.a.", "NaN" ...
bool isNoValue(const std::string& cell);

/// A value as text for `toDecimal`: a decimal comma as a point, any dash as a minus sign. The cell itself
/// where it has both point and comma.
std::string valueText(const std::string& cell);

/// Whether the cell is a number, by `valueText`.
bool isNumber(const std::string& cell);

/// Whether a table atom (N, HN, CA ...) can have this shift (ppm) in a diamagnetic protein. The bounds are
/// wide: they tell the columns of a table apart, and not right assignments from wrong ones.
bool canBeShiftOf(const std::string& atom, const std::string& value);

/// The same for an atom as the file names it, of a residue as it names that; other atoms can have any.
bool canBeShiftIn(const std::string& residue, const std::string& atom, const std::string& value);

/// Whether the cell is a number that programs write for a missing shift: 0, or 999 and above.
bool isMissingNumber(const std::string& cell);

/// The cell in quotes, for a message: cut where it is long.
std::string quotedCell(const std::string& cell);

}  // namespace zorvela

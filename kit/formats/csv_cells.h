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

}  // namespace zorvela

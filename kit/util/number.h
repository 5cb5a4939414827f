// Numbers as text, the same on every system and in every locale.
#pragma once

#include <string>

namespace zorvela {

/// Returns the fewest digits that read back as the same number, with an exponent if that is shorter: "0.1",
/// "25", "1e-04".
std::string numberText(float value);

/// Returns the number with so many decimals, as printf writes it.
std::string fixedText(double value, int decimals);

/// Returns the number with a sign, except for zero: "+4.1", "-0.3", "0.0".
std::string signedText(double value, int decimals = 1);

}  // namespace zorvela

// Numbers as text, the same on every system and in every locale.
#pragma once

#include <string>

namespace zorvela {

/// The fewest rounded digits that give back the same number, with an exponent where that is shorter: "0.1",
/// "25", "1e-04".
std::string numberText(float value);

/// With so many decimals, as printf writes it.
std::string fixedText(double value, int decimals);

/// The same with a sign but for zero: "+4.1", "-0.3", "0.0".
std::string signedText(double value, int decimals = 1);

}  // namespace zorvela

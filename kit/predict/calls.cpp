// From a probability to a word.
#include "zorvela/calls.h"

#include <array>
#include <cmath>

namespace zorvela {

std::string toText(Call call) {
  static const std::array<const char*, 4> kNames = {"cis", "trans", "undecided", "none"};
  return kNames.at(static_cast<std::size_t>(call));
}

Call callOf(float pCisNorm) {
  if (std::isnan(pCisNorm)) return Call::none;
  if (pCisNorm >= kCisFrom) return Call::cis;
  return pCisNorm <= kTransUpTo ? Call::trans : Call::undecided;
}

}  // namespace zorvela

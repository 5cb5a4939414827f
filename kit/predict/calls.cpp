// From a probability to a word.
#include "zorvela/calls.h"

#include <cmath>

namespace zorvela {

std::string toText(Call call) {
  switch (call) {
    case Call::cis:
      return "cis";
    case Call::trans:
      return "trans";
    case Call::undecided:
      return "undecided";
    case Call::none:
      break;
  }
  return "none";
}

Call callOf(float pCisNorm) {
  if (std::isnan(pCisNorm)) return Call::none;
  if (pCisNorm >= kCisFrom) return Call::cis;
  return pCisNorm <= kTransUpTo ? Call::trans : Call::undecided;
}

}  // namespace zorvela

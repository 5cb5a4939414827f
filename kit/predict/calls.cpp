// From a probability to a word.
#include "zorvela/calls.h"

#include <array>
#include <cmath>

namespace zorvela {

std::string toText(Call call) {
  static const std::array<const char*, 4> kNames = {"cis", "trans", "undecided", "none"};
  return kNames.at(static_cast<std::size_t>(call));
}

std::string toText(Verdict verdict) {
  switch (verdict) {
    case Verdict::agree:
      return "agree";
    case Verdict::disagree:
      return "disagree";
    case Verdict::undecided:
      return "undecided by shifts";
    case Verdict::mixed:
      return "mixed models";
    case Verdict::noPrediction:
      return "no prediction";
    case Verdict::notInStructure:
      break;
  }
  return "not in the structure";
}

std::string toText(StructureCall call) {
  switch (call) {
    case StructureCall::cis:
      return "cis";
    case StructureCall::trans:
      return "trans";
    case StructureCall::twisted:
      return "twisted";
    case StructureCall::mixed:
      return "mixed";
    case StructureCall::none:
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

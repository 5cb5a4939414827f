// A residue and its neighbours: positions, numbers and keys.
#pragma once

#include <string>  // for std::string

/// Positions in a triplet; they key the shares of residue types in the proline databases.
inline constexpr int kPrevious = 1;
inline constexpr int kCentre = 2;
inline constexpr int kNext = 3;

/// The residue `offset` further on. Wraps at the ends of the residue numbers instead of overflowing.
inline int residueAt(int resid, int offset) {
  return static_cast<int>(static_cast<unsigned>(resid) + static_cast<unsigned>(offset));
}

/// The key of a residue's entry in a triplet record, such as CA_R1.
inline std::string atPosition(const std::string& key, int position) {
  return key + "_R" + std::to_string(position);
}

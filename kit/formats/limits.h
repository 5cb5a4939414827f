// Limits of what is read, far above any real file: they bound the time and memory that a broken or hostile
// one can ask for. The longest known protein has 35,000 residues; the largest entries of the BMRB have some
// 30,000 shifts, 40 chains and 50 lists.
#pragma once

#include <algorithm>
#include <cstddef>

namespace zorvela {

inline constexpr std::size_t kMostShiftRows = 300000;
/// Of a format whose rows may be short: a row takes some 200 bytes of memory.
inline constexpr std::size_t kShiftRowsOfAnyFile = 100000;
inline constexpr std::size_t kBytesPerShiftRow = 20;

/// So many shift rows as a text of this size can hold, whatever they look like: memory stays in proportion.
constexpr std::size_t mostShiftRows(std::size_t bytes) {
  return std::min(kMostShiftRows, kShiftRowsOfAnyFile + bytes / kBytesPerShiftRow);
}
inline constexpr std::size_t kLongestSequence = 40000;
/// Of all chains that a file describes, and in all tables that are made from it, gaps included.
inline constexpr std::size_t kMostResidues = 100000;
inline constexpr std::size_t kMostListsOrChains = 1000;
/// Each chain may be asked for in each list.
inline constexpr std::size_t kMostChainsTimesLists = 10000;
/// Ends of disulfide bonds, counted for each copy of a molecule.
inline constexpr std::size_t kMostBondEnds = 100000;
/// Names of chains, lists and molecules are cut after so many bytes.
inline constexpr std::size_t kLongestName = 200;

/// Words of a STAR file, and save frames with its data blocks.
inline constexpr std::size_t kMostWords = 20000000;
inline constexpr std::size_t kMostFrames = 100000;

}  // namespace zorvela

// Limits of what is read, far above any real file: they bound the time and memory that a broken or hostile
// file can use. The longest known protein has 35,000 residues; the largest entries of the BMRB have some
// 30,000 shifts, 40 chains and 50 lists.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "zorvela/error.h"

namespace zorvela {

inline constexpr std::size_t kMostShiftRows = 300000;
inline constexpr std::size_t kLongestSequence = 40000;
/// For all chains that a file describes, and for all tables that are made from it, gaps included.
inline constexpr std::size_t kMostResidues = 100000;
inline constexpr std::size_t kMostListsOrChains = 1000;
/// Names of chains, lists and molecules are cut after so many bytes.
inline constexpr std::size_t kLongestNameKept = 200;

/// The most of something that a file may have, and the parts of the message beyond it.
struct Limit {
  std::size_t most;
  const char* has;
  const char* what;
  const char* remedy;
};

inline constexpr const char* kOneProteinRemedy = "split it into one file per protein";
inline constexpr const char* kPartRemedy = "give the part with the protein only";
inline constexpr const char* kShiftPartRemedy = "give the part with the sequence and the shifts only";

// clang-format off
namespace limits {
inline constexpr Limit kFrames =     {100000, "has", "save frames", kShiftPartRemedy};
inline constexpr Limit kEntries =    {kMostListsOrChains, "holds", "entries", "split it into several files"};
inline constexpr Limit kMolecules =  {kMostListsOrChains, "describes", "molecules", kPartRemedy};
inline constexpr Limit kChains =     {kMostListsOrChains, "describes", "chains", kPartRemedy};
inline constexpr Limit kNamedChains = {kMostListsOrChains, "has", "chains", "check the column of chain names"};
inline constexpr Limit kResidues =   {kMostResidues, "describes", "residues", kPartRemedy};
inline constexpr Limit kResiduesOfEntries = {10 * kMostResidues, "describes", "residues in all entries together", "split it into several files"};
inline constexpr Limit kBondEnds =   {100000, "has", "ends of disulfide bonds in all copies", kPartRemedy};
inline constexpr Limit kLists =      {kMostListsOrChains, "has", "shift lists", kOneProteinRemedy};
inline constexpr Limit kShiftRows =  {kMostShiftRows, "has", "shift rows", kOneProteinRemedy};
inline constexpr Limit kModels =     {10000, "has", "models", "give a part of them"};
inline constexpr Limit kChainsTimesLists = {10000, "has", "chains times shift lists", kOneProteinRemedy};
inline constexpr Limit kSequence =   {kLongestSequence, "has a sequence of", "residues", "no protein is that long: check the file"};
inline constexpr Limit kResiduesMade = {kMostResidues, "makes", "residues in all tables together", "choose a chain and a list, or split the file"};
// clang-format on

/// Returns the limit for a text of so many bytes. Its rows may be short, and each takes some 200 bytes of
/// memory.
constexpr Limit shiftRows(std::size_t bytes) {
  return {std::min(kMostShiftRows, 100000 + bytes / 20), "has", "shift rows", kOneProteinRemedy};
}

/// Returns the limit for a file of so many bytes. A residue with one atom takes up to 1 kB of memory, and at
/// least some 15 bytes of text; in the columns of the archive, 70 or more.
constexpr Limit structureResidues(std::size_t bytes) {
  return {30000 + bytes / 50, "has", "residues, too many for its size",
          "give the models or chains that have shifts"};
}

/// Returns the limit of chains that fit a protein of the shifts, with their prolines and bonds, for a
/// structure of so many residues and bonds: each can belong to several proteins.
constexpr Limit structureFits(std::size_t residues) {
  return {30000 + 2 * residues, "gives", "results for all chains and lists of the shifts together",
          "choose a chain and a list of the shifts"};
}

/// Returns the limit of predicted prolines in all tables that are made from a file of so many bytes. In a
/// report, each takes some 10 kB; in the files of the archive, a proline has 5 kB of text.
constexpr Limit prolinesMade(std::size_t bytes) {
  return {1500 + bytes / 1000, "makes", "prolines that can be predicted, too many for its size",
          "choose a chain and a list, or split the file"};
}
}  // namespace limits

/// The work for all entries of a file, those that fail included.
struct FileWork {
  std::size_t residues = 0;
  std::size_t chainsTimesLists = 0;
  std::size_t bondEnds = 0;
};

/// A file is beyond a limit: no part of it is used.
class LimitError : public FileError {
 public:
  using FileError::FileError;
};

/// Throws LimitError for more than the limit; `file` is how messages name it, `line` is where it is exceeded.
void checkLimit(std::size_t count, const Limit& limit, const std::string& file, std::size_t line = 0);

/// Returns a name of a chain, list, molecule, residue or model as readers keep it: a name above
/// `kLongestNameKept` bytes is cut, with a note.
std::string nameOf(std::string_view text, std::vector<std::string>& notes);

}  // namespace zorvela

// Labels for training: which prolines of proteins with shifts are cis or trans in structures.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "zorvela/protein.h"
#include "zorvela/structure.h"

namespace zorvela {

/// Fit of a structure chain to a protein.
struct StructureFit {
  std::string chain;    ///< structure and chain: "1stnA"
  double identity = 0;  ///< percent of the aligned residues
  std::size_t aligned = 0;
};

/// Counts of cis and trans for the bond before a proline. They count the chains and models of a structure, or
/// structures.
struct BondVotes {
  std::size_t cis = 0;
  std::size_t trans = 0;
  std::size_t neither = 0;  ///< bonds that are twisted, structures that are divided
  StructureFit best;        ///< of the structures that count; without a name if there is none
};

/// The prolines of all proteins, by protein and position in its sequence (from 1).
using ProlineVotes = std::map<std::pair<std::size_t, int>, BondVotes>;

/// Collects the votes of structures for the prolines of proteins.
///
/// A chain fits a protein if at least `identity` percent of the aligned residues are identical, and at least
/// 25 residues are aligned, or all of a shorter protein. Each structure has one vote for a proline: the state
/// that most of its chains and models have; a split one where they are divided or twisted, none without the
/// residue or one of its neighbours. Chains are found by the words of four residues that they share with the
/// proteins, so the work grows linearly with the number of structures. Memory: the proteins and their votes.
class LabelVotes {
 public:
  /// The identity (percent) of the same sequence.
  static constexpr double kSameSequence = 100;

  LabelVotes(std::vector<Protein> proteins, double identity);

  /// The bonds of one structure, for `count`; nothing where it fits none of the proteins. May run in several
  /// threads at once.
  std::optional<ProlineVotes> bondsOf(const ProteinStructure& structure) const;
  /// Counts the vote of one structure for each of its prolines. Homologous structures count only where there
  /// are no identical ones. The order in which structures come does not matter.
  void count(const ProlineVotes& bonds);

  /// Returns "4 of 5 prolines in 2 proteins labelled".
  std::string summary() const;

  /// The labels in the columns that `train` and `evaluate` read, a line for each proline.
  void write(std::ostream& out) const;

 private:
  std::vector<std::size_t> candidates(const StructureChain& chain) const;

  std::vector<Protein> all;
  ProlineVotes votes;
  std::unordered_map<std::string, std::vector<std::size_t>> proteinsWith;
  double leastIdentity;
};

/// The name of an entry or structure: the file's without folder, ".gz" and ending, and without the "pdb" of
/// "pdb1abc.ent".
std::string entryName(const std::string& path);

}  // namespace zorvela

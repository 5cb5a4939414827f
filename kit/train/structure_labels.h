// Labels for training: which prolines of proteins with shifts are cis or trans in structures.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <unordered_map>
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

/// Votes of the structures for one proline: of the identical ones if there are any, else of the homologous.
struct ProlineVotes {
  int position = 0;     ///< in the sequence, from 1
  std::size_t cis = 0;  ///< structures with a cis bond
  std::size_t trans = 0;
  bool isAnySplit = false;  ///< structures with the bond that are neither
  StructureFit best;        ///< of these structures; without a name if there is none
};

/// The vote of one structure for one proline.
struct Ballot {
  std::size_t protein = 0;
  std::size_t proline = 0;    ///< index into its prolines
  std::optional<bool> isCis;  ///< nothing where its chains and models are split
  StructureFit fit;
};

/// The votes of one structure.
struct Ballots {
  bool fits = false;  ///< one of the proteins at least, whether it has a bond or not
  std::vector<Ballot> list;
};

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

  /// The votes of one structure, without counting them. May run in several threads at once.
  Ballots ballots(const ProteinStructure& structure) const;
  /// Counts votes. The order in which structures come does not matter.
  void count(const std::vector<Ballot>& ballots);

  std::size_t proteinCount() const { return all.size(); }
  /// Count the prolines with a label, and all prolines.
  std::size_t labelled() const;
  std::size_t prolines() const;

  /// The labels in the columns that `train` and `evaluate` read, a line for each proline.
  void write(std::ostream& out) const;

 private:
  std::vector<std::size_t> candidates(const StructureChain& chain) const;

  std::vector<Protein> all;
  std::vector<std::vector<ProlineVotes>> votes;  ///< for each protein
  std::unordered_map<std::string, std::vector<std::size_t>> proteinsWith;
  double leastIdentity;
};

/// The name of an entry or structure: the file's without folder, ".gz" and ending, and without the "pdb" of
/// "pdb1abc.ent".
std::string entryName(const std::string& path);

}  // namespace zorvela

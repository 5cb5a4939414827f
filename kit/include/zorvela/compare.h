// Shifts against structures: for each proline the call from the shifts beside the bond in the structures.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/protein.h"
#include "zorvela/structure.h"

namespace zorvela {

/// A proline in one chain of one structure.
struct BondSite {
  std::string file;
  std::string chain;
  std::string number;      ///< in the structure, with insertion code
  std::string residue;     ///< as the structure writes it: PRO, HYP, or the residue that stands there instead
  std::size_t models = 0;  ///< of the structure
  std::vector<ModelBond> bonds;   ///< one for each model that has the bond
  std::vector<ModelBond> others;  ///< alternate conformations with another state
  std::string reason;             ///< why there is no bond, where `bonds` is empty

  std::size_t count(BondState state) const;
};

/// A proline of the shifts beside its place in the structures.
struct ComparedProline {
  ProlineResult shifts;
  std::vector<BondSite> sites;  ///< one for each matching chain that has the residue
  StructureCall structure = StructureCall::none;
  Verdict verdict = Verdict::notInStructure;
  std::string evidence;  ///< a sentence: for a disagreement what speaks for either side; else why, or empty

  /// Bonds in that state over all sites.
  std::size_t count(BondState state) const;
  /// All bonds of all sites.
  std::vector<ModelBond> bonds() const;
};

/// How a chain of a structure fits the protein of the shifts.
struct ChainMatch {
  std::string file;
  std::string chain;
  std::size_t aligned = 0;              ///< pairs of residues
  std::size_t identical = 0;            ///< of these, of the same type
  std::vector<std::string> mismatches;  ///< other residue types: "K14 is ALA 20"
  std::vector<std::string> missing;     ///< residues of the shifts without coordinates: "1-5"
};

/// One protein with shifts against all structures.
struct ComparedProtein {
  ProteinResult result;                   ///< as `Predictor` gives it, and what the structures say
  std::vector<ChainMatch> matches;        ///< the chains that were compared
  std::vector<ComparedProline> prolines;  ///< one for each of `result.prolines`, in that order
  std::vector<std::string> notes;         ///< mismatches, missing residues, chains left out
};

/// Whether a chain is the same protein as a sequence: at least 70 % of the aligned residues are identical,
/// and at least 25 residues, or half of the shorter one if that is less, are aligned.
inline constexpr double kSameProteinFrom = 70;
inline constexpr std::size_t kFewestAligned = 25;

/// Compares the proteins of one shift file with structures. A chain of a structure belongs to the protein
/// that it is most alike, if it is the same protein (see `kSameProteinFrom`). Where several are equally
/// alike, as the copies of a homodimer, it belongs to all of them; or to the one of its own name, if the
/// structure has a chain of the name of each. `proteins` and `results` go together one by one.
std::vector<ComparedProtein> compareWithStructures(const std::vector<Protein>& proteins,
                                                   const std::vector<ProteinResult>& results,
                                                   const std::vector<ProteinStructure>& structures);

/// The structure chains that are in none of the matches, each as a line: "model.pdb, chain C (25 residues)
/// has no shifts".
std::vector<std::string> chainsWithoutShifts(const std::vector<ChainMatch>& matches,
                                             const std::vector<ProteinStructure>& structures);

/// The mean of |omega| of the bonds that have it (degrees); nothing without any.
std::optional<double> meanOmega(const std::vector<ModelBond>& bonds);
/// The mean CA - CA distance (A) of the bonds without omega; nothing without any.
std::optional<double> meanCaToCa(const std::vector<ModelBond>& bonds);

}  // namespace zorvela

// The bond before a proline in structures, and its comparison with the call from shifts.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zorvela {

/// The state of a peptide bond in coordinates, or of its copies in several models, chains or structures. Cis
/// or trans: at least one copy has this state and none the other. Twisted: all copies are in between. Mixed:
/// some copies are cis and others trans. None: there is no bond.
enum class BondState { cis, trans, twisted, mixed, none };
/// Returns "cis", "trans", "twisted", "mixed" or "none".
std::string toText(BondState state);

/// The bond X-Pro in one model, or in an alternate conformation of it.
struct ModelBond {
  std::string model;             ///< its number in the file
  std::string conformation;      ///< letter of the alternate conformation; empty if there is only one
  std::optional<double> omega;   ///< degrees, from -180 to 180; nothing without its four atoms
  std::optional<double> caToCa;  ///< distance of the CA atoms (A), if omega is not known
  BondState state = BondState::trans;
};

/// The bonds before a proline of a chain in the models of its structure.
struct ProlineBonds {
  std::vector<ModelBond> bonds;   ///< main conformation, one for each model with both residues
  std::vector<ModelBond> others;  ///< alternate conformations with another state
  std::size_t modelsWithout = 0;  ///< models in which the bond is impossible or missing
  std::string namesWithout;       ///< the first of these: "2, 4, 6, 9"
  std::string reason;             ///< why there is no bond, if `bonds` is empty: "first residue of the chain"
};

/// A proline in one chain of one structure.
struct BondSite : ProlineBonds {
  std::string file;
  std::string chain;
  std::string number;      ///< in the structure, with insertion code
  std::string residue;     ///< name in the structure: PRO, HYP, or another residue at this place
  std::size_t models = 0;  ///< of the structure
};

/// Agreement of the call from the shifts with the bond in the structures.
enum class Verdict { agree, disagree, undecided, mixed, noPrediction, notInStructure };
/// Returns "agree", "disagree", "undecided by shifts", "mixed models", "no prediction" or "not in the
/// structure".
std::string toText(Verdict verdict);

/// The finding of the structures for one proline; `compareWithStructures` makes it.
struct StructureFinding {
  std::vector<BondSite> sites;  ///< one for each matching chain that has the residue
  BondState call = BondState::none;
  Verdict verdict = Verdict::notInStructure;
  std::string sentence;  ///< what was seen, with the shifts' answer if they disagree; or why there is nothing
};

/// Returns the state of the bonds of all sites together.
BondState seenIn(const StructureFinding& finding);
/// Counts the bonds of all sites in that state.
std::size_t countBonds(const StructureFinding& finding, BondState state);
/// Returns the mean of |omega| (degrees) of the bonds that have it. Nothing if none has it, or for mixed
/// bonds, because no model would have this mean.
std::optional<double> meanOmega(const StructureFinding& finding);
/// Returns the mean CA - CA distance (A) of the bonds without omega; nothing if there are none or if mixed.
std::optional<double> meanCaToCa(const StructureFinding& finding);

/// Fit of a structure chain to the protein of the shifts.
struct ChainMatch {
  std::string file;
  std::string chain;
  std::size_t aligned = 0;              ///< pairs of residues
  std::size_t identical = 0;            ///< of these, of the same type
  std::vector<std::string> mismatches;  ///< other residue types: "K14 is ALA 20"
  std::vector<std::string> missing;     ///< residues of the shifts without coordinates: "1-5"
  std::size_t molecule = 0;             ///< from 1, where several molecules share the name of the chain
  std::string residues;                 ///< "1-40" in the structure, if the chain has more than these
  std::vector<std::string> leftOver;    ///< residues of the chain that fit no shifts: "101-125"
};

/// Returns "model.pdb, chain A (135 of 136 aligned residues are the same)".
std::string toText(const ChainMatch& match);
/// Returns a chain of a structure for people: "model.pdb, chain A", or "model.pdb, chain A, residues 1-40".
std::string structureChainName(const std::string& file, const std::string& chain,
                               const std::string& residues = "");

/// Describes the bonds of a finding: "trans in 9, twisted in 1 of 10 models (mean |omega| 171 degrees)", and
/// the models without a bond: "; no bond in 4 of 10 models (2, 4, 6, 9)".
std::string seenText(const StructureFinding& finding);

/// Counts the models by state: "8 trans, 2 cis"; empty without a bond.
std::string modelsText(const StructureFinding& finding);

/// Describes the finding of each of several structures; empty if there is only one.
std::vector<StructureFinding> inEachStructure(const StructureFinding& finding);

}  // namespace zorvela

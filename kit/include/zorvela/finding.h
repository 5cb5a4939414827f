// What structures say of the bond before a proline, and how it goes with the call from its shifts.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zorvela {

/// The state of a peptide bond in coordinates.
enum class BondState { cis, trans, twisted };
/// "cis", "trans" or "twisted".
std::string toText(BondState state);

/// The bond X-Pro in one model, or in an alternate conformation of it.
struct ModelBond {
  std::string model;             ///< its number in the file
  std::string conformation;      ///< letter of the alternate conformation; empty where there is but one
  std::optional<double> omega;   ///< degrees, from -180 to 180; nothing without its four atoms
  std::optional<double> caToCa;  ///< distance of the CA atoms (A), where omega is not known
  BondState state = BondState::trans;
};

/// A proline in one chain of one structure.
struct BondSite {
  std::string file;
  std::string chain;
  std::string number;      ///< in the structure, with insertion code
  std::string residue;     ///< as the structure writes it: PRO, HYP, or the residue that stands there instead
  std::size_t models = 0;  ///< of the structure
  std::vector<ModelBond> bonds;   ///< one for each model that has the bond
  std::vector<ModelBond> others;  ///< alternate conformations with another state
  std::size_t modelsWithout = 0;  ///< models in which the bond is impossible or not there
  std::string namesWithout;       ///< of these: "2, 4, 6, 9"
  std::string reason;             ///< why there is no bond, where `bonds` is empty
};

/// What the structures say of a bond: cis or trans where at least one model does and none says the other;
/// twisted where all models are in between; mixed where models, chains or structures contradict each other.
enum class StructureCall { cis, trans, twisted, mixed, none };
/// "cis", "trans", "twisted", "mixed" or "none".
std::string toText(StructureCall call);

/// How the shifts of a proline and its bond in the structures go together.
enum class Verdict { agree, disagree, undecided, mixed, noPrediction, notInStructure };
/// "agree", "disagree", "undecided by shifts", "mixed models", "no prediction" or "not in the structure".
std::string toText(Verdict verdict);

/// What the structures say of one proline; `compareWithStructures` finds it.
struct StructureFinding {
  std::vector<BondSite> sites;  ///< one for each matching chain that has the residue
  StructureCall call = StructureCall::none;
  Verdict verdict = Verdict::notInStructure;
  std::string
      sentence;  ///< what was seen, for a disagreement with what the shifts say; or why there is nothing
};

/// What the bonds of all sites are together.
StructureCall seenIn(const StructureFinding& finding);
/// Counts the bonds of all sites in that state.
std::size_t countBonds(const StructureFinding& finding, BondState state);
/// The mean of |omega| of the bonds that have it (degrees); nothing without any, or for mixed ones, where it
/// would be that of no model.
std::optional<double> meanOmega(const StructureFinding& finding);
/// The mean CA - CA distance (A) of the bonds without omega; nothing without any or for mixed ones.
std::optional<double> meanCaToCa(const StructureFinding& finding);

/// How a chain of a structure fits the protein of the shifts.
struct ChainMatch {
  std::string file;
  std::string chain;
  std::size_t aligned = 0;              ///< pairs of residues
  std::size_t identical = 0;            ///< of these, of the same type
  std::vector<std::string> mismatches;  ///< other residue types: "K14 is ALA 20"
  std::vector<std::string> missing;     ///< residues of the shifts without coordinates: "1-5"
  std::size_t molecule = 0;             ///< from 1, where several molecules share the name of the chain
  std::string residues;                 ///< "1-40" in the structure, where the chain has more than these
  std::vector<std::string> leftOver;    ///< residues of the chain that fit no shifts: "101-125"
};

/// "model.pdb, chain A (135 of 136 aligned residues are the same)".
std::string toText(const ChainMatch& match);
/// A chain of a structure for people: "model.pdb, chain A", or "model.pdb, chain A, residues 1-40".
std::string structureChainName(const std::string& file, const std::string& chain,
                               const std::string& residues = "");

/// What the bonds of a finding are: "trans in 9, twisted in 1 of 10 models (mean |omega| 171 degrees)", with
/// the models that have none: "; no bond in 4 of 10 models (2, 4, 6, 9)".
std::string seenText(const StructureFinding& finding);

/// How many models say what: "8 trans, 2 cis"; empty without a bond.
std::string modelsText(const StructureFinding& finding);

/// What each of several structures says; empty where there is but one.
std::vector<StructureFinding> inEachStructure(const StructureFinding& finding);

}  // namespace zorvela

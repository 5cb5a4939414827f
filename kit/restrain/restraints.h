// Cis prolines in the words of structure calculation programs.
//
// `restrainedChains` takes what is needed from the results; each program is a row of `restraintFormats` with
// a function that gives its text. Conventions differ by one residue, so each declaration has a comment with
// both residues.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/protein.h"
#include "zorvela/structure.h"

namespace zorvela {

/// A proline and the residue before it, numbered as in the shift file.
struct RestrainedBond {
  std::string chain;
  char letterBefore = '?';   ///< one-letter name, without the state of its thiol
  std::string numberBefore;  ///< empty before the first residue
  std::string number;        ///< of the proline
  Call call = Call::none;
  float pCisNorm = 0;           ///< 0 without a prediction
  std::string reason;           ///< why there is no prediction
  std::vector<BondSite> sites;  ///< in the model, where one was given
};

/// "S81-P82".
std::string nameOf(const RestrainedBond& bond);
/// Whether a residue of that name may be the one before the proline: same type, or one of them unknown.
bool isResidueBefore(const std::string& name, const RestrainedBond& bond);
/// "S81-P82, cis 0.987".
std::string callText(const RestrainedBond& bond);

/// A chain of the shift files with all its prolines.
struct RestrainedChain {
  std::string name;
  std::string sequence;  ///< one-letter names
  std::vector<std::string> numbers;
  std::vector<RestrainedBond> bonds;
};

/// A file that is there, unpacked.
struct NamedText {
  std::string name;
  std::string text;
};

struct RestraintRequest {
  std::vector<RestrainedChain> chains;
  std::optional<NamedText> into;              ///< a file to add to
  std::optional<NamedText> modelText;         ///< the structure as a file
  std::optional<ProteinStructure> structure;  ///< the same as chains
};

/// The text for a program, and what the user must know of it, a line each.
struct RestraintText {
  std::string text;
  std::vector<std::string> notes;
};

/// A structure calculation program, or a file format.
struct RestraintFormat {
  const char* name;    ///< for --for
  const char* writes;  ///< for the help
  const char* ending;  ///< of its files
  bool takesFile;      ///< adds to a file that is there
  enum class ModelUse { none, optional, needed } model;
  RestraintText (*write)(const RestraintRequest& request);
};

/// Error where a file or a model is missing or not wanted.
void mustFit(const RestraintFormat& format, const RestraintRequest& request);

/// All of them.
const std::vector<RestraintFormat>& restraintFormats();

/// The chains of proteins and their results, which go together one by one.
std::vector<RestrainedChain> restrainedChains(const std::vector<Protein>& proteins,
                                              const std::vector<ProteinResult>& results);

/// Renames chains by texts OLD=NEW, or NEW for the only chain. Error for a chain that is not there.
void renameChains(const std::vector<std::string>& renamings, std::vector<RestrainedChain>& chains);

/// The text for a program, of a request that fits it. Error where it cannot name a chain or a residue, where
/// two prolines have one chain and number, or where a proline is not in the file to add to. A proline whose
/// number has no place in the format is left out, with a comment and a note.
RestraintText writeRestraints(const RestraintFormat& format, const RestraintRequest& request);

/// "cis: P82; undecided, as comments: P91; trans: 7; without a prediction: 1".
std::string summaryOf(const std::vector<RestrainedChain>& chains);

}  // namespace zorvela

// Writes cis prolines for structure calculation programs.
//
// `restrainedChains` takes the prolines from the results. Each program is a row of `restraintFormats`, with a
// function that writes its text. Conventions differ by one residue, so each declaration has a comment with
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
  std::vector<BondSite> sites;  ///< in the model, if one was given
};

/// Returns "S81-P82".
std::string nameOf(const RestrainedBond& bond);
/// Tells whether a residue of that name may be the one before the proline: same type, or one of them unknown.
bool isResidueBefore(const std::string& name, const RestrainedBond& bond);
/// Returns "S81-P82, cis 0.987".
std::string callText(const RestrainedBond& bond);

/// A chain of the shift files with all its prolines.
struct RestrainedChain {
  std::string name;
  std::string sequence;  ///< one-letter names
  std::vector<std::string> numbers;
  std::vector<RestrainedBond> bonds;
};

/// An existing file, unpacked.
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

/// The text for a program, and notes for the user, a line each.
struct RestraintText {
  std::string text;
  std::vector<std::string> notes;
};

/// A structure calculation program, or a file format.
struct RestraintFormat {
  const char* name;    ///< for --for
  const char* writes;  ///< for the help
  const char* ending;  ///< of its files
  bool takesFile;      ///< adds to an existing file
  enum class ModelUse { none, optional, needed } model;
  RestraintText (*write)(const RestraintRequest& request);
};

/// Throws Error if a file or a model is missing or not wanted.
void mustFit(const RestraintFormat& format, const RestraintRequest& request);

/// All programs and formats.
const std::vector<RestraintFormat>& restraintFormats();

/// Returns the chains of proteins and their results; both have the same order.
std::vector<RestrainedChain> restrainedChains(const std::vector<Protein>& proteins,
                                              const std::vector<ProteinResult>& results);

/// Renames chains by texts OLD=NEW, or NEW for the only chain. Throws Error for a missing chain.
void renameChains(const std::vector<std::string>& renamings, std::vector<RestrainedChain>& chains);

/// Writes the text for a program; the request must fit it. Throws Error if the text cannot name a chain or a
/// residue, if two prolines have one chain and number, or if a proline is not in the file to add to. A
/// proline whose number does not fit the format is left out, with a comment and a note.
RestraintText writeRestraints(const RestraintFormat& format, const RestraintRequest& request);

/// Returns "cis: P82; undecided, as comments: P91; trans: 7; without a prediction: 1".
std::string summaryOf(const std::vector<RestrainedChain>& chains);

}  // namespace zorvela

// Writes cis prolines for structure calculation programs.
//
// Each program is a row of `restraintFormats`. Conventions differ by one residue, so each declaration has a
// comment with both residues.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/protein.h"
#include "zorvela/structure.h"

namespace zorvela {

/// A proline and the residue before it, numbered as in the shift file. A view of a result.
struct RestrainedBond {
  const std::string& chain;
  const ProlineResult& proline;

  /// Returns the one-letter name, without the state of its thiol; "?" before the first residue.
  char letterBefore() const;
  /// Returns the places in the model; none if none was given.
  const std::vector<BondSite>& sites() const;
};

/// Returns the prolines of all chains.
std::vector<RestrainedBond> bondsOf(const std::vector<ProteinResult>& chains);
/// Returns "S81-P82".
std::string nameOf(const RestrainedBond& bond);
/// Tells whether a residue of that name may be the one before the proline: same type, or one of them unknown.
bool isResidueBefore(const std::string& name, const RestrainedBond& bond);
/// Returns "S81-P82, cis 0.987".
std::string callText(const RestrainedBond& bond);

/// An existing file, unpacked.
struct NamedText {
  std::string name;
  std::string text;
};

struct RestraintRequest {
  std::vector<ProteinResult> chains;
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
  std::function<RestraintText(const RestraintRequest&)> write;
};

/// Throws Error if a file or a model is missing or not wanted.
void mustFit(const RestraintFormat& format, const RestraintRequest& request);

/// All programs and formats.
const std::vector<RestraintFormat>& restraintFormats();

/// Renames chains by texts OLD=NEW, or NEW for the only chain. Throws Error for a missing chain.
void renameChains(const std::vector<std::string>& renamings, std::vector<ProteinResult>& chains);

/// Writes the text for a program; the request must fit it. Throws Error if the text cannot name a chain or a
/// residue, if two prolines have one chain and number, or if a proline is not in the file to add to. A
/// proline whose number does not fit the format is left out, with a comment and a note.
RestraintText writeRestraints(const RestraintFormat& format, const RestraintRequest& request);

/// Returns "cis: P82; undecided, as comments: P91; trans: 7; without a prediction: 1".
std::string summaryOf(const std::vector<ProteinResult>& chains);

}  // namespace zorvela

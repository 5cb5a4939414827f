// Files of the command line that belong together: a sequence and its shift list, several lists of one
// protein.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cli/input.h"
#include "zorvela/read.h"

namespace zorvela {

/// The values of --sequence, --first-residue and --merge.
struct JoinArguments {
  std::string file;         ///< empty: sequences among the inputs
  std::string firstNumber;  ///< empty: as in the sequence
  bool merge = false;
};

/// Adds --sequence, --first-residue and --merge.
void addJoining(Command& command, JoinArguments& given);

/// The shift files that were named, each with its sequence if one is given. The sequence of --sequence
/// belongs to all of them. A sequence among the files belongs to the shift file of the same stem. Its stem
/// does not matter where there is one shift file, or where all are merged.
class JoinedInputs {
 public:
  /// Reads the sequences. Error for one that cannot be read or belongs to no shift file, and for two that
  /// differ. Error also for a number of the first residue without a sequence.
  JoinedInputs(const FileArguments& named, const JoinArguments& joining);
  /// Returns the inputs: the shift files, with --merge the first of them.
  const std::vector<std::string>& inputs() const { return shiftFiles; }
  /// Returns the proteins of an input; merged inputs are one protein. May run in several threads at once.
  std::vector<Protein> read(const std::string& input, const ImportOptions& options) const;
  /// Returns all files that are read, also sequences and the list of names.
  const std::vector<std::string>& files() const { return all; }
  /// Names the files that look like one protein in a note, where there are few files.
  void sayLookAlikes() const;

 private:
  void addSequence(const std::string& path);
  ImportOptions optionsFor(const std::string& file, ImportOptions options) const;

  std::vector<std::string> shiftFiles;
  std::vector<std::string> all;
  std::map<std::string, GivenSequence> byStem;  ///< by "" where it is that of all shift files
  std::optional<int> first;
  std::vector<std::string> merged;  ///< all shift files where they are one protein
  bool areFew = false;
  mutable std::mutex lock;
  mutable std::map<std::string, Protein> kept;  ///< of few files, those of one protein, by file
};

}  // namespace zorvela

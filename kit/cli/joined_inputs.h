// Files of the command line that belong together: a sequence and its shift list, several lists of one
// protein.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cli/command_line.h"
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

/// The shift files among the inputs, each with what belongs to it: the sequence of --sequence, or of the file
/// of the same stem among the inputs, or of the only one where there is one shift file or all are merged.
class JoinedInputs {
 public:
  /// Leaves of the inputs those that are read: takes out sequences and, with --merge, all shift files except
  /// the first. An Error for a sequence that cannot be read or belongs to no shift file, for two that differ,
  /// and for a number of the first residue without a sequence.
  JoinedInputs(const JoinArguments& given, std::vector<std::string>& inputs);
  /// Returns the proteins of an input; merged inputs are one protein. May run in several threads at once.
  std::vector<Protein> read(const std::string& input, const ImportOptions& options) const;
  /// Returns the files that were taken out.
  const std::vector<std::string>& files() const { return paths; }
  /// Names the files that look like one protein in a note, where there are few files.
  void sayLookAlikes() const;

 private:
  void add(const std::string& path, const std::vector<std::string>& shiftFiles);
  ImportOptions optionsFor(const std::string& file, ImportOptions options) const;
  void keep(const Protein& protein) const;

  std::map<std::string, GivenSequence> byStem;  ///< by "" where it is that of all shift files
  std::optional<int> first;
  std::vector<std::string> merged;  ///< all shift files where they are one protein
  std::vector<std::string> paths;
  bool areFew = false;
  mutable std::mutex lock;
  mutable std::map<std::string, Protein> kept;  ///< of few files, those of one protein, by file
};

/// Tells by its first bytes whether a file is a sequence.
bool isSequenceFile(const std::string& path);

}  // namespace zorvela

// The sequences that lie beside shift files on the command line.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "zorvela/read.h"

namespace zorvela {

/// What --sequence and --first-residue say.
struct SequenceArguments {
  std::string file;         ///< empty: sequences among the inputs
  std::string firstNumber;  ///< empty: as the sequence says
};

/// Adds --sequence and --first-residue.
void addSequence(Command& command, SequenceArguments& given);

/// The sequence of each shift file: that of --sequence, or of the file of the same stem among the inputs, or
/// of the only one where there is one shift file.
class GivenSequences {
 public:
  /// Takes the sequences out of the inputs. An Error for one that cannot be read or belongs to no shift file,
  /// for two that differ, and for a number of the first residue without a sequence.
  GivenSequences(const SequenceArguments& given, std::vector<std::string>& inputs);
  /// The choices for a shift file with its sequence added.
  ImportOptions optionsFor(const std::string& file, ImportOptions options) const;
  /// The files that were read.
  const std::vector<std::string>& files() const { return paths; }

 private:
  void add(const std::string& path, const std::vector<std::string>& shiftFiles);

  std::map<std::string, GivenSequence> byStem;  ///< by "" where it is that of all shift files
  std::optional<int> first;
  std::vector<std::string> paths;
};

/// Whether a file shows in its first bytes that it is a sequence.
bool isSequenceFile(const std::string& path);

}  // namespace zorvela

// Writes cis and trans prolines into the sequence of a NEF file; every other byte stays as it is.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zorvela {

/// A row of `_nef_sequence` as the file has it, without quotes.
struct NefSequenceRow {
  std::string block;    ///< name of the data block
  std::string chain;    ///< chain_code
  std::string number;   ///< sequence_code
  std::string residue;  ///< residue_name
};

/// What the flag of a residue shall be: true for a cis bond before it, false for trans; nothing to leave the
/// flag as it stands.
using CisPeptideOf = std::function<std::optional<bool>(const NefSequenceRow&)>;

/// What is written. Some readers take any value but "." for cis, and "." means trans: without `trans` the
/// flag of a trans bond is left empty.
struct FlagRules {
  bool replace = false;  ///< also flags that are there and say something else
  bool trans = false;    ///< "false" for trans
};

/// A flag that stood there and says something else.
struct FlagChange {
  NefSequenceRow row;
  std::string before;  ///< as the file has it
  bool isCis = false;  ///< what the shifts say
};

/// The annotated text and what was done.
struct NefAnnotation {
  std::string text;
  std::size_t written = 0;            ///< flags that are new or changed
  std::size_t confirmed = 0;          ///< flags that said so before
  std::vector<FlagChange> differing;  ///< replaced, or left where the user wants to keep them
  bool columnAdded = false;
};

/// Sets `_nef_sequence.cis_peptide`, which describes the peptide bond before a residue, in all sequence loops
/// of a file; a loop without that column gets one, with "." where nothing is to be said. A flag that is
/// there already is left, or replaced if the rules say so. FileError with the line for a loop whose values do
/// not fill its rows, and for a file without a sequence loop. `name` is how messages name the file.
NefAnnotation annotateNef(std::string_view text, const std::string& name, const FlagRules& rules,
                          const CisPeptideOf& cisPeptideOf);

}  // namespace zorvela

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

/// Returns the flag that a residue should have: true for a cis bond before it, false for trans, nothing to
/// leave the flag as it is.
using CisPeptideOf = std::function<std::optional<bool>(const NefSequenceRow&)>;

/// Which flags are written. Some readers take any value except "." for cis, and "." for trans: without
/// `trans`, the flag of a trans bond is left empty.
struct FlagRules {
  bool replace = false;  ///< also replace flags that disagree with the shifts
  bool trans = false;    ///< write "false" for trans
};

/// A flag of the file that disagrees with the shifts.
struct FlagChange {
  NefSequenceRow row;
  std::string before;  ///< as the file has it
  bool isCis = false;  ///< by the shifts
};

/// The annotated text, and the flags in it.
struct NefAnnotation {
  std::string text;
  std::size_t written = 0;            ///< flags that are new or changed
  std::size_t confirmed = 0;          ///< flags of the file that agree with the shifts
  std::vector<FlagChange> differing;  ///< replaced, or left where the user wants to keep them
  bool columnAdded = false;
};

/// Sets `_nef_sequence.cis_peptide`, which describes the peptide bond before a residue, in all sequence loops
/// of a file; a loop without that column gets one, with "." for a residue without a call. A flag that is
/// there already is left, or replaced if the rules allow it. FileError with the line for a loop whose values
/// do not fill its rows, and for a file without a sequence loop. `name` is how messages name the file.
NefAnnotation annotateNef(std::string_view text, const std::string& name, const FlagRules& rules,
                          const CisPeptideOf& cisPeptideOf);

}  // namespace zorvela

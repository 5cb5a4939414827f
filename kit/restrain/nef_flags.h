// The calls as flags of a NEF file.
#pragma once

#include <string>
#include <vector>

#include "formats/star/nef_annotation.h"
#include "zorvela/predict.h"
#include "zorvela/protein.h"

namespace zorvela {

/// Proteins and their results, which go together one by one.
struct PredictedProteins {
  std::vector<Protein> proteins;
  std::vector<ProteinResult> results;
  bool areOfFile = true;  ///< of the NEF file itself, so that its numbers count
};

/// A NEF file with flags, and what the user must know of them, a line each.
struct FlaggedNef {
  NefAnnotation annotation;
  std::vector<std::string> notes;
};

/// Writes the calls into the text of a NEF file. A chain gets those of the protein of its name, else of the
/// one that it is most alike, if it is the same protein. FileError for a file that is damaged, has no
/// sequence or no chain with the sequence of a protein. `name` is how messages name it.
FlaggedNef flaggedNef(const std::string& text, const std::string& name, const PredictedProteins& predicted,
                      const FlagRules& rules);

}  // namespace zorvela

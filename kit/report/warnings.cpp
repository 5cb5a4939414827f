// Warnings: shifts that seem wrong, and flags that differ from the calls.
#include <cmath>

#include "util/number.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

std::string offsetWarning(const ReferencingOffset& offset) {
  const std::string size = fixedText(std::fabs(static_cast<double>(offset.offset)), 2);
  const std::string error = fixedText(static_cast<double>(offset.error), 2);
  return (offset.atom == "C" ? "C'" : offset.atom) + " shifts seem " + size + " ppm too " +
         (offset.offset > 0 ? "high" : "low") + " (error " + error + " ppm, " + std::to_string(offset.size) +
         " residues) and are not corrected";
}

std::string flagWarning(const ProlineResult& proline) {
  return "P" + proline.number + " is marked " + (*proline.cisFlag ? "cis" : "trans") +
         " in the file but predicted " + toText(proline.call) + " (" +
         fixedText(static_cast<double>(*proline.pCisNorm), 3) + ")";
}

}  // namespace

std::vector<std::string> warningsOf(const ProteinResult& protein) {
  std::vector<std::string> warnings;
  for (const ReferencingOffset& offset : protein.offsets)
    if (callsForCorrection(offset) && !offset.correctedBy) warnings.push_back(offsetWarning(offset));
  for (const ProlineResult& proline : protein.prolines)
    if (differsFromFlag(proline)) warnings.push_back(flagWarning(proline));
  return warnings;
}

}  // namespace zorvela

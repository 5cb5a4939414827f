// What a finding holds, in words and numbers. Apart from the comparison, so that a report of findings needs
// no alignment.
#include <array>
#include <cmath>

#include "util/text.h"
#include "zorvela/finding.h"

namespace zorvela {

namespace {

std::optional<double> meanSize(const StructureFinding& finding,
                               const std::optional<double> ModelBond::*value) {
  double sum = 0;
  std::size_t count = 0;
  for (const BondSite& site : finding.sites)
    for (const ModelBond& bond : site.bonds) {
      if (!(bond.*value)) continue;
      sum += std::fabs(*(bond.*value));
      ++count;
    }
  if (count == 0) return std::nullopt;
  return sum / static_cast<double>(count);
}

}  // namespace

std::string toText(StructureCall call) {
  static const std::array<const char*, 5> kNames = {"cis", "trans", "twisted", "mixed", "none"};
  return kNames.at(static_cast<std::size_t>(call));
}

std::string toText(Verdict verdict) {
  static const std::array<const char*, 6> kNames = {"agree",        "disagree",      "undecided by shifts",
                                                    "mixed models", "no prediction", "not in the structure"};
  return kNames.at(static_cast<std::size_t>(verdict));
}

std::size_t countBonds(const StructureFinding& finding, BondState state) {
  std::size_t count = 0;
  for (const BondSite& site : finding.sites)
    for (const ModelBond& bond : site.bonds)
      if (bond.state == state) ++count;
  return count;
}

std::optional<double> meanOmega(const StructureFinding& finding) {
  return meanSize(finding, &ModelBond::omega);
}

std::optional<double> meanCaToCa(const StructureFinding& finding) {
  return meanSize(finding, &ModelBond::caToCa);
}

std::string structureChainName(const std::string& file, const std::string& chain) {
  return file + ", chain " + (chain.empty() ? "without a name" : printable(chain, 60));
}

std::string toText(const ChainMatch& match) {
  return structureChainName(match.file, match.chain) + " (" + std::to_string(match.identical) + " of " +
         counted(match.aligned, "aligned residue is", "aligned residues are") + " the same)";
}

}  // namespace zorvela

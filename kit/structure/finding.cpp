// A finding in words and numbers. Separate from the comparison, so that a report of findings needs
// no alignment.
#include <array>
#include <cmath>

#include "util/number.h"
#include "util/text.h"
#include "zorvela/finding.h"

namespace zorvela {

namespace {

std::optional<double> meanSize(const StructureFinding& finding,
                               const std::optional<double> ModelBond::*value) {
  if (finding.call == BondState::mixed) return std::nullopt;
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

/// The bonds in each state, and omega.
std::string statesText(const StructureFinding& finding) {
  std::vector<std::string> states;
  std::size_t bonds = 0;
  std::size_t models = 0;
  for (const BondState state : {BondState::cis, BondState::trans, BondState::twisted})
    if (const std::size_t count = countBonds(finding, state); count > 0) {
      states.push_back(toText(state) + " in " + std::to_string(count));
      bonds += count;
    }
  for (const BondSite& site : finding.sites)
    if (!site.bonds.empty()) models += site.bonds.size() + site.modelsWithout;
  std::string counts = enumerated(states) + " of " + counted(models, "model", "models");
  if (finding.call == BondState::mixed) return counts;
  if (const auto omega = meanOmega(finding))
    return counts + (bonds > 1 ? " (mean |omega| " : " (|omega| ") + fixedText(*omega, 0) + " degrees)";
  return counts + " (CA - CA " + fixedText(meanCaToCa(finding).value_or(0), 1) + " A)";
}

std::string withoutBondText(const StructureFinding& finding) {
  std::string text;
  for (const BondSite& site : finding.sites) {
    if (site.modelsWithout == 0) continue;
    text += "; no bond in " + std::to_string(site.modelsWithout) + " of " +
            counted(site.models, "model", "models") + " (" + site.namesWithout + ")";
  }
  return text;
}

}  // namespace

BondState seenIn(const StructureFinding& finding) {
  const bool isCis = countBonds(finding, BondState::cis) > 0;
  const bool isTrans = countBonds(finding, BondState::trans) > 0;
  if (isCis && isTrans) return BondState::mixed;
  if (isCis) return BondState::cis;
  if (isTrans) return BondState::trans;
  return countBonds(finding, BondState::twisted) > 0 ? BondState::twisted : BondState::none;
}

std::string toText(BondState state) {
  static const std::array<const char*, 5> kNames = {"cis", "trans", "twisted", "mixed", "none"};
  return kNames.at(static_cast<std::size_t>(state));
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

std::string structureChainName(const std::string& file, const std::string& chain,
                               const std::string& residues) {
  return file + ", chain " + (chain.empty() ? "without a name" : printable(chain, 60)) +
         (residues.empty() ? "" : ", residues " + residues);
}

std::string seenText(const StructureFinding& finding) {
  return statesText(finding) + withoutBondText(finding);
}

std::string modelsText(const StructureFinding& finding) {
  std::vector<std::string> texts;
  for (const BondState state : {BondState::trans, BondState::cis, BondState::twisted})
    if (const std::size_t count = countBonds(finding, state); count > 0)
      texts.push_back(std::to_string(count) + " " + toText(state));
  return enumerated(texts);
}

std::vector<StructureFinding> inEachStructure(const StructureFinding& finding) {
  std::vector<StructureFinding> each;
  for (const BondSite& site : finding.sites) {
    if (each.empty() || each.back().sites.front().file != site.file) each.emplace_back();
    each.back().sites.push_back(site);
  }
  if (each.size() < 2) return {};
  for (StructureFinding& one : each) one.call = seenIn(one);
  return each;
}

std::string toText(const ChainMatch& match) {
  return structureChainName(match.file, match.chain, match.residues) + " (" +
         std::to_string(match.identical) + " of " +
         counted(match.aligned, "aligned residue is", "aligned residues are") + " the same)";
}

}  // namespace zorvela

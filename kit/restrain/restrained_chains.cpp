// Collects what restraints need from the results, and renames chains.
#include <utility>

#include "names/nomenclature.h"
#include "restrain/restraints.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

/// The residue type alone.
char plainLetter(char letter) {
  return letter == kPassedProlineCode ? kProlineCode : withoutThiolState(letter);
}

RestrainedBond bondOf(const std::string& chain, const ProlineResult& proline) {
  RestrainedBond bond;
  bond.chain = chain;
  if (!proline.previous.empty()) bond.letterBefore = plainLetter(proline.previous.front());
  bond.numberBefore = proline.previousNumber;
  bond.number = proline.number;
  bond.call = proline.call;
  bond.pCisNorm = proline.pCisNorm.value_or(0);
  bond.reason = proline.reason;
  if (proline.structure) bond.sites = proline.structure->sites;
  return bond;
}

std::string chainList(const std::vector<RestrainedChain>& chains) {
  std::vector<std::string> names;
  for (const RestrainedChain& chain : chains)
    names.push_back(chain.name.empty() ? "one without a name" : printable(chain.name, 60));
  return enumerated(names);
}

}  // namespace

std::string nameOf(const RestrainedBond& bond) {
  return printable(std::string(1, bond.letterBefore) + bond.numberBefore + "-P" + bond.number);
}

bool isResidueBefore(const std::string& name, const RestrainedBond& bond) {
  const char letter = residueType(name).letter;
  return letter == bond.letterBefore || letter == kUnknownResidue || bond.letterBefore == kUnknownResidue;
}

std::string callText(const RestrainedBond& bond) {
  return nameOf(bond) + ", " +
         (bond.call == Call::none
              ? "no prediction (" + bond.reason + ")"
              : toText(bond.call) + " " + fixedText(static_cast<double>(bond.pCisNorm), 3));
}

std::vector<RestrainedChain> restrainedChains(const std::vector<Protein>& proteins,
                                              const std::vector<ProteinResult>& results) {
  std::vector<RestrainedChain> chains;
  for (std::size_t i = 0; i < proteins.size(); ++i) {
    RestrainedChain chain{proteins[i].chain, proteins[i].sequence, proteins[i].numbers, {}};
    for (const ProlineResult& proline : results[i].prolines)
      chain.bonds.push_back(bondOf(chain.name, proline));
    chains.push_back(std::move(chain));
  }
  return chains;
}

void renameChains(const std::vector<std::string>& renamings, std::vector<RestrainedChain>& chains) {
  const std::vector<RestrainedChain> before = chains;
  for (const std::string& renaming : renamings) {
    const std::size_t sign = renaming.find('=');
    const bool isForOne = sign == std::string::npos;
    if (isForOne && before.size() != 1)
      throw Error("--chain-as " + renaming + ": there are several chains (" + chainList(before) +
                  "); name one, as OLD=NEW");
    bool isKnown = false;
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (!isForOne && before[i].name != renaming.substr(0, sign)) continue;
      isKnown = true;
      chains[i].name = isForOne ? renaming : renaming.substr(sign + 1);
      for (RestrainedBond& bond : chains[i].bonds) bond.chain = chains[i].name;
    }
    if (!isKnown) throw Error("--chain-as " + renaming + ": no such chain; there is " + chainList(before));
  }
}

std::string summaryOf(const std::vector<RestrainedChain>& chains) {
  std::vector<std::string> cis;
  std::vector<std::string> undecided;
  std::size_t trans = 0;
  std::size_t none = 0;
  for (const RestrainedChain& chain : chains)
    for (const RestrainedBond& bond : chain.bonds) {
      const std::string name = printable((chains.size() > 1 ? chain.name + " " : "") + "P" + bond.number, 60);
      if (bond.call == Call::cis) cis.push_back(name);
      if (bond.call == Call::undecided) undecided.push_back(name);
      if (bond.call == Call::trans) ++trans;
      if (bond.call == Call::none) ++none;
    }
  const auto listed = [](const std::vector<std::string>& names) {
    return names.empty() ? "none" : enumerated(names, 50);
  };
  return "cis: " + listed(cis) + "; undecided, left open: " + listed(undecided) +
         "; trans: " + std::to_string(trans) + "; without a prediction: " + std::to_string(none);
}

}  // namespace zorvela

// The prolines that restraints are written for, and their names.
#include <map>

#include "names/nomenclature.h"
#include "restrain/restraints.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

std::string chainList(const std::vector<std::string>& chains) {
  std::vector<std::string> names;
  for (const std::string& chain : chains)
    names.push_back(chain.empty() ? "one without a name" : printable(chain, 60));
  return enumerated(names);
}

}  // namespace

char RestrainedBond::letterBefore() const {
  if (proline.previous.empty()) return kUnknownResidue;
  const char letter = proline.previous.front();
  return letter == kPassedProlineCode ? kProlineCode : withoutThiolState(letter);
}

const std::vector<BondSite>& RestrainedBond::sites() const {
  static const std::vector<BondSite> kNone;
  return proline.structure ? proline.structure->sites : kNone;
}

std::vector<RestrainedBond> bondsOf(const std::vector<ProteinResult>& chains) {
  std::vector<RestrainedBond> bonds;
  for (const ProteinResult& chain : chains)
    for (const ProlineResult& proline : chain.prolines) bonds.push_back({chain.chain, proline});
  return bonds;
}

std::string nameOf(const RestrainedBond& bond) {
  return printable(std::string(1, bond.letterBefore()) + bond.proline.previousNumber + "-P" +
                   bond.proline.number);
}

bool isResidueBefore(const std::string& name, const RestrainedBond& bond) {
  const char letter = residueType(name).letter;
  return letter == bond.letterBefore() || letter == kUnknownResidue || bond.letterBefore() == kUnknownResidue;
}

std::string callText(const RestrainedBond& bond) {
  return nameOf(bond) + ", " +
         (bond.proline.call == Call::none
              ? "no prediction (" + bond.proline.reason + ")"
              : toText(bond.proline.call) + " " + fixedText(static_cast<double>(*bond.proline.pCisNorm), 3));
}

void renameChains(const std::vector<std::string>& renamings, std::vector<ProteinResult>& chains) {
  std::vector<std::string> before;
  for (const ProteinResult& chain : chains) before.push_back(chain.chain);
  for (const std::string& renaming : renamings) {
    const std::size_t sign = renaming.find('=');
    const bool isForOne = sign == std::string::npos;
    if (isForOne && before.size() != 1)
      throw Error("--chain-as " + renaming + ": there are several chains (" + chainList(before) +
                  "); name one, as OLD=NEW");
    bool isKnown = false;
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (!isForOne && before[i] != renaming.substr(0, sign)) continue;
      isKnown = true;
      chains[i].chain = isForOne ? renaming : renaming.substr(sign + 1);
    }
    if (!isKnown) throw Error("--chain-as " + renaming + ": no such chain; there is " + chainList(before));
  }
}

std::string summaryOf(const std::vector<ProteinResult>& chains) {
  std::map<Call, std::vector<std::string>> names;
  for (const RestrainedBond& bond : bondsOf(chains))
    names[bond.proline.call].push_back(
        printable((chains.size() > 1 ? bond.chain + " " : "") + "P" + bond.proline.number, 60));
  const auto listed = [&](Call call) { return names[call].empty() ? "none" : enumerated(names[call], 50); };
  const auto count = [&](Call call) { return std::to_string(names[call].size()); };
  return "cis: " + listed(Call::cis) + "; undecided, left open: " + listed(Call::undecided) +
         "; trans: " + count(Call::trans) + "; without a prediction: " + count(Call::none);
}

}  // namespace zorvela

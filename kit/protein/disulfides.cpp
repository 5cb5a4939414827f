#include "protein/disulfides.h"

#include <cstdlib>
#include <unordered_map>
#include <unordered_set>

#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// CB (ppm, as text) of the residues that have one.
std::unordered_map<int, std::string> betaShifts(const std::vector<Shift>& shifts) {
  std::unordered_map<int, std::string> beta;
  for (const Shift& shift : shifts)
    if (shift.atom == "CB") beta.emplace(shift.resid, shift.shift);
  return beta;
}

/// What the file says of each residue.
class StatedThiols {
 public:
  StatedThiols(const FileChain& fileChain, const ChainSequence& chainSequence)
      : chain(fileChain), sequence(chainSequence) {
    for (const std::string& key : chain.disulfides)
      if (const auto found = sequence.byKey.find(key); found != sequence.byKey.end())
        bonded.insert(found->second);
  }

  Thiol of(int resid) const {
    if (bonded.count(resid) > 0) return Thiol::disulfide;
    const Thiol own = sequence.thiols[static_cast<std::size_t>(resid) - 1];
    return own != Thiol::unknown ? own : chain.thiol;
  }

  /// Bonds to residues that are no cysteines, by their own numbers.
  std::vector<std::string> bondedOthers() const {
    std::vector<std::string> numbers;
    for (int i = 1; i <= sequence.size(); ++i)
      if (bonded.count(i) > 0 && sequence.letter(i) != 'C') numbers.push_back(sequence.number(i));
    return numbers;
  }

 private:
  const FileChain& chain;
  const ChainSequence& sequence;
  std::unordered_set<int> bonded;
};

struct Decisions {
  std::vector<std::string> byFile;
  std::vector<std::string> byShift;
  std::vector<std::string> contradicted;
};

void addNotes(const Decisions& decisions, const StatedThiols& stated, std::vector<std::string>& notes) {
  if (!decisions.byFile.empty())
    notes.push_back("cysteines in a disulfide bond by the file, written c: " + enumerated(decisions.byFile));
  if (!decisions.byShift.empty())
    notes.push_back("cysteines taken as in a disulfide bond by CB above " + fixedText(kOxidisedFrom, 0) +
                    " ppm, written c: " + enumerated(decisions.byShift));
  if (!decisions.contradicted.empty())
    notes.push_back("CB does not fit what the file says of the cysteine, the file's word is kept: " +
                    enumerated(decisions.contradicted));
  if (const auto others = stated.bondedOthers(); !others.empty())
    notes.push_back("disulfide bonds of residues that are no cysteines not used: " + enumerated(others));
}

}  // namespace

bool looksOxidised(const std::string& betaShift) {
  return std::strtod(betaShift.c_str(), nullptr) > kOxidisedFrom;
}

void markDisulfides(const FileChain& chain, const ChainSequence& sequence, Protein& protein) {
  const StatedThiols stated(chain, sequence);
  const auto beta = betaShifts(protein.shifts);
  Decisions decisions;
  for (int i = 1; i <= sequence.size(); ++i) {
    if (sequence.letter(i) != 'C') continue;
    const auto shift = beta.find(i);
    const bool hasShift = shift != beta.end();
    const bool hasHighShift = hasShift && looksOxidised(shift->second);
    const Thiol thiol = stated.of(i);
    const bool isOxidised = thiol == Thiol::disulfide || (thiol == Thiol::unknown && hasHighShift);
    if (isOxidised) protein.sequence[static_cast<std::size_t>(i) - 1] = kDisulfideCysteine;

    const std::string withShift = sequence.number(i) + (hasShift ? " (CB " + shift->second + ")" : "");
    if (thiol == Thiol::disulfide) decisions.byFile.push_back(sequence.number(i));
    if (thiol == Thiol::unknown && hasHighShift) decisions.byShift.push_back(withShift);
    if (thiol != Thiol::unknown && hasShift && hasHighShift != isOxidised)
      decisions.contradicted.push_back(withShift);
  }
  addNotes(decisions, stated, protein.notes);
}

}  // namespace zorvela

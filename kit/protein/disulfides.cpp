#include "protein/disulfides.h"

#include <set>
#include <unordered_map>

#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// CB of the residues that have one, by position.
std::unordered_map<int, Shift> betaShifts(const std::vector<Shift>& shifts) {
  std::unordered_map<int, Shift> beta;
  for (const Shift& shift : shifts)
    if (shift.atom == Atom::CB) beta.emplace(shift.position, shift);
  return beta;
}

/// Positions of the residues with a bond by the file.
std::set<int> bondedPositions(const FileChain& chain, const ChainSequence& sequence) {
  std::set<int> bonded;
  for (const std::string& key : chain.disulfides)
    if (const int position = sequence.positionOfKey(key); position > 0) bonded.insert(position);
  return bonded;
}

struct Decisions {
  std::vector<std::string> byFile;
  std::vector<std::string> byShift;
  std::vector<std::string> contradicted;
  std::vector<std::string> bondedOthers;  ///< residues that are not cysteines
};

void addNotes(const Decisions& decisions, std::vector<std::string>& notes) {
  addNote("cysteines in a disulfide bond according to the file; written as c: ", decisions.byFile, notes);
  addNote(bondedByShiftText(), decisions.byShift, notes);
  addNote("CB contradicts the state of the cysteine in the file; the file is followed: ",
          decisions.contradicted, notes);
  addNote("disulfide bonds of residues that are not cysteines; ignored: ", decisions.bondedOthers, notes);
}

}  // namespace

bool looksOxidised(const Shift& beta) {
  return beta.ppm > kOxidisedFrom;
}

std::vector<std::size_t> oxidisedByShift(const Protein& protein) {
  std::vector<std::size_t> places;
  for (const Shift& shift : protein.shifts) {
    const std::size_t place = static_cast<std::size_t>(shift.position) - 1;
    if (shift.atom == Atom::CB && protein.sequence[place] == 'C' && looksOxidised(shift))
      places.push_back(place);
  }
  return places;
}

std::string bondedByShiftText() {
  return "cysteines assumed to be in a disulfide bond (CB above " + fixedText(kOxidisedFrom, 0) +
         " ppm); written as c: ";
}

void markDisulfides(const FileChain& chain, const ChainSequence& sequence, Protein& protein) {
  const std::set<int> bonded = bondedPositions(chain, sequence);
  const auto betas = betaShifts(protein.shifts);
  Decisions decisions;
  for (int i = 1; i <= sequence.size(); ++i) {
    const ChainResidue& residue = sequence.at(i);
    const bool isBonded = bonded.count(i) > 0;
    if (residue.type.letter != 'C') {
      if (isBonded) decisions.bondedOthers.push_back(residue.number);
      continue;
    }
    const Thiol own = residue.type.thiol != Thiol::unknown ? residue.type.thiol : chain.thiol;
    const Thiol thiol = isBonded ? Thiol::disulfide : own;
    const auto beta = betas.find(i);
    const bool hasShift = beta != betas.end();
    const bool hasHighShift = hasShift && looksOxidised(beta->second);
    const bool isOxidised = thiol == Thiol::disulfide || (thiol == Thiol::unknown && hasHighShift);
    if (isOxidised) protein.sequence[static_cast<std::size_t>(i) - 1] = kDisulfideCysteine;

    const std::string withShift = residue.number + (hasShift ? " (CB " + shiftText(beta->second) + ")" : "");
    if (thiol == Thiol::disulfide) decisions.byFile.push_back(residue.number);
    if (thiol == Thiol::unknown && hasHighShift) decisions.byShift.push_back(withShift);
    if (thiol != Thiol::unknown && hasShift && hasHighShift != isOxidised)
      decisions.contradicted.push_back(withShift);
  }
  addNotes(decisions, protein.notes);
}

}  // namespace zorvela

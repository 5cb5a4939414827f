#include "protein/disulfides.h"

#include <set>
#include <string>
#include <vector>

#include "util/number.h"
#include "util/text.h"

namespace zorvela {

void markDisulfides(const FileChain& chain, const ChainSequence& sequence, Protein& protein) {
  std::set<int> bonded;
  for (const std::string& key : chain.disulfides) bonded.insert(sequence.positionOfKey(key));
  std::vector<std::string> byFile;
  std::vector<std::string> byShift;
  std::vector<std::string> contradicted;
  std::vector<std::string> bondedOthers;
  for (int i = 1; i <= sequence.size(); ++i) {
    const ChainResidue& residue = sequence.at(i);
    const bool isBonded = bonded.count(i) > 0;
    if (residue.type.letter != 'C') {
      if (isBonded) bondedOthers.push_back(residue.number);
      continue;
    }
    const Thiol own = residue.type.thiol != Thiol::unknown ? residue.type.thiol : chain.thiol;
    const Thiol thiol = isBonded ? Thiol::disulfide : own;
    const Shift* beta = shiftOf(protein, i, Atom::CB);
    const bool hasHighShift = beta != nullptr && beta->ppm > kOxidisedFrom;
    const bool isOxidised = thiol == Thiol::disulfide || (thiol == Thiol::unknown && hasHighShift);
    if (isOxidised) protein.sequence[static_cast<std::size_t>(i) - 1] = kDisulfideCysteine;

    const std::string withShift =
        beta != nullptr ? residue.number + " (CB " + shiftText(*beta) + ")" : residue.number;
    if (thiol == Thiol::disulfide) byFile.push_back(residue.number);
    if (thiol == Thiol::unknown && hasHighShift) byShift.push_back(withShift);
    if (thiol != Thiol::unknown && beta != nullptr && hasHighShift != isOxidised)
      contradicted.push_back(withShift);
  }
  std::vector<std::string>& notes = protein.notes;
  addNote("cysteines in a disulfide bond according to the file; written as c: ", byFile, notes);
  addNote("cysteines assumed to be in a disulfide bond (CB above " + fixedText(kOxidisedFrom, 0) +
              " ppm); written as c: ",
          byShift, notes);
  addNote("CB contradicts the state of the cysteine in the file; the file is followed: ", contradicted,
          notes);
  addNote("disulfide bonds of residues that are not cysteines; ignored: ", bondedOthers, notes);
}

}  // namespace zorvela

#include "structure/distinct_atoms.h"

#include "util/text.h"

namespace zorvela {

void DistinctAtoms::add(const gemmi::Atom& atom, gemmi::Residue& residue, const std::string& chain) {
  for (const gemmi::Atom& other : residue.atoms)
    if (other.name == atom.name && other.altloc == atom.altloc) {
      const std::string which = residueText(residue, chain);
      if (repeated.empty() || repeated.back() != which) repeated.push_back(which);
      return;
    }
  residue.atoms.push_back(atom);
}

std::vector<std::string> DistinctAtoms::notes() const {
  if (repeated.empty()) return {};
  return {"atoms that are given twice, the first one is used: " + enumerated(repeated)};
}

std::string residueText(const gemmi::Residue& residue, const std::string& chain) {
  return printable("residue " + residue.name + " " + residue.seqid.str() + " of chain " + chain);
}

}  // namespace zorvela

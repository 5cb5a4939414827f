#include "predict/chain.h"

#include <cstdlib>
#include <optional>

namespace zorvela {

std::vector<Residue> residuesOf(const Protein& protein, const Corrections& corrections) {
  std::vector<Residue> residues(protein.sequence.size());
  for (std::size_t i = 0; i < residues.size(); ++i) residues[i].type = protein.sequence[i];
  for (const Shift& shift : protein.shifts) {
    Residue& residue = residues.at(static_cast<std::size_t>(shift.resid) - 1);
    const std::optional<Atom> atom = atomNamed(shift.atom);
    if (!atom || residue.has(*atom)) continue;
    const double ppm = std::strtod(shift.shift.c_str(), nullptr);
    residue.shift(*atom) = static_cast<float>(corrected(ppm, *atom, corrections));
  }
  return residues;
}

float cgOf(const Residue& residue) {
  return residue.type == kProlineCode && residue.has(Atom::CG) ? residue.shift(Atom::CG) : kMissingShift;
}

bool isPredictable(const std::vector<Residue>& residues, std::size_t place) {
  if (place == 0 || place + 1 >= residues.size() || residues[place].type != kProlineCode) return false;
  return hasEnoughShifts({missingShifts(residues[place - 1]), missingShifts(residues[place]),
                          missingShifts(residues[place + 1])});
}

Triplet tripletAt(const std::vector<Residue>& residues, const std::vector<BackboneValues>& secondary,
                  std::size_t place) {
  Triplet triplet;
  for (std::size_t i = 0; i < 3; ++i) {
    triplet.types[i] = residues[place + i - 1].type;
    triplet.secondary[i] = secondary[place + i - 1];
  }
  triplet.cg = cgOf(residues[place]);
  return triplet;
}

}  // namespace zorvela

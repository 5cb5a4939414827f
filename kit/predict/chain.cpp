#include "predict/chain.h"

namespace zorvela {

std::vector<Residue> residuesOf(const Protein& protein, const Corrections& corrections) {
  std::vector<Residue> residues(protein.sequence.size());
  for (std::size_t i = 0; i < residues.size(); ++i) residues[i].type = protein.sequence[i];
  for (const Shift& shift : protein.shifts) {
    Residue& residue = residues.at(static_cast<std::size_t>(shift.position) - 1);
    if (!residue.has(shift.atom))
      residue.shift(shift.atom) =
          static_cast<float>(corrected(shift.ppm, residue.type, shift.atom, corrections));
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

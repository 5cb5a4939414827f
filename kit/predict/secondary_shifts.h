// The secondary shifts of a chain as plain numbers.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "ZORVELA.h"

namespace zorvela {

/// Secondary shifts of one residue (ppm) by `AtomPlace`; above 99 missing.
using SecondaryShifts = std::array<float, kAtomsPerResidue>;

/// Where an atom stands in SecondaryShifts: in the order of the program's backbone atoms.
enum AtomPlace : std::size_t { kPlaceN, kPlaceHA, kPlaceC, kPlaceCA, kPlaceCB, kPlaceHN };

/// A secondary shift, or nothing where it is missing.
std::optional<double> shiftAt(const SecondaryShifts& residue, AtomPlace place);

/// Those of the protein that the run object has assembled, in order of sequence.
std::vector<SecondaryShifts> secondaryShifts(const ZORVELA& run);

}  // namespace zorvela

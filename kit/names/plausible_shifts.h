// Which shifts an atom of a residue type can have.
#pragma once

#include "zorvela/core.h"

namespace zorvela {

/// A range of shifts, ppm.
struct PlausibleRange {
  double low = 0;
  double high = 0;
};

/// Returns the range that right assignments hardly ever leave: of 841,405 shifts in 1,707 BMRB entries, wrong
/// ones included, 4 in 10,000 lie outside. `residue` is a one-letter name (c: disulfide-bonded cysteine); for
/// a residue type that is not known the widest range of all types.
PlausibleRange plausibleRange(char residue, Atom atom);

/// Tells whether a shift (ppm) lies in the plausible range, bounds included. Others are likely to be assigned
/// to the wrong atom or residue, folded, or in the wrong column.
bool isPlausible(char residue, Atom atom, double ppm);

}  // namespace zorvela

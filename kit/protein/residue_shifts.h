// The shifts of single residues among those of a protein.
#pragma once

#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

/// A part of `Protein::shifts`: valid as long as these.
class ShiftRange {
 public:
  using Iterator = std::vector<Shift>::const_iterator;
  ShiftRange(Iterator from, Iterator to) : first(from), last(to) {}
  Iterator begin() const { return first; }
  Iterator end() const { return last; }

 private:
  Iterator first;
  Iterator last;
};

/// The shifts of residues `first` to `last`, counted from 1, with both; numbers outside the sequence have
/// none.
ShiftRange shiftsOf(const Protein& protein, int first, int last);

}  // namespace zorvela

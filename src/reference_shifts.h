// What the reference tables say of a residue type, for all residues of a run.
#pragma once

#include <string>         // for std::string
#include <unordered_map>  // for std::unordered_map
#include <vector>         // for std::vector

#include "ZORVELA.h"

/// What the four reference tables say of one atom in, after or before one residue type (ppm).
struct TypeShifts {
  float randomCoil;
  float own;
  float asPrevious;
  float asNext;
};

/// Looks each residue type up once in a run, however many residues of it there are. Not after a change of
/// the tables.
class ReferenceShifts {
 public:
  explicit ReferenceShifts(const ZORVELA& run) : zorvela(run) {}
  /// One entry an atom, in the order of the atom names of the run.
  const std::vector<TypeShifts>& of(const std::string& resName);

 private:
  std::vector<TypeShifts> lookUp(const std::string& resName) const;

  const ZORVELA& zorvela;
  std::unordered_map<std::string, std::vector<TypeShifts>> types;
};

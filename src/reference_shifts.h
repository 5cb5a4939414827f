// Reference values of a residue type, for all residues of a run.
#pragma once

#include <string>         // for std::string
#include <unordered_map>  // for std::unordered_map

#include "ZORVELA.h"
#include "zorvela/core.h"

/// Looks each residue type up once in a run, however many residues of it there are. Not after a change of
/// the tables.
class ReferenceShifts {
 public:
  explicit ReferenceShifts(const ZORVELA& zorvela) : run(zorvela) {}
  /// Random-coil shifts and corrections of the type.
  const zorvela::ReferenceValues& of(const std::string& resName);

 private:
  zorvela::ReferenceValues lookUp(const std::string& resName) const;

  const ZORVELA& run;
  std::unordered_map<std::string, zorvela::ReferenceValues> types;
};

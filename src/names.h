// Names that several steps of a run look for in tables.
#pragma once

#include <string>  // for std::string

/// Columns of shift tables.
inline const std::string kResid = "RESID";
inline const std::string kResname = "RESNAME";
inline const std::string kAtomName = "ATOMNAME";
inline const std::string kShift = "SHIFT";

/// One-letter names of the residue types with rules of their own.
inline const std::string kProline = "P";
inline const std::string kGlycine = "G";

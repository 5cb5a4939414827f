// Names of residues and of backbone atoms, as the many files write them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "formats/shift_model.h"

namespace zorvela {

/// Letter of a residue that is unknown or no amino acid, and of a gap.
inline constexpr char kUnknownResidue = '?';

/// What a residue name stands for.
struct ResidueType {
  char letter = kUnknownResidue;  ///< one-letter code, that of the parent for a modified residue
  bool isModified = false;        ///< not one of the 20, or not in their usual form
  bool isHydroxyproline = false;
  Thiol thiol = Thiol::unknown;  ///< where the name itself tells (CYSS, CYX)
};

/// The type behind a name of several letters (MET, Met, MSE, HIS+, CYSS); case does not matter.
/// One-letter names are nucleotides here, as in NMR-STAR and NEF.
ResidueType residueType(std::string_view name);

/// A name that `residueType` knows for a one-letter amino acid code; empty for a letter that stands for
/// no single type (X, B, Z). Lower-case c is the cysteine of a disulfide bond.
std::string threeLetterName(char code);

/// Whether the name is that of a nucleotide (A, DA, ADE, PSU).
bool isNucleotide(std::string_view name);

/// What a file calls an atom, in the names of the table.
struct AtomReading {
  enum class Kind {
    table,    ///< the shift belongs to the atoms in `names`
    pseudo,   ///< the same; one value for both alpha protons of glycine
    other,    ///< another atom than the table holds
    foreign,  ///< a backbone name that this residue type has not
  };
  Kind kind = Kind::other;
  std::array<const char*, 2> names{};  ///< up to two; nullptr where there is none
  bool isOlderName = false;            ///< HA1 or HA2 of glycine, to be settled among its atoms
};

/// Reads an atom name (H, HN, CO, HA%, HAx, 1HA; case does not matter) of a residue with this letter.
/// HA1 of glycine stays HA1: whether HA1/HA2 means HA2/HA3 is told by what else the residue has.
AtomReading readAtom(char letter, std::string_view atom);

/// Place of an atom in the order of the table (N, HN, HA, HA2, HA3, C, CA, CB, CG), from 0; the number of
/// atoms for another name.
std::size_t atomRank(std::string_view name);

}  // namespace zorvela

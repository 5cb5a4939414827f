// Names and numbers of residues and names of backbone atoms, as the many files write them. The base of
// formats/ and protein/ alike, so nothing of either is used here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "zorvela/core.h"

namespace zorvela {

// --- Residues -----------------------------------------------------------------------------------

/// One-letter codes of the 20 amino acids.
inline constexpr std::string_view kAminoAcids = "ACDEFGHIKLMNPQRSTVWY";

/// Letter of a residue that is unknown or no amino acid, and of a gap.
inline constexpr char kUnknownResidue = '?';

/// Letter of a cysteine in a disulfide bond.
inline constexpr char kDisulfideCysteine = 'c';

/// The other letters that a sequence of the program can hold: several types or another one, unknown, a gap.
inline constexpr std::string_view kOtherLetters = "BJOUX?";

/// Tells whether a sequence of the program can hold the letter.
constexpr bool isSequenceLetter(char letter) {
  return kAminoAcids.find(letter) != std::string_view::npos ||
         kOtherLetters.find(letter) != std::string_view::npos || letter == kDisulfideCysteine ||
         letter == kPassedProlineCode;
}

/// Returns the letter of the residue type, whatever the state of its thiol.
constexpr char withoutThiolState(char letter) {
  return letter == kDisulfideCysteine ? 'C' : letter;
}

/// State of the sulfur of a cysteine in a file.
enum class Thiol : std::uint8_t { unknown, disulfide, notDisulfide };

/// The meaning of a residue name.
struct ResidueReading {
  char letter = kUnknownResidue;  ///< one-letter code, that of the parent for a modified residue
  bool isModified = false;        ///< not one of the 20, or not in their usual form
  bool isHydroxyproline = false;
  Thiol thiol = Thiol::unknown;  ///< if the name itself tells it (CYSS, CYX)
  bool isCis = false;            ///< a proline named as cis (cPRO, CPR, pro_cis)
};

/// Reads a name of several letters (MET, Met, methionine, MSE, HIS+, CYSS). Case does not matter except in
/// cPRO: CPRO is not a cis proline, but one at the end of a chain. One-letter names are nucleotides here, as
/// in NMR-STAR and NEF.
ResidueReading residueType(std::string_view name);

/// Reads a residue name of a polypeptide, in which one letter is an amino acid.
ResidueReading polypeptideResidue(std::string_view name);

/// Returns a name that `residueType` knows for a one-letter amino acid code; empty for a letter without a
/// single type (X, B, Z). Lower-case c is the cysteine of a disulfide bond.
std::string threeLetterName(char code);

/// Tells whether the name is that of a metal ion or of water (CA, ZN, HOH): not a residue of a polymer.
bool isIonOrWater(std::string_view name);

/// Tells whether the name is that of a linker (PL, LL5), a residue without backbone atoms with which programs
/// separate the molecules of one chain.
bool isLinker(std::string_view name);

/// Tells whether the name is that of another molecule than an amino acid: an ion, water, a nucleotide, a
/// common ligand.
bool isOtherMolecule(std::string_view name);

/// Tells whether the name is that of a nucleotide (A, DA, ADE, PSU).
bool isNucleotide(std::string_view name);

/// A residue number as structures use it: a whole number and perhaps an insertion code, as in 52A.
struct ResidueNumber {
  int number = 0;
  std::string code;  ///< the insertion code; empty in most
};

/// Orders 52, 52A, 52B, 53.
inline bool operator<(const ResidueNumber& a, const ResidueNumber& b) {
  return a.number != b.number ? a.number < b.number : a.code < b.code;
}

/// Reads "12", "-3", "52A", "007". Nothing for a text that does not begin with a number, or that has a blank.
std::optional<ResidueNumber> readResidueNumber(const std::string& text);

/// A residue code such as "45-1": a number, and the steps from it to the residue that is meant.
struct NeighbourCode {
  std::string number;  ///< "45", "-3", "52A"
  int offset = 0;      ///< -1 for "45-1", 0 for "45+0"
};

/// Reads "45-1", "45+1", "45+0", "A45-1"; nothing for a code without a sign and one digit at its end.
std::optional<NeighbourCode> readNeighbourCode(std::string_view code);

/// Returns the number so many steps after (or, if negative, before) a plain one: "13" for "12" and 1. Nothing
/// for a number with a code or out of range.
std::optional<std::string> steppedNumber(const std::string& text, std::int64_t steps);

/// Returns the number after a plain one; see `steppedNumber`.
std::optional<std::string> nextNumber(const std::string& text);

// --- Atoms --------------------------------------------------------------------------------------

/// An atom name of a file, in the names of the table.
struct AtomReading {
  enum class Kind {
    table,    ///< the shift belongs to `atom`
    pseudo,   ///< one value for both alpha protons of glycine
    other,    ///< another atom than the table holds
    foreign,  ///< a backbone name that this residue type does not have
  };
  Kind kind = Kind::other;
  Atom atom = Atom::N;       ///< of those that the table holds; HA2 of both alpha protons
  bool isOlderName = false;  ///< HA1 of glycine, which is HA2 unless its HA2 and HA3 are present too

  bool isInTable() const { return kind == Kind::table || kind == Kind::pseudo; }
};

/// Reads an atom name (H, HN, CO, HA%, HAx, 1HA, Cα; case does not matter) of a residue with this letter.
AtomReading readAtom(char letter, std::string_view atom);

/// Place of an atom among the rows of its residue in a table: N, HN, HA, HA2, HA3, C, CA, CB, CG.
constexpr std::size_t tableRank(Atom atom) {
  constexpr std::array<std::size_t, kAtomCount> ranks = {0, 2, 5, 6, 7, 1, 3, 4, 8};
  return ranks[indexOf(atom)];
}

}  // namespace zorvela

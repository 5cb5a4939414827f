// Reads the peptide bond before each proline in every model of a PDB or mmCIF file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zorvela/finding.h"

namespace zorvela {

/// |omega| up to this (degrees) is cis.
inline constexpr double kCisOmegaUpTo = 30;
/// |omega| from this (degrees) is trans. Between the two the bond is twisted.
inline constexpr double kTransOmegaFrom = 150;

/// Returns the state for omega (degrees, a number).
BondState stateOfOmega(double omega);

/// Returns the state for the distance of two neighbouring CA atoms (A): near 2.9 cis, near 3.8 trans. Nothing
/// for a distance that no peptide bond has.
std::optional<BondState> stateOfDistance(double distance);

/// A residue of a structure, seen through all models; only prolines have bonds.
struct StructureResidue : ProlineBonds {
  char letter = '?';          ///< one-letter code, of the parent for a modified residue
  std::string name;           ///< as in the file: PRO, HYP
  std::string number;         ///< with insertion code: 52A
  std::string label;          ///< label_asym_id and label_seq_id of mmCIF: "B 17"; empty without them
  bool isAfterBreak = false;  ///< not bonded to the residue before it, in the model with most residues
};

/// A protein chain.
struct StructureChain {
  std::string name;
  std::vector<StructureResidue> residues;  ///< those with coordinates, in the order of the file
  bool isTrace = false;                    ///< CA atoms only
  std::size_t molecule = 0;                ///< from 1, where several molecules share the name

  std::string letters() const;
};

/// The protein chains of a structure file.
struct ProteinStructure {
  std::string file;    ///< as the caller named it
  std::string format;  ///< "PDB" or "mmCIF"
  std::size_t modelCount = 0;
  std::vector<StructureChain> chains;
  std::vector<std::string> notes;  ///< one line each: what was not used, and why
};

/// Reads a PDB or mmCIF file, plain or gzipped. Throws FileError, with a line if known, for a file that
/// cannot be read, is something else, is cut, or has no protein. A note names an atom whose coordinates are
/// not numbers; it is not used. May run in several threads at once.
ProteinStructure readStructureFile(const std::string& path);

/// Reads the bytes of an unpacked file.
ProteinStructure readStructureBytes(std::string bytes, const std::string& file);

/// Tells whether the text of an unpacked file has coordinates and no shifts, even if it cannot be read.
bool holdsStructure(std::string_view text);

/// Tells whether a chain is the same protein as a sequence: at least 70 % of the aligned residues are
/// identical, and at least 25 residues, or half of the shorter one if that is less, are aligned.
inline constexpr double kSameProteinFrom = 70;
inline constexpr std::size_t kFewestAligned = 25;

}  // namespace zorvela

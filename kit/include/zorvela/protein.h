// One protein chain with its shifts, whatever file it came from.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "zorvela/core.h"

namespace zorvela {

/// One shift of a backbone atom, CB, or CG of proline. HA2 and HA3 are equal if the file has one for both.
struct Shift {
  int position = 0;  ///< of its residue in `Protein::sequence`, from 1
  Atom atom = Atom::N;
  std::uint8_t decimals = 0;  ///< as in the file
  double ppm = 0;
};

/// Returns the shift in ppm with the decimals of the file: "8.25".
std::string shiftText(const Shift& shift);

/// A chain with one set of shifts. Residue 1 is the first of the sequence, whatever its own number. A residue
/// that the file lacks or that is not an amino acid has a place in the sequence, but no name.
///
/// A protein from a file (`readShiftBytes`) has at least one residue and one shift. A protein made otherwise
/// needs a number for each residue. Its shifts belong to residues of the sequence, in their order, one for
/// each atom; there may be none. A shift that was not measured is absent; 999 ppm and above is absent too.
struct Protein {
  std::string file;             ///< path as the user gave it, for messages and reports
  std::string chain;            ///< name or number in the file; empty if the file has none
  std::string list;             ///< name of the shift list; empty if the file has none
  std::string sequence;         ///< one-letter codes; c: disulfide cysteine, p: proline to skip, ?: unknown
  bool isSequenceGiven = true;  ///< false: made from the residues with shifts, ? between them
  std::vector<std::string> numbers;  ///< one for each residue: the file's own, with insertion code ("52A")
  /// Flags of the file for the peptide bond before a residue, by position from 1: true cis, false trans.
  /// Residues without a flag are absent.
  std::map<int, bool> cisFlags;
  /// Share of deuterons among the hydrogens on carbon in the sample (0 to 1), from the file; 0 if the file
  /// does not tell or if its samples differ.
  double deuteration = 0;
  std::vector<Shift> shifts;         ///< in order of residue, then N, HN, HA, HA2, HA3, C, CA, CB, CG
  std::vector<std::string> remarks;  ///< REMARK lines of the table: origin, numbers, cis flags
  std::vector<std::string> notes;    ///< one line each: what was renamed, left out, guessed
  std::vector<std::string> asides;   ///< notes that apply to nearly every file: for programs only
};

/// Returns the shift of an atom; nullptr where the residue has none. `position` counts from 1.
const Shift* shiftOf(const Protein& protein, int position, Atom atom);

/// A shift of an atom by any of its common names: "HN" or "H", "C" or "CO".
struct NamedShift {
  int number = 0;  ///< of its residue
  std::string atom;
  double ppm = 0;
};

/// Makes a protein from a sequence in one-letter codes and from shifts, without a file. Residues are numbered
/// from `firstNumber`. Atoms that the shift table does not use are skipped, as in a file. Throws Error for a
/// letter that is not a residue, a number outside the sequence, an unknown atom name, a shift that is not
/// finite, and for two values of one atom.
Protein proteinOfShifts(const std::string& sequence, const std::vector<NamedShift>& shifts,
                        int firstNumber = 1);

/// Joins several shift lists, such as those of backbone and side chains, into one protein by residue number.
/// The first list that has an atom gives its shift. A note names shifts that differ by more than 0.3 ppm
/// (13C, 15N) or 0.03 ppm (1H). The file is the first one. Throws Error for an empty argument and for a
/// residue that has different types in two lists.
Protein mergedProtein(const std::vector<Protein>& parts);

/// Tells whether two lists seem to be of one protein: they agree in at least ten residues and in the shifts
/// of the atoms that both have, and each has atoms that the other lacks.
bool lookLikeOne(const Protein& one, const Protein& other);

/// Writes the chain as the table that the program reads: its remarks, its sequence and a row for each shift,
/// with residues from 1. Control characters in remarks become blanks. Throws std::out_of_range for a shift of
/// a residue outside the sequence.
void writeShiftTable(const Protein& protein, std::ostream& out);

}  // namespace zorvela

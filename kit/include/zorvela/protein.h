// One protein chain with its shifts, whatever file it came from.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "zorvela/core.h"

namespace zorvela {

/// One shift of a backbone atom, CB, or CG of proline. HA2 and HA3 have the same value where the file has one
/// for both.
struct Shift {
  int position = 0;  ///< of its residue in `Protein::sequence`, from 1
  Atom atom = Atom::N;
  std::uint8_t decimals = 0;  ///< as the file has them
  double ppm = 0;
};

/// Gives the shift in ppm with the decimals of the file: "8.25".
std::string shiftText(const Shift& shift);

/// A chain with one set of shifts. Residue 1 is the first of the sequence, whatever its own number; a residue
/// that is missing in the file, and one that is no amino acid, has a place in it and no name.
///
/// What reads a file (`readShiftBytes`) gives at least one residue and one shift. A protein made otherwise
/// needs a number for each residue, and shifts of residues that the sequence has, in their order, one for
/// each atom; there may be none. A shift that was not measured is absent; 999 ppm and above counts as absent
/// too.
struct Protein {
  std::string file;      ///< path as the user gave it, for messages and reports
  std::string chain;     ///< name or number in the file; empty where the file has none
  std::string list;      ///< name of the shift list; empty where the file has none
  std::string sequence;  ///< one-letter codes; c: disulfide cysteine, p: proline to pass over, ?: unknown
  bool isSequenceGiven = true;       ///< false: put together from the residues with shifts, ? between them
  std::vector<std::string> numbers;  ///< one for each residue: the file's own, with insertion code ("52A")
  /// What the file says of the peptide bond before a residue, by position from 1: true cis, false trans.
  /// Those of which it says nothing are absent.
  std::map<int, bool> cisFlags;
  /// Share of the hydrogens on carbon that are deuterons in the sample of the shifts (0 to 1), as the file
  /// says; 0 where it says nothing, and where the samples differ.
  double deuteration = 0;
  std::vector<Shift> shifts;         ///< in order of residue, then N, HN, HA, HA2, HA3, C, CA, CB, CG
  std::vector<std::string> remarks;  ///< REMARK lines of the table: origin, numbers, cis flags
  std::vector<std::string> notes;    ///< one line each: what was renamed, left out, guessed
  std::vector<std::string> asides;   ///< the same, of what is so in nearly every file: for programs only
};

/// A shift of an atom by any of its common names: "HN" or "H", "C" or "CO".
struct NamedShift {
  int number = 0;  ///< of its residue
  std::string atom;
  double ppm = 0;
};

/// Makes a protein of a sequence in one-letter codes and of shifts, without any file. Residues are numbered
/// from `firstNumber`. Other atoms than those of a protein's table are passed over, as in a file. Error for a
/// letter that no sequence has, a number outside the sequence, a name that no atom of a protein has, a shift
/// that is not finite, and for two values of one atom.
Protein proteinOfShifts(const std::string& sequence, const std::vector<NamedShift>& shifts,
                        int firstNumber = 1);

/// Makes one protein of several shift lists, such as those of backbone and side chains. Residues are joined
/// by their numbers. The first list that has an atom gives its shift; a note names shifts that differ by more
/// than 0.3 ppm (13C, 15N) or 0.03 ppm (1H). The file is the first one. Error for no list at all and for a
/// residue that two lists call differently.
Protein mergedProtein(const std::vector<Protein>& parts);

/// Whether two lists seem to be of one protein: they agree in at least ten residues and in the shifts of the
/// atoms that both have, and each has atoms that the other lacks.
bool lookLikeOne(const Protein& one, const Protein& other);

/// Writes the chain as the table that the program reads: its remarks, its sequence and a row for each shift,
/// with residues from 1. Control characters in remarks become blanks. std::out_of_range for a shift of a
/// residue that the sequence has not.
void writeShiftTable(const Protein& protein, std::ostream& out);

}  // namespace zorvela

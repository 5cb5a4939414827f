// One protein chain with its shifts, whatever file it came from.
#pragma once

#include <map>
#include <string>
#include <vector>

class GDB;

namespace zorvela {

/// One shift of a backbone atom, CB, or CG of proline. Atom names are those of the shift table: HN for
/// the amide proton, HA2 and HA3 for glycine.
struct Shift {
  int resid = 0;      ///< from 1, position in `Protein::sequence`
  std::string atom;   ///< N, HN, HA, HA2, HA3, C, CA, CB, CG
  std::string shift;  ///< ppm, as the file writes it (a plain decimal number)
};

/// A chain. Residue 1 is the first of the sequence.
struct Protein {
  std::string file;                  ///< path as the user gave it
  std::string chain;                 ///< name or number in the file; empty where the file has none
  std::string list;                  ///< name of the shift list; empty where the file has none
  std::string sequence;              ///< one-letter codes; c: disulfide cysteine, ?: unknown or gap
  std::vector<std::string> numbers;  ///< the file's own residue number (with insertion code) of each residue
  /// What the file says of the peptide bond before a residue, by position: true cis, false trans.
  std::map<int, bool> cisFlags;
  std::vector<Shift> shifts;         ///< in order of residue, then N, HN, HA, HA2, HA3, C, CA, CB, CG
  std::vector<std::string> remarks;  ///< REMARK lines of the file worth keeping
  std::vector<std::string> notes;    ///< one line each: what was renamed, dropped, guessed
  std::vector<std::string> asides;   ///< the same, of what is so in nearly every file: for programs only
};

/// The chain as the table that the program reads, shifts to full precision.
GDB toTable(const Protein& protein);

}  // namespace zorvela

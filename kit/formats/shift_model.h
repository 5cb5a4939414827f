// The raw content of shift files: chains, sequences and shift lists as the file has them.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "GDB.h"
#include "formats/limits.h"
#include "names/nomenclature.h"

namespace zorvela {

/// The kind of a chain: protein or peptide, or another one. For `unknown`, its residue names decide:
/// one-letter names that are all A, C, G or T belong to a nucleic acid.
enum class Polymer { unknown, polypeptide, other };

/// A residue of a chain's sequence.
struct FileResidue {
  std::string key;     ///< how shift rows point to it: position in the polymer, or residue number
  std::string number;  ///< the number that people use for it; empty where the file gives none
  std::string name;    ///< as the file writes it (MET, MSE, DA); empty for an unknown residue
  Thiol thiol = Thiol::unknown;
  bool bondedToPrevious = false;  ///< by the file, even if the numbers jump
  ResidueReading type = {};       ///< set by `makeSequence`
};

/// The flag of a file for the peptide bond before a residue.
struct FileCisFlag {
  std::string key;     ///< of the residue
  bool isCis = false;  ///< false: the file calls it trans
};

/// A molecule, or one copy of it.
struct FileChain {
  std::string name;                  ///< by which a user chooses it; empty where there is none
  std::vector<std::string> aliases;  ///< other names that a user may give
  std::string molecule;              ///< "Ubiquitin"; empty where the file gives none
  Polymer polymer = Polymer::unknown;
  std::string kind;                     ///< what it is, for messages: "RNA"
  std::vector<FileResidue> residues;    ///< empty: to be derived from the shift rows
  Thiol thiol = Thiol::unknown;         ///< of all its cysteines
  std::vector<std::string> disulfides;  ///< keys of the residues with a disulfide bond
  std::vector<FileCisFlag> cisFlags;
};

/// The remedy for a table of the program's own format that lacks something.
inline constexpr const char* kTableRemedy =
    "write VARS RESID RESNAME ATOMNAME SHIFT and FORMAT %4d %1s %4s  %8.3f above the rows";

/// Chain index of a row that names no chain. Unless its reader places it by its residues, it is ignored, with
/// a note; a format without chains makes one chain without a name and gives its index.
inline constexpr std::size_t kNoChain = static_cast<std::size_t>(-1);

/// Chain index of a row whose chain is not in the file: nothing places it.
inline constexpr std::size_t kNowhere = kNoChain - 1;

/// A row of a shift list. A row without atom and value only names a residue.
struct FileShift {
  std::size_t chain = kNoChain;  ///< index into `ShiftFile::chains`
  std::string key;     ///< see `FileResidue::key`; empty where the row has none, or `number` is enough
  std::string number;  ///< see `FileResidue::number`; a file with one numbering may set both or this alone
  /// Steps from the residue that key and number name to the one that has the shift: -1 for "45-1", and for
  /// a column "CA-1". Assignment programs keep a shift there that is seen from a neighbour. Nothing for a
  /// residue's own shift.
  std::optional<int> offset;
  /// Of the residue that has the shift, as the file writes it, or one letter. Empty where the file has none:
  /// the sequence then gives it.
  std::string residueName;
  std::string atom;       ///< as the file writes it
  std::string value;      ///< ppm, as the file writes it; empty where it gives none
  std::string ambiguity;  ///< BMRB ambiguity code, 1 to 9; empty where the file gives none
  double occupancy = 1;
  std::size_t line = 0;  ///< in the file, from 1; 0 where it is not known
};

/// A list of shifts, of one or more chains.
struct FileShiftList {
  std::string name;  ///< by which a user chooses it; empty where the file has only one, without a name
  std::vector<std::string> aliases;  ///< other names that a user may give
  std::vector<FileShift> shifts;
  std::map<std::size_t, double> deuteration = {};  ///< share of deuterons by chain, of those that have some
};

/// The raw content of an entry. The program's own table has only `table` and notes.
struct ShiftFile {
  std::string format;  ///< "NMR-STAR 3"; empty: the format's name in the table of formats
  std::vector<FileChain> chains;
  std::vector<FileShiftList> lists;
  std::vector<std::string> notes;     ///< of the file as a whole
  std::vector<std::string> contents;  ///< its contents, for the message that it has no protein shifts
  std::optional<GDB> table;           ///< the program's own table, used unchanged
};

}  // namespace zorvela

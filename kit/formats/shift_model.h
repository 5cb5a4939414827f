// What the readers of shift files hand over: chains, sequences and shift lists in the file's own words.
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

/// Whether a chain is a protein or peptide. `unknown`: its residue names decide, and one-letter names that
/// are all A, C, G or T are those of a nucleic acid. A format that holds proteins alone says `polypeptide`.
enum class Polymer { unknown, polypeptide, other };

/// A residue of a chain's sequence.
struct FileResidue {
  std::string key;     ///< how shift rows point to it: position in the polymer, or residue number
  std::string number;  ///< the number that people use for it; empty where the file gives none
  std::string name;    ///< as the file writes it (MET, MSE, DA); empty for an unknown residue
  Thiol thiol = Thiol::unknown;
  bool bondedToPrevious = false;  ///< the file says so, although the numbers may jump
  ResidueReading type = {};       ///< left to `makeSequence`
};

/// What a file says of the peptide bond before a residue.
struct FileCisFlag {
  std::string key;     ///< of the residue
  bool isCis = false;  ///< false: the file calls it trans
};

/// A molecule, or one copy of it.
struct FileChain {
  std::string name;                  ///< by which a user chooses it; empty where there is none
  std::vector<std::string> aliases;  ///< other names that will do
  std::string molecule;              ///< "Ubiquitin"; empty where the file gives none
  Polymer polymer = Polymer::unknown;
  std::string kind;                     ///< what it is, for messages: "RNA"
  std::vector<FileResidue> residues;    ///< empty: to be derived from the shift rows
  Thiol thiol = Thiol::unknown;         ///< of all its cysteines
  std::vector<std::string> disulfides;  ///< keys of the residues with a disulfide bond
  std::vector<FileCisFlag> cisFlags;
};

/// What to do about a table of the program's own format that lacks something.
inline constexpr const char* kTableRemedy =
    "write VARS RESID RESNAME ATOMNAME SHIFT and FORMAT %4d %1s %4s  %8.3f above the rows";

/// Chain index of a row that names no chain. Unless its reader places it by its residues, it is left out,
/// with a note; a format without chains makes one without a name and gives its index.
inline constexpr std::size_t kNoChain = static_cast<std::size_t>(-1);

/// Chain index of a row that names a chain which the file has not: nothing places it.
inline constexpr std::size_t kNowhere = kNoChain - 1;

/// A row of a shift list. A row without atom and value only says that there is such a residue.
struct FileShift {
  std::size_t chain = kNoChain;  ///< index into `ShiftFile::chains`
  std::string key;     ///< see `FileResidue::key`; empty where the row has none, or `number` says all
  std::string number;  ///< see `FileResidue::number`; a file with one numbering may set both or this alone
  /// Steps from the residue that key and number name to the one that has the shift: -1 for "45-1", and for
  /// a column "CA-1". Assignment programs keep a shift there that is seen from a neighbour. Nothing for a
  /// residue's own shift.
  std::optional<int> offset;
  /// As the file writes it, of the residue that has the shift; one letter will do. Empty where the file has
  /// none: the sequence then says it.
  std::string residueName;
  std::string atom;       ///< as the file writes it
  std::string value;      ///< ppm, as the file writes it; empty where it gives none
  std::string ambiguity;  ///< BMRB ambiguity code, 1 to 9; empty where the file gives none
  double occupancy = 1;
  std::size_t line = 0;  ///< in the file, from 1; 0 where it is not known
};

/// A list of shifts, of one or more chains.
struct FileShiftList {
  std::string name;  ///< by which a user chooses it; empty where the file has but one, without a name
  std::vector<std::string> aliases;  ///< other names that will do
  std::vector<FileShift> shifts;
  std::map<std::size_t, double> deuteration = {};  ///< share of deuterons by chain, of those that have some
};

/// An entry in the words of its file. The program's own table has `table` and notes alone.
struct ShiftFile {
  std::string format;  ///< "NMR-STAR 3"; empty: the format's name in the table of formats
  std::vector<FileChain> chains;
  std::vector<FileShiftList> lists;
  std::vector<std::string> notes;     ///< of the file as a whole
  std::vector<std::string> contents;  ///< what it holds, for the message that it holds no protein shifts
  std::optional<GDB> table;           ///< the program's own table, to be taken as it stands
};

}  // namespace zorvela

// The sequence that a working shift list does not hold, from the file beside it.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "formats/shift_model.h"

namespace zorvela {

/// The chains of a sequence file in its own words.
struct SequenceFile {
  std::string file;  ///< how messages name it
  std::vector<FileChain>
      chains;                 ///< at least one, with residues; these have no number where the file has none
  std::set<int> spinSystems;  ///< numbers of a .seq file that are no residues ("SS 901")
};

/// Reads FASTA, one-letter text, three-letter names with or without numbers, NMR-STAR or NEF, plain or
/// gzipped. FileError for other bytes and for more residues than any protein has.
SequenceFile sequenceFileOf(std::string bytes, const std::string& file);

/// Returns the first residue in which two sequences differ, in words; empty where they are the same.
std::string differenceOf(const SequenceFile& one, const SequenceFile& other);

/// Whether the beginning of a text shows a sequence in letters or names: FASTA, names of which most are amino
/// acids, or at least ten capital letters that all are.
bool looksLikeSequence(std::string_view head);

}  // namespace zorvela

// Reads the sequence of a working shift list from the file beside it.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "formats/shift_model.h"

namespace zorvela {

/// The raw content of a sequence file.
struct SequenceFile {
  std::string file;               ///< how messages name it
  std::vector<FileChain> chains;  ///< at least one, with residues; their numbers may be missing
  std::set<int> spinSystems;      ///< numbers of a .seq file that are not residues ("SS 901")
};

/// Reads FASTA, one-letter text, three-letter names with or without numbers, NMR-STAR or NEF, plain or
/// gzipped. FileError for other bytes and for more residues than any protein has.
SequenceFile sequenceFileOf(std::string bytes, const std::string& file);

/// Describes the first residue in which two sequences differ; empty where they are the same.
std::string differenceOf(const SequenceFile& one, const SequenceFile& other);

/// Tells whether a text begins with a sequence: FASTA, names of which most are amino acids, or at least ten
/// capital letters that all are amino acids.
bool looksLikeSequence(std::string_view head);

}  // namespace zorvela

// Reads proteins from any shift file: NMR-STAR, NEF, lists of assignment programs, CSV or TSV, the program's
// own shift table, plain or gzipped.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

struct SequenceFile;
/// A sequence from a separate file. Never changed, so any number of threads may share it.
using GivenSequence = std::shared_ptr<const SequenceFile>;

/// Reads the sequence of a protein, plain or gzipped: FASTA (records are chains by name), one-letter text,
/// residue names with or without numbers (.seq), NMR-STAR or NEF. `file` is its name in messages. Throws
/// FileError for bytes of another kind and for more residues than any protein has.
GivenSequence readSequenceBytes(std::string bytes, const std::string& file);

/// Selects chains and shift lists of a file, and adds a sequence. Names are those in the file; case does not
/// matter.
struct ImportOptions {
  std::vector<std::string> chains;  ///< none: every polypeptide chain with shifts
  std::vector<std::string> lists;   ///< none: for each chain the list with most of its shifts; "all": each
  /// For a file that gives no sequence or only a part. Shifts are placed by their residue numbers; none are
  /// moved.
  GivenSequence sequence = nullptr;
  /// Number of the first residue of `sequence`; nothing: as in the sequence, 1 if it has no numbers.
  std::optional<int> firstResidue = std::nullopt;
};

/// Reads the proteins in the bytes of a file, in its order of chains, then of lists; at least one. The format
/// and gzip are recognised by content. Writes nothing. Notes of the proteins tell what was renamed, dropped
/// or guessed; the first protein has the notes on the whole file. `file` is its name in messages, and becomes
/// `Protein::file`. May run in several threads at once.
///
/// Throws FileError for bytes in no known format, above 256 MiB or without shifts of a polypeptide;
/// SequenceError if residue names and sequence are missing, and for shifts or names that do not fit the
/// sequence given; ChoiceError for a chain or list that the file lacks, or that has no shifts of a
/// polypeptide.
std::vector<Protein> readShiftBytes(std::string bytes, const std::string& file, const ImportOptions& options);

/// Reads the proteins of a file by its path. Throws FileError too if it cannot be read.
std::vector<Protein> readShiftFile(const std::string& path, const ImportOptions& options);

/// Reads the proteins in the rest of a stream, such as standard input. The stream stays open.
std::vector<Protein> readShiftStream(std::FILE* stream, const std::string& file,
                                     const ImportOptions& options);

}  // namespace zorvela

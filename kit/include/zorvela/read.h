// Any shift file as proteins: NMR-STAR, NEF, lists of assignment programs, CSV or TSV, the program's own shift
// table, plain or gzipped.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

struct SequenceFile;
/// A sequence that lies beside the shifts. Never changed, so any number of threads may share it.
using GivenSequence = std::shared_ptr<const SequenceFile>;

/// Reads the sequence of a protein, plain or gzipped: FASTA (records are chains by name), one-letter text,
/// residue names with or without numbers (.seq), NMR-STAR or NEF. `file` is how messages name it. FileError
/// for bytes of another kind and for more residues than any protein has.
GivenSequence readSequenceBytes(std::string bytes, const std::string& file);

/// Which chains and shift lists of a file are wanted, and the sequence beside it. Names are those that the
/// file gives, compared without regard to case.
struct ImportOptions {
  std::vector<std::string> chains;  ///< none: every polypeptide chain with shifts
  std::vector<std::string> lists;   ///< none: for each chain the list with most of its shifts; "all": each
  /// For a file that gives no sequence or a part of it. Shifts are put on it by their residue numbers; none
  /// are moved.
  GivenSequence sequence = nullptr;
  /// Number of the first residue of `sequence`; nothing: as there, 1 where it has no numbers.
  std::optional<int> firstResidue = std::nullopt;
};

/// The proteins in the bytes of a file, in its order of chains, then of lists; at least one. The content
/// says which format it is, and whether it is gzipped. Writes nothing; what was renamed, dropped or guessed
/// is in the notes of the proteins, what concerns the whole file in those of the first. `file` is how
/// messages name the file, and becomes `Protein::file`. May run in several threads at once.
///
/// FileError for bytes in no known format, beyond 256 MiB or without shifts of a polypeptide, and for shifts or
/// residue names that do not fit the sequence given; ChoiceError for a chain or list that the file has not, or
/// that has no shifts of a polypeptide.
std::vector<Protein> readShiftBytes(std::string bytes, const std::string& file, const ImportOptions& options);

/// The same for a file by its path; FileError where it cannot be read as well.
std::vector<Protein> readShiftFile(const std::string& path, const ImportOptions& options);

/// The same for what is left of a stream, such as standard input. The stream stays open.
std::vector<Protein> readShiftStream(std::FILE* stream, const std::string& file,
                                     const ImportOptions& options);

}  // namespace zorvela

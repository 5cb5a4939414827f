// Any shift file as proteins: NMR-STAR, NEF, CSV or TSV, the program's own shift table, plain or gzipped.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

/// Which chains and shift lists of a file are wanted. Names are those that the file gives, compared
/// without regard to case.
struct ImportOptions {
  std::vector<std::string> chains;  ///< none: every polypeptide chain with shifts
  std::vector<std::string> lists;   ///< none: for each chain the list with most of its shifts; "all": each
};

/// The proteins in the bytes of a file, in its order of chains, then of lists; at least one. The content
/// says which format it is, and whether it is gzipped. Writes nothing; what was renamed, dropped or guessed
/// is in the notes of the proteins, what concerns the whole file in those of the first. `file` is how
/// messages name the file, and becomes `Protein::file`. May run in several threads at once.
///
/// FileError for bytes in no known format, beyond 256 MiB or without shifts of a polypeptide; ChoiceError for
/// a chain or list that the file has not, or that has no shifts of a polypeptide.
std::vector<Protein> readShiftBytes(std::string bytes, const std::string& file, const ImportOptions& options);

/// The same for a file by its path; FileError where it cannot be read as well.
std::vector<Protein> readShiftFile(const std::string& path, const ImportOptions& options);

/// The same for what is left of a stream, such as standard input. The stream stays open.
std::vector<Protein> readShiftStream(std::FILE* stream, const std::string& file,
                                     const ImportOptions& options);

}  // namespace zorvela

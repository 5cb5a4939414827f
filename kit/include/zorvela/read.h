// Any shift file as proteins: NMR-STAR, NEF, CSV or TSV, the program's own shift table, plain or gzipped.
#pragma once

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

/// The proteins in a file, in its order of chains, then of lists; at least one. The format is told by
/// content. "-" is standard input. Writes nothing; what was renamed, dropped or guessed is in the notes
/// of the proteins, what concerns the whole file in those of the first. May run in several threads at once.
/// Error for a file that cannot be read, is in no known format or has no shifts of a polypeptide,
/// and for a chain or list that it has not.
std::vector<Protein> readShiftFile(const std::string& path, const ImportOptions& options);

/// The same for the bytes of a file. `file` becomes `Protein::file`.
std::vector<Protein> readShiftBytes(std::string bytes, const std::string& file, const ImportOptions& options);

}  // namespace zorvela

// Input files of the command line, where "-" is standard input.
#pragma once

#include <string>
#include <vector>

#include "zorvela/read.h"

namespace zorvela {

/// Returns the proteins of a file or, for "-", of standard input; see `readShiftFile`. `Protein::file` is the
/// path.
std::vector<Protein> readInput(const std::string& path, const ImportOptions& options);

/// Returns the name of an input in messages: the path, or "standard input" for "-".
std::string inputName(const std::string& path);

/// Returns "data/p" for "data/p.prot" and "data/p.seq.gz": the path without ".gz" and the ending.
std::string inputStem(const std::string& path);

}  // namespace zorvela

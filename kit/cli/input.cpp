#include "cli/input.h"

#include <cstdio>

namespace zorvela {

std::vector<Protein> readInput(const std::string& path, const ImportOptions& options) {
  if (path != "-") return readShiftFile(path, options);
  std::vector<Protein> proteins = readShiftStream(stdin, inputName(path), options);
  for (Protein& protein : proteins) protein.file = path;
  return proteins;
}

std::string inputName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

}  // namespace zorvela

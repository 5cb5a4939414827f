#include "cli/input.h"

#include <cstdio>
#include <filesystem>

#include "util/text.h"

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

std::string inputStem(const std::string& path) {
  std::filesystem::path stem = path;
  if (equalIgnoringCase(stem.extension().string(), ".gz")) stem.replace_extension();
  return stem.replace_extension().string();
}

}  // namespace zorvela

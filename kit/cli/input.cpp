#include "cli/input.h"

#include <cstdio>
#include <new>

#include "zorvela/error.h"

namespace zorvela {

namespace {

[[noreturn]] void throwTooLarge(const std::string& path) {
  throw ScarcityError(inputName(path), 0, "does not fit into memory", "give a smaller file");
}

std::vector<Protein> readFileOrStream(const std::string& path, const ImportOptions& options) {
  if (path != "-") return readShiftFile(path, options);
  std::vector<Protein> proteins = readShiftStream(stdin, inputName(path), options);
  for (Protein& protein : proteins) protein.file = path;
  return proteins;
}

}  // namespace

std::vector<Protein> readInput(const std::string& path, const ImportOptions& options) {
  try {
    return readFileOrStream(path, options);
  } catch (const std::bad_alloc&) {
    throwTooLarge(path);
  }
}

std::vector<Protein> readInputAgain(const std::string& path, const ImportOptions& options) {
  if (path == "-") throwTooLarge(path);
  return readInput(path, options);
}

std::string inputName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

}  // namespace zorvela

// A temporary directory, and the content of files, for the tests of the program and of the companion.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace support {

/// A new, empty directory, removed with all that is in it.
class TempDir {
 public:
  TempDir() : directory(testing::TempDir() + "zorvela_XXXXXX") {
    if (!mkdtemp(directory.data())) throw std::runtime_error("cannot make " + directory);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
  }

  const std::string& path() const { return directory; }
  std::string file(const std::string& name) const { return directory + "/" + name; }
  /// Writes a file and gives its path.
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(file(name), std::ios::binary) << text;
    return file(name);
  }

 private:
  std::string directory;
};

inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace support

// Everything that the fuzzers ever found, and what they start from, goes through their checks once more.
#include "fuzz/checks.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using Check = void (*)(const std::string&);

/// Returns the number of files.
std::size_t checkAll(const std::filesystem::path& folder, Check check) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    SCOPED_TRACE(entry.path());
    check({std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()});
    ++count;
  }
  return count;
}

const std::filesystem::path kFuzz = FUZZ_FOLDER;

TEST(Corpus, Star) {
  EXPECT_GT(checkAll(kFuzz / "corpus_star", zorvela::checkStar), 20U);
}

TEST(Corpus, Nef) {
  EXPECT_GT(checkAll(kFuzz / "corpus_nef", zorvela::checkNef), 0U);
}

TEST(Corpus, Csv) {
  EXPECT_GT(checkAll(kFuzz / "corpus_csv", zorvela::checkCsv), 0U);
}

TEST(Corpus, Gzip) {
  EXPECT_GT(checkAll(kFuzz / "corpus_csv", zorvela::checkGzip), 0U);
}

TEST(Corpus, Tables) {
  EXPECT_EQ(checkAll(SHIPPED_TABLES, zorvela::checkTables), 7U);
}

TEST(Corpus, Bounds) {
  EXPECT_GT(checkAll(kFuzz / "corpus_bounds", zorvela::checkBounds), 0U);
}

TEST(Corpus, Structure) {
  EXPECT_GT(checkAll(kFuzz / "corpus_structure", zorvela::checkStructure), 5U);
}

TEST(Corpus, Annotation) {
  EXPECT_GT(checkAll(kFuzz / "corpus_annotation", zorvela::checkAnnotation), 5U);
}

// A file of every format, and files with faults.
TEST(Corpus, FilesOfTheTests) {
  for (const Check check :
       {zorvela::checkStar, zorvela::checkNef, zorvela::checkCsv, zorvela::checkGzip, zorvela::checkTables,
        zorvela::checkBounds, zorvela::checkRepeats, zorvela::checkStructure, zorvela::checkAnnotation})
    EXPECT_GT(checkAll(kFuzz / ".." / "files", check), 15U);
}

}  // namespace

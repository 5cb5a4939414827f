// Everything that the fuzzers ever found, and what they start from, goes through their checks once more.
#include "fuzz/checks.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>

#include "support/temp_dir.h"

namespace {

using Check = void (*)(const std::string&);

/// Returns the number of files.
std::size_t checkAll(const std::filesystem::path& folder, Check check) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    SCOPED_TRACE(entry.path());
    check(support::readFile(entry.path()));
    ++count;
  }
  return count;
}

const std::filesystem::path kFuzz = FUZZ_FOLDER;

TEST(Corpus, HoldsWhatTheFuzzersCheck) {
  EXPECT_GT(checkAll(kFuzz / "corpus_star", zorvela::checkStar), 20U);
  EXPECT_GT(checkAll(kFuzz / "corpus_nef", zorvela::checkNef), 0U);
  EXPECT_GT(checkAll(kFuzz / "corpus_csv", zorvela::checkCsv), 0U);
  EXPECT_GT(checkAll(kFuzz / "corpus_csv", zorvela::checkGzip), 0U);
  EXPECT_EQ(checkAll(SHIPPED_TABLES, zorvela::checkTables), 7U);
  EXPECT_GT(checkAll(kFuzz / "corpus_bounds", zorvela::checkBounds), 0U);
  EXPECT_GT(checkAll(kFuzz / "corpus_structure", zorvela::checkStructure), 5U);
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

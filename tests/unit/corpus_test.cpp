// The files that the fuzzer of the table reader starts from, and those that it found.
#include <cstdint>
#include <filesystem>

#include "support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

TEST(Corpus, HoldsWhatTheFuzzerChecks) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(FUZZ_CORPUS)) {
    const std::string bytes = support::readFile(entry.path());
    SCOPED_TRACE(entry.path());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++count;
  }
  EXPECT_GE(count, 10U);
}

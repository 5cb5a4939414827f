// A fuzzer (Clang's libFuzzer) of one check: FUZZ_CHECK names it.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/checks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zorvela::FUZZ_CHECK(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}

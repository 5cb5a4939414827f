// Replaces gzip.cpp where there is no zlib: browsers and Node unpack by themselves.
#include "formats/input_bytes.h"
#include "zorvela/error.h"

namespace zorvela {

std::string unpacked(std::string bytes, const std::string& file) {
  if (bytes.size() > kLargestInput) throw inputError(InputFault::tooLarge, file);
  return bytes;
}

}  // namespace zorvela

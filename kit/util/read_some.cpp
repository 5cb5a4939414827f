#include "util/read_some.h"

#include <cerrno>

namespace zorvela {

std::size_t readSome(char* bytes, std::size_t size, std::FILE* stream) {
  while (true) {
    const std::size_t count = std::fread(bytes, 1, size, stream);
    const bool isInterrupted = std::ferror(stream) != 0 && errno == EINTR;
    if (isInterrupted) std::clearerr(stream);
    if (count > 0 || !isInterrupted) return count;
  }
}

}  // namespace zorvela

#include "formats/limits.h"

#include "zorvela/error.h"

namespace zorvela {

void checkLimit(std::size_t count, const Limit& limit, const std::string& file, std::size_t line) {
  if (count > limit.most)
    throw FileError(file, line,
                    std::string(limit.has) + " more than " + std::to_string(limit.most) + " " + limit.what,
                    limit.remedy);
}

}  // namespace zorvela

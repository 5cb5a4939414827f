#include "formats/limits.h"

#include <algorithm>

#include "util/text.h"

namespace zorvela {

void checkLimit(std::size_t count, const Limit& limit, const std::string& file, std::size_t line) {
  if (count > limit.most)
    throw LimitError(file, line,
                     std::string(limit.has) + " more than " + std::to_string(limit.most) + " " + limit.what,
                     limit.remedy);
}

std::string nameOf(std::string_view text, std::vector<std::string>& notes) {
  if (text.size() <= kLongestNameKept) return std::string(text);
  const std::string note = "names of more than " + std::to_string(kLongestNameKept) + " characters are cut";
  if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
  return printable(text, kLongestNameKept);
}

}  // namespace zorvela

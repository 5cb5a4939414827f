#include "zorvela/error.h"

#include "util/text.h"

namespace zorvela {

namespace {

/// People read a message; a quoted part of a file could be as long as the file.
constexpr std::size_t kLongestWhat = 1500;
constexpr std::size_t kLongestFile = 600;

std::string located(const std::string& file, std::size_t line, const std::string& what,
                    const std::string& remedy) {
  std::string text(firstBytes(file, kLongestFile));
  if (line > 0) text += ":" + std::to_string(line);
  text += ": " + (what.size() > kLongestWhat ? std::string(firstBytes(what, kLongestWhat)) + "..." : what);
  if (!remedy.empty()) text += "; " + remedy;
  return text;
}

}  // namespace

Error::Error(const std::string& file, std::size_t line, const std::string& what, const std::string& remedy)
    : std::runtime_error(located(file, line, what, remedy)), m_file(file), m_line(line) {}

}  // namespace zorvela

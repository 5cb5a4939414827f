#include "zorvela/error.h"

namespace zorvela {

namespace {

std::string located(const std::string& file, std::size_t line, const std::string& what,
                    const std::string& remedy) {
  std::string text = file;
  if (line > 0) text += ":" + std::to_string(line);
  text += ": " + what;
  if (!remedy.empty()) text += "; " + remedy;
  return text;
}

}  // namespace

Error::Error(const std::string& file, std::size_t line, const std::string& what, const std::string& remedy)
    : std::runtime_error(located(file, line, what, remedy)), m_file(file), m_line(line) {}

}  // namespace zorvela

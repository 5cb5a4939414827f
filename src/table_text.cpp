// Text utilities of the table: splitting, white space and numbers.
#include <charconv>  // for std::from_chars
#include <cstdlib>   // for std::strtol, std::strtod
#include <cstring>   // for std::memcpy

#include "GDB.h"

std::string GDB::simplifyWhiteSpace(const std::string& text) {
  std::string simple;
  bool gap = false;
  for (const char& c : text) {
    if (isSpace(c)) {
      gap = true;
      continue;
    }
    if (gap && !simple.empty()) simple += ' ';
    gap = false;
    simple += c;
  }
  return simple;
}

std::vector<std::string> GDB::split(const std::string& separator, const std::string& text) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = separator.empty() ? std::string::npos : text.find(separator, start);
    if (end == std::string::npos) end = text.size();
    if (end > start) pieces.push_back(text.substr(start, end - start));
    start = end + separator.size();
    if (separator.empty()) break;
  }
  return pieces;
}

std::vector<std::string> GDB::split(const char& separator, const std::string& text) {
  return split(std::string(1, separator), text);
}

std::vector<std::string> GDB::split_WhiteSpace(const std::string& text) {
  std::vector<std::string> pieces;
  if (text.empty()) pieces.emplace_back();
  std::size_t pos = 0;
  while (pos < text.size()) {
    const std::size_t start = pos;
    while (pos < text.size() && !isSpace(text[pos])) ++pos;
    if (pos > start) pieces.push_back(text.substr(start, pos - start));
    ++pos;
  }
  return pieces;
}

int GDB::contains(const std::string& text, const char& c) {
  return contains(text, std::string(1, c));
}

int GDB::contains(const std::string& text, const std::string& part) {
  int times = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++times;
  return times;
}

char* GDB::section(const std::string& text, const char& separator, char* out, int first, int last) {
  const std::vector<std::string> fields = split(separator, text);
  const int fieldCount = static_cast<int>(fields.size());
  std::string joined;
  if (first < fieldCount && first <= last) {
    for (int i = first < 0 ? 0 : first; i < fieldCount && i <= last; ++i) {
      joined += fields[static_cast<std::size_t>(i)];
      const bool lastJoined = i == last;
      if (!lastJoined) joined += separator;
    }
  }
  std::memcpy(out, joined.c_str(), joined.size() + 1);
  return out;
}

namespace {

// Reads a text that is a plain decimal number from end to end, as almost every cell is, in a quarter of
// strtol's or strtod's time.
template <class Number>
bool readPlain(const std::string& text, Number& number) {
  if (text.empty() || !(GDB::isDigit(text.front()) || text.front() == '-')) return false;
  const char* last = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), last, number);
  return error == std::errc() && parsed == last;
}

}  // namespace

int GDB::toInt(const std::string& text) {
  int number = 0;
  return readPlain(text, number) ? number : static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

float GDB::toFloat(const std::string& text) {
  return static_cast<float>(toDouble(text));
}

double GDB::toDouble(const std::string& text) {
  double number = 0.0;
  return readPlain(text, number) ? number : std::strtod(text.c_str(), nullptr);
}

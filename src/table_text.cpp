// Text utilities of the table: splitting, white space and numbers.
#include <cstdlib>  // for std::strtol, std::strtod
#include <cstring>  // for std::memcpy
#include <limits>   // for std::numeric_limits

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

// The largest power of ten with an exact double, and digits that always fit one.
constexpr int kMostDecimals = 22;
constexpr int kMostDigits = 15;
constexpr double kPowers[kMostDecimals + 1] = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                               1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                               1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// A decimal number without exponent, such as 12, -0.25 or 175.300 (almost every cell): its digits as
// an integer, and how many of them follow the point.
struct PlainNumber {
  bool negative = false;
  long long digits = 0;
  int decimals = 0;
};

// False where the text is anything else, or has more digits than a double holds.
bool readPlain(const std::string& text, PlainNumber& number) {
  std::size_t i = 0;
  number.negative = !text.empty() && text[0] == '-';
  if (number.negative) ++i;
  int digitCount = 0;
  bool behindPoint = false;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '.' && !behindPoint) {
      behindPoint = true;
    } else if (GDB::isDigit(c) && ++digitCount <= kMostDigits) {
      number.digits = number.digits * 10 + (c - '0');
      if (behindPoint) ++number.decimals;
    } else {
      return false;
    }
  }
  return digitCount > 0;
}

}  // namespace

int GDB::toInt(const std::string& text) {
  PlainNumber number;
  if (readPlain(text, number) && number.decimals == 0 && number.digits <= std::numeric_limits<int>::max())
    return static_cast<int>(number.negative ? -number.digits : number.digits);
  return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

float GDB::toFloat(const std::string& text) {
  return static_cast<float>(toDouble(text));
}

double GDB::toDouble(const std::string& text) {
  // Both numbers are exact, so that the quotient is rounded once, as strtod does it, in a quarter of its
  // time.
  PlainNumber number;
  if (!readPlain(text, number)) return std::strtod(text.c_str(), nullptr);
  const double size = static_cast<double>(number.digits) / kPowers[number.decimals];
  return number.negative ? -size : size;
}

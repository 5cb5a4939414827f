#include "util/number.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace zorvela {

namespace {

/// Returns the number with a point. The locale of a program that uses the library may have a comma instead,
/// or a sign of several bytes.
std::string withPoint(std::string number) {
  const std::size_t point = number.find_first_not_of("+-0123456789e");
  if (point != std::string::npos)
    number.replace(point, number.find_first_of("0123456789", point) - point, ".");
  return number;
}

}  // namespace

std::string fixedText(double value, int decimals) {
  char digits[400];  // the largest number has 309 before the point
  std::snprintf(digits, sizeof digits, "%.*f", decimals, value);
  return std::isfinite(value) ? withPoint(digits) : digits;
}

std::string numberText(float value) {
  if (std::isnan(value)) return std::signbit(value) ? "-nan" : "nan";
  if (std::isinf(value)) return fixedText(value, 0);
  constexpr int kMostDecimals = 8;  // nine digits tell all floats apart
  char digits[40];
  int decimals = -1;
  do std::snprintf(digits, sizeof digits, "%.*e", ++decimals, static_cast<double>(value));
  while (decimals < kMostDecimals && std::strtof(digits, nullptr) != value);
  const std::string scientific = withPoint(digits);
  const int exponent = std::atoi(std::strchr(digits, 'e') + 1);
  const std::string plain = fixedText(value, std::max(decimals - exponent, 0));
  return scientific.size() < plain.size() ? scientific : plain;
}

std::string signedText(double value, int decimals) {
  std::string text = fixedText(std::fabs(value), decimals);
  const bool isZero = text.find_first_not_of("0.") == std::string::npos;
  if (isZero) return text;
  return (value < 0 ? "-" : "+") + text;
}

}  // namespace zorvela

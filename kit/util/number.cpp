#include "util/number.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "util/text.h"

namespace zorvela {

std::string fixedText(double value, int decimals) {
  char digits[400];  // the largest number has 309 before the point
  std::snprintf(digits, sizeof digits, "%.*f", decimals, value);
  std::string text = digits;
  // The locale of a program that uses the library may have a comma there, or a sign of several bytes.
  const std::size_t point = text.find_first_not_of("-0123456789");
  if (decimals > 0 && std::isfinite(value))
    text.replace(point, text.size() - point - static_cast<std::size_t>(decimals), ".");
  return text;
}

namespace {

/// A number's shortest digits d.ddd x 10^exponent.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

Decimal shortestDecimal(float value) {
  constexpr int kMostDecimals = 8;  // nine digits tell all floats apart
  char text[40];
  for (int decimals = 0; decimals <= kMostDecimals; ++decimals) {
    std::snprintf(text, sizeof text, "%.*e", decimals, static_cast<double>(value));
    if (std::strtof(text, nullptr) == value) break;
  }
  Decimal decimal;
  const char* c = text;
  for (; *c != 'e'; ++c)
    if (isDigit(*c)) decimal.digits += *c;
  decimal.exponent = std::atoi(c + 1);
  return decimal;
}

std::string withExponent(const Decimal& decimal) {
  std::string text = decimal.digits.substr(0, 1);
  if (decimal.digits.size() > 1) text += "." + decimal.digits.substr(1);
  const int size = std::abs(decimal.exponent);
  return text + (decimal.exponent < 0 ? "e-" : "e+") + (size < 10 ? "0" : "") + std::to_string(size);
}

std::string withoutExponent(const Decimal& decimal, float value) {
  const int decimals = static_cast<int>(decimal.digits.size()) - 1 - decimal.exponent;
  if (decimals <= 0) return fixedText(static_cast<double>(value), 0);
  if (decimal.exponent < 0)
    return "0." + std::string(static_cast<std::size_t>(-decimal.exponent - 1), '0') + decimal.digits;
  std::string text = decimal.digits;
  return text.insert(static_cast<std::size_t>(decimal.exponent) + 1, ".");
}

}  // namespace

std::string numberText(float value) {
  if (std::isnan(value)) return std::signbit(value) ? "-nan" : "nan";
  if (std::signbit(value)) return "-" + numberText(-value);
  if (std::isinf(value)) return "inf";
  if (value == 0) return "0";
  const Decimal decimal = shortestDecimal(value);
  const std::string plain = withoutExponent(decimal, value);
  const std::string scientific = withExponent(decimal);
  return scientific.size() < plain.size() ? scientific : plain;
}

std::string signedText(double value, int decimals) {
  std::string text = fixedText(std::fabs(value), decimals);
  const bool isZero = text.find_first_not_of("0.") == std::string::npos;
  if (isZero) return text;
  return (value < 0 ? "-" : "+") + text;
}

}  // namespace zorvela

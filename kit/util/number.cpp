// Numbers as text, by a library that every compiler takes, those for the browser too.
#include "util/number.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <fmt/format.h>

namespace zorvela {

std::string fixedText(double value, int decimals) {
  return fmt::format("{:.{}f}", value, decimals);
}

namespace {

/// A number's shortest digits d.ddd x 10^exponent.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

Decimal shortestDecimal(float value) {
  // The shortest text is "0.00012", "1200.0" or "1.2e-05": digits, a point, an exponent.
  const std::string text = fmt::format("{}", value);
  const std::size_t mantissaEnd = std::min(text.find('e'), text.size());
  Decimal decimal;
  decimal.exponent = mantissaEnd < text.size() ? std::stoi(text.substr(mantissaEnd + 1)) : 0;
  int beforePoint = 0;
  bool pointSeen = false;
  for (const char c : text.substr(0, mantissaEnd)) {
    if (c == '.') {
      pointSeen = true;
    } else if (decimal.digits.empty() && c == '0') {
      if (pointSeen) --beforePoint;
    } else {
      decimal.digits += c;
      if (!pointSeen) ++beforePoint;
    }
  }
  decimal.exponent += beforePoint - 1;
  decimal.digits.erase(decimal.digits.find_last_not_of('0') + 1);
  return decimal;
}

std::string withExponent(const Decimal& decimal) {
  std::string text = decimal.digits.substr(0, 1);
  if (decimal.digits.size() > 1) text += "." + decimal.digits.substr(1);
  return text + fmt::format("e{}{:02}", decimal.exponent < 0 ? '-' : '+', std::abs(decimal.exponent));
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
  const std::string text = fixedText(std::fabs(value), decimals);
  const bool isZero = text.find_first_not_of("0.") == std::string::npos;
  if (isZero) return text;
  return (value < 0 ? "-" : "+") + text;
}

}  // namespace zorvela

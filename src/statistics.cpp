// Numbers to text, means and deviations of shifts and angles.
#include <algorithm>  // for std::min, std::reverse_copy
#include <cmath>      // for std::sqrt, std::sin, std::cos, std::atan2, std::fabs, std::lrint
#include <cstdio>     // for std::snprintf
#include <cstring>    // for std::strchr

#include "ZORVELA.h"

namespace {

// Angles above this bound (degrees) are absent.
constexpr float kAbsentAngle = 999.0F;
// Pi to single precision, as a double, and what undoes it.
constexpr double kPi = 3.1415927410125732;
constexpr double kPerDegree = 0.005555555555555556;
constexpr double kDegreesPerRadian = 57.29577791868204;
// Significant digits of a table cell.
constexpr int kCellDigits = 6;
// Digits behind the point, or significant ones, at the most.
constexpr int kMostDigits = 99;
// Enough for any float with that many decimals.
constexpr std::size_t kLongestNumber = 160;
constexpr std::size_t kLongestInteger = 12;

// The text of printf's %.6g for a number that it writes without an exponent: 0.0001 to 999999. A float
// times 10^9 still fits a double without rounding, so that rounding to six digits is exact too.
// False, and nothing written, outside that range.
bool writeSixDigits(float value, char* out) {
  constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  constexpr double kSixDigits = 1e5;
  const double size = std::fabs(static_cast<double>(value));
  if (!(size >= 1e-4 && size < 999999.5)) return false;
  int decimals = 0;
  while (size * kPowers[decimals] < kSixDigits) ++decimals;
  long digits = std::lrint(size * kPowers[decimals]);
  while (decimals > 0 && digits % 10 == 0) {
    digits /= 10;
    --decimals;
  }

  char reversed[16];
  char* end = reversed;
  for (int place = 0; digits > 0 || place <= decimals; ++place, digits /= 10) {
    if (place == decimals && decimals > 0) *end++ = '.';
    *end++ = static_cast<char>('0' + digits % 10);
  }
  if (std::signbit(value)) *end++ = '-';
  std::reverse_copy(reversed, end, out);
  out[end - reversed] = '\0';
  return true;
}

// Signed, so that no values at all give a count of -1 in the denominator.
double sampleCount(const std::vector<float>& v) {
  return static_cast<double>(v.size()) - 1.0;
}

}  // namespace

char* ZORVELA::ftoa(float value, char* buffer, char conversion, int precision) {
  if (conversion == '\0' || !std::strchr("fFeEgG", conversion)) conversion = 'f';
  const int digits = std::min(precision, kMostDigits);
  // The number of every table cell, in a tenth of printf's time.
  if (conversion == 'g' && digits == kCellDigits && writeSixDigits(value, buffer)) return buffer;
  std::string format = "%";
  if (digits >= 0) format += "." + std::to_string(digits);
  format += 'l';
  format += conversion;
  std::snprintf(buffer, kLongestNumber, format.c_str(), static_cast<double>(value));
  return buffer;
}

char* ZORVELA::itoa(int value, char* buffer, int) {
  std::snprintf(buffer, kLongestInteger, "%d", value);
  return buffer;
}

float ZORVELA::getWeight(const std::string&, const std::string&) {
  return zorvela::kMissingShift;
}

float ZORVELA::getDiff(float a, float b) {
  const float d = std::fabs(a - b);
  if (d <= 180.0F || d >= kAbsentAngle || a * b >= 0.0F) return d > kAbsentAngle ? 0.0F : d;
  return a > 0.0F ? 360.0F + b - a : 360.0F + a - b;
}

float ZORVELA::getAverage(const std::vector<float>& v) {
  if (v.empty()) return 0.0F;
  double sum = 0.0;
  for (const float x : v) sum += x;
  return static_cast<float>(sum / static_cast<double>(v.size()));
}

float ZORVELA::getSTDev(const std::vector<float>& v) {
  double sum = 0.0;
  for (const float x : v) sum += static_cast<double>(x) * x;
  return static_cast<float>(std::sqrt(sum / sampleCount(v)));
}

float ZORVELA::getAVGAngle(const std::vector<float>& v) {
  if (v.empty()) return zorvela::kMissingShift;
  double sumCos = 0.0;
  double sumSin = 0.0;
  for (const float x : v) {
    if (x > kAbsentAngle) continue;
    const double radians = x * kPi * kPerDegree;
    sumCos += std::cos(radians);
    sumSin += std::sin(radians);
  }
  return static_cast<float>(std::atan2(sumSin, sumCos) * kDegreesPerRadian);
}

float ZORVELA::getSTDAngle(const std::vector<float>& v) {
  if (v.empty()) return 0.0F;
  if (v.size() == 1) return 180.0F;
  const float mean = getAVGAngle(v);
  double sum = 0.0;
  for (const float x : v) {
    double d = static_cast<double>(x) - mean;
    if (d > 180.0)
      d -= 360.0;
    else if (d < -180.0)
      d += 360.0;
    sum += d * d;
  }
  return static_cast<float>(std::sqrt(sum / sampleCount(v)));
}

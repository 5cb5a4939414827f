// Numbers as text, compared with the compiler's own shortest text.
#include "util/number.h"

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

std::string shortest(float value) {
  std::array<char, 64> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

}  // namespace

TEST(NumberText, IsTheShortestThatGivesTheNumberBack) {
  EXPECT_EQ(zorvela::numberText(0.1F), "0.1");
  EXPECT_EQ(zorvela::numberText(1.0F), "1");
  EXPECT_EQ(zorvela::numberText(0.0F), "0");
  EXPECT_EQ(zorvela::numberText(-0.0F), "-0");
  EXPECT_EQ(zorvela::numberText(25.5F), "25.5");
  EXPECT_EQ(zorvela::numberText(0.0001F), "1e-04");
  EXPECT_EQ(zorvela::numberText(1.0F / 3.0F), "0.33333334");
  EXPECT_EQ(zorvela::numberText(std::numeric_limits<float>::infinity()), "inf");
  EXPECT_EQ(zorvela::numberText(std::numeric_limits<float>::quiet_NaN()), "nan");
}

TEST(NumberText, IsTheCompilersForNumbersOfEverySize) {
  // At a power of two, where the distance to the neighbours differs, a few have one digit more.
  for (int exponent = -149; exponent < 128; ++exponent) {
    const float power = std::ldexp(1.0F, exponent);
    EXPECT_EQ(std::strtof(zorvela::numberText(power).c_str(), nullptr), power);
    EXPECT_LE(zorvela::numberText(power).size(), shortest(power).size() + 1);
  }
  for (std::uint64_t pattern = 0; pattern < 0x100000000; pattern += 39119) {
    const auto bits = static_cast<std::uint32_t>(pattern);
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isnan(value)) {
      ASSERT_EQ(zorvela::numberText(value), shortest(value));
    }
  }
}

TEST(FixedText, HasSoManyDecimals) {
  EXPECT_EQ(zorvela::fixedText(1.5, 3), "1.500");
  EXPECT_EQ(zorvela::fixedText(-0.0004, 3), "-0.000");
  EXPECT_EQ(zorvela::fixedText(2.5, 0), "2");  // to even
}

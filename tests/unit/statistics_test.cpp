// Numbers to text, means and deviations of shifts and angles.
#include <array>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();

}  // namespace

class Statistics : public testing::Test {
 protected:
  std::string text(float value, char conversion, int precision) {
    char buffer[200];
    char* returned = zorvela.ftoa(value, buffer, conversion, precision);
    EXPECT_EQ(returned, buffer) << "ftoa gives back the caller's buffer";
    return buffer;
  }

  ZORVELA zorvela;
};

// --- ftoa and itoa ------------------------------------------------------------------------------

TEST_F(Statistics, FtoaWritesAsPrintfDoes) {
  struct Case {
    float value;
    char conversion;
    int precision;
    std::string text;
  };
  const std::string longest = "0.5" + std::string(98, '0');
  const std::vector<Case> cases = {{0.5F, 'x', 3, "0.500"},  // an unknown conversion is f
                                   {0.5F, '\0', 2, "0.50"},
                                   {1234567.0F, 'g', 6, "1.23457e+06"},
                                   {9999.0F, 'g', 6, "9999"},
                                   {-0.0F, 'g', 6, "-0"},
                                   {0.0001F, 'g', 6, "0.0001"},
                                   {0.00001F, 'g', 6, "1e-05"},
                                   {56.123456F, 'g', 6, "56.1235"},
                                   {1.5F, 'F', 2, "1.50"},
                                   {1.5F, 'e', 2, "1.50e+00"},
                                   {1.5F, 'E', 2, "1.50E+00"},
                                   {1e-7F, 'G', 3, "1E-07"},
                                   {1.5F, 'e', -1, "1.500000e+00"},  // printf's six
                                   {2.5F, 'f', 0, "2"},              // ties to even
                                   {0.1F, 'f', 12, "0.100000001490"},
                                   {0.5F, 'f', 99, longest},
                                   {0.5F, 'f', 1000000, longest},
                                   {kNaN, 'g', 6, "nan"},
                                   {-kNaN, 'g', 6, "-nan"},
                                   {HUGE_VALF, 'g', 6, "inf"}};
  for (const Case& c : cases) EXPECT_EQ(text(c.value, c.conversion, c.precision), c.text);
  EXPECT_EQ(text(-FLT_MAX, 'f', 99).size(), 1U + 39U + 1U + 99U);
}

TEST_F(Statistics, ItoaIsDecimalWhateverTheBase) {
  char buffer[32];
  EXPECT_STREQ(zorvela.itoa(255, buffer, 16), "255");
  EXPECT_EQ(zorvela.itoa(-12, buffer, 2), buffer);
  EXPECT_STREQ(buffer, "-12");
  EXPECT_STREQ(zorvela.itoa(INT_MIN, buffer, 10), "-2147483648");
}

// --- Weights and differences --------------------------------------------------------------------

TEST_F(Statistics, WeightIsAlways9999) {
  EXPECT_EQ(zorvela.getWeight("P", "CA"), 9999.0F);
  EXPECT_EQ(zorvela.getWeight("", ""), 9999.0F);
}

TEST_F(Statistics, DiffWrapsAroundBeyond180ForOppositeSigns) {
  using Case = std::array<float, 3>;
  for (const auto& [first, second, difference] :
       std::initializer_list<Case>{{-179, 179, 2},
                                   {100, -100, 160},
                                   {170, -170, 20},
                                   {10, 200, 190},
                                   {0, 200, 200},  // a zero has no sign
                                   {90, -90, 180},
                                   {-10, 10, 20},
                                   {0, 999, 999},
                                   {0, 1000, 0},
                                   {5, 9999, 0},
                                   {-1, 998, 999}})
    EXPECT_EQ(zorvela.getDiff(first, second), difference) << first << " and " << second;
}

// --- Means and deviations -----------------------------------------------------------------------

TEST_F(Statistics, AverageIsSumOverCount) {
  EXPECT_EQ(zorvela.getAverage({1.0F, 2.0F, 6.0F}), 3.0F);
  EXPECT_EQ(zorvela.getAverage({}), 0.0F);
  // In single precision the two ones vanish beside 2^25.
  EXPECT_EQ(zorvela.getAverage({33554432.0F, 1.0F, 1.0F, -33554432.0F}), 0.5F);
}

TEST_F(Statistics, STDevDoesNotSubtractTheMean) {
  // sqrt((1 + 1 + 4) / 2)
  EXPECT_EQ(zorvela.getSTDev({1.0F, 1.0F, 2.0F}), static_cast<float>(std::sqrt(3.0)));
}

// --- Angles -------------------------------------------------------------------------------------

TEST_F(Statistics, AVGAngleSkipsAnglesAbove999Only) {
  EXPECT_FLOAT_EQ(zorvela.getAVGAngle({10.0F, 9999.0F}), 10.0F);
  EXPECT_FLOAT_EQ(zorvela.getAVGAngle({999.0F}), -81.0F) << "999 - 3 x 360: a bound that still counts";
}

TEST_F(Statistics, STDAngleCountsAnAbsentAngleWithItsNumber) {
  // The mean is that of 0 alone; 9999 - 0 goes down by 360 once: sqrt(9639^2 / 1).
  EXPECT_EQ(zorvela.getSTDAngle({0.0F, 9999.0F}), 9639.0F);
}

// --- The fast way and printf's ------------------------------------------------------------------

// Floats of every size, and decimal numbers as tables hold them.
TEST(Ftoa, WritesWhatPrintfWrites) {
  ZORVELA zorvela;
  const auto check = [&](float value) {
    char expected[160];
    char written[160];
    std::snprintf(expected, sizeof expected, "%.6lg", static_cast<double>(value));
    ASSERT_STREQ(zorvela.ftoa(value, written, 'g', 6), expected);
  };
  std::mt19937_64 draw(6);
  for (int i = 0; i < 200000; ++i) {
    const auto bits = static_cast<std::uint32_t>(draw());
    float value = 0.0F;
    std::memcpy(&value, &bits, sizeof value);
    check(value);
    check(static_cast<float>((static_cast<double>(draw() % 2000001) - 1e6) * std::pow(10.0, -(i % 10))));
  }
  // Where the notation changes.
  for (const float value : {0.0F, 1e-4F, 9.9999997e-05F, 1.0000001e-4F, 99999.95F, 100000.5F, 100001.5F,
                            123456.5F, 123457.5F, 999999.0F, 999999.44F, 999999.5F, 1e6F, 0.5F, 2.5F}) {
    check(value);
    check(-value);
  }
}

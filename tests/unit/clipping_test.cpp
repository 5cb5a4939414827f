// Clipping: a secondary shift beyond the limit of its residue type is brought to it.
#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::Output;
using support::outputOf;
using support::tableOf;

}  // namespace

class Clipping : public testing::Test {
 protected:
  Clipping() {
    zorvela.limitTable = tableOf(
        "VARS RESNAME CA_MIN CA_MAX HA_MIN HA_MAX\nFORMAT %s %f %f %f %f\n"
        "K -1 2 -0.3 0.3\n"
        "A -3 3 -0.1 0.1\n"
        "K -9 9 -9 9\n");
    zorvela.resNames = {{12, "K"}, {13, "A"}, {14, "W"}};
  }

  ZORVELA zorvela;
};

TEST_F(Clipping, ShiftBeyondALimitIsBroughtToIt) {
  EXPECT_EQ(zorvela.clipSShift(12, 3.25F, "CA"), 2.0F);
  EXPECT_EQ(zorvela.clipSShift(12, -1.5F, "CA"), -1.0F);
  EXPECT_EQ(zorvela.clipSShift(13, 3.25F, "CA"), 3.0F);
}

TEST_F(Clipping, ShiftWithinTheLimitsStays) {
  EXPECT_EQ(zorvela.clipSShift(12, 1.5F, "CA"), 1.5F);
  EXPECT_EQ(zorvela.clipSShift(12, 0.0F, "CA"), 0.0F);
}

TEST_F(Clipping, ShiftEqualToALimitStays) {
  EXPECT_EQ(zorvela.clipSShift(12, -1.0F, "CA"), -1.0F);
  EXPECT_EQ(zorvela.clipSShift(12, 2.0F, "CA"), 2.0F);
  EXPECT_EQ(zorvela.clipSShift(13, 0.1F, "HA"), 0.1F) << "limits are kept in single precision";
}

TEST_F(Clipping, ShiftOf999AndMoreStaysEvenAboveTheLimit) {
  EXPECT_EQ(zorvela.clipSShift(12, 999.0F, "CA"), 999.0F);
  EXPECT_EQ(zorvela.clipSShift(12, 9999.0F, "CA"), 9999.0F);
  EXPECT_EQ(zorvela.clipSShift(12, 998.5F, "CA"), 2.0F);
}

TEST_F(Clipping, ShiftOfMinus999IsClippedToTheLowerLimit) {
  EXPECT_EQ(zorvela.clipSShift(12, -999.0F, "CA"), -1.0F);
}

TEST_F(Clipping, ShiftOf999BelowTheLowerLimitStays) {
  zorvela.limitTable = tableOf("VARS RESNAME CA_MIN CA_MAX\nFORMAT %s %f %f\nK 2000 3000\n");
  EXPECT_EQ(zorvela.clipSShift(12, 999.0F, "CA"), 999.0F);
  EXPECT_EQ(zorvela.clipSShift(12, 998.0F, "CA"), 2000.0F);
}

TEST_F(Clipping, ResidueTypeWithoutLimitsIsClippedToZero) {
  EXPECT_EQ(zorvela.clipSShift(14, 1.5F, "CA"), 0.0F);
  EXPECT_EQ(zorvela.clipSShift(14, -2.0F, "CA"), 0.0F);
  EXPECT_EQ(zorvela.clipSShift(14, 0.0F, "CA"), 0.0F);
}

TEST_F(Clipping, ResidueOutsideTheSequenceHasNoLimitsAndAnEmptyNameFromThenOn) {
  EXPECT_EQ(zorvela.clipSShift(99, 1.5F, "CA"), 0.0F);
  EXPECT_EQ(zorvela.resNames.count(99), 1U);
  EXPECT_EQ(zorvela.resNames.at(99), "");
}

TEST_F(Clipping, EmptyNameMatchesTheFirstRowOfATableWithoutNames) {
  zorvela.limitTable = tableOf("VARS CA_MIN CA_MAX\nFORMAT %f %f\n-1 1\n-5 5\n");
  EXPECT_EQ(zorvela.clipSShift(99, 1.5F, "CA"), 1.0F);
  EXPECT_EQ(zorvela.clipSShift(12, 1.5F, "CA"), 0.0F);
}

TEST_F(Clipping, DetailIsOneLineForAClippedShift) {
  zorvela.showDetail = true;
  float clipped = 0.0F;
  const Output output = outputOf([&] { clipped = zorvela.clipSShift(12, 3.25F, "CA"); });
  EXPECT_EQ(clipped, 2.0F);
  EXPECT_EQ(output.out, " Clipped  12 K  CA Secondary Shift:    3.250 Limit:    2.000\n");
  EXPECT_EQ(output.err, "");
}

TEST_F(Clipping, DetailOfALowerLimitShowsThatLimit) {
  zorvela.showDetail = true;
  const Output output = outputOf([&] { zorvela.clipSShift(12, -3.25F, "HA"); });
  EXPECT_EQ(output.out, " Clipped  12 K  HA Secondary Shift:   -3.250 Limit:   -0.300\n");
}

TEST_F(Clipping, DetailSaysNothingOfAShiftThatStays) {
  zorvela.showDetail = true;
  const Output output = outputOf([&] {
    zorvela.clipSShift(12, 2.0F, "CA");
    zorvela.clipSShift(12, 9999.0F, "CA");
  });
  EXPECT_EQ(output.out, "");
}

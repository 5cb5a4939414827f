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
  struct Case {
    int resid;
    float shift;
    const char* atom;
    float clipped;
  };
  for (const Case& c : std::initializer_list<Case>{{12, 3.25F, "CA", 2},
                                                   {12, -1.5F, "CA", -1},
                                                   {13, 3.25F, "CA", 3},
                                                   {12, 1.5F, "CA", 1.5F},
                                                   {12, -1, "CA", -1},
                                                   {12, 2, "CA", 2},
                                                   {13, 0.1F, "HA", 0.1F},  // in single precision
                                                   // 999 and more is a missing shift, and stays.
                                                   {12, 999, "CA", 999},
                                                   {12, 9999, "CA", 9999},
                                                   {12, 998.5F, "CA", 2},
                                                   {12, -999, "CA", -1},
                                                   // Where there are no limits, they are 0.
                                                   {14, 1.5F, "CA", 0},
                                                   {14, -2, "CA", 0},
                                                   {14, 0, "CA", 0},
                                                   {12, 1.5F, "CB", 0}})
    EXPECT_EQ(zorvela.clipSShift(c.resid, c.shift, c.atom), c.clipped) << c.resid << ' ' << c.shift;
}

TEST_F(Clipping, ShiftOf999BelowTheLowerLimitStays) {
  zorvela.limitTable = tableOf("VARS RESNAME CA_MIN CA_MAX\nFORMAT %s %f %f\nK 2000 3000\n");
  EXPECT_EQ(zorvela.clipSShift(12, 999.0F, "CA"), 999.0F);
  EXPECT_EQ(zorvela.clipSShift(12, 998.0F, "CA"), 2000.0F);
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

TEST_F(Clipping, DetailIsOneLineForAClippedShiftAndNoneForOthers) {
  zorvela.showDetail = true;
  const Output output = outputOf([&] {
    EXPECT_EQ(zorvela.clipSShift(12, 3.25F, "CA"), 2.0F);
    zorvela.clipSShift(12, 2.0F, "CA");
    zorvela.clipSShift(12, 9999.0F, "CA");
  });
  EXPECT_EQ(output.out, " Clipped  12 K  CA Secondary Shift:    3.250 Limit:    2.000\n");
  EXPECT_EQ(output.err, "");
}

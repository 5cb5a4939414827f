#include "names/plausible_shifts.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvela {
namespace {

const std::string kTypes = "ACDEFGHIKLMNPQRSTVWYcp";

TEST(PlausibleShifts, WrongAssignmentsAreNot) {
  EXPECT_FALSE(isPlausible('M', "CA", 73.5));  // a threonine's CB
  EXPECT_FALSE(isPlausible('M', "CB", 76.0));
  EXPECT_FALSE(isPlausible('G', "CA", 58.0));  // no glycine
  EXPECT_FALSE(isPlausible('A', "CB", 39.0));
  EXPECT_FALSE(isPlausible('T', "CB", 21.5));  // CG2
  EXPECT_FALSE(isPlausible('P', "CG", 67.0));
  EXPECT_FALSE(isPlausible('K', "HA", 8.2));  // an amide proton
  EXPECT_FALSE(isPlausible('L', "C", 55.2));  // columns mixed up
}

TEST(PlausibleShifts, HelixStrandAndBothProlinesAre) {
  EXPECT_TRUE(isPlausible('V', "CA", 67.0));
  EXPECT_TRUE(isPlausible('V', "CA", 57.5));
  EXPECT_TRUE(isPlausible('P', "CB", 31.0));  // trans
  EXPECT_TRUE(isPlausible('P', "CB", 35.5));  // cis
  EXPECT_TRUE(isPlausible('P', "CG", 24.0));  // cis
  EXPECT_TRUE(isPlausible('C', "CB", 28.0));
  EXPECT_TRUE(isPlausible('c', "CB", 41.0));
  EXPECT_TRUE(isPlausible('G', "HA3", 3.2));
}

// Random coil of Nielsen & Mulder (2018), with any referencing that occurs.
TEST(PlausibleShifts, ReferencingDoesNotMakeAShiftImplausible) {
  EXPECT_TRUE(isPlausible('A', "CA", 52.5 + 2.7));
  EXPECT_TRUE(isPlausible('A', "CA", 52.5 - 2.7));
  EXPECT_TRUE(isPlausible('S', "CB", 63.8 + 2.7));
  EXPECT_TRUE(isPlausible('S', "CB", 63.8 - 2.7));
  EXPECT_TRUE(isPlausible('I', "C", 175.9 + 2.7));
}

TEST(PlausibleShifts, BoundsAreInside) {
  const PlausibleRange range = plausibleRange('M', "CA");
  EXPECT_TRUE(isPlausible('M', "CA", range.low));
  EXPECT_TRUE(isPlausible('M', "CA", range.high));
  EXPECT_FALSE(isPlausible('M', "CA", range.low - 0.01));
  EXPECT_FALSE(isPlausible('M', "CA", range.high + 0.01));
}

TEST(PlausibleShifts, UnknownTypesHaveTheWidestRange) {
  for (const char* atom : {"N", "HN", "HA", "C", "CA", "CB"}) {
    const PlausibleRange any = plausibleRange('?', atom);
    for (const char type : kTypes) {
      const PlausibleRange own = plausibleRange(type, atom);
      EXPECT_LE(any.low, own.low) << type << atom;
      EXPECT_GE(any.high, own.high) << type << atom;
      EXPECT_LT(own.low, own.high) << type << atom;
    }
  }
  EXPECT_FALSE(isPlausible('?', "CA", 163.0));
}

TEST(PlausibleShifts, GlycineProtonsAreAlphaProtons) {
  for (const char* atom : {"HA2", "HA3"}) {
    EXPECT_EQ(plausibleRange('G', atom).low, plausibleRange('G', "HA").low);
    EXPECT_EQ(plausibleRange('G', atom).high, plausibleRange('G', "HA").high);
  }
}

TEST(PlausibleShifts, OtherAtomsHaveNoRange) {
  EXPECT_TRUE(isPlausible('K', "CE", 500.0));
}

}  // namespace
}  // namespace zorvela

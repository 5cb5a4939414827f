#include "names/plausible_shifts.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvela {
namespace {

const std::string kTypes = "ACDEFGHIKLMNPQRSTVWYcp";

TEST(PlausibleShifts, WrongAssignmentsAreNot) {
  EXPECT_FALSE(isPlausible('M', TableAtom::CA, 73.5));  // a threonine's CB
  EXPECT_FALSE(isPlausible('M', TableAtom::CB, 76.0));
  EXPECT_FALSE(isPlausible('G', TableAtom::CA, 58.0));  // no glycine
  EXPECT_FALSE(isPlausible('A', TableAtom::CB, 39.0));
  EXPECT_FALSE(isPlausible('T', TableAtom::CB, 21.5));  // CG2
  EXPECT_FALSE(isPlausible('P', TableAtom::CG, 67.0));
  EXPECT_FALSE(isPlausible('K', TableAtom::HA, 8.2));  // an amide proton
  EXPECT_FALSE(isPlausible('L', TableAtom::C, 55.2));  // columns mixed up
}

TEST(PlausibleShifts, HelixStrandAndBothProlinesAre) {
  EXPECT_TRUE(isPlausible('V', TableAtom::CA, 67.0));
  EXPECT_TRUE(isPlausible('V', TableAtom::CA, 57.5));
  EXPECT_TRUE(isPlausible('P', TableAtom::CB, 31.0));  // trans
  EXPECT_TRUE(isPlausible('P', TableAtom::CB, 35.5));  // cis
  EXPECT_TRUE(isPlausible('P', TableAtom::CG, 24.0));  // cis
  EXPECT_TRUE(isPlausible('C', TableAtom::CB, 28.0));
  EXPECT_TRUE(isPlausible('c', TableAtom::CB, 41.0));
  EXPECT_TRUE(isPlausible('G', TableAtom::HA3, 3.2));
}

// Random coil of Nielsen & Mulder (2018), with any referencing that occurs.
TEST(PlausibleShifts, ReferencingDoesNotMakeAShiftImplausible) {
  EXPECT_TRUE(isPlausible('A', TableAtom::CA, 52.5 + 2.7));
  EXPECT_TRUE(isPlausible('A', TableAtom::CA, 52.5 - 2.7));
  EXPECT_TRUE(isPlausible('S', TableAtom::CB, 63.8 + 2.7));
  EXPECT_TRUE(isPlausible('S', TableAtom::CB, 63.8 - 2.7));
  EXPECT_TRUE(isPlausible('I', TableAtom::C, 175.9 + 2.7));
}

TEST(PlausibleShifts, BoundsAreInside) {
  const PlausibleRange range = plausibleRange('M', TableAtom::CA);
  EXPECT_TRUE(isPlausible('M', TableAtom::CA, range.low));
  EXPECT_TRUE(isPlausible('M', TableAtom::CA, range.high));
  EXPECT_FALSE(isPlausible('M', TableAtom::CA, range.low - 0.01));
  EXPECT_FALSE(isPlausible('M', TableAtom::CA, range.high + 0.01));
}

TEST(PlausibleShifts, UnknownTypesHaveTheWidestRange) {
  for (const TableAtom atom :
       {TableAtom::N, TableAtom::HN, TableAtom::HA, TableAtom::C, TableAtom::CA, TableAtom::CB}) {
    const PlausibleRange any = plausibleRange('?', atom);
    for (const char type : kTypes) {
      const PlausibleRange own = plausibleRange(type, atom);
      EXPECT_LE(any.low, own.low) << type << nameOf(atom);
      EXPECT_GE(any.high, own.high) << type << nameOf(atom);
      EXPECT_LT(own.low, own.high) << type << nameOf(atom);
    }
  }
  EXPECT_FALSE(isPlausible('?', TableAtom::CA, 163.0));
}

TEST(PlausibleShifts, GlycineProtonsAreAlphaProtons) {
  for (const TableAtom atom : {TableAtom::HA2, TableAtom::HA3}) {
    EXPECT_EQ(plausibleRange('G', atom).low, plausibleRange('G', TableAtom::HA).low);
    EXPECT_EQ(plausibleRange('G', atom).high, plausibleRange('G', TableAtom::HA).high);
  }
}

}  // namespace
}  // namespace zorvela

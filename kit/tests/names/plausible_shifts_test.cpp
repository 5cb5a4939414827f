#include "names/plausible_shifts.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvela {
namespace {

const std::string kTypes = "ACDEFGHIKLMNPQRSTVWYcp";

TEST(PlausibleShifts, WrongAssignmentsAreNot) {
  EXPECT_FALSE(isPlausible('M', Atom::CA, 73.5));  // a threonine's CB
  EXPECT_FALSE(isPlausible('M', Atom::CB, 76.0));
  EXPECT_FALSE(isPlausible('G', Atom::CA, 58.0));  // no glycine
  EXPECT_FALSE(isPlausible('A', Atom::CB, 39.0));
  EXPECT_FALSE(isPlausible('T', Atom::CB, 21.5));  // CG2
  EXPECT_FALSE(isPlausible('P', Atom::CG, 67.0));
  EXPECT_FALSE(isPlausible('K', Atom::HA, 8.2));  // an amide proton
  EXPECT_FALSE(isPlausible('L', Atom::C, 55.2));  // columns mixed up
}

TEST(PlausibleShifts, HelixStrandAndBothProlinesAre) {
  EXPECT_TRUE(isPlausible('V', Atom::CA, 67.0));
  EXPECT_TRUE(isPlausible('V', Atom::CA, 57.5));
  EXPECT_TRUE(isPlausible('P', Atom::CB, 31.0));  // trans
  EXPECT_TRUE(isPlausible('P', Atom::CB, 35.5));  // cis
  EXPECT_TRUE(isPlausible('P', Atom::CG, 24.0));  // cis
  EXPECT_TRUE(isPlausible('C', Atom::CB, 28.0));
  EXPECT_TRUE(isPlausible('c', Atom::CB, 41.0));
  EXPECT_TRUE(isPlausible('G', Atom::HA3, 3.2));
}

// Random coil of Nielsen & Mulder (2018), with any referencing that occurs.
TEST(PlausibleShifts, ReferencingDoesNotMakeAShiftImplausible) {
  EXPECT_TRUE(isPlausible('A', Atom::CA, 52.5 + 2.7));
  EXPECT_TRUE(isPlausible('A', Atom::CA, 52.5 - 2.7));
  EXPECT_TRUE(isPlausible('S', Atom::CB, 63.8 + 2.7));
  EXPECT_TRUE(isPlausible('S', Atom::CB, 63.8 - 2.7));
  EXPECT_TRUE(isPlausible('I', Atom::C, 175.9 + 2.7));
}

TEST(PlausibleShifts, UnknownTypesHaveTheWidestRange) {
  for (const Atom atom : {Atom::N, Atom::HN, Atom::HA, Atom::C, Atom::CA, Atom::CB}) {
    const PlausibleRange any = plausibleRange('?', atom);
    for (const char type : kTypes) {
      const PlausibleRange own = plausibleRange(type, atom);
      EXPECT_LE(any.low, own.low) << type << nameOf(atom);
      EXPECT_GE(any.high, own.high) << type << nameOf(atom);
      EXPECT_LT(own.low, own.high) << type << nameOf(atom);
    }
  }
  EXPECT_FALSE(isPlausible('?', Atom::CA, 163.0));
}

}  // namespace
}  // namespace zorvela

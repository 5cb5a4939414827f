#include "names/plausible_shifts.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace zorvela {
namespace {

const std::string kTypes = "ACDEFGHIKLMNPQRSTVWYcp";

TEST(PlausibleShifts, AreThoseOfRightAssignments) {
  const std::tuple<char, Atom, double, bool> cases[] = {
      {'M', Atom::CA, 73.5, false},  // a threonine's CB
      {'M', Atom::CB, 76.0, false},
      {'G', Atom::CA, 58.0, false},  // no glycine
      {'A', Atom::CB, 39.0, false},
      {'T', Atom::CB, 21.5, false},  // CG2
      {'P', Atom::CG, 67.0, false},
      {'K', Atom::HA, 8.2, false},  // an amide proton
      {'L', Atom::C, 55.2, false},  // columns mixed up
      {'V', Atom::CA, 67.0, true},
      {'V', Atom::CA, 57.5, true},
      {'P', Atom::CB, 31.0, true},  // trans
      {'P', Atom::CB, 35.5, true},  // cis
      {'P', Atom::CG, 24.0, true},  // cis
      {'C', Atom::CB, 28.0, true},
      {'c', Atom::CB, 41.0, true},
      {'G', Atom::HA3, 3.2, true},
      // Random coil of Nielsen & Mulder (2018), with any referencing that occurs.
      {'A', Atom::CA, 52.5 + 2.7, true},
      {'A', Atom::CA, 52.5 - 2.7, true},
      {'S', Atom::CB, 63.8 + 2.7, true},
      {'S', Atom::CB, 63.8 - 2.7, true},
      {'I', Atom::C, 175.9 + 2.7, true},
      {'?', Atom::CA, 163.0, false},
  };
  for (const auto& [residue, atom, ppm, isRight] : cases)
    EXPECT_EQ(isPlausible(residue, atom, ppm), isRight) << residue << nameOf(atom) << ppm;
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
}

}  // namespace
}  // namespace zorvela

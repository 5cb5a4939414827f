// The numbers of a prediction, against values worked out by hand.
#include "zorvela/core.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

namespace zorvela {
namespace {

// --- Shift indices --------------------------------------------------------------------------------

TEST(ShiftIndex, CountsSixAtomsForEachResidueThenCG) {
  EXPECT_EQ(shiftIndex(-1, Atom::N), 0U);
  EXPECT_EQ(shiftIndex(-1, Atom::HN), 5U);
  EXPECT_EQ(shiftIndex(0, Atom::N), 6U);
  EXPECT_EQ(shiftIndex(0, Atom::CB), 10U);
  EXPECT_EQ(shiftIndex(1, Atom::HN), 17U);
  EXPECT_EQ(shiftIndex(0, Atom::CG), 18U);
}

TEST(ShiftIndex, IsThatOfItsPlace) {
  for (std::size_t index = 0; index < kShifts; ++index) {
    const ShiftPlace place = shiftPlace(index);
    EXPECT_EQ(shiftIndex(place.residue, place.atom), index);
  }
}

TEST(AtomNamed, KnowsTheNamesOfTheTable) {
  EXPECT_EQ(atomNamed("HA3"), Atom::HA3);
  EXPECT_EQ(atomNamed("H"), std::nullopt);
  EXPECT_EQ(nameOf(Atom::CA), "CA");
}

// --- Six digits -----------------------------------------------------------------------------------

float throughText(float value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
  return static_cast<float>(std::strtod(text, nullptr));
}

void expectSameBits(float value) {
  const float rounded = sixDigits(value);
  const float expected = throughText(value);
  ASSERT_EQ(std::memcmp(&rounded, &expected, sizeof rounded), 0)
      << value << ": " << rounded << ", not " << expected;
}

TEST(SixDigits, AreThoseOfPrintedText) {
  std::mt19937 random(1);
  for (const float largest : {0.0001F, 1.0F, 50.0F, 1000.0F, 10000.0F, 1e7F, 1e12F}) {
    std::uniform_real_distribution<float> values(-largest, largest);
    for (int i = 0; i < 20000; ++i) expectSameBits(values(random));
  }
  // Halves in the seventh digit, which are exact; of two numbers as near the even one is printed.
  for (int i = 0; i < 2000; ++i) expectSameBits(static_cast<float>(100000 + i) + 0.5F);
  for (int i = 0; i < 2000; ++i) expectSameBits((static_cast<float>(100000 + i) + 0.5F) / 32);
  for (int i = 1000000; i < 1002000; ++i) expectSameBits(static_cast<float>(5 * i));
  for (const float value : {0.0F, -0.0F, 0.0001F, 1e-10F, 9.9999996F, 999999.5F, 9999.0F, -0.001F, INFINITY})
    expectSameBits(value);
}

// --- Prediction -------------------------------------------------------------------------------

/// Shares 0.5 for cis and 0.25 for trans on either side; each shift 0 +- 1 in cis, 1 +- 1 in trans.
Model simpleModel() {
  Model model;
  for (ShiftStatistics& shift : model.shifts) shift = {{0, 1}, {1, 1}};
  ReferenceValues& type = model.type('A');
  type.lowest.fill(-200);
  type.highest.fill(200);
  type.cisBefore = type.cisAfter = 0.5F;
  type.transBefore = type.transAfter = 0.25F;
  model.type('P').lowest.fill(-2);
  model.type('P').highest.fill(2);
  return model;
}

Triplet tripletWithout() {
  Triplet triplet;
  triplet.types = {'A', 'P', 'A'};
  for (BackboneValues& values : triplet.secondary) values.fill(kMissingShift);
  return triplet;
}

TEST(Predict, WithoutShiftsHasTheNeighboursAlone) {
  const CisPrediction prediction = predict(simpleModel(), tripletWithout());
  EXPECT_EQ(prediction.pCis, 0.8F);  // 1/4 against 1/16
  EXPECT_NEAR(prediction.pCisNorm, 0.8 / (0.8 + 19 * 0.2), 1e-7);
  for (const ShiftEvidence& shift : prediction.evidence.shifts) EXPECT_TRUE(shift.isMissing);
}

TEST(Predict, MultipliesTheFactorsOfShifts) {
  Triplet triplet = tripletWithout();
  triplet.secondary[0][indexOf(Atom::CA)] = 1.5F;
  triplet.cg = 1.0F;
  const CisPrediction prediction = predict(simpleModel(), triplet);
  const ShiftEvidence& ca = prediction.evidence.shifts[3];
  EXPECT_FALSE(ca.isMissing);
  EXPECT_EQ(ca.lnCis, -1.125);
  EXPECT_EQ(ca.lnTrans, -0.125);
  // Odds 4 by neighbours, exp(-1) by CA, exp(-0.5) by CG.
  const double odds = 4 * std::exp(-1.5);
  EXPECT_NEAR(prediction.pCis, odds / (1 + odds), 1e-6);
}

}  // namespace
}  // namespace zorvela

// Offsets of small made chains, worked out by hand.
#include "predict/referencing.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zorvela {
namespace {

constexpr float kAbsent = 9999.0F;
constexpr std::size_t kHA = 1;
constexpr std::size_t kCA = 3;
constexpr std::size_t kCB = 4;
constexpr std::size_t kHN = 5;
const BackboneValues kEmpty = {kAbsent, kAbsent, kAbsent, kAbsent, kAbsent, kAbsent};

// CA is half of CA - CB; a residue scatters by 0.5 ppm, a chain by 0.1 ppm.
const std::vector<ShiftRelation> kHalf = {{"CA", Measure::caMinusCb, -2, 2, {-1, 0, 1}, 0.5, 0.1}};

BackboneValues residue(double caMinusCb, double deviation) {
  BackboneValues shifts = kEmpty;
  const double ca = caMinusCb / 2 + deviation;
  shifts[kCA] = static_cast<float>(ca);
  shifts[kCB] = static_cast<float>(ca - caMinusCb);
  return shifts;
}

/// Ten residues of a strand and a helix, 1 ppm too high, with deviations of 0.1, 0.3 ... 0.9 ppm on both
/// sides.
std::vector<BackboneValues> tenResidues() {
  std::vector<BackboneValues> residues;
  for (const double size : {0.1, 0.3, 0.5, 0.7, 0.9}) {
    residues.push_back(residue(-1.5, 1 + size));
    residues.push_back(residue(1, 1 - size));
  }
  return residues;
}

TEST(Referencing, OffsetIsTheMedianDeviationFromTheCurve) {
  const std::vector<OffsetEstimate> offsets = estimateOffsets(tenResidues(), kHalf);
  ASSERT_EQ(offsets.size(), 4U);
  EXPECT_EQ(offsets[0].atom, "CA");
  EXPECT_NEAR(offsets[0].offset, 1.0, 1e-6);
  // Median distance 0.5, so deviation 0.7413; root of (1.2533 x 0.7413)^2 / 10 + 0.1^2.
  EXPECT_NEAR(offsets[0].error, 0.310350, 1e-5);
  EXPECT_EQ(offsets[0].residues, 10);
  EXPECT_EQ(offsets[1].atom, "CB");
  EXPECT_EQ(offsets[1].offset, offsets[0].offset);
  EXPECT_EQ(offsets[1].error, offsets[0].error);
}

TEST(Referencing, WrongResiduesMoveNothing) {
  const OffsetEstimate before = estimateOffsets(tenResidues(), kHalf)[0];
  std::vector<BackboneValues> residues = tenResidues();
  residues.insert(residues.begin(), residue(-2, 18));  // a methionine with CA 73.5 and CB 76.0 ppm
  residues.push_back(residue(1, -14));
  const OffsetEstimate after = estimateOffsets(residues, kHalf)[0];
  EXPECT_EQ(after.offset, before.offset);
  EXPECT_EQ(after.error, before.error);
  EXPECT_EQ(after.residues, before.residues);
}

TEST(Referencing, ErrorIsNeverBelowTheUsualScatter) {
  const std::vector<BackboneValues> equal(16, residue(0.5, -2));
  const OffsetEstimate offset = estimateOffsets(equal, kHalf)[0];
  EXPECT_NEAR(offset.offset, -2.0, 1e-6);
  EXPECT_NEAR(offset.error, 0.185858, 1e-5);  // root of (1.2533 x 0.5)^2 / 16 + 0.1^2
}

TEST(Referencing, BetweenPointsAStraightLineBesideThemALevelOneBeyondNothing) {
  const ShiftRelation bent = {"CA", Measure::caMinusCb, 0, 2, {1, 5, 5.5}, 0.5, 0};
  const std::vector<BackboneValues> residues = {residue(-2.1, 0), residue(-1.5, 0), residue(0.5, 0),
                                                residue(2, 0),    residue(5, 0),    residue(6.1, 0)};
  const std::vector<double> found = deviations(residues, bent);
  const std::vector<double> expected = {-0.75 - 1, 0.25 - 2, 1 - 5, 2.5 - 5.5};
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], expected[i], 1e-6);
}

TEST(Referencing, FewerThanTenResiduesGiveNoOffset) {
  std::vector<BackboneValues> residues = tenResidues();
  residues.back()[kCB] = kAbsent;
  const OffsetEstimate offset = estimateOffsets(residues, kHalf)[0];
  EXPECT_TRUE(std::isnan(offset.offset));
  EXPECT_TRUE(std::isnan(offset.error));
  EXPECT_FALSE(callsForCorrection(offset));
  for (const OffsetEstimate& none : estimateOffsets({}, kHalf))
    EXPECT_TRUE(std::isnan(none.offset)) << none.atom;
}

TEST(Referencing, TheRelationWithTheSmallestErrorCounts) {
  const std::vector<ShiftRelation> relations = {{"HA", Measure::amideProtons, -1, 1, {0, 0, 0}, 0.3, 0.1},
                                                {"HA", Measure::caMinusCb, -2, 2, {0.2, 0, -0.2}, 0.2, 0.05}};
  BackboneValues shifts = residue(1, 0);
  shifts[kHN] = 0.5F;
  shifts[kHA] = 0.4F;
  EXPECT_NEAR(estimateOffsets(std::vector<BackboneValues>(12, shifts), relations)[2].offset, 0.5, 1e-6);
  shifts[kCB] = kAbsent;
  EXPECT_NEAR(estimateOffsets(std::vector<BackboneValues>(12, shifts), relations)[2].offset, 0.4, 1e-6);
}

TEST(Referencing, AmideProtonsAreThoseOfTheResidueAndTheNext) {
  std::vector<BackboneValues> residues(3, kEmpty);
  for (BackboneValues& shifts : residues) shifts[kHA] = 0;
  residues[0][kHN] = 0.2F;
  residues[1][kHN] = 0.6F;
  const std::vector<MeasuredShift> found = measuredShifts(residues, "HA", Measure::amideProtons);
  ASSERT_EQ(found.size(), 2U);  // the third has none, and no next
  EXPECT_NEAR(found[0].measure, 0.4, 1e-6);
  EXPECT_NEAR(found[1].measure, 0.6, 1e-6);
}

TEST(Referencing, HaThatIsOffSaysNothingOfCa) {
  const std::vector<ShiftRelation> relations = {{"HA", Measure::amideProtons, -1, 1, {0, 0, 0}, 0.2, 0.02},
                                                {"CA", Measure::alphaProton, -1, 1, {4, 0, -4}, 1, 0.2}};
  BackboneValues shifts = kEmpty;
  shifts[kCA] = 1;
  shifts[kHA] = 0.2F;
  shifts[kHN] = 0;
  EXPECT_NEAR(estimateOffsets(std::vector<BackboneValues>(40, shifts), relations)[0].offset, 1.8, 1e-6);
  shifts[kHA] = 0.6F;
  const std::vector<OffsetEstimate> offsets =
      estimateOffsets(std::vector<BackboneValues>(40, shifts), relations);
  EXPECT_TRUE(callsForCorrection(offsets[2]));
  EXPECT_TRUE(std::isnan(offsets[0].offset));
}

TEST(Referencing, ACorrectionIsCalledForAboveBoundAndThreeErrors) {
  EXPECT_TRUE(callsForCorrection({"CA", -0.76, 0.25, 50}));
  EXPECT_FALSE(callsForCorrection({"CA", -0.76, 0.26, 50}));
  EXPECT_FALSE(callsForCorrection({"CB", 0.75, 0.1, 50}));
  EXPECT_TRUE(callsForCorrection({"C", 1.01, 0.3, 50}));
  EXPECT_FALSE(callsForCorrection({"C", 1.0, 0.3, 50}));
  EXPECT_TRUE(callsForCorrection({"HA", 0.26, 0.08, 50}));
  EXPECT_FALSE(callsForCorrection({"HA", 0.25, 0.08, 50}));
}

TEST(Referencing, CorrectionsAreThoseThatAreCalledFor) {
  const std::map<std::string, double> both =
      correctionsOf({{"CA", 2, 0.1, 50}, {"CB", 2, 0.1, 50}, {"HA", 0.1, 0.05, 50}, {"C", -1.5, 0.3, 40}});
  EXPECT_EQ(both, (std::map<std::string, double>{{"CA", 2}, {"CB", 2}, {"CG", 2}, {"C", -1.5}}));
  EXPECT_TRUE(correctionsOf({{"CA", 0.5, 0.1, 50}, {"CB", 0.5, 0.1, 50}, {"HA", 0.1, 0.05, 50}}).empty());
  EXPECT_EQ(correctionsOf({{"HA", 0.5, 0.05, 50}}), (std::map<std::string, double>{{"HA", 0.5}}));
}

TEST(Referencing, ALowAlphaCarbonWithoutAlphaProtonsMayBeDeuterated) {
  const OffsetEstimate noProtons{"HA", std::nan(""), std::nan(""), 0};
  const auto note = [&](double ca, double caError, double c, const OffsetEstimate& ha) {
    return deuterationNote({{"CA", ca, caError, 90}, {"CB", ca, caError, 90}, ha, {"C", c, 0.4, 90}});
  };
  EXPECT_EQ(note(-0.9, 0.3, 0.2, noProtons),
            "the protein may be deuterated: it has no HA, and CA and CB are 1.10 ppm lower than C' suggests "
            "(error 0.50); if it is, add --deuterated");
  EXPECT_EQ(note(1.1, 0.3, 2.2, noProtons), note(-0.9, 0.3, 0.2, noProtons))
      << "whatever they have in common";
  EXPECT_EQ(note(-0.7, 0.3, 0.2, noProtons), "") << "less than two errors";
  EXPECT_EQ(note(-0.9, 0.3, 0.2, {"HA", 0, 0.1, 20}), "");
  EXPECT_EQ(note(-0.9, 0.3, std::nan(""), noProtons), "");
}

TEST(Referencing, KnownRelationsAreWholeAndAscendFromStrandToHelix) {
  for (const ShiftRelation& relation : knownRelations()) {
    EXPECT_GT(relation.points.size(), 5U);
    EXPECT_GT(relation.scatter, 0);
    EXPECT_GT(relation.step, 0);
    if (relation.measure != Measure::caMinusCb) continue;
    const bool isProton = relation.atom == "HA";  // low in a helix, where CA and C' are high
    EXPECT_EQ(relation.points.front() > relation.points.back(), isProton) << relation.atom;
  }
}

}  // namespace
}  // namespace zorvela

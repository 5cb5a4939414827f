// Offsets added and taken away, and relations fitted, on made chains.
#include "train/study/referencing_study.h"

#include <gtest/gtest.h>

#include "zorvela/error.h"

namespace zorvela {
namespace {

constexpr float kAbsent = 9999.0F;

EntryShifts chainOf(std::size_t residues) {
  EntryShifts chain;
  chain.names.assign(residues, "A");
  chain.missing.assign(residues, 0);
  chain.secondary.assign(residues, {kAbsent, kAbsent, kAbsent, kAbsent, kAbsent, kAbsent});
  return chain;
}

TEST(AddOffsets, MovesCarbonsAndAlphaProtonsThatAreThere) {
  EntryShifts chain = chainOf(2);
  chain.secondary[0] = {1, 2, 3, 4, 5, 6};
  chain.cg = {{1, 27.0F}, {2, kAbsent}};
  chain.cb = {{1, 32.0F}};
  addOffsets(chain, 1.5, 0.25);
  EXPECT_EQ(chain.secondary[0], (SecondaryShifts{1, 2.25F, 4.5F, 5.5F, 6.5F, 6}));
  EXPECT_EQ(chain.secondary[1][kPlaceCA], kAbsent);
  EXPECT_EQ(chain.cg, (std::map<int, float>{{1, 28.5F}, {2, kAbsent}}));
  EXPECT_EQ(chain.cb, (std::map<int, float>{{1, 33.5F}}));
}

TEST(Rereference, TakesAwayWhatWasAdded) {
  EntryShifts chain = chainOf(40);
  for (SecondaryShifts& residue : chain.secondary) residue[kPlaceCA] = residue[kPlaceCB] = -0.09F;
  chain.cg = {{7, 27.0F}};
  chain.cb = {{7, 32.0F}};
  const EntryShifts before = chain;
  addOffsets(chain, 2, 0);
  rereference(chain);
  // CA of a residue with CA - CB of 0 stands at -0.09 ppm where there is no offset.
  for (std::size_t i = 0; i < chain.secondary.size(); ++i)
    EXPECT_NEAR(chain.secondary[i][kPlaceCB], before.secondary[i][kPlaceCB], 1e-5);
  EXPECT_NEAR(chain.cg.at(7), 27, 1e-5);
  EXPECT_NEAR(chain.cb.at(7), 32, 1e-5);
}

/// Every point of every relation, with CA 0.7 and C' 0.3 times CA - CB, and HA of its own.
EntryShifts everyPoint(double bias) {
  EntryShifts chain = chainOf(180);
  for (std::size_t i = 0; i < chain.secondary.size(); ++i) {
    const double d = -6 + static_cast<double>(i % 15);
    SecondaryShifts& residue = chain.secondary[i];
    residue[kPlaceCA] = static_cast<float>(0.7 * d + bias);
    residue[kPlaceCB] = static_cast<float>(0.7 * d + bias - d);
    residue[kPlaceC] = static_cast<float>(0.3 * d);
    residue[kPlaceHA] = static_cast<float>(-0.8 + 0.2 * static_cast<double>(i % 10));
    residue[kPlaceHN] = static_cast<float>(-1 + 0.25 * static_cast<double>(i / 2 % 9));
  }
  return chain;
}

TEST(FitRelations, PointsAreMediansOfTheMedianChain) {
  const EntryShifts low = everyPoint(-0.4);
  const EntryShifts middle = everyPoint(0.2);
  const EntryShifts high = everyPoint(0.6);
  const std::vector<ShiftRelation> relations = fitRelations({&low, &middle, &high});
  ASSERT_EQ(relations.size(), knownRelations().size());
  const ShiftRelation& alpha = relations.front();
  EXPECT_EQ(alpha.atom, "CA");
  ASSERT_EQ(alpha.points.size(), 15U);
  for (std::size_t i = 0; i < 15; ++i)
    EXPECT_NEAR(alpha.points[i], 0.7 * (-6 + static_cast<double>(i)) + 0.2, 1e-9);
  EXPECT_NEAR(alpha.scatter, 0, 1e-9);
  // The chains lie -0.6, 0 and 0.4 ppm off: median distance 0.4, deviation 0.593.
  EXPECT_NEAR(alpha.betweenChains, 0.593, 1e-9);
}

TEST(FitRelations, WithoutEnoughShiftsIsAnError) {
  const EntryShifts chain = chainOf(60);
  EXPECT_THROW(fitRelations({&chain}), Error);
  EXPECT_THROW(fitRelations({}), Error);
}

}  // namespace
}  // namespace zorvela

// Offsets added and taken away, and relations fitted, on made chains.
#include "train/study/studies.h"

#include <gtest/gtest.h>

#include "zorvela/error.h"

namespace zorvela {
namespace {

constexpr float kAbsent = 9999.0F;

EntryShifts chainOf(std::size_t residues) {
  EntryShifts chain;
  chain.residues.resize(residues);
  chain.secondary.assign(residues, {kAbsent, kAbsent, kAbsent, kAbsent, kAbsent, kAbsent});
  return chain;
}

/// A proline with all shifts before one with none.
EntryShifts twoProlines() {
  EntryShifts chain = chainOf(2);
  for (Residue& residue : chain.residues) residue.type = kProlineCode;
  chain.secondary[0] = {1, 2, 3, 4, 5, 6};
  chain.residues[0].shift(Atom::CG) = 27;
  chain.residues[0].shift(Atom::CB) = 32;
  chain.residues[0].shift(Atom::HA) = chain.residues[0].shift(Atom::HA2) = 4;
  return chain;
}

/// Checks the shifts of the first residue, and that the second still has none.
void expectShifts(const EntryShifts& chain, const BackboneValues& secondary, float cb, float cg) {
  EXPECT_EQ(chain.secondary[0], secondary);
  EXPECT_EQ(chain.residues[0].shift(Atom::CB), cb);
  EXPECT_EQ(chain.residues[0].shift(Atom::CG), cg);
  EXPECT_EQ(chain.secondary[1], chainOf(1).secondary[0]);
  for (const Atom atom : {Atom::CB, Atom::CG}) EXPECT_FALSE(chain.residues[1].has(atom));
}

TEST(AddOffsets, MovesCarbonsAndAlphaProtonsThatAreThere) {
  EntryShifts chain = twoProlines();
  addOffsets(chain, 1.5, 0.25);
  expectShifts(chain, {1, 2.25F, 4.5F, 5.5F, 6.5F, 6}, 33.5F, 28.5F);
}

TEST(AddIsotopeShifts, LowersCarbonsByTheirDeuterons) {
  EntryShifts chain = twoProlines();
  addIsotopeShifts(chain, 0.5);
  expectShifts(chain, {1, 2, 3, 3.655F, 4.445F, 6}, 31.445F, 26.415F);
}

TEST(RemoveAlphaProtons, LeavesTheOtherShifts) {
  EntryShifts chain = twoProlines();
  removeAlphaProtons(chain);
  expectShifts(chain, {1, kAbsent, 3, 4, 5, 6}, 32, 27);
  for (const Atom atom : {Atom::HA, Atom::HA2}) EXPECT_FALSE(chain.residues[0].has(atom));
}

TEST(Rereference, TakesAwayWhatWasAdded) {
  EntryShifts chain = chainOf(40);
  for (BackboneValues& residue : chain.secondary)
    residue[indexOf(Atom::CA)] = residue[indexOf(Atom::CB)] = -0.09F;
  chain.residues[7].shift(Atom::CG) = 27;
  addOffsets(chain, 2, 0);
  EXPECT_TRUE(rereference(chain));
  // CA of a residue with CA - CB of 0 is at -0.09 ppm where there is no offset.
  for (const BackboneValues& residue : chain.secondary) EXPECT_NEAR(residue[indexOf(Atom::CB)], -0.09, 1e-5);
  EXPECT_NEAR(chain.residues[7].shift(Atom::CG), 27, 1e-5);
  EXPECT_FALSE(rereference(chain));
}

/// Every point of every relation, with CA 0.7 and C' 0.3 times CA - CB, and HA of its own.
EntryShifts everyPoint(double bias) {
  EntryShifts chain = chainOf(180);
  for (std::size_t i = 0; i < chain.secondary.size(); ++i) {
    const double d = -6 + static_cast<double>(i % 15);
    BackboneValues& residue = chain.secondary[i];
    residue[indexOf(Atom::CA)] = static_cast<float>(0.7 * d + bias);
    residue[indexOf(Atom::CB)] = static_cast<float>(0.7 * d + bias - d);
    residue[indexOf(Atom::C)] = static_cast<float>(0.3 * d);
    residue[indexOf(Atom::HA)] = static_cast<float>(-0.8 + 0.2 * static_cast<double>(i % 10));
    residue[indexOf(Atom::HN)] = static_cast<float>(-1 + 0.25 * static_cast<double>(i / 2 % 9));
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

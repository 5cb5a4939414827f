// Isotope shifts against a count along the bonds of each residue.
#include "predict/isotopes.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace zorvela {
namespace {

/// A residue as its carbons with the hydrogens on them, and the bonds between carbons.
struct Skeleton {
  std::map<std::string, int> hydrogens;
  std::vector<std::pair<std::string, std::string>> bonds;
};

const std::map<char, Skeleton>& skeletons() {
  static const std::map<char, Skeleton> all = {
      {'G', {{{"CA", 2}}, {}}},
      {'A', {{{"CA", 1}, {"CB", 3}}, {{"CA", "CB"}}}},
      {'C', {{{"CA", 1}, {"CB", 2}}, {{"CA", "CB"}}}},
      {'S', {{{"CA", 1}, {"CB", 2}}, {{"CA", "CB"}}}},
      {'D', {{{"CA", 1}, {"CB", 2}, {"CG", 0}}, {{"CA", "CB"}, {"CB", "CG"}}}},
      {'N', {{{"CA", 1}, {"CB", 2}, {"CG", 0}}, {{"CA", "CB"}, {"CB", "CG"}}}},
      {'E', {{{"CA", 1}, {"CB", 2}, {"CG", 2}, {"CD", 0}}, {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD"}}}},
      {'Q', {{{"CA", 1}, {"CB", 2}, {"CG", 2}, {"CD", 0}}, {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD"}}}},
      {'M', {{{"CA", 1}, {"CB", 2}, {"CG", 2}}, {{"CA", "CB"}, {"CB", "CG"}}}},  // CE is beyond sulphur
      {'R', {{{"CA", 1}, {"CB", 2}, {"CG", 2}, {"CD", 2}}, {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD"}}}},
      {'P', {{{"CA", 1}, {"CB", 2}, {"CG", 2}, {"CD", 2}}, {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD"}}}},
      {'K',
       {{{"CA", 1}, {"CB", 2}, {"CG", 2}, {"CD", 2}, {"CE", 2}},
        {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD"}, {"CD", "CE"}}}},
      {'T', {{{"CA", 1}, {"CB", 1}, {"CG2", 3}}, {{"CA", "CB"}, {"CB", "CG2"}}}},
      {'V', {{{"CA", 1}, {"CB", 1}, {"CG1", 3}, {"CG2", 3}}, {{"CA", "CB"}, {"CB", "CG1"}, {"CB", "CG2"}}}},
      {'I',
       {{{"CA", 1}, {"CB", 1}, {"CG1", 2}, {"CG2", 3}, {"CD1", 3}},
        {{"CA", "CB"}, {"CB", "CG1"}, {"CB", "CG2"}, {"CG1", "CD1"}}}},
      {'L',
       {{{"CA", 1}, {"CB", 2}, {"CG", 1}, {"CD1", 3}, {"CD2", 3}},
        {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD1"}, {"CG", "CD2"}}}},
      {'F',
       {{{"CA", 1}, {"CB", 2}, {"CG", 0}, {"CD1", 1}, {"CD2", 1}, {"CE1", 1}, {"CE2", 1}, {"CZ", 1}},
        {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD1"}, {"CG", "CD2"}, {"CD1", "CE1"}, {"CD2", "CE2"}}}},
      {'Y',
       {{{"CA", 1}, {"CB", 2}, {"CG", 0}, {"CD1", 1}, {"CD2", 1}, {"CE1", 1}, {"CE2", 1}, {"CZ", 0}},
        {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD1"}, {"CG", "CD2"}, {"CD1", "CE1"}, {"CD2", "CE2"}}}},
      {'H',
       {{{"CA", 1}, {"CB", 2}, {"CG", 0}, {"CD2", 1}, {"CE1", 1}},
        {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD2"}}}},
      {'W',
       {{{"CA", 1}, {"CB", 2}, {"CG", 0}, {"CD1", 1}, {"CD2", 0}, {"CE2", 0}, {"CE3", 1}},
        {{"CA", "CB"}, {"CB", "CG"}, {"CG", "CD1"}, {"CG", "CD2"}, {"CD2", "CE2"}, {"CD2", "CE3"}}}}};
  return all;
}

/// The sum over the deuterons one, two and three bonds away, by walking from carbon to carbon.
double walked(const Skeleton& skeleton, const std::string& carbon) {
  const std::vector<double> ppm = {-0.29, -0.13, -0.07};
  std::set<std::string> seen = {carbon};
  std::set<std::string> front = seen;
  double sum = 0;
  for (const double each : ppm) {
    std::set<std::string> next;
    for (const std::string& atom : front) {
      sum += each * skeleton.hydrogens.at(atom);
      for (const auto& [one, other] : skeleton.bonds) {
        if (one == atom && seen.insert(other).second) next.insert(other);
        if (other == atom && seen.insert(one).second) next.insert(one);
      }
    }
    front = next;
  }
  return sum;
}

TEST(IsotopeShift, CountsTheDeuteronsOfEveryResidueType) {
  ASSERT_EQ(skeletons().size(), 20U);
  for (const auto& [type, skeleton] : skeletons()) {
    EXPECT_NEAR(isotopeShift(type, Atom::CA), walked(skeleton, "CA"), 1e-9) << type;
    if (type == 'G') continue;
    EXPECT_NEAR(isotopeShift(type, Atom::CB), walked(skeleton, "CB"), 1e-9) << type;
  }
  EXPECT_NEAR(isotopeShift('P', Atom::CG), walked(skeletons().at('P'), "CG"), 1e-9);
}

TEST(IsotopeShift, IsThePublishedOneOfProline) {
  EXPECT_NEAR(isotopeShift('P', Atom::CA), -0.69, 1e-9);
  EXPECT_NEAR(isotopeShift('P', Atom::CB), -1.11, 1e-9);
  EXPECT_NEAR(isotopeShift('P', Atom::CG), -1.17, 1e-9);
}

TEST(IsotopeShift, IsThatOfTheTypeWhateverTheStateOfTheResidue) {
  EXPECT_EQ(isotopeShift('c', Atom::CB), isotopeShift('C', Atom::CB));
  EXPECT_EQ(isotopeShift('p', Atom::CB), isotopeShift('P', Atom::CB));
  EXPECT_NE(isotopeShift('C', Atom::CB), 0);
}

TEST(IsotopeShift, IsZeroWhereNothingIsKnown) {
  for (const Atom atom : {Atom::N, Atom::HN, Atom::HA, Atom::HA2, Atom::HA3, Atom::C})
    EXPECT_EQ(isotopeShift('L', atom), 0);
  EXPECT_EQ(isotopeShift('G', Atom::CB), 0);
  EXPECT_EQ(isotopeShift('L', Atom::CG), 0);
  EXPECT_EQ(isotopeShift('?', Atom::CA), 0);
  EXPECT_EQ(isotopeShift('X', Atom::CB), 0);
}

}  // namespace
}  // namespace zorvela

// Isotope shifts against a count along the bonds of each residue.
#include "predict/isotopes.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace zorvela {
namespace {

/// A carbon with its hydrogens, and the carbon before it.
struct Carbon {
  std::string name;
  int hydrogens = 0;
  std::string before;
};
using Skeleton = std::vector<Carbon>;

// As far as three bonds from CA, CB and, in proline, CG; the CE of M is beyond sulphur.
const std::map<char, std::string> kSkeletons = {
    {'G', "CA 2 -"},
    {'A', "CA 1 -  CB 3 CA"},
    {'C', "CA 1 -  CB 2 CA"},
    {'S', "CA 1 -  CB 2 CA"},
    {'D', "CA 1 -  CB 2 CA  CG 0 CB"},
    {'N', "CA 1 -  CB 2 CA  CG 0 CB"},
    {'E', "CA 1 -  CB 2 CA  CG 2 CB  CD 0 CG"},
    {'Q', "CA 1 -  CB 2 CA  CG 2 CB  CD 0 CG"},
    {'M', "CA 1 -  CB 2 CA  CG 2 CB"},
    {'R', "CA 1 -  CB 2 CA  CG 2 CB  CD 2 CG"},
    {'P', "CA 1 -  CB 2 CA  CG 2 CB  CD 2 CG"},
    {'K', "CA 1 -  CB 2 CA  CG 2 CB  CD 2 CG  CE 2 CD"},
    {'T', "CA 1 -  CB 1 CA  CG2 3 CB"},
    {'V', "CA 1 -  CB 1 CA  CG1 3 CB  CG2 3 CB"},
    {'I', "CA 1 -  CB 1 CA  CG1 2 CB  CG2 3 CB  CD1 3 CG1"},
    {'L', "CA 1 -  CB 2 CA  CG 1 CB  CD1 3 CG  CD2 3 CG"},
    {'F', "CA 1 -  CB 2 CA  CG 0 CB  CD1 1 CG  CD2 1 CG  CE1 1 CD1  CE2 1 CD2"},
    {'Y', "CA 1 -  CB 2 CA  CG 0 CB  CD1 1 CG  CD2 1 CG  CE1 1 CD1  CE2 1 CD2"},
    {'H', "CA 1 -  CB 2 CA  CG 0 CB  CD2 1 CG"},
    {'W', "CA 1 -  CB 2 CA  CG 0 CB  CD1 1 CG  CD2 0 CG  CE2 0 CD2  CE3 1 CD2"}};

Skeleton skeletonOf(char type) {
  std::istringstream text(kSkeletons.at(type));
  Skeleton skeleton;
  for (Carbon carbon; text >> carbon.name >> carbon.hydrogens >> carbon.before;) skeleton.push_back(carbon);
  return skeleton;
}

/// The sum over the deuterons one, two and three bonds away, by walking from carbon to carbon.
double walked(const Skeleton& skeleton, const std::string& carbon) {
  std::set<std::string> seen;
  std::set<std::string> front = {carbon};
  double sum = 0;
  for (const double ppm : {-0.29, -0.13, -0.07}) {
    seen.insert(front.begin(), front.end());
    std::set<std::string> next;
    for (const Carbon& atom : skeleton) {
      if (front.count(atom.name)) sum += ppm * atom.hydrogens;
      if (front.count(atom.name) && !seen.count(atom.before)) next.insert(atom.before);
      if (front.count(atom.before) && !seen.count(atom.name)) next.insert(atom.name);
    }
    front = next;
  }
  return sum;
}

TEST(IsotopeShift, CountsTheDeuteronsOfEveryResidueType) {
  ASSERT_EQ(kSkeletons.size(), 20U);
  for (const auto& [type, text] : kSkeletons) {
    const Skeleton skeleton = skeletonOf(type);
    EXPECT_NEAR(isotopeShift(type, Atom::CA), walked(skeleton, "CA"), 1e-9) << type;
    if (type == 'G') continue;
    EXPECT_NEAR(isotopeShift(type, Atom::CB), walked(skeleton, "CB"), 1e-9) << type;
  }
  EXPECT_NEAR(isotopeShift('P', Atom::CG), walked(skeletonOf('P'), "CG"), 1e-9);
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

// Three residues around a proline, and whether they have enough shifts.
#include <climits>

#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::addRow;
using support::tableOf;

using Record = std::map<std::string, std::string>;

}  // namespace

// Residues 1 to 5, K A P G K; shifts of 0.1 times the residue number, the same for all atoms.
class Triplets : public testing::Test {
 protected:
  Triplets() {
    zorvela.clipShifts = false;
    zorvela.seqLength = 5;
    const std::string sequence = "KAPGK";
    for (int resid = 1; resid <= 5; ++resid) {
      const std::string name(1, sequence[static_cast<std::size_t>(resid - 1)]);
      zorvela.resNames[resid] = name;
      for (const auto& [key, atom] : zorvela.atomNames)
        addRow(zorvela.resTable, {{"RESID", std::to_string(resid)},
                                  {"RESNAME", name},
                                  {"ATOMNAME", atom},
                                  {"SHIFT", "0." + std::to_string(resid)}});
    }
  }
  // A triplet around residue 3 with these missing counts.
  bool accepts(int previous, int centre, int next) {
    zorvela.missingCount = {{2, previous}, {3, centre}, {4, next}};
    return zorvela.testTriplet(zorvela.getTriplet(3));
  }

  ZORVELA zorvela;
};

TEST_F(Triplets, RecordHasNumbersNamesAndShiftsOfThreeResidues) {
  Record expected = {{"RESID_R1", "2"},   {"RESID_R2", "3"},   {"RESID_R3", "4"},
                     {"RESNAME_R1", "A"}, {"RESNAME_R2", "P"}, {"RESNAME_R3", "G"}};
  for (const std::string atom : {"N", "HA", "C", "CA", "CB", "HN"}) {
    expected[atom + "_R1"] = "0.2";
    expected[atom + "_R2"] = "0.3";
    expected[atom + "_R3"] = "0.4";
  }
  ASSERT_EQ(expected.size(), 24U);
  EXPECT_EQ(zorvela.getTriplet(3), expected);
}

TEST_F(Triplets, NeighbourOutsideTheSequenceHasNoNameAndShiftsOfZero) {
  const Record record = zorvela.getTriplet(5);
  EXPECT_EQ(record.at("RESID_R3"), "6");
  EXPECT_EQ(record.at("RESNAME_R3"), "");
  EXPECT_EQ(record.at("CA_R3"), "0");
  EXPECT_EQ(record.at("CA_R2"), "0.5");
  zorvela.clipShifts = true;
  zorvela.limitTable = tableOf("VARS CA_MIN CA_MAX\nFORMAT %f %f\n0.5 1\n");
  EXPECT_EQ(zorvela.getTriplet(5).at("CA_R3"), "0.5") << "by the limits of an empty name";
}

TEST_F(Triplets, ShiftsAreClippedUnlessNoclip) {
  zorvela.limitTable = support::tableOf("VARS RESNAME CA_MIN CA_MAX\nFORMAT %s %f %f\nP -0.25 0.25\n");
  EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0.3");
  zorvela.clipShifts = true;
  EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0.25");
  EXPECT_EQ(zorvela.getTriplet(3).at("CB_R2"), "0") << "no limits are limits of 0";
}

TEST_F(Triplets, ShiftsHaveSixSignificantDigits) {
  zorvela.resTable.setEntry(13, "SHIFT", "12.3456789");
  EXPECT_EQ(zorvela.getTriplet(3).at("N_R2"), "12.3457");
}

TEST_F(Triplets, NumbersThatAreNotPlainMatchNoResidue) {
  const auto renumber = [&](const std::string& resid) {
    for (int row = 13; row <= 18; ++row) zorvela.resTable.setEntry(row, "RESID", resid);
  };
  for (const char* resid : {"03", "+3", " 3", "3 ", "3.0", "-03", "-0", ""}) {
    renumber(resid);
    EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0") << resid;
  }
  for (const int resid : {-3, 0, INT_MAX, INT_MIN}) {
    renumber(std::to_string(resid));
    EXPECT_EQ(zorvela.getTriplet(resid).at("CA_R2"), "0.3") << resid;
  }
}

TEST_F(Triplets, OneResidueMayMissMoreThanThreeShifts) {
  EXPECT_TRUE(accepts(4, 3, 3) && accepts(3, 6, 3) && accepts(0, 0, 0));
  EXPECT_FALSE(accepts(4, 4, 0) || accepts(0, 4, 4) || accepts(4, 0, 4));
  zorvela.missingCount = {{3, 6}};
  EXPECT_TRUE(zorvela.testTriplet(zorvela.getTriplet(3))) << "without a count nothing is missing";
}

TEST_F(Triplets, CountsAreTakenBesideTheCentreWhateverTheNumbersOfTheNeighbours) {
  zorvela.missingCount = {{1, 6}, {2, 0}, {3, 0}, {4, 0}, {5, 6}};
  EXPECT_TRUE(zorvela.testTriplet({{"RESID_R1", "1"}, {"RESID_R2", "3"}, {"RESID_R3", "5"}}));
}

TEST_F(Triplets, CentreIsNeitherTheFirstNorTheLastResidue) {
  for (const int centre : {1, 2, 4, 5})
    EXPECT_EQ(zorvela.testTriplet(zorvela.getTriplet(centre)), centre == 2 || centre == 4) << centre;
}

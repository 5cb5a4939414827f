// One protein of several shift lists.
#include <gtest/gtest.h>

#include "made_shift.h"
#include "message_of.h"
#include "zorvela/read.h"

namespace {

using Texts = std::vector<std::string>;
using zorvela::lookLikeOne;
using zorvela::mergedProtein;
using zorvela::Protein;

Protein protein(const std::string& file, const std::string& rows) {
  return zorvela::readShiftBytes("resid,resname,atom,shift\n" + rows, file, {}).front();
}

TEST(Merge, TakesEachAtomFromTheFirstThatHasIt) {
  const Protein merged = mergedProtein({protein("a.csv", "5,ALA,CA,52.4\n6,PRO,CA,63.2\n7,GLY,N,108.0\n"),
                                        protein("b.csv", "6,PRO,CA,63.5\n6,PRO,CG,27.1\n7,GLY,HA2,3.9\n")});
  EXPECT_EQ(merged.file, "a.csv");
  EXPECT_EQ(merged.sequence, "APG");
  EXPECT_EQ(merged.numbers, (Texts{"5", "6", "7"}));
  EXPECT_EQ(made::shiftsOf(merged), (Texts{"5 CA 52.4", "6 CA 63.2", "6 CG 27.1", "7 N 108.0", "7 HA2 3.9"}));
  EXPECT_EQ(merged.notes.front(), "merged into one protein: a.csv, b.csv");
}

TEST(Merge, NamesShiftsThatDiffer) {
  const std::string start = "shifts that differ by more than 0.3 ppm (1H: 0.03); the first is used: ";
  const auto differing = [&](const std::string& one, const std::string& other,
                             const std::string& third = "6,PRO,N,137.0\n") {
    const std::vector<Protein> parts = {protein("a.csv", one), protein("b.csv", other),
                                        protein("c.csv", third)};
    for (const std::string& note : mergedProtein(parts).notes)
      if (note.find("differ") != std::string::npos) return note;
    return std::string();
  };
  EXPECT_EQ(differing("5,ALA,CA,52.4\n", "5,ALA,CA,52.7\n"), "");
  EXPECT_EQ(differing("5,ALA,CA,52.40\n", "5,ALA,CA,52.71\n"), start + "5 CA 52.40 (b.csv 52.71)");
  EXPECT_EQ(differing("5,ALA,HA,4.40\n", "5,ALA,HA,4.43\n"), "");
  EXPECT_EQ(differing("5,ALA,HA,4.40\n", "5,ALA,HA,4.44\n"), start + "5 HA 4.40 (b.csv 4.44)");
  EXPECT_EQ(differing("5,ALA,CA,52.4\n6,PRO,CA,63.2\n", "6,PRO,CA,64.0\n", "5,ALA,CA,53.0\n"),
            start + "5 CA 52.4 (c.csv 53.0), 6 CA 63.2 (b.csv 64.0)");
}

TEST(Merge, JoinsResiduesByNumber) {
  const Protein merged = mergedProtein({protein("a.csv", "5,ALA,CA,52.4\n8,CYS,CA,55.0\n"),
                                        protein("b.csv", "6,PRO,CA,63.2\n8,CYS,CB,41.0\n11,GLY,CA,45.0\n")});
  EXPECT_EQ(merged.sequence, "AP?c??G");
  EXPECT_EQ(merged.numbers, (Texts{"5", "6", "7", "8", "9", "10", "11"}));
  EXPECT_EQ(
      mergedProtein({protein("a.csv", "5,ALA,CA,52.4\n"), protein("b.csv", "8,PRO,CA,63.2\n")}).sequence,
      "A??P");
}

TEST(Merge, RefusesOtherProteins) {
  EXPECT_EQ(messageOf([] {
              mergedProtein(
                  {protein("a.csv", "5,ALA,CA,52.4\n6,VAL,CA,62.0\n"), protein("b.csv", "6,PRO,CA,63.2\n")});
            }),
            "b.csv: residue 6 is P but V in a.csv; merge lists of one protein only");
  EXPECT_EQ(messageOf([] {
              mergedProtein({protein("a.csv", "5,ALA,CA,52.4\n"), protein("b.csv", "90000,PRO,CA,63.2\n")});
            }),
            "b.csv: has a sequence of more than 40000 residues; no protein is that long: check the file");
}

/// Rows of ten residues for an atom, from ppm on.
std::string rows(const std::string& atom, double ppm, const std::string& name = "ALA") {
  std::string text;
  for (int i = 1; i <= 10; ++i)
    text += std::to_string(i) + "," + name + "," + atom + "," + std::to_string(ppm) + "\n";
  return text;
}

TEST(LookLikeOne, ListsThatCompleteEachOther) {
  const Protein backbone = protein("a", rows("CA", 52.0) + rows("N", 120.0));
  EXPECT_TRUE(lookLikeOne(backbone, protein("b", rows("HA", 4.3))));
  EXPECT_TRUE(lookLikeOne(backbone, protein("b", rows("HA", 4.3) + rows("CA", 52.1))));
  EXPECT_FALSE(lookLikeOne(backbone, protein("b", rows("HA", 4.3) + rows("CA", 52.9))));  // another state
  EXPECT_FALSE(lookLikeOne(backbone, backbone));                                          // nothing new
  EXPECT_FALSE(lookLikeOne(backbone, protein("b", rows("HA", 4.3, "VAL"))));              // another protein
  EXPECT_FALSE(lookLikeOne(protein("a", "1,ALA,CA,52.0\n"), protein("b", "1,ALA,HA,4.3\n")));  // too few
}

}  // namespace

// Residue numbers and the remarks that keep them.
#include "protein/remarks.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;

/// The remarks that give the numbers.
Texts remarksOf(const Texts& numbers) {
  zorvela::Protein protein;
  protein.numbers = numbers;
  zorvela::addNumbering(protein);
  return protein.remarks;
}

TEST(Numbering, OneRemarkForEachRun) {
  EXPECT_EQ(remarksOf({"17", "18", "19"}), Texts{"Residue 1 here is residue 17 there"});
  EXPECT_EQ(remarksOf({"-1", "0", "1"}), Texts{"Residue 1 here is residue -1 there"});
  EXPECT_EQ(remarksOf({"51", "52", "52A", "52B", "53", "60"}),
            (Texts{"Residue 1 here is residue 51 there", "Residue 3 here is residue 52A there",
                   "Residue 4 here is residue 52B there", "Residue 5 here is residue 53 there",
                   "Residue 6 here is residue 60 there"}));
  EXPECT_EQ(remarksOf({}), Texts{});
}

TEST(Numbering, RemarksGiveTheNumbersBack) {
  for (const Texts& numbers : {Texts{"17", "18", "19"}, Texts{"51", "52", "52A", "53", "60", "61"},
                               Texts{"-1", "0", "1"}, Texts{"1", "1", "1"}, Texts{"2147483647", "x", "y"}})
    EXPECT_EQ(zorvela::numbersFromRemarks(remarksOf(numbers), static_cast<int>(numbers.size()), 1), numbers);
}

TEST(Numbering, SentencesStandAnywhereInARemark) {
  const Texts remarks = {"residue sixteen",
                         "BMRB 1, shifts; PDB 1abc chain A; residue 1 here is residue 30 there",
                         "residue 3 here is residue 52B there; RESIDUE 4 HERE IS RESIDUE 90 THERE."};
  EXPECT_EQ(zorvela::numbersFromRemarks(remarks, 5, 1), (Texts{"30", "31", "52B", "90", "91"}));
  EXPECT_EQ(
      zorvela::numbersFromRemarks({"residue 1 here is residue 5", "residue x here is residue 5 there"}, 2, 1),
      (Texts{"1", "2"}));
  EXPECT_EQ(zorvela::numbersFromRemarks({}, 3, 5), (Texts{"5", "6", "7"}));
}

TEST(Numbering, RemarksFollowWhenTheTableIsRenumbered) {
  EXPECT_EQ(zorvela::shiftedNumbering(
                "a; residue 5 here is residue 17 there, Residue 9 here is residue 30A there", 4),
            "a; residue 1 here is residue 17 there, Residue 5 here is residue 30A there");
  EXPECT_EQ(zorvela::shiftedNumbering("nothing", 4), "nothing");
  EXPECT_TRUE(zorvela::hasNumbering("x residue 1 here is residue 2 there"));
  EXPECT_FALSE(zorvela::hasNumbering("residue 1 here is residue 2"));
}

}  // namespace

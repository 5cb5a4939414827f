// Residue numbers and the remarks that keep them.
#include "protein/numbering.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;

TEST(Numbering, OneRemarkForEachRun) {
  EXPECT_EQ(zorvela::numberingRemarks({"17", "18", "19"}), Texts{"Residue 1 here is residue 17 there"});
  EXPECT_EQ(zorvela::numberingRemarks({"-1", "0", "1"}), Texts{"Residue 1 here is residue -1 there"});
  EXPECT_EQ(zorvela::numberingRemarks({"51", "52", "52A", "52B", "53", "60"}),
            (Texts{"Residue 1 here is residue 51 there", "Residue 3 here is residue 52A there",
                   "Residue 4 here is residue 52B there", "Residue 5 here is residue 53 there",
                   "Residue 6 here is residue 60 there"}));
  EXPECT_EQ(zorvela::numberingRemarks({}), Texts{});
}

TEST(Numbering, RemarksGiveTheNumbersBack) {
  for (const Texts& numbers : {Texts{"17", "18", "19"}, Texts{"51", "52", "52A", "53", "60", "61"},
                               Texts{"-1", "0", "1"}, Texts{"1", "1", "1"}, Texts{"2147483647", "x", "y"}})
    EXPECT_EQ(
        zorvela::numbersFromRemarks(zorvela::numberingRemarks(numbers), static_cast<int>(numbers.size()), 1),
        numbers);
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

TEST(Numbering, MissingNumbersAreCountedOn) {
  Texts numbers = {"", "", "10", "11", "", "20", ""};
  zorvela::completeNumbers(numbers);
  EXPECT_EQ(numbers, (Texts{"8", "9", "10", "11", "12", "20", "21"}));
}

TEST(Numbering, NumbersThatAreKnownStay) {
  Texts between = {"10", "", "", "11"};  // between 10 and 11 there is no whole number
  zorvela::completeNumbers(between);
  EXPECT_EQ(between, (Texts{"10", "10A", "10B", "11"}));
  Texts before = {"", "", "61A", "", "62"};
  zorvela::completeNumbers(before);
  EXPECT_EQ(before, (Texts{"1", "2", "61A", "61B", "62"}));
  Texts back = {"5", "", "1", "2"};
  zorvela::completeNumbers(back);
  EXPECT_EQ(back, (Texts{"5", "6", "1", "2"}));
}

}  // namespace

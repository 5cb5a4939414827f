// The sequence of a chain: given or put together from rows, gaps, numbers, types, cysteines.
#include <gtest/gtest.h>

#include "message_of.h"
#include "zorvela/read.h"

namespace {

using Texts = std::vector<std::string>;
using zorvela::Protein;

const std::string kRows =
    "loop_ _Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID "
    "_Atom_chem_shift.Val ";

/// An entity with these tags and residues, each "number name", and the rows.
std::string entry(const std::string& tags, const Texts& residues, const std::string& rows) {
  std::string text =
      "data_x save_e _Entity.ID 1 " + tags +
      " loop_ _Entity_comp_index.ID _Entity_comp_index.Auth_seq_ID _Entity_comp_index.Comp_ID ";
  for (std::size_t i = 0; i < residues.size(); ++i) text += std::to_string(i + 1) + " " + residues[i] + " ";
  return text + "stop_ save_ " + kRows + rows;
}

Protein read(const std::string& text) {
  return zorvela::readShiftBytes(text, "x.str", {}).front();
}

TEST(Sequence, FromRowsInOrderOfNumberAndInsertionCode) {
  const Protein protein = read(
      kRows + "53 G CA 45 52A PRO CA 63 52 ALA CA 52 52A PRO CB 32 x TRP CA 57 52 GLY N 110 52 GLY C 174");
  EXPECT_EQ(protein.sequence, "APG");
  EXPECT_EQ(protein.numbers, (Texts{"52", "52A", "53"}));
  EXPECT_EQ(protein.notes, (Texts{"residue 52 is called both ALA and GLY: ALA is used",
                                  "the file has no sequence; it was built from the residues with shifts",
                                  "residue 52 is GLY in 2 shift rows but ALA in the sequence; ignored",
                                  "1 shift ignored; the sequence has no such residue: x"}));
  EXPECT_EQ(read(kRows + "7 PRO CA 63 007 ALA CA 52 6 GLY CA 45").sequence, "GPA");  // as in the file
}

TEST(Sequence, AVeryLongGapIsOneQuestionMark) {
  EXPECT_EQ(read(kRows + "1 ALA CA 52 1002 PRO CA 63").sequence.size(), 1002U);
  const Protein jump = read(kRows + "1 ALA CA 52 1003 PRO CA 63");
  EXPECT_EQ(jump.sequence, "A?P");
  EXPECT_EQ(jump.numbers, (Texts{"1", "2", "1003"}));
  EXPECT_EQ(read(kRows + "1 ALA CA 52 2000 ALA CA 52 3001 ALA CA 52 4002 ALA CA 52 5003 ALA CA 52 "
                         "6004 ALA CA 52 7005 ALA CA 52")
                .sequence.size(),
            5008U);  // the "?" of the first gap does not count among 5000
}

TEST(Sequence, MissingNumbersAreCountedOn) {
  const auto completed = [](const Texts& numbers) {
    Texts residues;
    for (const std::string& number : numbers) residues.push_back(number + " ALA");
    return read(entry("_Entity.Polymer_type polypeptide(L)", residues, "1 ALA CA 52")).numbers;
  };
  EXPECT_EQ(completed({".", ".", "10", "11", ".", "20", "."}),
            (Texts{"8", "9", "10", "11", "12", "20", "21"}));
  EXPECT_EQ(completed({"10", ".", ".", "11"}), (Texts{"10", "10A", "10B", "11"}));  // no whole number between
  EXPECT_EQ(completed({".", ".", "61A", ".", "62"}), (Texts{"1", "2", "61A", "61B", "62"}));
  EXPECT_EQ(completed({"5", ".", "1", "2"}), (Texts{"5", "6", "1", "2"}));
}

TEST(Sequence, RowsNameWhatTheSequenceLeavesOpen) {
  EXPECT_EQ(
      read(entry("_Entity.Polymer_type polypeptide(L)", {"1 X", "2 UNK", "3 GLY"}, "1 PRO CA 63 3 TRP CA 57"))
          .sequence,
      "P?G");
}

TEST(Sequence, ResidueNamesTellAPolypeptideFromANucleicAcid) {
  const auto isProtein = [](const Texts& residues) {
    return messageOf([&] { read(entry("", residues, "1 . CA 52")); }) == "no error";
  };
  EXPECT_TRUE(isProtein({"1 ALA", "2 ZN"}));
  EXPECT_FALSE(isProtein({"1 DA", "2 DC"}));
  EXPECT_FALSE(isProtein({"1 A", "2 C", "3 G"}));  // could be either
  EXPECT_TRUE(isProtein({"1 A", "2 W"}));
  EXPECT_EQ(read(kRows + "1 PRO CA 63").sequence, "P");
}

TEST(Disulfides, BondsOfTheFileCountBeforeTheWordsForItsResiduesAndChain) {
  const Protein protein = read(
      entry("_Entity.Polymer_type polypeptide(L) _Entity.Thiol_state 'all free' loop_ _Entity_bond.Type "
            "_Entity_bond.Comp_index_ID_1 _Entity_bond.Comp_index_ID_2 disulfide 1 3 disulfide 99 1 stop_",
            {"11 CYM", "12 CYS", "13 PRO"}, "3 PRO CA 63"));
  EXPECT_EQ(protein.sequence, "cCP");
  EXPECT_EQ(protein.notes, (Texts{"cysteines in a disulfide bond according to the file; written as c: 11",
                                  "disulfide bonds of residues that are not cysteines; ignored: 13"}));
}

TEST(Disulfides, TheResidueCountsBeforeTheChain) {
  EXPECT_EQ(read(entry("_Entity.Polymer_type polypeptide(L) _Entity.Thiol_state 'all disulfide bound'",
                       {"11 CYS", "12 CYM", "13 PRO"}, "3 PRO CA 63"))
                .sequence,
            "cCP");
}

}  // namespace

// The sequence of a chain: given or put together from rows, gaps, numbers, residues outside the 20.
#include "protein/sequence.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;
using zorvela::ChainSequence;
using zorvela::FileChain;
using zorvela::FileShift;
using zorvela::Polymer;

struct Made {
  ChainSequence sequence;
  Texts notes;
};

FileShift rowOf(const std::string& key, const std::string& residue) {
  FileShift row;
  row.key = key;
  row.residueName = residue;
  return row;
}

Made made(const FileChain& chain, const std::vector<FileShift>& shifts) {
  zorvela::ShiftRows rows;
  for (const FileShift& shift : shifts) rows.push_back(&shift);
  Made result;
  result.sequence = zorvela::makeSequence(chain.residues, rows, result.notes);
  return result;
}

std::string lettersOf(const Made& of) {
  std::string letters;
  for (const auto& residue : of.sequence.residues) letters += residue.type.letter;
  return letters;
}

Texts numbersOf(const Made& of) {
  Texts numbers;
  for (const auto& residue : of.sequence.residues) numbers.push_back(residue.number);
  return numbers;
}

FileChain chainOf(const std::vector<zorvela::FileResidue>& residues) {
  FileChain chain;
  chain.residues = residues;
  return chain;
}

TEST(Sequence, FromRowsInOrderOfNumberAndInsertionCode) {
  const Made of = made({}, {rowOf("53", "G"), rowOf("52A", "PRO"), rowOf("52", "ALA"), rowOf("52A", "PRO"),
                            rowOf("x", "TRP")});
  EXPECT_EQ(lettersOf(of), "APG");
  EXPECT_EQ(numbersOf(of), (Texts{"52", "52A", "53"}));
  EXPECT_EQ(of.notes, Texts{"the file has no sequence; it was built from the residues with shifts"});
}

TEST(Sequence, TwoNamesOfOneResidueAreNoted) {
  const Made of = made({}, {rowOf("1", "ALA"), rowOf("1", "GLY"), rowOf("1", "GLY")});
  EXPECT_EQ(lettersOf(of), "A");
  EXPECT_EQ(of.notes.front(), "residue 1 is called both ALA and GLY: ALA is used");
  EXPECT_EQ(of.notes.size(), 2U);
}

TEST(Sequence, AVeryLongGapIsOneQuestionMark) {
  EXPECT_EQ(lettersOf(made({}, {rowOf("1", "ALA"), rowOf("1002", "PRO")})).size(), 1002U);
  const Made jump = made({}, {rowOf("1", "ALA"), rowOf("1003", "PRO")});
  EXPECT_EQ(lettersOf(jump), "A?P");
  EXPECT_EQ(numbersOf(jump), (Texts{"1", "2", "1003"}));
}

TEST(Sequence, MissingNumbersAreCountedOn) {
  const auto completed = [](const Texts& numbers) {
    FileChain chain;
    for (const std::string& number : numbers) chain.residues.push_back({"x", number, "ALA"});
    return numbersOf(made(chain, {}));
  };
  EXPECT_EQ(completed({"", "", "10", "11", "", "20", ""}), (Texts{"8", "9", "10", "11", "12", "20", "21"}));
  EXPECT_EQ(completed({"10", "", "", "11"}), (Texts{"10", "10A", "10B", "11"}));  // no whole number between
  EXPECT_EQ(completed({"", "", "61A", "", "62"}), (Texts{"1", "2", "61A", "61B", "62"}));
  EXPECT_EQ(completed({"5", "", "1", "2"}), (Texts{"5", "6", "1", "2"}));
}

TEST(Sequence, RowsNameWhatTheSequenceLeavesOpen) {
  const Made of = made(chainOf({{"1", "", "X"}, {"2", "", "UNK"}, {"3", "", "GLY"}}),
                       {rowOf("1", "PRO"), rowOf("3", "TRP")});
  EXPECT_EQ(lettersOf(of), "P?G");
}

TEST(Sequence, ResidueNamesTellAPolypeptideFromANucleicAcid) {
  EXPECT_EQ(zorvela::polymerByNames(chainOf({{"1", "", "ALA"}, {"2", "", "ZN"}}), {}), Polymer::polypeptide);
  EXPECT_EQ(zorvela::polymerByNames(chainOf({{"1", "", "DA"}, {"2", "", "DC"}}), {}), Polymer::other);
  EXPECT_EQ(zorvela::polymerByNames(chainOf({{"1", "", "A"}, {"2", "", "C"}, {"3", "", "G"}}), {}),
            Polymer::other);  // could be either
  EXPECT_EQ(zorvela::polymerByNames(chainOf({{"1", "", "A"}, {"2", "", "W"}}), {}), Polymer::polypeptide);
  const FileShift row = rowOf("1", "PRO");
  EXPECT_EQ(zorvela::polymerByNames({}, {&row}), Polymer::polypeptide);
  EXPECT_EQ(zorvela::polymerByNames({}, {}), Polymer::other);
}

}  // namespace

// Chains that rows are matched to: by name, by the residue names of the rows, by the words of the entry.
#include "formats/star/star_chains.h"

#include <gtest/gtest.h>

#include "zorvela/error.h"

namespace {

using zorvela::FileChain;
using zorvela::FileShift;
using zorvela::kNoChain;
using zorvela::Polymer;
using zorvela::Thiol;

FileChain chainOf(const std::string& name, const std::string& letters) {
  FileChain chain;
  chain.name = name;
  chain.polymer = Polymer::polypeptide;
  chain.residues = zorvela::residuesOfLetters(letters);
  return chain;
}

FileShift rowOf(const std::string& key, const std::string& residue) {
  FileShift row;
  row.key = key;
  row.residueName = residue;
  return row;
}

using Lists = std::vector<zorvela::FileShiftList>;

Lists listOf(std::vector<FileShift> rows) {
  Lists lists(1);
  lists[0].shifts = std::move(rows);
  return lists;
}

TEST(StarChains, NumbersOfTheRowsFillThoseThatTheSequenceLacks) {
  std::vector<FileChain> chains = {chainOf("A", "GAP"), chainOf("B", "GP")};
  chains[0].residues[2].number = "23";
  std::vector<FileShift> rows = {rowOf("1", "GLY"), rowOf("2", "ALA"), rowOf("3", "PRO")};
  rows[0].number = rows[1].number = "21";
  rows[2].number = "99";
  for (FileShift& row : rows) row.chain = 0;
  std::vector<std::string> notes;
  zorvela::numberByRows(chains, listOf(rows), notes);
  EXPECT_EQ(chains[0].residues[0].number, "21");
  EXPECT_EQ(chains[0].residues[1].number, "");    // two residues cannot be 21
  EXPECT_EQ(chains[0].residues[2].number, "23");  // the sequence's own
  EXPECT_EQ(chains[1].residues[1].number, "2");   // none at all: the place
  EXPECT_EQ(notes,
            std::vector<std::string>{
                "the shift rows of chain A give two residues the same number: 21; the first keeps it"});
}

TEST(StarChains, FlagsOfCisBonds) {
  for (const char* word : {"true", "Yes"}) EXPECT_EQ(zorvela::readFlag(word), true) << word;
  for (const char* word : {"FALSE", "no"}) EXPECT_EQ(zorvela::readFlag(word), false) << word;
  for (const char* word : {"", "maybe"}) EXPECT_EQ(zorvela::readFlag(word), std::nullopt) << word;
}

TEST(StarChains, SequencesFromOneLetterText) {
  const auto residues = zorvela::residuesOfLetters("a P\n(MSE)X(");
  std::string names;
  for (const auto& residue : residues) names += residue.key + residue.name + " ";
  EXPECT_EQ(names, "1A 2P 3MSE 4X ");
}

TEST(StarChains, RowsStayWithoutAChainWhereTwoFitAlikeOrNone) {
  for (const auto& [first, second] : {std::pair("GP", "GP"), std::pair("AP", "PP")}) {
    zorvela::FileWork work;
    zorvela::ChainFinder finder("x.str", work);
    finder.add("A", chainOf("A", first));
    finder.add("B", chainOf("B", second));
    zorvela::ShiftFile file;
    file.lists = listOf({rowOf("1", "GLY")});
    zorvela::settleChains(finder, file);
    EXPECT_EQ(file.lists[0].shifts[0].chain, kNoChain) << first;
    EXPECT_EQ(file.chains.size(), 2U);
    EXPECT_TRUE(file.notes.empty());
  }
}

TEST(StarChains, NamesOfCopiesAreMadeToDiffer) {
  std::vector<FileChain> chains = {chainOf("A", ""), chainOf("B", ""), chainOf("a", "")};
  zorvela::makeNamesDiffer(chains);
  EXPECT_EQ(chains[0].name + " " + chains[1].name + " " + chains[2].name, "A-1 B a-3");
  EXPECT_EQ(chains[2].aliases, std::vector<std::string>{"a"});
}

TEST(StarChains, WordsForThiolsBondsAndPolymers) {
  EXPECT_EQ(zorvela::thiolOfWords("all disulfide bound"), Thiol::disulfide);
  EXPECT_EQ(zorvela::thiolOfWords("All Free"), Thiol::notDisulfide);
  EXPECT_EQ(zorvela::thiolOfWords("all other bound"), Thiol::notDisulfide);
  EXPECT_EQ(zorvela::thiolOfWords("free and disulfide bound"), Thiol::unknown);
  EXPECT_EQ(zorvela::thiolOfWords("not present"), Thiol::unknown);
  EXPECT_TRUE(zorvela::isDisulfideBond("disulfide", "", ""));
  EXPECT_TRUE(zorvela::isDisulfideBond("", "SG", "sg"));
  EXPECT_FALSE(zorvela::isDisulfideBond("", "SG", "ZN"));
  EXPECT_EQ(zorvela::polymerOfWords("polypeptide(L)"), Polymer::polypeptide);
  EXPECT_EQ(zorvela::polymerOfWords("polyribonucleotide"), Polymer::other);
  EXPECT_EQ(zorvela::polymerOfWords("peptide nucleic acid"), Polymer::other);
  EXPECT_EQ(zorvela::polymerOfWords("polymer"), Polymer::unknown);
}

}  // namespace

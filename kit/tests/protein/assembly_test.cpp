// From a file's words to proteins: the choice of chains and lists, remarks, notes, and what is left out.
#include "protein/assembly.h"

#include <gtest/gtest.h>

#include "zorvela/error.h"

namespace {

using Texts = std::vector<std::string>;
using zorvela::FileShift;
using zorvela::makeProteins;
using zorvela::Protein;
using zorvela::ShiftFile;

FileShift rowOf(std::size_t chain, const std::string& key, const std::string& residue,
                const std::string& atom, const std::string& value) {
  FileShift row;
  row.chain = chain;
  row.key = row.number = key;
  row.residueName = residue;
  row.atom = atom;
  row.value = value;
  return row;
}

/// Chain A (ALA PRO) and chain B (an RNA), lists "cold" (one shift of A) and "warm" (two of A, one of B).
ShiftFile twoLists() {
  ShiftFile file;
  file.format = "NMR-STAR 3";
  file.chains.resize(2);
  file.chains[0].name = "A";
  file.chains[0].aliases = {"ubiquitin"};
  file.chains[0].molecule = "Ubiquitin";
  file.chains[0].residues = {{"1", "5", "ALA"}, {"2", "6", "PRO"}};
  file.chains[1].name = "B";
  file.chains[1].polymer = zorvela::Polymer::other;
  file.chains[1].kind = "RNA";
  file.lists.resize(2);
  file.lists[0].name = "cold";
  file.lists[0].aliases = {"1"};
  file.lists[0].shifts = {rowOf(0, "2", "PRO", "CA", "63.1")};
  file.lists[1].name = "warm";
  file.lists[1].shifts = {rowOf(0, "2", "PRO", "CB", "32.1"), rowOf(0, "1", "ALA", "H", "8.25"),
                          rowOf(1, "1", "A", "H1'", "5.9")};
  return file;
}

TEST(Assembly, TakesTheFullestListOfEachPolypeptide) {
  const auto proteins = makeProteins(twoLists(), "folder/entry.str", {});
  ASSERT_EQ(proteins.size(), 1U);
  const Protein& protein = proteins[0];
  EXPECT_EQ(protein.file, "folder/entry.str");
  EXPECT_EQ(protein.chain, "A");
  EXPECT_EQ(protein.list, "warm");
  EXPECT_EQ(protein.sequence, "AP");
  EXPECT_EQ(protein.numbers, (Texts{"5", "6"}));
  ASSERT_EQ(protein.shifts.size(), 2U);
  EXPECT_EQ(protein.shifts[0].position, 1);  // by residue, whatever the order of the rows
  EXPECT_EQ(protein.shifts[0].atom, zorvela::Atom::HN);
  EXPECT_EQ(protein.shifts[1].atom, zorvela::Atom::CB);
  EXPECT_EQ(protein.remarks,
            (Texts{"Imported from entry.str (NMR-STAR 3), chain A, Ubiquitin, shift list warm",
                   "Residue 1 here is residue 5 there"}));
  EXPECT_EQ(protein.notes,
            (Texts{"left out: 1 shift of chain B (RNA)",
                   "chain A has several shift lists, with backbone shifts: cold (1), warm (2); warm is used, "
                   "another can be chosen"}));
}

TEST(Assembly, ListsAreChosenByNameNumberOrAll) {
  for (const char* name : {"COLD", "1"}) {
    const auto proteins = makeProteins(twoLists(), "f", {{}, {name}});
    ASSERT_EQ(proteins.size(), 1U) << name;
    EXPECT_EQ(proteins[0].list, "cold") << name;
  }
  const auto all = makeProteins(twoLists(), "f", {{}, {"all"}});
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].list, "cold");
  EXPECT_EQ(all[1].list, "warm");
}

TEST(Assembly, ChainsAreChosenByNameOrAlias) {
  for (const char* name : {"a", "Ubiquitin"})
    EXPECT_EQ(makeProteins(twoLists(), "f", {{name}, {}}).at(0).chain, "A") << name;
}

std::string choiceError(const zorvela::ImportOptions& options, ShiftFile file = twoLists()) {
  try {
    makeProteins(std::move(file), "f", options);
  } catch (const zorvela::ChoiceError& error) {
    return error.what();
  }
  return "none";
}

TEST(Assembly, AChoiceThatTheFileHasNotIsAnError) {
  EXPECT_EQ(choiceError({{"C"}, {}}), "f: has no chain \"C\"; it has: A, B");
  EXPECT_EQ(choiceError({{}, {"hot"}}), "f: has no shift list \"hot\"; it has: cold, warm");
  EXPECT_EQ(choiceError({{"B"}, {}}), "f: chain B is no protein but RNA; choose another: A, B");
  ShiftFile file = twoLists();
  file.lists[1].shifts.erase(file.lists[1].shifts.begin(), file.lists[1].shifts.begin() + 2);
  EXPECT_EQ(choiceError({{"A"}, {"warm"}}, std::move(file)),
            "f: chain A has no shifts in the lists asked for; choose another: A, B");
}

TEST(Assembly, AFileWithoutBackboneShiftsSaysWhatItHolds) {
  ShiftFile file = twoLists();
  file.lists[0].shifts = {rowOf(0, "2", "PRO", "HD2", "3.6")};
  file.lists[1].shifts = {rowOf(zorvela::kNoChain, "1", "ALA", "CA", "52")};
  try {
    makeProteins(std::move(file), "f", {});
    FAIL() << "nothing thrown";
  } catch (const zorvela::FileError& error) {
    EXPECT_STREQ(
        error.what(),
        "f: holds no backbone shifts of a protein; this NMR-STAR 3 file holds: chain A (list cold): 1 "
        "shift, none for the table (1 shift of other atoms (side chain and the like) not needed), 1 "
        "shift of no chain");
  }
}

TEST(Assembly, MoreThanAnyFileHoldsIsAnError) {
  ShiftFile product = twoLists();
  product.chains.resize(200);
  product.lists.resize(zorvela::limits::kChainsTimesLists.most / 200 + 1);
  EXPECT_THROW(makeProteins(std::move(product), "f", {}), zorvela::FileError);
  ShiftFile residues = twoLists();
  residues.chains[0].residues.resize(zorvela::kLongestSequence + 1);
  EXPECT_THROW(makeProteins(std::move(residues), "f", {}), zorvela::FileError);
}

TEST(Assembly, MarkedCisBondsAreARemarkAndNoPrediction) {
  ShiftFile file = twoLists();
  file.chains[0].cisFlags = {{"2", true}, {"77", true}, {"1", false}};
  const Protein protein = makeProteins(std::move(file), "f", {}).at(0);
  EXPECT_EQ(protein.remarks.back(), "The file marks as cis peptide bond: P6");
  EXPECT_EQ(protein.notes.back().rfind("the file marks as cis peptide bond: P6; this is kept", 0), 0U)
      << protein.notes.back();
  EXPECT_EQ(protein.sequence, "AP");
  EXPECT_EQ(protein.cisFlags, (std::map<int, bool>{{1, false}, {2, true}}));
}

}  // namespace

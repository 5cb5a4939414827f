// Names of residues and atoms.
#include "names/nomenclature.h"

#include <gtest/gtest.h>

namespace {

using zorvela::AtomReading;
using zorvela::readAtom;
using zorvela::residueType;
using Kind = zorvela::AtomReading::Kind;

TEST(Residues, TheTwentyInAnyCase) {
  const char* names[] = {"ALA", "ARG", "ASN", "ASP", "CYS", "GLN", "GLU", "GLY", "HIS", "ILE",
                         "LEU", "LYS", "MET", "PHE", "PRO", "SER", "THR", "TRP", "TYR", "VAL"};
  const std::string letters = "ARNDCQEGHILKMFPSTWYV";
  for (std::size_t i = 0; i < letters.size(); ++i) {
    EXPECT_EQ(residueType(names[i]).letter, letters[i]);
    EXPECT_FALSE(residueType(names[i]).isModified);
    EXPECT_EQ(zorvela::threeLetterName(letters[i]), names[i]);
  }
  EXPECT_EQ(residueType("Pro").letter, 'P');
  EXPECT_EQ(residueType("gly").letter, 'G');
}

TEST(Residues, ModifiedOnesGoToTheirParent) {
  const std::pair<const char*, char> parents[] = {
      {"MSE", 'M'}, {"HYP", 'P'}, {"SEP", 'S'}, {"TPO", 'T'}, {"PTR", 'Y'}, {"DAL", 'A'}, {"DPR", 'P'},
      {"CSO", 'C'}, {"PCA", 'E'}, {"MLY", 'K'}, {"SEC", 'C'}, {"TYS", 'Y'}, {"HIC", 'H'}};
  for (const auto& [name, letter] : parents) {
    EXPECT_EQ(residueType(name).letter, letter) << name;
    EXPECT_TRUE(residueType(name).isModified) << name;
  }
  EXPECT_TRUE(residueType("HYP").isHydroxyproline);
  EXPECT_FALSE(residueType("DPR").isHydroxyproline);
}

TEST(Residues, WithoutAParentTheyAreUnknown) {
  for (const char* name :
       {"ACE", "NH2", "ZN", "HEM", "ORN", "AIB", "CRO", "DA", "A", "UNK", "ASX", "", "???", "NLE", "S\x93-"})
    EXPECT_EQ(residueType(name).letter, '?') << name;
}

TEST(Residues, NamesThatTellChargeOrThiol) {
  EXPECT_EQ(residueType("HIS+").letter, 'H');
  EXPECT_EQ(residueType("HID").letter, 'H');
  EXPECT_EQ(residueType("LYS+").letter, 'K');
  EXPECT_FALSE(residueType("LYS+").isModified);
  EXPECT_EQ(residueType("CYSS").letter, 'C');
  EXPECT_EQ(residueType("CYSS").thiol, zorvela::Thiol::disulfide);
  EXPECT_EQ(residueType("CYX").thiol, zorvela::Thiol::disulfide);
  EXPECT_EQ(residueType("CYM").thiol, zorvela::Thiol::notDisulfide);
  EXPECT_EQ(residueType("CYS").thiol, zorvela::Thiol::unknown);
}

TEST(Residues, NucleotidesAreKnown) {
  for (const char* name : {"A", "DA", "U", "ADE", "PSU", "5MU"})
    EXPECT_TRUE(zorvela::isNucleotide(name)) << name;
  for (const char* name : {"ALA", "E", "ZN", ""}) EXPECT_FALSE(zorvela::isNucleotide(name)) << name;
}

TEST(ResidueNumbers, ReadsNumbersWithInsertionCodes) {
  EXPECT_EQ(zorvela::readResidueNumber("12")->number, 12);
  EXPECT_EQ(zorvela::readResidueNumber("12")->code, "");
  EXPECT_EQ(zorvela::readResidueNumber("-3")->number, -3);
  EXPECT_EQ(zorvela::readResidueNumber("52A")->number, 52);
  EXPECT_EQ(zorvela::readResidueNumber("52A")->code, "A");
  for (const char* text : {"", "A52", "-", "5 2", "99999999999"})
    EXPECT_FALSE(zorvela::readResidueNumber(text).has_value()) << text;
}

TEST(ResidueNumbers, AreCountedOn) {
  EXPECT_EQ(zorvela::nextNumber("12"), "13");
  EXPECT_EQ(zorvela::steppedNumber("1", -3), "-2");
  EXPECT_EQ(zorvela::nextNumber("52A"), std::nullopt);
  EXPECT_EQ(zorvela::nextNumber("2147483647"), std::nullopt);
}

struct AtomCase {
  char letter;
  const char* atom;
  Kind kind;
  const char* first;
  const char* second;
};

TEST(Atoms, InTheNamesOfTheTable) {
  const AtomCase cases[] = {
      {'A', "N", Kind::table, "N", nullptr},        {'A', "H", Kind::table, "HN", nullptr},
      {'A', "HN", Kind::table, "HN", nullptr},      {'A', "hn", Kind::table, "HN", nullptr},
      {'A', "C", Kind::table, "C", nullptr},        {'A', "CO", Kind::table, "C", nullptr},
      {'A', "Ca", Kind::table, "CA", nullptr},      {'A', "CB", Kind::table, "CB", nullptr},
      {'A', "HA", Kind::table, "HA", nullptr},      {'P', "CG", Kind::table, "CG", nullptr},
      {'L', "CG", Kind::other, nullptr, nullptr},   {'A', "HB%", Kind::other, nullptr, nullptr},
      {'A', "H1", Kind::other, nullptr, nullptr},   {'P', "H", Kind::foreign, nullptr, nullptr},
      {'G', "CB", Kind::foreign, nullptr, nullptr}, {'A', "HA2", Kind::foreign, nullptr, nullptr},
      {'G', "HA2", Kind::table, "HA2", nullptr},    {'G', "HA3", Kind::table, "HA3", nullptr},
      {'G', "HA%", Kind::pseudo, "HA2", "HA3"},     {'G', "HA*", Kind::pseudo, "HA2", "HA3"},
      {'G', "QA", Kind::pseudo, "HA2", "HA3"},      {'G', "HA", Kind::pseudo, "HA2", "HA3"},
      {'G', "HA#", Kind::pseudo, "HA2", "HA3"},     {'G', "HAx", Kind::table, "HA2", nullptr},
      {'G', "HAy", Kind::table, "HA3", nullptr},    {'G', "1HA", Kind::table, "HA1", nullptr},
      {'G', "2HA", Kind::table, "HA2", nullptr},    {'?', "CA", Kind::table, "CA", nullptr},
  };
  for (const AtomCase& one : cases) {
    const AtomReading reading = readAtom(one.letter, one.atom);
    const std::string label = std::string(1, one.letter) + " " + one.atom;
    EXPECT_EQ(reading.kind, one.kind) << label;
    EXPECT_STREQ(reading.names[0], one.first) << label;
    EXPECT_STREQ(reading.names[1], one.second) << label;
  }
}

TEST(Atoms, StandInTheOrderOfTheTable) {
  const char* order[] = {"N", "HN", "HA", "HA2", "HA3", "C", "CA", "CB", "CG"};
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(zorvela::atomRank(order[i]), i);
  EXPECT_EQ(zorvela::atomRank("CD"), 9U);
}

TEST(Nomenclature, IonsAndWaterAreNoResidues) {
  for (const char* name : {"CA", "ZN", "Cd", "HOH", "wat"}) EXPECT_TRUE(zorvela::isIonOrWater(name)) << name;
  for (const char* name : {"ALA", "K", "C", "DA", "DC", "", "XX", "HIS", "MSE"})
    EXPECT_FALSE(zorvela::isIonOrWater(name)) << name;
}

}  // namespace

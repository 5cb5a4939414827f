// Names of residues and atoms.
#include "names/nomenclature.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

namespace {

TEST(Residue, CodesOfNeighbours) {
  const auto read = [](const char* code) {
    const auto neighbour = zorvela::readNeighbourCode(code);
    return neighbour ? neighbour->number + " " + std::to_string(neighbour->offset) : "none";
  };
  EXPECT_EQ(read("45-1"), "45 -1");
  EXPECT_EQ(read("45+0"), "45 0");
  EXPECT_EQ(read("45+1"), "45 1");
  EXPECT_EQ(read("-3-1"), "-3 -1");
  EXPECT_EQ(read("52A-1"), "52A -1");
  EXPECT_EQ(read("G12-1"), "G12 -1");
  for (const char* code : {"45", "-1", "+1", "45-12", "45 -1", "G-1", "4-", "", "A"})
    EXPECT_EQ(read(code), "none") << code;
}

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

TEST(Atoms, InTheNamesOfTheTable) {
  const auto read = [](const std::string& text) -> std::string {  // "A:HN"
    const zorvela::AtomReading atom = readAtom(text.front(), text.substr(2));
    if (atom.kind == Kind::other) return "other";
    if (atom.kind == Kind::foreign) return "foreign";
    const std::string both = atom.kind == Kind::pseudo ? " of both" : "";
    return std::string(nameOf(atom.atom)) + both + (atom.isOlderName ? " or older" : "");
  };
  const std::pair<const char*, const char*> cases[] = {
      {"N", "A:N"},
      {"HN", "A:H A:HN A:hn"},
      {"C", "A:C A:CO"},
      {"CA", "A:Ca ?:CA"},
      {"CB", "A:CB"},
      {"CG", "P:CG"},
      {"HA", "A:HA"},
      {"HA2", "G:HA2 G:2HA G:HAx"},
      {"HA3", "G:HA3 G:HAy"},
      {"HA2 of both", "G:HA G:HA% G:HA* G:HA# G:QA"},
      {"HA2 or older", "G:HA1 G:1HA"},
      {"other", "L:CG A:HB% A:H1"},
      {"foreign", "P:H G:CB A:HA2"},
  };
  for (const auto& [meaning, names] : cases) {
    std::istringstream words(names);
    for (std::string name; words >> name;) EXPECT_EQ(read(name), meaning) << name;
  }
}

TEST(Nomenclature, IonsAndWaterAreNoResidues) {
  for (const char* name : {"CA", "ZN", "Cd", "HOH", "wat"}) EXPECT_TRUE(zorvela::isIonOrWater(name)) << name;
  for (const char* name : {"ALA", "K", "C", "DA", "DC", "", "XX", "HIS", "MSE"})
    EXPECT_FALSE(zorvela::isIonOrWater(name)) << name;
}

}  // namespace

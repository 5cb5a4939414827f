// Names of residues and atoms.
#include "names/nomenclature.h"

#include <gtest/gtest.h>

#include <tuple>

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

using zorvela::Atom;
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
  const std::tuple<char, const char*, Atom> cases[] = {
      {'A', "N", Atom::N},     {'A', "H", Atom::HN},    {'A', "HN", Atom::HN},   {'A', "hn", Atom::HN},
      {'A', "C", Atom::C},     {'A', "CO", Atom::C},    {'A', "Ca", Atom::CA},   {'A', "CB", Atom::CB},
      {'A', "HA", Atom::HA},   {'P', "CG", Atom::CG},   {'?', "CA", Atom::CA},   {'G', "HA2", Atom::HA2},
      {'G', "2HA", Atom::HA2}, {'G', "HAx", Atom::HA2}, {'G', "HA3", Atom::HA3}, {'G', "HAy", Atom::HA3},
  };
  for (const auto& [letter, name, atom] : cases) {
    EXPECT_EQ(readAtom(letter, name).kind, Kind::table) << letter << name;
    EXPECT_EQ(readAtom(letter, name).atom, atom) << letter << name;
    EXPECT_FALSE(readAtom(letter, name).isOlderName) << letter << name;
  }
}

TEST(Atoms, OneShiftOfBothAlphaProtonsOfGlycine) {
  for (const char* name : {"HA", "HA%", "HA*", "HA#", "QA"}) {
    EXPECT_EQ(readAtom('G', name).kind, Kind::pseudo) << name;
    EXPECT_EQ(readAtom('G', name).atom, Atom::HA2) << name;
  }
}

TEST(Atoms, AnOlderNameOfAnAlphaProton) {
  for (const char* name : {"HA1", "1HA"}) EXPECT_TRUE(readAtom('G', name).isOlderName) << name;
}

TEST(Atoms, ThatTheTableOrTheResidueLacks) {
  for (const auto& [letter, name] : {std::pair('L', "CG"), {'A', "HB%"}, {'A', "H1"}})
    EXPECT_EQ(readAtom(letter, name).kind, Kind::other) << letter << name;
  for (const auto& [letter, name] : {std::pair('P', "H"), {'G', "CB"}, {'A', "HA2"}})
    EXPECT_EQ(readAtom(letter, name).kind, Kind::foreign) << letter << name;
}

TEST(Nomenclature, IonsAndWaterAreNoResidues) {
  for (const char* name : {"CA", "ZN", "Cd", "HOH", "wat"}) EXPECT_TRUE(zorvela::isIonOrWater(name)) << name;
  for (const char* name : {"ALA", "K", "C", "DA", "DC", "", "XX", "HIS", "MSE"})
    EXPECT_FALSE(zorvela::isIonOrWater(name)) << name;
}

}  // namespace

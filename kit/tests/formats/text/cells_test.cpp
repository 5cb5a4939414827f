// Residues as tables label them, and values.
#include "formats/text/cells.h"

#include <gtest/gtest.h>

namespace {

using zorvela::readLabel;

/// Returns "number/code/name/atom", or "none" for text that is not a label.
std::string parts(const std::string& cell, bool holdsAtom = false) {
  const auto label = readLabel(cell, holdsAtom);
  if (!label) return "none";
  return label->number + "/" + label->code + "/" + label->name + "/" + label->atom +
         (label->hasDash ? " dash" : "") + (label->offset ? " step " + std::to_string(*label->offset) : "") +
         (label->chain.empty() ? "" : " of " + label->chain);
}

TEST(ResidueLabel, NumberAndName) {
  EXPECT_EQ(parts("12"), "12///");
  EXPECT_EQ(parts("-3"), "-3///");
  EXPECT_EQ(parts("\u22123"), "-3///");
  EXPECT_EQ(parts("007"), "7///");
  EXPECT_EQ(parts("12.0"), "12///");
  EXPECT_EQ(parts("52A"), "52/A//");
  EXPECT_EQ(parts("82PRO"), "82//PRO/");
  EXPECT_EQ(parts("82 P"), "82//P/");
  EXPECT_EQ(parts("P82"), "82//P/");
  EXPECT_EQ(parts("Pro 82"), "82//Pro/");
  EXPECT_EQ(parts("Gly -2"), "-2//Gly/");
  EXPECT_EQ(parts("Gly-2"), "2//Gly/ dash");
  EXPECT_EQ(parts("alanine"), "//alanine/");
  EXPECT_EQ(parts("HIS+"), "//HIS+/");
  EXPECT_EQ(parts("S81CA", true), "81//S/CA");
  EXPECT_EQ(parts("Ser81-HB2", true), "81//Ser/HB2");
}

TEST(ResidueLabel, Chain) {
  EXPECT_EQ(parts("A:SER81"), "81//SER/ of A");
  EXPECT_EQ(parts("b:Pro-82"), "82//Pro/ dash of b");
  EXPECT_EQ(parts("1:SER81"), "81//SER/ of 1");
  EXPECT_EQ(parts("A:SER81:CA", true), "81//SER/CA of A");
  // Without a name of several letters the chain is not certain.
  EXPECT_EQ(parts("A:81"), "81//A/");
  EXPECT_EQ(parts("SER:81"), "81//SER/");
}

TEST(ResidueLabel, OfAssignmentPrograms) {
  EXPECT_EQ(parts("45-1"), "45/// step -1");
  EXPECT_EQ(parts("45+0"), "45/// step 0");
  EXPECT_EQ(parts("G12-1"), "12//G/ step -1");
  EXPECT_EQ(parts("A:SER81-1"), "81//SER/ step -1 of A");
  EXPECT_EQ(parts("1G7"), "7//G/ of 1");
  EXPECT_EQ(parts("12GlyCa", true), "12//Gly/Ca");
  EXPECT_EQ(parts("7LeuHda*", true), "7//Leu/Hda*");
  EXPECT_EQ(parts("NA:A.81.SER.CA", true), "81//SER/CA of A");
  EXPECT_EQ(parts("NA:A.45-1..CB", true), "45///CB step -1 of A");
  for (const char* cell : {"NA:A.81.SER.", "NA:A.@1..CA", "NA:", "NA:A.81"})
    EXPECT_EQ(parts(cell, true), "none");
}

TEST(ResidueLabel, OfSpinSystemsWithoutResidue) {
  for (const char* cell : {"?", "X205", "x9", "X205-1", "@12", "{5}[123]", "NA:@-.@1..CA", "NA:A.@12..CA"})
    EXPECT_TRUE(zorvela::isUnassignedLabel(cell)) << cell;
  for (const char* cell : {"", "X", "G12", "12", "XAA", "NA:A.81.SER.CA", "NA:"})
    EXPECT_FALSE(zorvela::isUnassignedLabel(cell)) << cell;
}

TEST(ResidueLabel, NothingElse) {
  for (const char* cell : {"", "126.962", "((resid", "12-2", "@2", "res12", "S81CA", "S81N-HN", "99999999999",
                           "-", "G12-14", "A:S81", "AB:SER81", "A:SER", "A:", ":SER81", "A:B:SER81", "[81]S"})
    EXPECT_EQ(parts(cell), "none") << cell;
  EXPECT_EQ(parts("S81N-H", true), "none");
  EXPECT_EQ(parts("A.81.SER.CA", true), "none");
}

}  // namespace

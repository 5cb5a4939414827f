// Isotopic labelling in the words of entries, and the samples of a shift list.
#include "formats/star/samples.h"

#include <gtest/gtest.h>

namespace zorvela {
namespace {

TEST(Labelling, GivesTheShareOfDeuterons) {
  for (const char* words : {"[U-2H]", "[U-100% 2H]", "[U-13C; U-15N; U-2H]", "[U-2H,13C,15N]", "U-13C/15N/2H",
                            "[U-2H 13C 15N]", "U-[15N, 2H]", "[100% U-2H; U-15N]", "[U-D; U-15N]"})
    EXPECT_EQ(labellingOf(words).deuteration, 1) << words;
  for (const char* words : {"[U-80% 2H]", "[U-100% 13C; U-100% 15N; U-80% 2H]", "[80% 2H; U-15N]",
                            "[U-98% 13C; U-98% 15N; U-~80%-2H]", "[2H (80 %), 13C (98 %)]"})
    EXPECT_DOUBLE_EQ(labellingOf(words).deuteration, 0.8) << words;
  for (const char* words : {"", "natural abundance", "[U-15N]", "[U-100% 13C; U-100% 15N]", "[U-10% 13C]",
                            "[2H-Lys]", "[U-0% 2H]", "[12H]"})
    EXPECT_EQ(labellingOf(words).deuteration, 0) << words;
  EXPECT_EQ(labellingOf("[U-250% 2H]").deuteration, 1);
  EXPECT_EQ(labellingOf(std::string(150, '9') + "% 2H").deuteration, 1);
}

TEST(Labelling, SaysWhetherThereAreCarbonShifts) {
  EXPECT_TRUE(labellingOf("[U-13C; U-15N]").hasCarbon);
  EXPECT_TRUE(labellingOf("[U-99% 13C]").hasCarbon);
  EXPECT_FALSE(labellingOf("[U-15N]").hasCarbon);
  EXPECT_FALSE(labellingOf("[U-2H; U-15N]").hasCarbon);
}

TEST(Labelling, SaysWhereGroupsOfADeuteratedMoleculeAreNamed) {
  const Labelling methyls = labellingOf("[U-13C; U-15N; U-2H; 1HD1-Ile; 1HD-Leu; 1HG-Val]");
  EXPECT_EQ(methyls.deuteration, 1);
  EXPECT_TRUE(methyls.hasMoreWords);
  EXPECT_TRUE(labellingOf("[U-2H; 13CH3-Met]").hasMoreWords);
  EXPECT_TRUE(labellingOf("[2H-Lys]").hasMoreWords);
  EXPECT_FALSE(labellingOf("[U-100% 13C; U-100% 15N; U-80% 2H]").hasMoreWords);
  EXPECT_FALSE(labellingOf("natural abundance").hasMoreWords);
}

class Samples : public testing::Test {
 protected:
  void add(const std::string& molecule, const std::string& sample, const std::string& words) {
    molecules.push_back({molecule, {sample}, words, labellingOf(words)});
  }
  std::map<std::string, double> in(const std::set<std::string>& samples) {
    notes.clear();
    return deuterationOf(molecules, samples, "shifts", notes);
  }

  using Shares = std::map<std::string, double>;
  std::vector<LabelledMolecule> molecules;
  std::vector<std::string> notes;
};

TEST_F(Samples, AreThoseOfTheList) {
  add("1", "a", "[U-13C; U-15N]");
  add("1", "b", "[U-13C; U-15N; U-70% 2H]");
  add("2", "b", "natural abundance");
  EXPECT_EQ(in({"a"}), Shares());
  EXPECT_EQ(in({"b"}), (Shares{{"1", 0.7}}));
  EXPECT_EQ(in({"c"}), Shares());
  EXPECT_TRUE(notes.empty());
}

TEST_F(Samples, WithoutCarbonDoNotCountBesideOthers) {
  add("1", "a", "[U-15N]");
  add("1", "b", "[U-13C; U-15N; U-2H]");
  EXPECT_EQ(in({}), (Shares{{"1", 1}}));
  EXPECT_EQ(in({"a", "b"}), (Shares{{"1", 1}}));
  EXPECT_TRUE(notes.empty());
}

TEST_F(Samples, ThatDifferAreANoteAndNoDeuteration) {
  add("1", "a", "[U-13C; U-15N]");
  add("1", "b", "[U-13C; U-15N; U-2H]");
  EXPECT_EQ(in({}), Shares());
  ASSERT_EQ(notes.size(), 1U);
  EXPECT_NE(notes[0].find("shift list shifts differ in deuterium, [U-13C; U-15N] and [U-13C; U-15N; U-2H]"),
            std::string::npos)
      << notes[0];
}

TEST_F(Samples, WithProtonatedGroupsAreANote) {
  add("1", "a", "[U-2H; 1HD-Ile]");
  EXPECT_EQ(in({}), (Shares{{"1", 1}}));
  EXPECT_EQ(notes.size(), 1U);
  molecules.clear();
  add("1", "a", "[2H-Lys]");
  EXPECT_EQ(in({}), Shares());
  EXPECT_EQ(notes.size(), 1U);
}

}  // namespace
}  // namespace zorvela

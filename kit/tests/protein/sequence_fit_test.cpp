// Conflicts of shifts without residue names with a sequence.
#include "protein/sequence_fit.h"

#include <gtest/gtest.h>

namespace {

using zorvela::countConflicts;
using zorvela::fittingFirst;
using zorvela::NumberedLetters;
using zorvela::ResidueEvidence;

/// The letters that a row excludes, in the order of `kAminoAcids`.
std::string excludedBy(const std::string& atom, const std::string& value, const std::string& name = "") {
  zorvela::FileShift row;
  row.atom = atom;
  row.value = value;
  row.residueName = name;
  const std::uint32_t bits = zorvela::Exclusion().of(row);
  std::string letters;
  for (std::size_t i = 0; i < zorvela::kAminoAcids.size(); ++i)
    if ((bits >> i & 1U) != 0) letters += zorvela::kAminoAcids[i];
  return letters;
}

TEST(Exclusion, AtomsThatATypeHasNot) {
  EXPECT_EQ(excludedBy("HN", "8.2"), "P");
  EXPECT_EQ(excludedBy("H", "8.2"), "P");
  EXPECT_EQ(excludedBy("HA2", "4.1"), "ACDEFHIKLMNPQRSTVWY");
  EXPECT_EQ(excludedBy("HB2", "2.1"), "");
}

TEST(Exclusion, ValuesThatATypeHasNot) {
  EXPECT_EQ(excludedBy("CB", "70.0"), "ACDEFGHIKLMNPQRVWY");  // S 56.2 to 72.9, T 57.9 to 79.3
  EXPECT_EQ(excludedBy("CB", "17.0"), "DEFGHIKLMNPQRSTVWY");  // A from 10.9, C from 12.9, W from 18.2
}

TEST(Exclusion, NothingByValuesThatNoTypeHas) {
  EXPECT_EQ(excludedBy("N", "70.5"), "");
  EXPECT_EQ(excludedBy("CA", "9.0"), "");
}

TEST(Exclusion, NothingByMissingValues) {
  for (const char* value : {"", "0", "999.000", "9999.00", "-"})
    EXPECT_EQ(excludedBy("HN", value), "") << value;
}

TEST(Exclusion, OtherTypesThanTheNamedOne) {
  EXPECT_EQ(excludedBy("", "", "PRO"), "ACDEFGHIKLMNQRSTVWY");
  EXPECT_EQ(excludedBy("", "", "CYSS"), "ADEFGHIKLMNPQRSTVWY");
  EXPECT_EQ(excludedBy("", "", "XXX"), "");
}

// HN of each residue: no proline can be there.
std::vector<ResidueEvidence> amides(const std::vector<long>& numbers) {
  zorvela::FileShift row;
  row.atom = "HN";
  row.value = "8.2";
  std::vector<ResidueEvidence> residues;
  for (const long number : numbers) residues.push_back({number, zorvela::Exclusion().of(row)});
  return residues;
}

TEST(SequenceFit, CountsResiduesInConflict) {
  const NumberedLetters sequence{1, "MPAPG"};
  EXPECT_EQ(countConflicts(sequence, 1, amides({1, 3, 5}), 9), 0U);
  EXPECT_EQ(countConflicts(sequence, 2, amides({1, 3, 5}), 9), 3U);      // 1 is outside, 3 and 5 are P
  EXPECT_EQ(countConflicts(sequence, 2, amides({1, 3, 5}), 1), 2U);      // ends beyond the most
  EXPECT_EQ(countConflicts({1, "M A?c"}, 1, amides({2, 4, 5}), 9), 1U);  // a number that is left out
}

TEST(SequenceFit, FindsTheOnlyNumberThatFits) {
  EXPECT_EQ(fittingFirst({1, "MPAPG"}, amides({11, 13, 15})), 11);
  EXPECT_EQ(fittingFirst({7, "MPAPG"}, amides({11, 13, 15})), 11);
  EXPECT_EQ(fittingFirst({1, "MPAPG"}, amides({-3, -1, 1})), -3);
  EXPECT_EQ(fittingFirst({1, "MPAPG"}, amides({11})), std::nullopt);      // 11, 9 and 7
  EXPECT_EQ(fittingFirst({1, "PPPPP"}, amides({11, 13})), std::nullopt);  // none
  EXPECT_EQ(fittingFirst({1, "MPAPG"}, {}), std::nullopt);
  EXPECT_EQ(fittingFirst({1, std::string(30000, 'A')}, amides(std::vector<long>(10000, 1))), std::nullopt);
}

}  // namespace

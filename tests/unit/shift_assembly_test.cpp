// The way from input shifts to secondary shifts.
#include <climits>
#include <utility>

#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::Output;
using support::outputOf;
using support::randomCoil;
using support::tableOf;

const std::string kHeader = "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n";

}  // namespace

// --- Secondary shifts ---------------------------------------------------------------------------

class ShiftAssembly : public testing::Test {
 protected:
  ShiftAssembly() { zorvela.rcTable = randomCoil(); }

  // Assembles an input table with this sequence (and other DATA lines) and these rows.
  Output assemble(const std::string& sequence, const std::string& rows) {
    zorvela.csTable = tableOf("DATA SEQUENCE " + sequence + "\n" + kHeader + rows);
    return outputOf([&] { zorvela.getResInfo(); });
  }

  GDB::Row resRow(int resid, const std::string& atom) const {
    return zorvela.resTable.getEntry("RESID", std::to_string(resid), "ATOMNAME", atom, 1);
  }
  std::string shift(int resid, const std::string& atom) const {
    return GDB::cell(resRow(resid, atom), "SHIFT");
  }

  ZORVELA zorvela;
};

TEST_F(ShiftAssembly, ResidueWithSixShiftsOfAKnownTypeHasSixRowsAndNoneMissing) {
  const Output output =
      assemble("KAK", "2 A N 123\n2 A HA 4.5\n2 A C 177\n2 A CA 52.75\n2 A CB 18\n2 A HN 8.5\n");
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(output.err, "");
  EXPECT_EQ(zorvela.missingCount.at(2), 0);
  const std::map<std::string, std::string> shifts = {{"N", "-1"},    {"HA", "0.25"}, {"C", "-1"},
                                                     {"CA", "0.25"}, {"CB", "-1"},   {"HN", "0.25"}};
  for (const auto& [atom, text] : shifts) EXPECT_EQ(shift(2, atom), text) << atom;
}

TEST_F(ShiftAssembly, ReferenceIsRandomCoilPlusThreeCorrections) {
  zorvela.adjTable = tableOf("VARS RESNAME CA\nFORMAT %s %f\nA 1\nK 100\n");
  zorvela.prevTable = tableOf("VARS RESNAME CA\nFORMAT %s %f\nK 0.5\nA 100\nP 100\n");
  zorvela.nextTable = tableOf("VARS RESNAME CA\nFORMAT %s %f\nP 0.25\nA 100\nK 100\n");
  assemble("KAP", "2 A CA 60\n");
  // 52.5 + 1 (alanine) + 0.5 (after lysine) + 0.25 (before proline) = 54.25
  EXPECT_EQ(zorvela.rcShifts.at(2).at("CA"), 54.25F);
  EXPECT_EQ(shift(2, "CA"), "5.75");
  EXPECT_EQ(zorvela.rcShifts.at(2).at("CB"), 19.0F);
}

TEST_F(ShiftAssembly, FirstAndLastResidueHaveNoNeighbourBeyond) {
  zorvela.prevTable = tableOf("VARS RESNAME CA\nFORMAT %s %f\nA 0.5\n");
  zorvela.nextTable = tableOf("VARS RESNAME CA\nFORMAT %s %f\nA 0.25\n");
  assemble("AA", "1 A CA 52.5\n2 A CA 52.5\n");
  EXPECT_EQ(zorvela.rcShifts.at(1).at("CA"), 52.75F) << "a next residue only";
  EXPECT_EQ(zorvela.rcShifts.at(2).at("CA"), 53.0F) << "a previous residue only";
}

TEST_F(ShiftAssembly, RowsCountFromOneByResidueThenByAtom) {
  assemble("KA", "2 A CA 52.5\n1 K HN 8\n");
  std::string rows;
  for (const auto& [number, row] : zorvela.resTable.entries)
    rows += std::to_string(number) + " " + row.at("RESID") + row.at("RESNAME") + row.at("ATOMNAME") + ", ";
  EXPECT_EQ(
      rows,
      "1 1KN, 2 1KHA, 3 1KC, 4 1KCA, 5 1KCB, 6 1KHN, 7 2AN, 8 2AHA, 9 2AC, 10 2ACA, 11 2ACB, 12 2AHN, ");
  EXPECT_EQ(shift(1, "HN"), "0");
  EXPECT_EQ(shift(1, "CA"), "9999");
}

TEST_F(ShiftAssembly, TableOfSecondaryShiftsKeepsHeaderAndOtherColumns) {
  zorvela.csTable = tableOf(
      "REMARK a remark\nDATA SEQUENCE KA\nVARS RESID RESNAME ATOMNAME SHIFT NOTE\n"
      "FORMAT %4d %1s %4s %8.3f %s\n2 A CA 53 strong\n");
  outputOf([&] { zorvela.getResInfo(); });
  EXPECT_EQ(zorvela.resTable.remarks, std::vector<std::string>{"a remark"});
  EXPECT_EQ(zorvela.resTable.columnCount, 5);
  EXPECT_EQ(zorvela.resTable.columnFormats.size(), 5U);
  EXPECT_EQ(zorvela.resTable.residNames.size(), 2U);
  EXPECT_EQ(resRow(2, "CA").at("NOTE"), "strong");
  EXPECT_EQ(resRow(2, "CA").at("SHIFT"), "0.5");
  EXPECT_EQ(resRow(2, "CB").count("NOTE"), 0U);
  EXPECT_EQ(zorvela.csTable.getEntryCount(), 1) << "the input stays";
  EXPECT_EQ(zorvela.csTable.getEntry(1).at("SHIFT"), "53");
}

TEST_F(ShiftAssembly, SecondaryShiftIsTheObservedLessTheReference) {
  struct Case {
    std::string randomCoil;
    std::string row;
    std::string shift;
  };
  for (const Case& c :
       std::initializer_list<Case>{// Read to single precision first: 176.123456 and 176.123 then differ by 30
                                   // x 2^-16 = 0.000457764, in
                                   // double by 0.000456.
                                   {"C\nFORMAT %s %f\nA 176.123\n", "C 176.123456", "0.000457764"},
                                   // A reference from 999 on is unknown.
                                   {"C\nFORMAT %s %f\nA 999\n", "C 1000", "9999"},
                                   {"C\nFORMAT %s %f\nA 998.5\n", "C 1000", "1.5"},
                                   // Without a column it is 0.
                                   {"CA\nFORMAT %s %f\nA 52.5\n", "C 19", "19"}}) {
    zorvela.rcTable = tableOf("VARS RESNAME " + c.randomCoil);
    assemble("A", "1 A " + c.row + "\n");
    EXPECT_EQ(shift(1, "C"), c.shift) << c.row;
  }
}

TEST_F(ShiftAssembly, ReferenceIsSummedInSinglePrecisionFromLeftToRight) {
  // 3e-6 is less than half of the step of single precision at 100, so each sum stays at 100. The
  // corrections alone would sum to 9e-6, more than one step.
  zorvela.rcTable = tableOf("VARS RESNAME C\nFORMAT %s %f\nA 100\n");
  zorvela.adjTable = tableOf("VARS RESNAME C\nFORMAT %s %f\nA 3e-6\n");
  zorvela.prevTable = zorvela.adjTable;
  zorvela.nextTable = zorvela.adjTable;
  assemble("AAA", "2 A C 100\n");
  EXPECT_EQ(zorvela.rcShifts.at(2).at("C"), 100.0F);
  EXPECT_EQ(shift(2, "C"), "0");
}

TEST_F(ShiftAssembly, UnknownTypeHasNoSecondaryShiftButMissesNothing) {
  zorvela.adjTable = tableOf("VARS RESNAME CA\nFORMAT %s %f\nX -5\n");
  assemble("KX", "2 X CA 50\n2 X CB 30\n");
  EXPECT_EQ(shift(2, "CA"), "9999");
  EXPECT_EQ(shift(2, "CB"), "9999");
  EXPECT_EQ(zorvela.missingCount.at(2), 4);
  EXPECT_EQ(zorvela.rcShifts.at(2).at("CA"), 9994.0F) << "the sum";
}

TEST_F(ShiftAssembly, FirstOfTwoRowsOfOneAtomIsUsedWhateverItsValue) {
  assemble("A", "1 A CA 9999\n1 A CA 60\n");
  EXPECT_EQ(shift(1, "CA"), "9946.5");
  EXPECT_EQ(zorvela.missingCount.at(1), 5);
  EXPECT_EQ(zorvela.resTable.getEntryCount(), 6);
}

TEST_F(ShiftAssembly, ResidWithLeadingZerosHasNoShiftsButCountsInRangeAndNameCheck) {
  const Output output = assemble("AAAAAAAA", "007 K CA 53.5\n2 A CA 52.5\n");
  EXPECT_EQ(shift(7, "CA"), "9999");
  EXPECT_EQ(zorvela.missingCount.at(7), 6);
  EXPECT_EQ(zorvela.minResid, 2);
  EXPECT_EQ(zorvela.maxResid, 8) << "7, and one further";
  EXPECT_EQ(output.err,
            "WARNING: Unmatched name for residue 7 between header (A) and chemical shift table (K)\n");
}

TEST_F(ShiftAssembly, InputWithoutShiftColumnHasShiftsOfZero) {
  zorvela.csTable = tableOf("DATA SEQUENCE A\nVARS RESID RESNAME ATOMNAME\nFORMAT %d %s %s\n1 A CA\n");
  outputOf([&] { zorvela.getResInfo(); });
  EXPECT_EQ(shift(1, "CA"), "-52.5");
  EXPECT_EQ(zorvela.missingCount.at(1), 5);
}

// --- Glycine ------------------------------------------------------------------------------------

class GlycineAssembly : public ShiftAssembly {
 protected:
  GlycineAssembly() { zorvela.rcTable = tableOf("VARS RESNAME HA\nFORMAT %s %f\nG 3.96\nA 4.25\n"); }
};

TEST_F(GlycineAssembly, HAIsTheMeanOfBothAlphaProtonsOrTheOneThereIs) {
  // Without either, the sum 9999 less the reference is stored, and the shift is missing as the other five
  // are.
  for (const auto& [rows, expected] :
       std::map<std::string, std::string>{{"1 G HA2 3.90\n1 G HA3 4.10\n", "0.04"},
                                          {"1 G HA3 4.10\n", "0.14"},
                                          {"1 G HA2 3.90\n", "-0.0599999"},  // in single precision
                                          {"1 G HA 5\n1 G HA2 4.46\n", "0.5"},
                                          {"1 G HA2 999\n1 G HA3 4.46\n", "0.5"},
                                          {"", "9995.04"},
                                          {"1 G HA 5\n", "9995.04"},
                                          {"1 G HA2 9999\n1 G HA3 9999\n", "9995.04"}}) {
    assemble("G", rows);
    EXPECT_EQ(shift(1, "HA"), expected) << rows;
    EXPECT_EQ(zorvela.missingCount.at(1), expected == "9995.04" ? 6 : 5) << rows;
  }
}

TEST_F(GlycineAssembly, UnknownReferenceKeepsTheMeanItself) {
  zorvela.rcTable = tableOf("VARS RESNAME HA\nFORMAT %s %f\nA 4.25\n");
  assemble("G", "1 G HA2 3.75\n1 G HA3 4.25\n");
  EXPECT_EQ(shift(1, "HA"), "4");
  assemble("G", "1 G CA 45\n");
  EXPECT_EQ(shift(1, "HA"), "9999");
}

TEST_F(GlycineAssembly, OtherResiduesDoNotUseHA2AndHA3) {
  assemble("A", "1 A HA2 3.75\n1 A HA3 4.25\n");
  EXPECT_EQ(shift(1, "HA"), "9999");
  EXPECT_EQ(zorvela.missingCount.at(1), 6);
}

// --- Proline ------------------------------------------------------------------------------------

TEST_F(ShiftAssembly, ProlineHasNoNitrogenAndNoAmideProtonEvenIfListed) {
  assemble("AP", "2 P N 136\n2 P HN 8\n2 P HA 4.75\n2 P C 177\n2 P CA 63\n2 P CB 32\n");
  EXPECT_EQ(shift(2, "N"), "9999");
  EXPECT_EQ(shift(2, "HN"), "9999");
  EXPECT_EQ(shift(2, "HA"), "0.25");
  EXPECT_EQ(zorvela.missingCount.at(2), 0);
}

TEST_F(ShiftAssembly, ProlineCGIsTheObservedShift) {
  assemble("APAP", "2 P CG 24.5\n");
  EXPECT_EQ(zorvela.cgShifts, (std::map<int, float>{{2, 24.5F}, {4, 9999.0F}}));
}

TEST_F(ShiftAssembly, LowerCasePIsNotAProline) {
  zorvela.rcTable = tableOf("VARS RESNAME N\nFORMAT %s %f\np 136.5\n");
  assemble("Ap", "2 p N 136\n2 p CG 24.5\n");
  EXPECT_EQ(shift(2, "N"), "-0.5");
  EXPECT_TRUE(zorvela.cgShifts.empty());
}

// --- Range and names ----------------------------------------------------------------------------

TEST_F(ShiftAssembly, DefaultRangeIsThatOfTheShiftsAndOneFurtherWithinTheSequence) {
  assemble(std::string(76, 'A'), "5 A CA 52\n60 A CA 52\n");
  EXPECT_EQ(std::make_pair(zorvela.minResid, zorvela.maxResid), std::make_pair(5, 61));
  EXPECT_EQ(std::make_pair(zorvela.firstResid, zorvela.lastResid), std::make_pair(5, 61));
  EXPECT_EQ(zorvela.seqLength, 76);
  assemble("AAAAA", "2 A CA 52\n5 A CA 52\n");
  EXPECT_EQ(zorvela.maxResid, 5);
  assemble("AAAAA", "2 A CA 52\n9 A CA 52\n");
  EXPECT_EQ(zorvela.maxResid, 9) << "a row beyond the sequence counts";
  assemble("AA", "1500 A CA 52\n");
  EXPECT_EQ(zorvela.minResid, 999) << "the smallest number starts at 999";
  EXPECT_EQ(zorvela.maxResid, 1500);
}

TEST_F(ShiftAssembly, FirstAndLastAreBroughtIntoTheRange) {
  zorvela.csTable =
      tableOf("DATA SEQUENCE " + std::string(76, 'A') + "\n" + kHeader + "5 A CA 52\n60 A CA 52\n");
  const auto range = [&](int first, int last) {
    zorvela.firstResid = first;
    zorvela.lastResid = last;
    outputOf([&] { zorvela.getResInfo(); });
    return std::make_pair(zorvela.firstResid, zorvela.lastResid);
  };
  EXPECT_EQ(range(0, 0), std::make_pair(5, 5));
  EXPECT_EQ(range(20, 3), std::make_pair(5, 20)) << "last goes up to 5, then the two are swapped";
  EXPECT_EQ(range(100, 200), std::make_pair(61, 61));
  EXPECT_EQ(range(100, 20), std::make_pair(20, 61)) << "first goes down to 61, then the two are swapped";
  EXPECT_EQ(range(7, 7), std::make_pair(7, 7));
  EXPECT_EQ(range(-50, INT_MAX), std::make_pair(5, 61));
}

TEST_F(ShiftAssembly, InputWithoutRowsHasAnEmptyRange) {
  const Output output = assemble("AP", "");
  EXPECT_EQ(output.err, "");
  EXPECT_EQ(std::make_pair(zorvela.minResid, zorvela.maxResid), std::make_pair(999, -998));
  EXPECT_EQ(std::make_pair(zorvela.firstResid, zorvela.lastResid), std::make_pair(-998, -998));
  EXPECT_EQ(zorvela.missingCount.at(2), 6);
}

TEST_F(ShiftAssembly, MismatchWarnsAndTheRowIsUsedWithTheHeadersReference) {
  const Output output = assemble("AKA", "2 A CA 57.5\n");
  EXPECT_EQ(output.err,
            "WARNING: Unmatched name for residue 2 between header (K) and chemical shift table (A)\n");
  EXPECT_EQ(shift(2, "CA"), "1") << "57.5 - 56.5 of lysine";
  EXPECT_EQ(resRow(2, "CA").at("RESNAME"), "A") << "the row is a copy of the input row";
}

TEST_F(ShiftAssembly, RowsWithAnotherNameThanTheHeadersAreWarnedOf) {
  const Output output = assemble("AA", "1 a CA 52\n2 ALA CB 19\n30 K CA 56\n");
  std::string warnings;
  for (const std::string names : {"1 between header (A) and chemical shift table (a)",
                                  "2 between header (A) and chemical shift table (ALA)",
                                  "30 between header () and chemical shift table (K)"})
    warnings += "WARNING: Unmatched name for residue " + names + "\n";
  EXPECT_EQ(output.err, warnings);
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(zorvela.maxResid, 30);
  EXPECT_EQ(zorvela.seqLength, 2) << "a look-up beyond the sequence makes it no longer";
}

TEST_F(ShiftAssembly, SequenceFromAnotherNumberIsCoveredWhereItOverlapsOneToItsLength) {
  assemble("KAPAK\nDATA FIRST_RESID 3", "3 K CA 57.5\n5 P CA 64\n6 A CA 52\n");
  // Residues 3 to 7; rows for 1 to 5.
  EXPECT_EQ(zorvela.resTable.getEntryCount(), 30);
  EXPECT_EQ(resRow(1, "CA").at("RESNAME"), "");
  EXPECT_EQ(zorvela.missingCount.at(1), 6);
  EXPECT_EQ(shift(3, "CA"), "1");
  EXPECT_EQ(shift(5, "CA"), "0.5");
  EXPECT_EQ(zorvela.missingCount.count(6), 0U);
}

TEST_F(ShiftAssembly, SecondCallRebuildsTheRows) {
  assemble("KA", "2 A CA 53\n");
  assemble("AK", "2 K CA 57\n");
  EXPECT_EQ(zorvela.resTable.getEntryCount(), 12);
  EXPECT_EQ(shift(2, "CA"), "0.5");
  EXPECT_EQ(resRow(2, "CB").at("RESNAME"), "K");
  // The range of the first call is the user's range of the second.
  EXPECT_EQ(zorvela.lastResid, 2);
}

TEST_F(ShiftAssembly, RowNumbersBehindASecondFormatNeedNotStartAtOne) {
  zorvela.csTable = tableOf("DATA SEQUENCE KA\n" + kHeader +
                            "1 K CA 1\n2 A CA 1\nFORMAT %4d %1s %4s %8.3f\n" + "1 K CA 57\n2 A CA 53\n");
  ASSERT_EQ(zorvela.csTable.entries.begin()->first, 3);
  const Output output = outputOf([&] { zorvela.getResInfo(); });
  EXPECT_EQ(output.err, "");
  EXPECT_EQ(zorvela.csTable.getEntryCount(), 2) << "no row was added by counting";
  EXPECT_EQ(shift(1, "CA"), "0.5");
  EXPECT_EQ(shift(2, "CA"), "0.5");
}

TEST_F(ShiftAssembly, TheNeighboursOfTheEndsAreNamedWithoutAName) {
  assemble("KA", "2 A CA 53\n");
  EXPECT_EQ(zorvela.resNames, (std::map<int, std::string>{{0, ""}, {1, "K"}, {2, "A"}, {3, ""}}));
}

TEST_F(ShiftAssembly, ReferenceShiftsOfEarlierRunsStayWhereNoneReplacesThem) {
  zorvela.rcShifts[1]["XX"] = 1.5F;
  zorvela.rcShifts[9]["CA"] = 2.5F;
  assemble("A", "");
  EXPECT_EQ(zorvela.rcShifts.at(1).at("XX"), 1.5F);
  EXPECT_EQ(zorvela.rcShifts.at(1).size(), 7U);
  EXPECT_EQ(zorvela.rcShifts.at(9).at("CA"), 2.5F);
}

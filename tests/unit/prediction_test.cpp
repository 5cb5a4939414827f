// Proline databases, triplets, probabilities, listing and output table.
//
// Probabilities are computed by expected.py, which rounds to single precision where the program must.
#include <climits>
#include <cmath>
#include <cstdio>
#include <utility>

#include "run_files.h"
#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::addRow;
using support::Output;
using support::outputOf;
using support::readFile;
using support::RunFiles;
using support::TempDir;
using testing::Eq;
using testing::ExitedWithCode;

using Record = std::map<std::string, std::string>;

const std::string kListingHead = "\nZorvela Predictions:\n\n  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n\n";
const std::string kOutputHead =
    "\n\nVARS   RESID RESNAME_PREV RESNAME RESNAME_NEXT CS_CNT1 CS_CNT2 CS_CNT3 CG_SHIFT P_CIS P_CIS_NORM \n"
    "FORMAT %2d %1s %1s %1s %2d %2d %2d %8.3f %8.3f %8.3f \n\n";

const std::string kShiftHeader = "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n";

// How this machine prints 0/0, with the sign that its division gives.
std::string notANumber(const char* format) {
  volatile float zero = 0.0F;
  char text[32];
  std::snprintf(text, sizeof text, format, static_cast<double>(zero / zero));
  return text;
}

}  // namespace

// --- Databases ----------------------------------------------------------------------------------

class Databases : public testing::Test {
 protected:
  void readShifts(const std::string& text) { zorvela.getProCSValue(dir.write("Pro.cs.tab", text)); }
  void readShares(const std::string& text) { zorvela.getProSeqOccurence(dir.write("Pro.seq.tab", text)); }

  const std::string shiftHeader = "VARS index avg_cis avg_trans std_cis std_trans\nFORMAT %d %f %f %f %f\n";
  const std::string shareHeader =
      "VARS resname cis_prev cis_next trans_prev trans_next\nFORMAT %s %f %f %f %f\n";
  TempDir dir;
  ZORVELA zorvela;
};

TEST_F(Databases, RowsOfShiftStatisticsGoToTheirIndex) {
  // 5: HN of the previous residue; 6: N of the proline; 18: CG of the proline.
  readShifts(shiftHeader + "5 -0.25 0.5 0.75 1.25\n6 1 2 3 4\n18 24.5 27.5 0.5 1.5\n");
  EXPECT_EQ(zorvela.avgCis, (std::map<int, float>{{5, -0.25F}, {6, 1.0F}, {18, 24.5F}}));
  EXPECT_EQ(zorvela.avgTrans, (std::map<int, float>{{5, 0.5F}, {6, 2.0F}, {18, 27.5F}}));
  EXPECT_EQ(zorvela.stdCis, (std::map<int, float>{{5, 0.75F}, {6, 3.0F}, {18, 0.5F}}));
  EXPECT_EQ(zorvela.stdTrans, (std::map<int, float>{{5, 1.25F}, {6, 4.0F}, {18, 1.5F}}));
}

TEST_F(Databases, SharesOfNeighboursGoToPositions1And3) {
  readShares(shareHeader + "A 0.25 0.5 0.75 1\nc 1 2 3 4\n");
  EXPECT_EQ(zorvela.proSeqCis, (std::map<std::string, std::map<int, float>>{{"A", {{1, 0.25F}, {3, 0.5F}}},
                                                                            {"c", {{1, 1.0F}, {3, 2.0F}}}}));
  EXPECT_EQ(zorvela.proSeqTrans, (std::map<std::string, std::map<int, float>>{
                                     {"A", {{1, 0.75F}, {3, 1.0F}}}, {"c", {{1, 3.0F}, {3, 4.0F}}}}));
}

TEST_F(Databases, LaterRowReplacesTheEarlierOne) {
  readShifts(shiftHeader + "5 1 1 1 1\n5 2 3 4 5\n");
  EXPECT_EQ(zorvela.avgCis, (std::map<int, float>{{5, 2.0F}}));
  EXPECT_EQ(zorvela.stdTrans, (std::map<int, float>{{5, 5.0F}}));
  readShares(shareHeader + "A 1 1 1 1\nA 2 3 4 5\n");
  EXPECT_EQ(zorvela.proSeqCis.at("A"), (std::map<int, float>{{1, 2.0F}, {3, 3.0F}}));
}

TEST_F(Databases, ColumnThatIsMissingIsZeroAndOtherColumnsAreIgnored) {
  readShifts("VARS note index avg_cis\nFORMAT %s %d %f\nHA 1 0.5\n");
  EXPECT_EQ(zorvela.avgCis, (std::map<int, float>{{1, 0.5F}}));
  EXPECT_EQ(zorvela.avgTrans, (std::map<int, float>{{1, 0.0F}}));
  EXPECT_EQ(zorvela.stdCis, (std::map<int, float>{{1, 0.0F}}));
  readShares("VARS resname cis_prev\nFORMAT %s %f\nA 0.5\n");
  EXPECT_EQ(zorvela.proSeqCis.at("A"), (std::map<int, float>{{1, 0.5F}, {3, 0.0F}}));
}

TEST_F(Databases, TextThatIsNoNumberIsZero) {
  readShifts(shiftHeader + "x 1 y 2 z\n");
  EXPECT_EQ(zorvela.avgCis, (std::map<int, float>{{0, 1.0F}}));
  EXPECT_EQ(zorvela.avgTrans, (std::map<int, float>{{0, 0.0F}}));
}

TEST_F(Databases, FileThatCannotBeOpenedEndsTheRun) {
  const std::string path = dir.file("none.tab");
  EXPECT_EXIT(zorvela.getProCSValue(path), ExitedWithCode(0),
              Eq("\tCan't open file " + path + " for reading\n"));
  EXPECT_EXIT(zorvela.getProSeqOccurence(path), ExitedWithCode(0),
              Eq("\tCan't open file " + path + " for reading\n"));
}

TEST_F(Databases, EmptyFilesLeaveTheMapsEmpty) {
  readShifts("");
  readShares("");
  EXPECT_TRUE(zorvela.avgCis.empty());
  EXPECT_TRUE(zorvela.proSeqTrans.empty());
}

// --- Triplets -----------------------------------------------------------------------------------

// Residues 1 to 5, K A P G K; shifts of 0.1 times the residue number, the same for all atoms.
class Triplets : public testing::Test {
 protected:
  Triplets() {
    zorvela.clipShifts = false;
    zorvela.seqLength = 5;
    const std::string sequence = "KAPGK";
    for (int resid = 1; resid <= 5; ++resid) {
      const std::string name(1, sequence[static_cast<std::size_t>(resid - 1)]);
      zorvela.resNames[resid] = name;
      for (const auto& [key, atom] : zorvela.atomNames)
        addRow(zorvela.resTable, {{"RESID", std::to_string(resid)},
                                  {"RESNAME", name},
                                  {"ATOMNAME", atom},
                                  {"SHIFT", "0." + std::to_string(resid)}});
    }
  }
  // A triplet around residue 3 with these missing counts.
  bool accepts(int previous, int centre, int next) {
    zorvela.missingCount = {{2, previous}, {3, centre}, {4, next}};
    return zorvela.testTriplet(zorvela.getTriplet(3));
  }

  ZORVELA zorvela;
};

TEST_F(Triplets, RecordHasNumbersNamesAndShiftsOfThreeResidues) {
  Record expected = {{"RESID_R1", "2"},   {"RESID_R2", "3"},   {"RESID_R3", "4"},
                     {"RESNAME_R1", "A"}, {"RESNAME_R2", "P"}, {"RESNAME_R3", "G"}};
  for (const std::string atom : {"N", "HA", "C", "CA", "CB", "HN"}) {
    expected[atom + "_R1"] = "0.2";
    expected[atom + "_R2"] = "0.3";
    expected[atom + "_R3"] = "0.4";
  }
  ASSERT_EQ(expected.size(), 24U);
  EXPECT_EQ(zorvela.getTriplet(3), expected);
}

TEST_F(Triplets, NeighbourOutsideTheSequenceHasNoNameAndShiftsOfZero) {
  const Record record = zorvela.getTriplet(5);
  EXPECT_EQ(record.at("RESID_R3"), "6");
  EXPECT_EQ(record.at("RESNAME_R3"), "");
  EXPECT_EQ(record.at("CA_R3"), "0");
  EXPECT_EQ(record.at("CA_R2"), "0.5");
}

TEST_F(Triplets, NeighbourOutsideTheSequenceIsClippedByTheLimitsOfAnEmptyName) {
  zorvela.clipShifts = true;
  zorvela.limitTable = support::tableOf("VARS CA_MIN CA_MAX\nFORMAT %f %f\n0.5 1\n");
  EXPECT_EQ(zorvela.getTriplet(5).at("CA_R3"), "0.5");
}

TEST_F(Triplets, ResidueNumbersBelowOneArePlainNumbers) {
  const Record record = zorvela.getTriplet(0);
  EXPECT_EQ(record.at("RESID_R1"), "-1");
  EXPECT_EQ(record.at("RESID_R2"), "0");
  EXPECT_EQ(record.at("RESNAME_R3"), "K");
}

TEST_F(Triplets, ShiftsAreClippedUnlessNoclip) {
  zorvela.limitTable = support::tableOf("VARS RESNAME CA_MIN CA_MAX\nFORMAT %s %f %f\nP -0.25 0.25\n");
  EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0.3");
  zorvela.clipShifts = true;
  EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0.25");
  EXPECT_EQ(zorvela.getTriplet(3).at("CB_R2"), "0") << "no limits are limits of 0";
}

TEST_F(Triplets, AbsentShiftStays9999) {
  zorvela.clipShifts = true;
  zorvela.resTable.setEntry(13, "SHIFT", "9999");
  EXPECT_EQ(zorvela.getTriplet(3).at("N_R2"), "9999");
}

TEST_F(Triplets, ShiftsHaveSixSignificantDigits) {
  zorvela.resTable.setEntry(13, "SHIFT", "12.3456789");
  EXPECT_EQ(zorvela.getTriplet(3).at("N_R2"), "12.3457");
}

TEST_F(Triplets, ChangedShiftIsSeenInTheNextRecord) {
  EXPECT_EQ(zorvela.getTriplet(3).at("N_R2"), "0.3");
  zorvela.resTable.setEntry(13, "SHIFT", "1.5");
  EXPECT_EQ(zorvela.getTriplet(3).at("N_R2"), "1.5");
}

TEST_F(Triplets, DirectChangesOfTheRowsAreSeen) {
  ASSERT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0.3");
  // An earlier row of the same residue and atom comes first, wherever the assembly laid the other.
  zorvela.resTable.entries[0] = {{"RESID", "3"}, {"ATOMNAME", "CA"}, {"SHIFT", "7"}};
  EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "7");
  zorvela.resTable.entries.erase(0);
  zorvela.resTable.entries[1] = {{"RESID", "3"}, {"ATOMNAME", "CA"}, {"SHIFT", "8"}};
  EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "8");
  zorvela.resTable.entries[1].clear();
  for (auto& [number, row] : zorvela.resTable.entries) row["RESID"] += "x";
  EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0") << "no row of the residue is left";
  zorvela.resTable.entries.clear();
  EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0");
}

TEST_F(Triplets, NumbersThatAreNotPlainAreNoResidues) {
  for (const char* resid : {"03", "+3", " 3", "3 ", "3.0", "-03", "-0", ""}) {
    for (auto& [number, row] : zorvela.resTable.entries)
      if (number >= 13 && number <= 18) row["RESID"] = resid;
    EXPECT_EQ(zorvela.getTriplet(3).at("CA_R2"), "0") << resid;
  }
  for (const int resid : {-3, 0, INT_MAX, INT_MIN}) {
    for (auto& [number, row] : zorvela.resTable.entries)
      if (number >= 13 && number <= 18) row["RESID"] = std::to_string(resid);
    EXPECT_EQ(zorvela.getTriplet(resid).at("CA_R2"), "0.3") << resid;
  }
}

TEST_F(Triplets, OfManyResiduesArePredictedAsOneByOne) {
  zorvela.missingCount = {{1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}};
  for (int k = 0; k <= 18; ++k) zorvela.avgCis[k] = zorvela.stdCis[k] = zorvela.stdTrans[k] = 1.0F;
  zorvela.proSeqCis = zorvela.proSeqTrans = {{"A", {{1, 1.0F}}}, {"G", {{3, 1.0F}}}};
  const auto predictions = zorvela.predictProlines({3, 2, 3, 9});
  ASSERT_EQ(predictions.size(), 4U);
  const auto one = zorvela.predictProline(3);
  ASSERT_TRUE(one.has_value() && predictions[0].has_value() && predictions[2].has_value());
  EXPECT_EQ(predictions[0]->pCis, one->pCis);
  EXPECT_EQ(predictions[2]->names, one->names);
  EXPECT_FALSE(predictions[1].has_value()) << "alanine";
  EXPECT_FALSE(predictions[3].has_value()) << "no residue";
}

TEST_F(Triplets, MissingCountsOf4And4And0AreRejected) {
  EXPECT_FALSE(accepts(4, 4, 0));
  EXPECT_FALSE(accepts(0, 4, 4));
  EXPECT_FALSE(accepts(4, 0, 4));
  EXPECT_FALSE(accepts(6, 6, 6));
}

TEST_F(Triplets, MissingCountsOf4And3And3AreAccepted) {
  EXPECT_TRUE(accepts(4, 3, 3));
  EXPECT_TRUE(accepts(3, 6, 3));
  EXPECT_TRUE(accepts(3, 3, 3));
  EXPECT_TRUE(accepts(0, 0, 0));
}

TEST_F(Triplets, ResidueWithoutACountMissesNothing) {
  zorvela.missingCount = {{3, 6}};
  EXPECT_TRUE(zorvela.testTriplet(zorvela.getTriplet(3)));
}

TEST_F(Triplets, CountsAreTakenBesideTheCentreWhateverTheNumbersOfTheNeighbours) {
  zorvela.missingCount = {{1, 6}, {2, 0}, {3, 0}, {4, 0}, {5, 6}};
  EXPECT_TRUE(zorvela.testTriplet({{"RESID_R1", "1"}, {"RESID_R2", "3"}, {"RESID_R3", "5"}}));
}

TEST_F(Triplets, CentreOnResidue2PassesTheRangeAndOnResidue1DoesNot) {
  EXPECT_TRUE(zorvela.testTriplet(zorvela.getTriplet(2)));
  EXPECT_FALSE(zorvela.testTriplet(zorvela.getTriplet(1)));
}

TEST_F(Triplets, NextResidueBeyondTheSequenceFails) {
  EXPECT_TRUE(zorvela.testTriplet(zorvela.getTriplet(4)));
  EXPECT_FALSE(zorvela.testTriplet(zorvela.getTriplet(5)));
}

TEST_F(Triplets, RecordWithoutNumbersFails) {
  EXPECT_FALSE(zorvela.testTriplet({}));
}

TEST_F(Triplets, RecordIsTakenAsACopy) {
  const Record record = zorvela.getTriplet(3);
  Record given = record;
  zorvela.testTriplet(given);
  EXPECT_EQ(given, record);
}

// --- Probability --------------------------------------------------------------------------------

// Proline 2 of A P G, with every mean 0, every deviation 1 and equal shares, and no shifts at all.
class Probability : public testing::Test {
 protected:
  Probability() {
    zorvela.clipShifts = false;
    zorvela.seqLength = 3;
    zorvela.resNames = {{1, "A"}, {2, "P"}, {3, "G"}};
    for (int k = 0; k <= 18; ++k) setStatistics(k, 0.0F, 0.0F, 1.0F, 1.0F);
    setShares(1.0F, 1.0F, 1.0F, 1.0F);
    zorvela.cgShifts[2] = 9999.0F;
    for (int k = 0; k < 18; ++k) setShift(k, "9999");
  }
  void setStatistics(int k, float avgCis, float avgTrans, float stdCis, float stdTrans) {
    zorvela.avgCis[k] = avgCis;
    zorvela.avgTrans[k] = avgTrans;
    zorvela.stdCis[k] = stdCis;
    zorvela.stdTrans[k] = stdTrans;
  }
  void setShares(float cisPrev, float cisNext, float transPrev, float transNext) {
    zorvela.proSeqCis["A"][1] = cisPrev;
    zorvela.proSeqCis["G"][3] = cisNext;
    zorvela.proSeqTrans["A"][1] = transPrev;
    zorvela.proSeqTrans["G"][3] = transNext;
  }
  // The shift of index k: six atoms for each of the three residues.
  void setShift(int k, const std::string& text) {
    const int row = k + 1;
    zorvela.resTable.setEntry(row, "RESID", std::to_string(k / 6 + 1));
    zorvela.resTable.setEntry(row, "ATOMNAME", zorvela.atomNames.at(k % 6 + 1));
    zorvela.resTable.setEntry(row, "SHIFT", text);
  }
  ProlinePrediction predict() {
    const auto prediction = zorvela.predictProline(2);
    EXPECT_TRUE(prediction.has_value());
    return prediction.value_or(ProlinePrediction());
  }

  ZORVELA zorvela;
};

TEST_F(Probability, WithoutShiftsItIsThatOfTheSequence) {
  // 0.05 x 0.1 against 0.08 x 0.07: 0.005 / 0.0106
  setShares(0.05F, 0.1F, 0.08F, 0.07F);
  EXPECT_EQ(predict().pCis, 0x1.e304d4p-2F);
  EXPECT_EQ(predict().pCisNorm, 0x1.6faf1cp-5F);
}

TEST_F(Probability, OfOneHalfIsNormalisedToOneIn20) {
  EXPECT_EQ(predict().pCis, 0.5F);
  EXPECT_EQ(predict().pCisNorm, 0.05F);
}

TEST_F(Probability, OfOneIsNormalisedToOne) {
  setShares(1.0F, 1.0F, 0.0F, 1.0F);
  EXPECT_EQ(predict().pCis, 1.0F);
  EXPECT_EQ(predict().pCisNorm, 1.0F);
}

TEST_F(Probability, OfZeroIsNormalisedToZero) {
  setShares(1.0F, 0.0F, 1.0F, 1.0F);
  EXPECT_EQ(predict().pCis, 0.0F);
  EXPECT_EQ(predict().pCisNorm, 0.0F);
}

TEST_F(Probability, UsesAShiftOfExactly99) {
  // exp(-0.5 x 0^2) against exp(-0.5 x 2^2): 1 / (1 + exp(-2))
  setStatistics(0, 99.0F, 97.0F, 1.0F, 1.0F);
  setShift(0, "99");
  EXPECT_EQ(predict().pCis, 0x1.c2f7d4p-1F);
}

TEST_F(Probability, LeavesOutAShiftAbove99) {
  setStatistics(0, 99.0F, 97.0F, 1.0F, 1.0F);
  setShift(0, "99.0001");
  EXPECT_EQ(predict().pCis, 0.5F);
}

TEST_F(Probability, LeavesOutACGOfExactly999) {
  setStatistics(18, 999.0F, 997.0F, 1.0F, 1.0F);
  zorvela.cgShifts[2] = 999.0F;
  EXPECT_EQ(predict().pCis, 0.5F);
}

TEST_F(Probability, UsesACGBelow999) {
  setStatistics(18, 998.0F, 996.0F, 1.0F, 1.0F);
  zorvela.cgShifts[2] = 998.0F;
  EXPECT_EQ(predict().pCis, 0x1.c2f7d4p-1F);
}

TEST_F(Probability, MultipliesEveryIndexWithItsOwnStatistics) {
  for (int k = 0; k <= 18; ++k) {
    const double i = k;
    setStatistics(k, static_cast<float>(0.1 * i), static_cast<float>(0.07 * i + 0.3),
                  static_cast<float>(1.1 + 0.05 * i), static_cast<float>(1.3 + 0.03 * i));
    if (k < 18)
      setShift(k, std::to_string(k + 1 < 10 ? 0 : (k + 1) / 10) + "." + std::to_string((k + 1) % 10));
  }
  setShares(0.3F, 1.0F, 0.7F, 1.0F);
  zorvela.cgShifts[2] = 2.5F;
  EXPECT_EQ(predict().pCis, 0x1.4db52ep-2F);
  EXPECT_EQ(predict().pCisNorm, 0x1.968688p-6F);
}

TEST_F(Probability, IsMadeOfTheEvidenceThatItComesWith) {
  // CB of the proline (10): 0.5 from cis, 1.5 from trans; CG (18): 2 deviations from cis, 1 from trans.
  setStatistics(10, 2.0F, 0.0F, 1.0F, 1.0F);
  setShift(10, "1.5");
  setStatistics(18, 24.0F, 27.0F, 0.5F, 2.0F);
  setShares(0.3F, 0.5F, 0.7F, 0.25F);
  zorvela.cgShifts[2] = 25.0F;
  const ProlineEvidence evidence = predict().evidence;
  for (std::size_t k = 0; k <= 18; ++k) EXPECT_EQ(evidence.shifts[k].isMissing, k != 10 && k != 18) << k;
  EXPECT_EQ(evidence.shifts[10].used, 1.5F);
  EXPECT_EQ(evidence.shifts[10].lnCis, -0.125);
  EXPECT_EQ(evidence.shifts[10].lnTrans, -1.125);
  EXPECT_EQ(evidence.shifts[18].lnCis, -2.0);
  EXPECT_EQ(evidence.shifts[18].lnTrans, -0.5);
  EXPECT_EQ(evidence.cisShares, (std::array<float, 2>{0.3F, 0.5F}));
  EXPECT_EQ(evidence.transShares, (std::array<float, 2>{0.7F, 0.25F}));
  // 0.3 x 0.5 x exp(-2.125) against 0.7 x 0.25 x exp(-1.625): odds of 0.857 x exp(-0.5)
  EXPECT_NEAR(predict().pCis, 0.3420548F, 1e-6F);
}

TEST_F(Probability, EvidenceHasTheShiftBeforeAndAfterItsLimits) {
  zorvela.clipShifts = true;
  addRow(zorvela.limitTable, {{"RESNAME", "P"}, {"CB_MIN", "-1"}, {"CB_MAX", "1"}});
  setShift(10, "1.5");
  const ProlineEvidence evidence = predict().evidence;
  EXPECT_EQ(evidence.shifts[10].secondary, 1.5F);
  EXPECT_EQ(evidence.shifts[10].used, 1.0F);
}

TEST_F(Probability, MovesFromIndexToIndexWithTheAtoms) {
  // One shift at a time, at the cis mean of its own index and 2 deviations off the trans mean.
  for (int k = 0; k < 18; ++k) {
    setStatistics(k, 5.0F, 3.0F, 1.0F, 1.0F);
    setShift(k, "5");
    EXPECT_EQ(predict().pCis, 0x1.c2f7d4p-1F) << k;
    setStatistics(k, 0.0F, 0.0F, 1.0F, 1.0F);
    setShift(k, "9999");
  }
}

TEST_F(Probability, KeepsDenormalProductsInSinglePrecision) {
  // 18 factors exp(-0.5 x 3.3^2) make 2.7e-43, where single precision has steps of 1.4e-45.
  for (int k = 0; k < 18; ++k) {
    setStatistics(k, 0.0F, 0.01F, 1.0F, 1.0F);
    setShift(k, "3.3");
  }
  EXPECT_EQ(predict().pCis, 0x1.6c81a4p-2F);
  EXPECT_EQ(predict().pCisNorm, 0x1.cf2292p-6F);
}

TEST_F(Probability, IsNoNumberWhereBothProductsUnderflow) {
  // 18 factors exp(-0.5 x 6^2) make exp(-324): 0 in single precision, but not in double.
  for (int k = 0; k < 18; ++k) setShift(k, "6");
  EXPECT_TRUE(std::isnan(predict().pCis));
  EXPECT_TRUE(std::isnan(predict().pCisNorm));
}

TEST_F(Probability, IsZeroOrOneWhereOneProductUnderflows) {
  for (int k = 0; k < 18; ++k) {
    setStatistics(k, 0.0F, 6.25F, 1.0F, 1.0F);
    setShift(k, "6.5");
  }
  EXPECT_EQ(predict().pCis, 0.0F);
  for (int k = 0; k < 18; ++k) setStatistics(k, 6.25F, 0.0F, 1.0F, 1.0F);
  EXPECT_EQ(predict().pCis, 1.0F);
  EXPECT_EQ(predict().pCisNorm, 1.0F);
}

TEST_F(Probability, IsNoNumberWhereBothPriorsAreZero) {
  setShares(0.0F, 1.0F, 1.0F, 0.0F);
  EXPECT_TRUE(std::isnan(predict().pCis));
}

TEST_F(Probability, UnknownNeighbourMakesItsPriorZeroWithoutAMessage) {
  zorvela.resNames[1] = "X";
  zorvela.proSeqTrans["X"][1] = 1.0F;
  const Output output = outputOf([&] { EXPECT_EQ(predict().pCis, 0.0F); });
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(output.err, "");
  zorvela.proSeqTrans.clear();
  EXPECT_TRUE(std::isnan(predict().pCis));
}

TEST_F(Probability, DeviationOfZeroIsNotGuarded) {
  setStatistics(0, 0.0F, 0.0F, 0.0F, 1.0F);
  setShift(0, "1");
  EXPECT_EQ(predict().pCis, 0.0F) << "an infinite exponent";
  setShift(0, "0");
  EXPECT_TRUE(std::isnan(predict().pCis)) << "infinity times zero";
}

TEST_F(Probability, MissingStatisticsReadAsZero) {
  zorvela.avgCis.clear();
  zorvela.stdCis.clear();
  setShift(0, "1");
  EXPECT_EQ(predict().pCis, 0.0F);
}

TEST_F(Probability, IsGivenForProlinesOnly) {
  for (const char* name : {"K", "p", "", "PP"}) {
    zorvela.resNames[2] = name;
    EXPECT_FALSE(zorvela.predictProline(2).has_value()) << name;
  }
}

TEST_F(Probability, IsNotGivenWhereTheTripletFails) {
  zorvela.missingCount = {{1, 4}, {2, 4}};
  EXPECT_FALSE(zorvela.predictProline(2).has_value());
}

TEST_F(Probability, ComesWithNamesCountsAndCG) {
  zorvela.missingCount = {{1, 1}, {2, 2}, {3, 5}};
  zorvela.cgShifts[2] = 26.5F;
  const ProlinePrediction prediction = predict();
  EXPECT_EQ(prediction.resid, 2);
  EXPECT_EQ(prediction.names, (std::array<std::string, 3>{"A", "P", "G"}));
  EXPECT_EQ(prediction.shiftCounts, (std::array<int, 3>{5, 4, 1}));
  EXPECT_EQ(prediction.cgShift, 26.5F);
}

// --- The run ------------------------------------------------------------------------------------

class PredictRun : public testing::Test {
 protected:
  // What the run says on standard output; a message on standard error fails the test.
  std::string run() {
    ZORVELA zorvela;
    zorvela.setArgs(args);
    const Output output = outputOf([&] { zorvela.runPredict(); });
    EXPECT_EQ(output.err, "");
    return output.out;
  }
  // The same without what stands before the listing.
  std::string listing() {
    const std::string text = run();
    const std::string start = files.progress() + "Analyzing " + args["in"] + ":\n";
    EXPECT_EQ(text.substr(0, start.size()), start);
    return text.substr(start.size());
  }
  std::string table() const { return readFile(files.file("pred.tab")); }

  // Equal statistics and shares: every proline gets one half, and one in 20.
  void makeClassesEqual() {
    std::string shifts = "VARS index avg_cis avg_trans std_cis std_trans\nFORMAT %d %f %f %f %f\n";
    for (int k = 0; k <= 18; ++k) shifts += std::to_string(k) + " 0 0 100 100\n";
    files.write("tab/Pro.cs.tab", shifts);
    files.write("tab/Pro.seq.tab",
                "VARS resname cis_prev cis_next trans_prev trans_next\nFORMAT %s %f %f %f %f\n"
                "A 1 1 1 1\nG 1 1 1 1\nP 1 1 1 1\n");
  }
  // Three shifts for each residue.
  static std::string rowsOf(const std::string& sequence, int first, int last) {
    std::string rows;
    for (int i = first; i <= last; ++i) {
      for (const char* atom : {"CA", "CB", "C"})
        rows += std::to_string(i) + " " + sequence[static_cast<std::size_t>(i - 1)] + " " + atom + " 50\n";
    }
    return rows;
  }
  void writeInput(const std::string& sequence, const std::string& rows) {
    files.write("shifts.tab", "DATA SEQUENCE " + sequence + "\n" + kShiftHeader + rows);
  }

  RunFiles files;
  std::map<std::string, std::string> args = files.args();
};

TEST_F(PredictRun, ListsAndSavesEveryProlineWithEnoughShifts) {
  EXPECT_EQ(run(), files.progress() + "Analyzing " + files.file("shifts.tab") + ":\n" + kListingHead +
                       "   A3   P4   G5   0.225  0.015 \n"
                       "   S6   P7   E8   0.037  0.002 \n");
  EXPECT_EQ(table(), kOutputHead +
                         " 4 A P G  6  5  5   26.500    0.225    0.015 \n"
                         " 7 S P E  2  4  6 9999.000    0.037    0.002 \n");
}

TEST_F(PredictRun, NoclipUsesTheShiftsAsTheyAre) {
  args["noclip"] = "true";
  EXPECT_EQ(listing(), kListingHead +
                           "   A3   P4   G5   0.225  0.015 \n"
                           "   S6   P7   E8   0.055  0.003 \n");
}

TEST_F(PredictRun, FirstAndLastLimitTheResidues) {
  args["first"] = "5";
  EXPECT_EQ(listing(), kListingHead + "   S6   P7   E8   0.037  0.002 \n");
  args["first"] = "1";
  args["last"] = "6";
  EXPECT_EQ(listing(), kListingHead + "   A3   P4   G5   0.225  0.015 \n");
  args["first"] = "4";
  args["last"] = "4";
  EXPECT_EQ(listing(), kListingHead + "   A3   P4   G5   0.225  0.015 \n");
}

TEST_F(PredictRun, FirstAboveLastIsTheSameRangeSwapped) {
  args["first"] = "6";
  args["last"] = "4";
  EXPECT_EQ(listing(), kListingHead + "   A3   P4   G5   0.225  0.015 \n");
}

TEST_F(PredictRun, WithoutProlinesTheListingIsItsHeadingAndTheTableHasNoRows) {
  args["first"] = "5";
  args["last"] = "6";
  EXPECT_EQ(listing(), kListingHead);
  EXPECT_EQ(table(), kOutputHead);
}

TEST_F(PredictRun, ListingShowsTheStoredSixDigitsRoundedAgain) {
  // P is 0.01249999, which would round to 0.012. Its six digits 0.0125 are 0.01250000000000000069 in
  // double, which rounds to 0.013.
  makeClassesEqual();
  files.write("tab/Pro.seq.tab",
              "VARS resname cis_prev cis_next trans_prev trans_next\nFORMAT %s %f %f %f %f\n"
              "A 0.01249999 1 0.98750001 1\nG 1 1 1 1\n");
  writeInput("AAPGA", rowsOf("AAPGA", 1, 5));
  EXPECT_EQ(listing().substr(kListingHead.size(), 23), "   A2   P3   G4   0.013");
}

TEST_F(PredictRun, ResidueNumbersOfOneToThreeDigitsTakeThreePlacesAndOfFourWidenTheLine) {
  makeClassesEqual();
  std::string sequence(1010, 'A');
  for (const std::size_t resid : {5U, 50U, 500U, 1000U}) sequence[resid - 1] = 'P';
  writeInput(sequence, rowsOf(sequence, 1, 1010));
  EXPECT_EQ(listing(), kListingHead +
                           "   A4   P5   A6   0.500  0.050 \n"
                           "   A49  P50  A51  0.500  0.050 \n"
                           "   A499 P500 A501 0.500  0.050 \n"
                           "   A999 P1000 A1001 0.500  0.050 \n");
  EXPECT_EQ(table(), kOutputHead +
                         " 5 A P A  3  3  3 9999.000    0.500    0.050 \n"
                         "50 A P A  3  3  3 9999.000    0.500    0.050 \n"
                         "500 A P A  3  3  3 9999.000    0.500    0.050 \n"
                         "1000 A P A  3  3  3 9999.000    0.500    0.050 \n");
}

TEST_F(PredictRun, AbsentCGIsWrittenAs9999) {
  run();
  EXPECT_NE(table().find(" 7 S P E  2  4  6 9999.000 "), std::string::npos);
}

TEST_F(PredictRun, RowsAscendWhateverTheOrderOfTheInput) {
  makeClassesEqual();
  const std::string sequence = "AAPAAPAA";
  writeInput(sequence, rowsOf(sequence, 5, 8) + rowsOf(sequence, 1, 4));
  EXPECT_EQ(listing(), kListingHead +
                           "   A2   P3   A4   0.500  0.050 \n"
                           "   A5   P6   A7   0.500  0.050 \n");
}

TEST_F(PredictRun, FirstAndLastResidueGetNoRow) {
  makeClassesEqual();
  writeInput("PAPAP", rowsOf("PAPAP", 1, 5));
  EXPECT_EQ(listing(), kListingHead + "   A2   P3   A4   0.500  0.050 \n");
}

TEST_F(PredictRun, ResidueNumber1AndResiduesBeyondTheLengthGetNoRowWhateverTheNumbering) {
  // Six residues from number 0: 1 is never predicted. The last, 5, has a next number within the length
  // of 6 but no next residue, so that its shares are 0 and the probability is 0/0.
  makeClassesEqual();
  const std::string shifts =
      "0 A CA 50\n1 P CA 50\n1 P CB 30\n1 P C 177\n2 A CA 50\n2 A CB 50\n2 A C 50\n"
      "3 P CA 50\n3 P CB 30\n3 P C 177\n4 A CA 50\n4 A CB 50\n4 A C 50\n5 P CA 50\n5 P CB 30\n5 P C 177\n";
  writeInput("APAPAP\nDATA FIRST_RESID 0", shifts);
  const std::string nan = notANumber("%-6.3f");
  EXPECT_EQ(listing(),
            kListingHead + "   A2   P3   A4   0.500  0.050 \n   A4   P5    6   " + nan + " " + nan + "\n");
  // Six residues from number 2: 5 is the last with a next number up to 6.
  std::string moved = "2 A CA 50\n2 A CB 50\n2 A C 50\n";
  for (const char* resid : {"3", "5", "7"})
    for (const char* atom : {"CA", "CB", "C"}) moved += std::string(resid) + " P " + atom + " 50\n";
  for (const char* resid : {"4", "6"})
    for (const char* atom : {"CA", "CB", "C"}) moved += std::string(resid) + " A " + atom + " 50\n";
  writeInput("APAPAP\nDATA FIRST_RESID 2", moved);
  EXPECT_EQ(listing(), kListingHead +
                           "   A2   P3   A4   0.500  0.050 \n"
                           "   A4   P5   A6   0.500  0.050 \n");
}

TEST_F(PredictRun, OtherResiduesWithAcceptedTripletsGetNoRow) {
  makeClassesEqual();
  writeInput("AAAAA", rowsOf("AAAAA", 1, 5));
  EXPECT_EQ(listing(), kListingHead);
}

TEST_F(PredictRun, AllProlinesButTheEndsArePredicted) {
  makeClassesEqual();
  writeInput("PPPP", rowsOf("PPPP", 1, 4));
  EXPECT_EQ(listing(), kListingHead +
                           "   P1   P2   P3   0.500  0.050 \n"
                           "   P2   P3   P4   0.500  0.050 \n");
}

TEST_F(PredictRun, LowerCasePIsNotPredicted) {
  makeClassesEqual();
  writeInput("AApAA", rowsOf("AApAA", 1, 5));
  EXPECT_EQ(listing(), kListingHead);
}

TEST_F(PredictRun, SequenceWithoutShiftsAndEmptyInputHaveNoRows) {
  writeInput("AAPGA", "");
  EXPECT_EQ(listing(), kListingHead);
  files.write("shifts.tab", "");
  EXPECT_EQ(listing(), kListingHead);
  EXPECT_EQ(table(), kOutputHead);
}

TEST_F(PredictRun, DirectoryAsInputHasNoRows) {
  args["in"] = files.path();
  EXPECT_EQ(listing(), kListingHead);
}

TEST_F(PredictRun, ProbabilityThatIsNoNumberIsWrittenAsItStandsAndTheRunGoesOn) {
  files.write("tab/Pro.seq.tab",
              "VARS resname cis_prev cis_next trans_prev trans_next\nFORMAT %s %f %f %f %f\n"
              "A 0.05 0.06 0.08 0.07\nG 0.09 0.1 0.06 0.08\n");
  // Serine and glutamic acid, around proline 7, have no shares: 0/0.
  const std::string left = notANumber("%-6.3f");
  const std::string right = notANumber("%8.3f");
  EXPECT_EQ(listing(),
            kListingHead + "   A3   P4   G5   0.225  0.015 \n   S6   P7   E8   " + left + " " + left + "\n");
  EXPECT_EQ(table(), kOutputHead + " 4 A P G  6  5  5   26.500    0.225    0.015 \n" +
                         " 7 S P E  2  4  6 9999.000 " + right + " " + right + " \n");
}

TEST_F(PredictRun, ResidueNumbersWrapAtTheLargest) {
  // Number 2147483647 is followed by -2147483648, which lies within any length. No row is that of a residue
  // from 1 to 4, so that shifts read as 0, as the means are.
  makeClassesEqual();
  writeInput("AAPA\nDATA FIRST_RESID 2147483645", "2147483646 A CA 50\n2147483647 P CA 50\n");
  args["last"] = "2147483647";
  EXPECT_EQ(listing(), kListingHead + "   A2147483646 P2147483647 A-2147483648 0.500  0.050 \n");
  EXPECT_EQ(table(), kOutputHead + "2147483647 A P A  6  6  6    0.000    0.500    0.050 \n");
}

TEST_F(PredictRun, NotesTheResiduesThatItLookedAt) {
  ZORVELA zorvela;
  zorvela.setArgs(args);
  outputOf([&] { zorvela.runPredict(); });
  // Residues 3 to 11 of 11 are visited, each with its neighbours; 1 to 11 were counted before.
  EXPECT_EQ(zorvela.missingCount.size(), 12U);
  EXPECT_EQ(zorvela.missingCount.at(12), 0);
  EXPECT_EQ(zorvela.missingCount.count(0), 0U);
  EXPECT_EQ(zorvela.resNames.size(), 13U);
  EXPECT_EQ(zorvela.resNames.at(0), "");
  EXPECT_EQ(zorvela.resNames.at(12), "");
  EXPECT_EQ(zorvela.cgShifts.size(), 3U);
}

TEST_F(PredictRun, NotesResiduesBetweenRowsFarApartAsLookedAt) {
  writeInput("AAPGA", rowsOf("AAPGA", 1, 5) + "300 A CA 50\n");
  ZORVELA zorvela;
  zorvela.setArgs(args);
  outputOf([&] { zorvela.runPredict(); });
  // 2 to 300 are visited but for one: when its turn comes, so many names are known.
  EXPECT_EQ(zorvela.missingCount.count(200), 1U);
  EXPECT_EQ(zorvela.resNames.at(200), "");
  EXPECT_EQ(zorvela.missingCount.at(301), 0);
  EXPECT_EQ(zorvela.missingCount.count(302), 0U);
}

TEST_F(PredictRun, NotesZeroSharesOfNeighboursThatTheDatabaseLacks) {
  files.write("tab/Pro.seq.tab",
              "VARS resname cis_prev cis_next trans_prev trans_next\nFORMAT %s %f %f %f %f\n"
              "A 0.05 0.06 0.08 0.07\nG 0.09 0.1 0.06 0.08\n");
  ZORVELA zorvela;
  zorvela.setArgs(args);
  outputOf([&] { zorvela.runPredict(); });
  EXPECT_EQ(zorvela.proSeqCis.at("S"), (std::map<int, float>{{1, 0.0F}}));
  EXPECT_EQ(zorvela.proSeqTrans.at("E"), (std::map<int, float>{{3, 0.0F}}));
}

TEST_F(PredictRun, RunObjectIsMoved) {
  const std::string expected = run();
  ZORVELA made;
  made.setArgs(args);
  std::vector<ZORVELA> runs;
  runs.push_back(std::move(made));
  runs.emplace_back();
  EXPECT_EQ(outputOf([&] { runs.front().runPredict(); }).out, expected);
  // With all that it loaded and assembled.
  ZORVELA moved = std::move(runs.front());
  runs.clear();
  EXPECT_EQ(moved.getTriplet(4).at("RESNAME_R2"), "P");
  EXPECT_EQ(moved.resTable.getEntryCount(), 66);
  ZORVELA assigned;
  assigned = std::move(moved);
  const auto prediction = assigned.predictProline(7);
  ASSERT_TRUE(prediction.has_value());
  EXPECT_EQ(prediction->shiftCounts, (std::array<int, 3>{2, 4, 6}));
}

TEST_F(PredictRun, StrayResidueNumbersAndAFarLastCostNothing) {
  files.write("shifts.tab", readFile(files.file("shifts.tab")) + "2000000000 A CA 50\n");
  args["last"] = "2000000000";
  ZORVELA zorvela;
  zorvela.setArgs(args);
  const Output output = outputOf([&] { zorvela.runPredict(); });
  EXPECT_EQ(
      output.err,
      "WARNING: Unmatched name for residue 2000000000 between header () and chemical shift table (A)\n");
  EXPECT_NE(output.out.find("   S6   P7   E8   0.037  0.002 \n"), std::string::npos);
  EXPECT_EQ(zorvela.lastResid, 2000000000);
}

TEST_F(PredictRun, OutputThatCannotBeWrittenIsAMessageAndTheListingIsPrinted) {
  args["sum"] = files.file("none/pred.tab");
  ZORVELA zorvela;
  zorvela.setArgs(args);
  const Output output = outputOf([&] { zorvela.runPredict(); });
  EXPECT_EQ(output.err, "\tCan't save file " + files.file("none/pred.tab") + "\n");
  EXPECT_NE(output.out.find("   A3   P4   G5   0.225  0.015 \n"), std::string::npos);
}

TEST_F(PredictRun, DetailShowsAClippedShiftForEachTripletThatHoldsIt) {
  ZORVELA zorvela;
  zorvela.setArgs(args);
  zorvela.showDetail = true;
  const Output output = outputOf([&] { zorvela.runPredict(); });
  // The carbonyl of residue 8 stands in the triplets of residues 7, 8 and 9.
  const std::string line = " Clipped   8 E   C Secondary Shift:    6.500 Limit:    5.000\n";
  EXPECT_EQ(output.out, files.progress() + "Analyzing " + args["in"] + ":\n" + line + line + line +
                            kListingHead +
                            "   A3   P4   G5   0.225  0.015 \n"
                            "   S6   P7   E8   0.037  0.002 \n");
}

TEST_F(PredictRun, CheckOptionPrintsTheReportAndEndsWithStatus255WithoutPrediction) {
  args["check"] = "true";
  ZORVELA zorvela;
  zorvela.setArgs(args);
  EXPECT_EXIT(
      {
        support::sendOutputToError();
        zorvela.runPredict();
      },
      ExitedWithCode(255),
      testing::ContainsRegex("Analyzing .*outlier checking.*C' shift referencing offset"));
  EXPECT_FALSE(std::filesystem::exists(files.file("pred.tab")));
}

TEST_F(PredictRun, SecondRunOfOneObjectGivesTheSameResults) {
  ZORVELA zorvela;
  zorvela.setArgs(args);
  const std::string first = outputOf([&] { zorvela.runPredict(); }).out;
  const std::string firstTable = table();
  // The sequence was joined twice, so residue 12 and on exist; prolines 4 and 7 stay what they are.
  const std::string second = outputOf([&] { zorvela.runPredict(); }).out;
  EXPECT_NE(second.find("   A3   P4   G5   0.225  0.015 \n   S6   P7   E8   0.037  0.002 \n"),
            std::string::npos);
  EXPECT_EQ(table().substr(0, firstTable.size()), firstTable);
}

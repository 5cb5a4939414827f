// The probability of cis of one proline.
//
// Expected values are those of tests/program/reference.py, which rounds to single precision where the program
// must.
#include <cmath>

#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::Output;
using support::outputOf;

}  // namespace

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

TEST_F(Probability, IsNormalisedByOddsOf1To19) {
  const auto both = [&] { return std::make_pair(predict().pCis, predict().pCisNorm); };
  EXPECT_EQ(both(), std::make_pair(0.5F, 0.05F));
  setShares(1.0F, 1.0F, 0.0F, 1.0F);
  EXPECT_EQ(both(), std::make_pair(1.0F, 1.0F));
  setShares(1.0F, 0.0F, 1.0F, 1.0F);
  EXPECT_EQ(both(), std::make_pair(0.0F, 0.0F));
}

TEST_F(Probability, UsesBackboneShiftsUpTo99AndCGBelow999) {
  // exp(-0.5 x 0^2) against exp(-0.5 x 2^2): 1 / (1 + exp(-2))
  setStatistics(0, 99.0F, 97.0F, 1.0F, 1.0F);
  setShift(0, "99");
  EXPECT_EQ(predict().pCis, 0x1.c2f7d4p-1F);
  setShift(0, "99.0001");
  EXPECT_EQ(predict().pCis, 0.5F);
  setStatistics(18, 998.0F, 996.0F, 1.0F, 1.0F);
  zorvela.cgShifts[2] = 998.0F;
  EXPECT_EQ(predict().pCis, 0x1.c2f7d4p-1F);
  zorvela.cgShifts[2] = 999.0F;
  EXPECT_EQ(predict().pCis, 0.5F);
}

TEST_F(Probability, MultipliesEveryIndexWithItsOwnStatistics) {
  for (int k = 0; k <= 18; ++k) {
    const double i = k;
    setStatistics(k, static_cast<float>(0.1 * i), static_cast<float>(0.07 * i + 0.3),
                  static_cast<float>(1.1 + 0.05 * i), static_cast<float>(1.3 + 0.03 * i));
    if (k < 18) setShift(k, std::to_string((k + 1) / 10) + "." + std::to_string((k + 1) % 10));
  }
  setShares(0.3F, 1.0F, 0.7F, 1.0F);
  zorvela.cgShifts[2] = 2.5F;
  EXPECT_EQ(predict().pCis, 0x1.4db52ep-2F);
  EXPECT_EQ(predict().pCisNorm, 0x1.968688p-6F);
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

TEST_F(Probability, IsZeroOneOrNoNumberWhereProductsUnderflow) {
  // 18 factors exp(-0.5 x 6^2) make exp(-324): 0 in single precision, but not in double.
  for (int k = 0; k < 18; ++k) setShift(k, "6");
  EXPECT_TRUE(std::isnan(predict().pCis));
  EXPECT_TRUE(std::isnan(predict().pCisNorm));
  for (int k = 0; k < 18; ++k) {
    setStatistics(k, 0.0F, 6.25F, 1.0F, 1.0F);
    setShift(k, "6.5");
  }
  EXPECT_EQ(predict().pCis, 0.0F);
  for (int k = 0; k < 18; ++k) setStatistics(k, 6.25F, 0.0F, 1.0F, 1.0F);
  EXPECT_EQ(predict().pCis, 1.0F);
  EXPECT_EQ(predict().pCisNorm, 1.0F);
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

TEST_F(Probability, MissingStatisticsReadAsZeroAndAreAdded) {
  zorvela.avgCis.clear();
  zorvela.stdCis.clear();
  setShift(0, "1");
  EXPECT_EQ(predict().pCis, 0.0F);
  // Those of a missing shift are not looked up.
  EXPECT_EQ(zorvela.avgCis, (std::map<int, float>{{0, 0.0F}}));
  EXPECT_EQ(zorvela.stdCis, (std::map<int, float>{{0, 0.0F}}));
}

TEST_F(Probability, IsGivenForProlinesWithEnoughShiftsOnly) {
  zorvela.missingCount = {{1, 4}, {2, 4}};
  EXPECT_FALSE(zorvela.predictProline(2).has_value());
  zorvela.missingCount.clear();
  for (const char* name : {"K", "p", "", "PP"}) {
    zorvela.resNames[2] = name;
    EXPECT_FALSE(zorvela.predictProline(2).has_value()) << name;
  }
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

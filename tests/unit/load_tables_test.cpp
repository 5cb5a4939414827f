// Reading the proline databases.
#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

class Databases : public testing::Test {
 protected:
  void readShifts(const std::string& text) { zorvela.getProCSValue(dir.write("Pro.cs.tab", text)); }
  void readShares(const std::string& text) { zorvela.getProSeqOccurence(dir.write("Pro.seq.tab", text)); }

  const std::string shiftHeader = "VARS index avg_cis avg_trans std_cis std_trans\nFORMAT %d %f %f %f %f\n";
  const std::string shareHeader =
      "VARS resname cis_prev cis_next trans_prev trans_next\nFORMAT %s %f %f %f %f\n";
  support::TempDir dir;
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

TEST_F(Databases, MissingColumnOrTextThatIsNotANumberIsZero) {
  readShifts("VARS note index avg_cis\nFORMAT %s %d %f\nHA 1 0.5\nHA x y\n");
  EXPECT_EQ(zorvela.avgCis, (std::map<int, float>{{0, 0.0F}, {1, 0.5F}}));
  EXPECT_EQ(zorvela.avgTrans, (std::map<int, float>{{0, 0.0F}, {1, 0.0F}}));
  EXPECT_EQ(zorvela.stdCis, (std::map<int, float>{{0, 0.0F}, {1, 0.0F}}));
  readShares("VARS resname cis_prev\nFORMAT %s %f\nA 0.5\n");
  EXPECT_EQ(zorvela.proSeqCis.at("A"), (std::map<int, float>{{1, 0.5F}, {3, 0.0F}}));
}

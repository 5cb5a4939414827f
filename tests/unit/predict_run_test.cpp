// A whole run: what it prints and the table that it writes.
//
// Expected values are those of tests/program/reference.py, which rounds to single precision where the program
// must.
#include <utility>

#include "run_files.h"
#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::notANumber;
using support::Output;
using support::outputOf;
using support::readFile;
using support::RunFiles;

const std::string kListingHead = "\nZorvela Predictions:\n\n  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n\n";
const std::string kOutputHead =
    "\n\nVARS   RESID RESNAME_PREV RESNAME RESNAME_NEXT CS_CNT1 CS_CNT2 CS_CNT3 CG_SHIFT P_CIS P_CIS_NORM \n"
    "FORMAT %2d %1s %1s %1s %2d %2d %2d %8.3f %8.3f %8.3f \n\n";

const std::string kShiftHeader = "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n";

}  // namespace

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

// A whole run: what it prints and the table that it writes.
//
// Expected values are computed by expected.py, which rounds to single precision where the program must.
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

TEST_F(PredictRun, RowsAscendWhateverTheOrderOfTheInput) {
  makeClassesEqual();
  const std::string sequence = "AAPAAPAA";
  writeInput(sequence, rowsOf(sequence, 5, 8) + rowsOf(sequence, 1, 4));
  EXPECT_EQ(listing(), kListingHead +
                           "   A2   P3   A4   0.500  0.050 \n"
                           "   A5   P6   A7   0.500  0.050 \n");
}

TEST_F(PredictRun, OnlyProlinesBetweenTheEndsGetARow) {
  makeClassesEqual();
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"PAPAP", "   A2   P3   A4   0.500  0.050 \n"},
      {"PPPP", "   P1   P2   P3   0.500  0.050 \n   P2   P3   P4   0.500  0.050 \n"},
      {"AAAAA", ""},
      {"AApAA", ""}};
  for (const auto& [sequence, lines] : cases) {
    writeInput(sequence, rowsOf(sequence, 1, static_cast<int>(sequence.size())));
    EXPECT_EQ(listing(), kListingHead + lines) << sequence;
  }
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

TEST_F(PredictRun, SequenceWithoutShiftsAndEmptyInputHaveNoRows) {
  writeInput("AAPGA", "");
  EXPECT_EQ(listing(), kListingHead);
  files.write("shifts.tab", "");
  EXPECT_EQ(listing(), kListingHead);
  EXPECT_EQ(table(), kOutputHead);
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

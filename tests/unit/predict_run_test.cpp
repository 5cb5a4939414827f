// A whole run: what it prints and the table that it writes.
//
// tests/program compares whole runs with a second implementation; here is what only the run object shows.
#include <utility>

#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::Output;
using support::outputOf;
using support::readFile;

const std::string kListingHead = "\nZorvela Predictions:\n\n  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n\n";
const std::string kShiftHeader = "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n";

}  // namespace

// A protein with shifts of 50 ppm, and tables that make them secondary shifts of 0. Cis and trans have equal
// statistics, so that every proline gets one half, and one in 20.
class PredictRun : public testing::Test {
 protected:
  PredictRun() {
    std::filesystem::create_directory(files.file("tab"));
    files.write("tab/randcoil.tab",
                "VARS RESNAME C CA CB\nFORMAT %s %f %f %f\nA 50 50 50\nG 50 50 50\nP 50 50 50\n");
    for (const char* name : {"rcadj.tab", "rcprev.tab", "rcnext.tab"})
      files.write(std::string("tab/") + name, "");
    files.write("tab/sslimit.tab", "VARS RESNAME C_MIN C_MAX\nFORMAT %s %f %f\nA -5 5\nG -5 5\nP -5 5\n");
    std::string shifts = "VARS index avg_cis avg_trans std_cis std_trans\nFORMAT %d %f %f %f %f\n";
    for (int k = 0; k <= 18; ++k) shifts += std::to_string(k) + " 0 0 100 100\n";
    files.write("tab/Pro.cs.tab", shifts);
    writeShares("A 1 1 1 1\nG 1 1 1 1\nP 1 1 1 1\n");
    writeInput("AAPGA", rowsOf("AAPGA", 1, 5));
  }

  // What the run prints on standard output; a message on standard error fails the test.
  std::string run(ZORVELA& zorvela) {
    const Output output = outputOf([&] { zorvela.runPredict(); });
    EXPECT_EQ(output.err, "");
    return output.out;
  }
  // The lines before the listing.
  std::string progress() const {
    const std::string tab = files.file("tab/");
    return "Reading Random Coil Shifts from " + tab + "randcoil.tab\nReading RC Adjustments from " + tab +
           "rcadj.tab\nReading Previous Residue RC Adjustments from " + tab +
           "rcprev.tab\nReading Next Residue RC Adjustments from " + tab +
           "rcnext.tab\nReading Secondary Shift Limits from " + tab + "sslimit.tab\nAnalyzing " +
           files.file("shifts.tab") + ":\n";
  }
  void writeShares(const std::string& rows) {
    files.write("tab/Pro.seq.tab",
                "VARS resname cis_prev cis_next trans_prev trans_next\nFORMAT %s %f %f %f %f\n" + rows);
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
  ZORVELA runObject() const {
    ZORVELA zorvela;
    zorvela.setArgs(
        {{"in", files.file("shifts.tab")}, {"tabDir", files.file("tab")}, {"sum", files.file("pred.tab")}});
    return zorvela;
  }

  support::TempDir files;
};

const std::string kLine = "   A2   P3   G4   0.500  0.050 \n";

TEST_F(PredictRun, ListingShowsTheStoredSixDigitsRoundedAgain) {
  // P is 0.01249999, which would round to 0.012. Its six digits 0.0125 are 0.01250000000000000069 in
  // double, which rounds to 0.013.
  writeShares("A 0.01249999 1 0.98750001 1\nG 1 1 1 1\n");
  ZORVELA zorvela = runObject();
  const std::string start = progress() + kListingHead + "   A2   P3   G4   0.013";
  EXPECT_EQ(run(zorvela).substr(0, start.size()), start);
}

TEST_F(PredictRun, NotesTheResiduesThatItLookedAt) {
  const std::string sequence = "AAAPGAPGGPA";
  writeInput(sequence, rowsOf(sequence, 3, 11));
  ZORVELA zorvela = runObject();
  run(zorvela);
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
  ZORVELA zorvela = runObject();
  outputOf([&] { zorvela.runPredict(); });
  // 2 to 300 are visited except one: when its turn comes, so many names are known.
  EXPECT_EQ(zorvela.missingCount.count(200), 1U);
  EXPECT_EQ(zorvela.resNames.at(200), "");
  EXPECT_EQ(zorvela.missingCount.at(301), 0);
  EXPECT_EQ(zorvela.missingCount.count(302), 0U);
}

TEST_F(PredictRun, NotesZeroSharesOfNeighboursThatTheDatabaseLacks) {
  writeShares("P 1 1 1 1\n");
  ZORVELA zorvela = runObject();
  run(zorvela);
  EXPECT_EQ(zorvela.proSeqCis.at("A"), (std::map<int, float>{{1, 0.0F}}));
  EXPECT_EQ(zorvela.proSeqTrans.at("G"), (std::map<int, float>{{3, 0.0F}}));
}

TEST_F(PredictRun, RunObjectIsMoved) {
  ZORVELA made = runObject();
  std::vector<ZORVELA> runs;
  runs.push_back(std::move(made));
  runs.emplace_back();
  EXPECT_EQ(run(runs.front()), progress() + kListingHead + kLine);
  // With all that it loaded and assembled.
  ZORVELA moved = std::move(runs.front());
  runs.clear();
  EXPECT_EQ(moved.getTriplet(3).at("RESNAME_R2"), "P");
  EXPECT_EQ(moved.resTable.getEntryCount(), 30);
  ZORVELA assigned;
  assigned = std::move(moved);
  const auto prediction = assigned.predictProline(3);
  ASSERT_TRUE(prediction.has_value());
  EXPECT_EQ(prediction->shiftCounts, (std::array<int, 3>{3, 3, 3}));
}

TEST_F(PredictRun, DetailShowsAClippedShiftForEachTripletThatHoldsIt) {
  files.write("tab/randcoil.tab", "VARS RESNAME C\nFORMAT %s %f\nA 50\nG 43.5\nP 50\n");
  writeInput("AAPGAA", "2 A C 50\n3 P C 50\n4 G C 50\n5 A C 50\n");
  ZORVELA zorvela = runObject();
  zorvela.showDetail = true;
  // The carbonyl of residue 4 is in the triplets of residues 3, 4 and 5.
  const std::string line = " Clipped   4 G   C Secondary Shift:    6.500 Limit:    5.000\n";
  EXPECT_EQ(run(zorvela), progress() + line + line + line + kListingHead);
}

TEST_F(PredictRun, SecondRunOfOneObjectGivesTheSameResults) {
  ZORVELA zorvela = runObject();
  run(zorvela);
  const std::string firstTable = readFile(files.file("pred.tab"));
  // The sequence was joined twice, so residue 6 and on exist; proline 3 stays the same.
  EXPECT_NE(outputOf([&] { zorvela.runPredict(); }).out.find(kLine), std::string::npos);
  EXPECT_EQ(readFile(files.file("pred.tab")).substr(0, firstTable.size()), firstTable);
}

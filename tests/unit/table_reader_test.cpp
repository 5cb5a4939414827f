// Reading table files: kinds of lines, rows, formats, the sequence, and faults.
#include <vector>

#include "support.h"

namespace {

using support::Output;
using support::outputOf;
using support::PlainRows;
using support::rowsOf;
using support::tableOf;
using support::TempDir;
using testing::Eq;
using testing::ExitedWithCode;

const std::string kShiftHeader = "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n";

}  // namespace

// --- A whole file -------------------------------------------------------------------------------

TEST(TableReader, ReadsEveryKindOfLine) {
  const TempDir dir;
  const std::string path = dir.write("shifts.tab",
                                     "REMARK Ubiquitin  fragment\n"
                                     "\n"
                                     "DATA SEQUENCE MKP\n"
                                     "DATA FIRST_RESID 5\n"
                                     " \t\n"
                                     "VARS   RESID  RESNAME ATOMNAME SHIFT \n"
                                     "FORMAT %4d %1s %4s  %8.3f\n"
                                     "\n"
                                     "   5 M   CA    54.450\n"
                                     "\t6\tK\tHA\t4.3\n");
  const GDB table(path);
  EXPECT_EQ(table.fileName, path);
  EXPECT_EQ(table.remarks, std::vector<std::string>{"Ubiquitin  fragment"});
  EXPECT_EQ(table.dataLines, (std::vector<std::string>{"SEQUENCE MKP", "FIRST_RESID 5"}));
  EXPECT_EQ(table.varsText, "RESID RESNAME ATOMNAME SHIFT");
  EXPECT_EQ(table.formatText, " %4d %1s %4s  %8.3f");
  EXPECT_EQ(table.columnCount, 4);
  EXPECT_EQ(table.columnNames,
            (std::map<int, std::string>{{0, "RESID"}, {1, "RESNAME"}, {2, "ATOMNAME"}, {3, "SHIFT"}}));
  EXPECT_EQ(table.columnFormats,
            (std::map<int, std::string>{{0, "%4d "}, {1, "%1s "}, {2, "%4s  "}, {3, "%8.3f"}}));
  ASSERT_EQ(table.getEntryCount(), 2);
  EXPECT_EQ(table.entries.at(1),
            (GDB::Row{{"RESID", "5"}, {"RESNAME", "M"}, {"ATOMNAME", "CA"}, {"SHIFT", "54.450"}}));
  EXPECT_EQ(table.entries.at(2),
            (GDB::Row{{"RESID", "6"}, {"RESNAME", "K"}, {"ATOMNAME", "HA"}, {"SHIFT", "4.3"}}));
  EXPECT_EQ(table.firstSeqResid, 5);
  EXPECT_EQ(table.residNames, (std::map<int, std::string>{{5, "M"}, {6, "K"}, {7, "P"}}));
  EXPECT_FALSE(table.plaintext);
}

TEST(TableReader, SecondLoadReplacesRowsAndColumnsAndAddsPairsAndRemarks) {
  const TempDir dir;
  GDB table(dir.write("a.tab", "REMARK a\nDATA SEQUENCE MK\n" + kShiftHeader + "1 M CA 54\n2 K CA 56\n"));
  table.loadGDB(dir.write("b.tab", "REMARK b\nDATA SEQUENCE P\nVARS X\nFORMAT %d\n7\n"));
  EXPECT_EQ(table.fileName, dir.file("b.tab"));
  EXPECT_EQ(table.columnCount, 1);
  EXPECT_EQ(rowsOf(table), (PlainRows{{1, {{"X", "7"}}}}));
  EXPECT_EQ(table.remarks, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(table.getData("SEQUENCE"), "MKP");
  // Two names are stored: the joined sequence is numbered on from the third.
  EXPECT_EQ(table.residNames, (std::map<int, std::string>{{1, "M"}, {2, "K"}, {3, "M"}, {4, "K"}, {5, "P"}}));
}

// --- Remarks and pairs --------------------------------------------------------------------------

TEST(TableReader, RemarkOrPairWithOneCharacterMoreIsEmpty) {
  for (const char* line : {"REMARK \n", "REMARK\r\n", " REMARK\n"})
    EXPECT_EQ(tableOf(line).remarks, std::vector<std::string>{""}) << line;
  EXPECT_EQ(tableOf("DATA \n").dataLines, std::vector<std::string>{""});
}

TEST(TableReader, LeadingBlanksLeaveTheCutWhereItIs) {
  const GDB table = tableOf("  REMARK ab\n DATA K v\n VARS A B\n");
  // Seven characters of "  REMARK ab" and five of " DATA K v" go; of " VARS A B" the first four.
  EXPECT_EQ(table.remarks, std::vector<std::string>{"K ab"});
  EXPECT_EQ(table.dataLines, std::vector<std::string>{" K v"});
  EXPECT_EQ(table.columnNames, (std::map<int, std::string>{{0, "S"}, {1, "A"}, {2, "B"}}));
}

TEST(TableReader, KeywordsAreComparedExactly) {
  const GDB table = tableOf("remark a\nREMARKS b\nData SEQUENCE MK\nVARS: A\n");
  EXPECT_TRUE(table.remarks.empty());
  EXPECT_TRUE(table.dataLines.empty());
  EXPECT_EQ(table.columnCount, 0);
}

TEST(TableReader, PairKeepsItsTextBehindTheKey) {
  const GDB table = tableOf("DATA NOTE  two  words \n");
  EXPECT_EQ(table.dataLines, std::vector<std::string>{"NOTE  two  words "});
  EXPECT_EQ(table.getData("NOTE"), " two  words ");
}

// --- Rows ---------------------------------------------------------------------------------------

TEST(TableReader, RowsNeedACellForEachColumnBelowColumnsAndFormat) {
  const PlainRows oneRow = {{1, {{"A", "3"}, {"B", "4"}}}};
  const std::vector<std::pair<std::string, PlainRows>> cases = {
      // A row that is skipped takes no number.
      {"VARS A B\nFORMAT %d %d\n1 2 3\n1\n3 4\n", oneRow},
      {"VARS A B\n1 2\nFORMAT %d %d\n3 4\n", oneRow},
      {"VARS A B\n1 2\n", {}},
      {"FORMAT %d %d\nVARS A B\n3 4\n", oneRow},
      // A second line of formats or columns drops the rows, and their numbers go on.
      {"VARS A\nFORMAT %d\n1\n2\nFORMAT %d\n3\n4\n", {{3, {{"A", "3"}}}, {4, {{"A", "4"}}}}},
      {"VARS A\nFORMAT %d\n1\n2\nVARS B C\n3 4\n", {{3, {{"B", "3"}, {"C", "4"}}}}}};
  for (const auto& [text, rows] : cases) EXPECT_EQ(rowsOf(tableOf(text)), rows) << text;
}

TEST(TableReader, ThreeItemsForFourColumnsReadsRowsSilentlyAndHasNoFormats) {
  GDB table;
  const Output output = outputOf(
      [&] { table = tableOf("VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %8.3f\n1 M CA 54.4\n"); });
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(output.err, "");
  EXPECT_TRUE(table.columnFormats.empty());
  ASSERT_EQ(table.getEntryCount(), 1);
  EXPECT_EQ(table.entries.at(1).at("SHIFT"), "54.4");
}

TEST(TableReader, RowWhoseFirstCellIsAKeywordIsARowAndAKeywordLine) {
  const GDB table = tableOf("VARS KEY VALUE\nFORMAT %s %s\nREMARK text\nDATA pair\n");
  EXPECT_EQ(rowsOf(table), (PlainRows{{1, {{"KEY", "REMARK"}, {"VALUE", "text"}}},
                                      {2, {{"KEY", "DATA"}, {"VALUE", "pair"}}}}));
  EXPECT_EQ(table.remarks, std::vector<std::string>{"text"});
  EXPECT_EQ(table.dataLines, std::vector<std::string>{"pair"});
}

TEST(TableReader, OfTwoColumnsWithOneNameTheLaterCellStays) {
  const GDB table = tableOf("VARS A B A\nFORMAT %s %s %s\n1 2 3\n");
  EXPECT_EQ(table.entries.at(1), (GDB::Row{{"A", "3"}, {"B", "2"}}));
}

// --- Formats ------------------------------------------------------------------------------------

TEST(TableReader, BadFormatItemEndsTheRunWithStatus0) {
  const TempDir dir;
  // Three "%" for three columns, but two pieces after the first blank: the third item is "%" alone.
  for (const auto& [formats, item] : std::map<std::string, std::string>{
           {"%4d %5.1e  %s", "%5.1e  "}, {"%4d %d %5.1e", "%5.1e"}, {"%4d %%s", "%"}}) {
    const std::string path = dir.write("bad.tab", "VARS A B C\nFORMAT " + formats + "\n");
    EXPECT_EXIT(GDB{path}, ExitedWithCode(0), Eq("\tBad format syntax '" + item + "'\n"));
  }
}

TEST(TableReader, VarsParserSplitsAtBlanksAndEmptiesRows) {
  GDB table;
  table.VARS_str_parser("OLD");
  table.addEntry("OLD", "1");
  table.VARS_str_parser("  RESID A\tB   P_CIS ");
  EXPECT_EQ(table.columnCount, 3);
  EXPECT_EQ(table.columnNames, (std::map<int, std::string>{{0, "RESID"}, {1, "A\tB"}, {2, "P_CIS"}}));
  EXPECT_EQ(table.getEntryCount(), 0);
  table.VARS_str_parser("");
  EXPECT_EQ(table.columnCount, 0);
  EXPECT_TRUE(table.columnNames.empty());
}

TEST(TableReader, FormatParserKeepsTheBlanksBehindAnItemAndEmptiesRows) {
  GDB table;
  table.FORMAT_str_parser("%e");
  EXPECT_TRUE(table.columnFormats.empty()) << "a table without columns";
  table.VARS_str_parser("A B C");
  table.addEntry("A", "1");
  table.FORMAT_str_parser("%2d %1s   %8.3f ");
  EXPECT_EQ(table.columnFormats, (std::map<int, std::string>{{0, "%2d "}, {1, "%1s   "}, {2, "%8.3f "}}));
  EXPECT_EQ(table.getEntryCount(), 0);
  table.addEntry("A", "1");
  EXPECT_EQ(outputOf([&] { table.FORMAT_str_parser("%d %e"); }).err, "") << "another count";
  EXPECT_TRUE(table.columnFormats.empty());
  EXPECT_EQ(table.getEntryCount(), 0);
}

TEST(TableReader, FormatItemsPassThroughTheScratchBufferAsFarAsTheyFit) {
  GDB table;
  table.VARS_str_parser("A B");
  table.FORMAT_str_parser("%4d %1s  ");
  EXPECT_STREQ(table.formatScratch, "%1s  ");
  EXPECT_STREQ(tableOf("VARS A B\nFORMAT %4d %8.3f\n1 2\n").formatScratch, "%8.3f");
  table.FORMAT_str_parser("%4d %" + std::string(1000, '0') + "9d");
  EXPECT_EQ(table.formatScratch, "%" + std::string(GDB::kScratchSize - 2, '0'));
  EXPECT_TRUE(table.setFormats("%4d %5.1e").has_value());
  EXPECT_STREQ(table.formatScratch, "%5.1e");
}

TEST(TableReader, CheckFormatAcceptsTheItemsOfTheFormat) {
  for (const char* item : {"%s", "%d", "%f", "%4d", "%-4s", "%8.3f", "%4d ", "  %8.3f\t", "%-08.3f", "%5.f"})
    EXPECT_TRUE(GDB::checkFormat(item)) << item;
}

TEST(TableReader, CheckFormatRejectsEverythingElse) {
  for (const char* item :
       {"",    "%",   "d",   "4d",   " ",   "%+5d", "%5.2e", "%4dx", "%ld", "%4 d", "% d", "%%d", "%d%",
        "%dd", "%sd", "%ds", "%d d", "x%d", "%x",   "%c",    "%*d",  "%#f", "%'d",  "%5",  "%lf", "%5."})
    EXPECT_FALSE(GDB::checkFormat(item)) << item;
}

// --- Sequence -----------------------------------------------------------------------------------

TEST(TableReader, SequenceIsNumberedFromTheFirstResid) {
  using Names = std::map<int, std::string>;
  const std::vector<std::pair<std::string, Names>> cases = {
      {"DATA SEQUENCE MK TA\nDATA FIRST_RESID 10\n", {{10, "M"}, {11, "K"}, {12, "T"}, {13, "A"}}},
      {"DATA SEQUENCE MXcZp\n", {{1, "M"}, {2, "X"}, {3, "c"}, {4, "p"}}},
      {"DATA SEQUENCE A?-y1*aYB\n", {{1, "A"}, {2, "?"}, {3, "Y"}, {4, "B"}}},
      // Two lines are joined, and so are the numbers of two pairs.
      {"DATA SEQUENCE MK\nREMARK between\nDATA SEQUENCE TA\n", {{1, "M"}, {2, "K"}, {3, "T"}, {4, "A"}}},
      {"DATA FIRST_RESID 1\nDATA FIRST_RESID 2\nDATA SEQUENCE M\n", {{12, "M"}}},
      {"DATA FIRST_RESID -1\nDATA SEQUENCE MKP\n", {{-1, "M"}, {0, "K"}, {1, "P"}}},
      {"DATA FIRST_RESID x\nDATA SEQUENCE M\n", {{0, "M"}}},
      // A bare pair is its own value.
      {"DATA SEQUENCE\n", {{1, "S"}, {2, "E"}, {3, "Q"}, {4, "U"}, {5, "E"}, {6, "N"}, {7, "C"}, {8, "E"}}}};
  for (const auto& [text, names] : cases) EXPECT_EQ(tableOf(text).residNames, names) << text;
}

// --- Bad input ----------------------------------------------------------------------------------

TEST(TableReader, LastLineWithoutALineEndIsRead) {
  EXPECT_EQ(tableOf(kShiftHeader + "1 M CA 54.4").getEntryCount(), 1);
  EXPECT_EQ(tableOf("DATA SEQUENCE MK").residNames.size(), 2U);
}

TEST(TableReader, ZeroByteInACellIsPartOfTheCell) {
  const GDB table = tableOf("VARS A B\nFORMAT %s %s\n" + std::string("a\0b c\n", 6));
  EXPECT_EQ(table.entries.at(1).at("A"), std::string("a\0b", 3));
}

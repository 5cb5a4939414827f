// Writing table files, and the standard layouts.
#include <sstream>

#include "support.h"

namespace {

using support::addRow;
using support::outputOf;
using support::PlainRows;
using support::readFile;
using support::rowsOf;
using support::TempDir;

GDB shiftTable() {
  GDB table;
  table.presetClass("KIVRA_SHIFT");
  return table;
}

std::string savedText(GDB& table) {
  const TempDir dir;
  table.saveGDB(dir.file("out.tab"));
  EXPECT_TRUE(std::filesystem::exists(dir.file("out.tab")));
  return readFile(dir.file("out.tab"));
}

// The one line that a table of one column writes for a cell.
std::string rowText(const std::string& item, const std::string& cell) {
  GDB table;
  table.columnCount = 1;
  table.columnNames[0] = "A";
  table.columnFormats[0] = item;
  table.setEntry(1, "A", cell);
  table.set_plaintext();
  return savedText(table);
}

// The DATA SEQUENCE lines of a sequence.
std::string sequenceText(const std::string& sequence) {
  GDB table;
  table.setData("SEQUENCE", sequence);
  const std::string text = savedText(table);
  const std::string frame = "\nVARS   \nFORMAT \n\n";
  EXPECT_EQ(text.substr(0, 1), "\n");
  EXPECT_EQ(text.substr(text.size() - frame.size()), frame);
  return text.substr(1, text.size() - 1 - frame.size());
}

const std::string kShiftHeader = "VARS   RESID RESNAME ATOMNAME SHIFT \nFORMAT %4d %1s %4s  %8.3f\n\n";

}  // namespace

// --- The whole file -----------------------------------------------------------------------------

TEST(TableWriter, ColumnNamesBeyondTheCountAddNothing) {
  GDB table = shiftTable();
  table.columnNames[4] = "BEYOND";
  table.columnNames[9] = "FAR";
  table.columnNames[-1] = "BEFORE";
  EXPECT_EQ(savedText(table), "\n\n" + kShiftHeader);
}

TEST(TableWriter, WritesPairColumnsFormatsAndRowOfTheShiftPreset) {
  GDB table = shiftTable();
  table.setData("SEQUENCE", "MKT");
  addRow(table, {{"RESID", "2"}, {"RESNAME", "K"}, {"ATOMNAME", "CA"}, {"SHIFT", "56.5"}});
  EXPECT_EQ(savedText(table), "\nDATA SEQUENCE MKT\n\n" + kShiftHeader + "   2 K   CA    56.500\n");
}

TEST(TableWriter, WritesRemarksAndOtherPairsInTheirOrder) {
  GDB table = shiftTable();
  table.addRemark("first");
  table.addRemark("");
  table.setData("FIRST_RESID", "5");
  table.setData("SEQUENCE", "MK");
  table.setData("NOTE", " two  words ");
  EXPECT_EQ(savedText(table),
            "REMARK first\nREMARK \n\nDATA FIRST_RESID 5\nDATA SEQUENCE MK\nDATA NOTE  two  words \n\n" +
                kShiftHeader);
}

TEST(TableWriter, TableWithoutColumnsOrFormatsIsTheFrameWithAnEmptyLineForEachRow) {
  GDB table;
  EXPECT_EQ(savedText(table), "\n\nVARS   \nFORMAT \n\n");
  table.addEntry("A", "1");
  table.addEntry("A", "2");
  EXPECT_EQ(savedText(table), "\n\nVARS   \nFORMAT \n\n\n\n");
  table.VARS_str_parser("A B");
  table.addEntry("A", "1");
  EXPECT_EQ(savedText(table), "\n\nVARS   A B \nFORMAT \n\n\n");
}

TEST(TableWriter, RowsAscendByNumber) {
  GDB table;
  table.VARS_str_parser("A");
  table.FORMAT_str_parser("%d");
  table.setEntry(40, "A", "40");
  table.setEntry(7, "A", "7");
  table.setEntry(-1, "A", "-1");
  table.set_plaintext();
  EXPECT_EQ(savedText(table), "-1\n7\n40\n");
}

TEST(TableWriter, SavedTableReadsBack) {
  const TempDir dir;
  GDB table = shiftTable();
  table.addRemark("a remark");
  table.setData("FIRST_RESID", "5");
  table.setData("SEQUENCE", "MKP");
  addRow(table, {{"RESID", "5"}, {"RESNAME", "M"}, {"ATOMNAME", "CA"}, {"SHIFT", "54.450"}});
  table.saveGDB(dir.file("out.tab"));
  const GDB read(dir.file("out.tab"));
  EXPECT_EQ(read.remarks, table.remarks);
  EXPECT_EQ(read.dataLines, table.dataLines);
  EXPECT_EQ(read.columnNames, table.columnNames);
  EXPECT_EQ(read.columnFormats, table.columnFormats);
  EXPECT_EQ(rowsOf(read), rowsOf(table));
  EXPECT_EQ(read.residNames, (std::map<int, std::string>{{5, "M"}, {6, "K"}, {7, "P"}}));
}

// --- Sequence lines -----------------------------------------------------------------------------

TEST(TableWriter, SequenceIsCutAfter55Letters) {
  const auto line = [](std::size_t letters) { return "DATA SEQUENCE " + std::string(letters, 'A') + "\n"; };
  EXPECT_EQ(sequenceText(std::string(54, 'A')), line(54));
  EXPECT_EQ(sequenceText(std::string(55, 'A')), line(55) + line(0));
  EXPECT_EQ(sequenceText(std::string(56, 'A')), line(55) + line(1));
  EXPECT_EQ(sequenceText(std::string(110, 'A')), line(55) + line(55) + line(0));
}

TEST(TableWriter, BlanksOfASequenceAreSimplifiedAndCounted) {
  EXPECT_EQ(sequenceText("  MK   TA "), "DATA SEQUENCE MK TA\n");
  // Fifty letters, one blank and five letters are 56 characters.
  EXPECT_EQ(sequenceText(std::string(50, 'A') + "  GGGGG"),
            "DATA SEQUENCE " + std::string(50, 'A') + " GGGG\nDATA SEQUENCE G\n");
  for (const char* empty : {"", "   "}) EXPECT_EQ(sequenceText(empty), "");
}

TEST(TableWriter, ThreeSequenceLinesOfAFileStayThreeGroups) {
  GDB table =
      support::tableOf("DATA SEQUENCE MK\nDATA SEQUENCE " + std::string(56, 'A') + "\nDATA SEQUENCE TA\n");
  EXPECT_EQ(savedText(table), "\nDATA SEQUENCE MK\nDATA SEQUENCE " + std::string(55, 'A') +
                                  "\nDATA SEQUENCE A\nDATA SEQUENCE TA\n\nVARS   \nFORMAT \n\n");
}

// --- Cells --------------------------------------------------------------------------------------

TEST(TableWriter, CellsFollowTheirItems) {
  struct Case {
    const char* item;
    const char* cell;
    const char* text;
  };
  for (const Case& c : std::initializer_list<Case>{{"%4d ", "2", "   2 \n"},
                                                   {"%-4s|", "CA", "CA  |\n"},
                                                   {"%8.3f", "0.0123457", "   0.012\n"},
                                                   {"%s", "two words", "two words\n"},
                                                   // In single precision this would be 0.12345679104 ...
                                                   {"%.12f", "0.123456789012", "0.123456789012\n"},
                                                   {"%8.3f", "nan", "     nan\n"},
                                                   {"%8.3f", "-nan", "    -nan\n"},
                                                   {"%8.3f", "1e400", "     inf\n"},
                                                   // Without a letter that occurs once nothing is written.
                                                   {"%", "1", "\n"},
                                                   {"ss dd ff", "1", "\n"}})
    EXPECT_EQ(rowText(c.item, c.cell), c.text);
}

TEST(TableWriter, CellsThatARowLacksAreEmptyTextOrZero) {
  GDB table = shiftTable();
  addRow(table, {{"RESID", "2"}, {"RESNAME", "K"}, {"ATOMNAME", "CA"}});
  table.getEntry(2);
  table.set_plaintext();
  EXPECT_EQ(savedText(table), "   2 K   CA     0.000\n   0" + std::string(12, ' ') + "0.000\n");
}

TEST(TableWriter, CellsPassThroughTheScratchBufferAsFarAsTheyFit) {
  GDB table = shiftTable();
  addRow(table, {{"RESID", "2"}, {"RESNAME", "K"}, {"ATOMNAME", "CA"}, {"SHIFT", "56.5"}});
  savedText(table);
  EXPECT_STREQ(table.formatScratch, "  56.500");
  table.columnFormats[3] = "%s";
  table.setEntry(1, "SHIFT", std::string(1000, 'x'));
  savedText(table);
  EXPECT_EQ(table.formatScratch, std::string(GDB::kScratchSize - 1, 'x'));
}

// --- Plain text ---------------------------------------------------------------------------------

TEST(TableWriter, PlaintextTableWithoutRowsIsAnEmptyFile) {
  GDB table = shiftTable();
  table.setData("SEQUENCE", "MKT");
  table.set_plaintext();
  EXPECT_EQ(savedText(table), "");
}

// --- Standard layouts ---------------------------------------------------------------------------

TEST(TableWriter, Presets) {
  GDB table;
  table.addEntry("OLD", "1");
  table.presetClass("KIVRA_SHIFT");
  EXPECT_EQ(table.className, "KIVRA_SHIFT");
  EXPECT_EQ(table.getEntryCount(), 0);
  EXPECT_EQ(savedText(table), "\n\n" + kShiftHeader);
  EXPECT_EQ(table.columnFormats.at(0), "%4d ") << "with the blank after it";
  table.presetClass("KIVRA_PRED");
  EXPECT_EQ(table.className, "KIVRA_PRED");
  EXPECT_EQ(savedText(table),
            "\n\nVARS   INDEX PHI PSI DIST W R1 R2 R3 SOURCE \n"
            "FORMAT %2d %9.3f %9.3f %8.3f %5.3f %-4s %-4s %-4s %s\n\n");
}

TEST(TableWriter, UnknownPresetLeavesColumnsFormatsAndRows) {
  GDB table = shiftTable();
  table.addEntry("RESID", "1");
  for (const char* name : {"", "kivra_shift", "OTHER"}) {
    const support::Output output = outputOf([&] { table.presetClass(name); });
    EXPECT_EQ(output.err, "");
    EXPECT_EQ(table.className, "KIVRA_SHIFT");
    EXPECT_EQ(table.columnCount, 4);
    EXPECT_EQ(table.columnFormats.size(), 4U);
    EXPECT_EQ(rowsOf(table), (PlainRows{{1, {{"RESID", "1"}}}}));
  }
}

// The fault of a table file, for the caller, whose table does not change.
#include <sstream>
#include <stdexcept>
#include <vector>

#include "support.h"

namespace {

// A table with columns and a row.
GDB shiftTable() {
  GDB table;
  table.presetClass("KIVRA_SHIFT");
  support::addRow(table, {{"RESID", "1"}, {"RESNAME", "A"}, {"ATOMNAME", "CA"}, {"SHIFT", "50.1"}});
  return table;
}

}  // namespace

TEST(TableParsing, GivesItsCallerTheFaultWithItsLine) {
  const support::TempDir dir;
  const std::string path = dir.write("bad.tab", "REMARK a\nVARS A B\nFORMAT %d %5.1e\n1 2\n");
  GDB table = shiftTable();
  const support::Output output = support::outputOf([&] {
    const auto fault = table.readFile(path);
    ASSERT_TRUE(fault.has_value());
    EXPECT_EQ(fault->message, "Bad format syntax '%5.1e'");
    EXPECT_EQ(fault->line, 3U);
  });
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(output.err, "") << "messages are up to the caller";
}

TEST(TableParsing, OfAFileThatIsNotThereSaysSo) {
  const auto fault = GDB().readFile("none/none.tab");
  ASSERT_TRUE(fault.has_value());
  EXPECT_EQ(fault->message, "Can't open file none/none.tab for reading");
}

TEST(TableParsing, LeavesTheTableAsItWasWhereItFails) {
  GDB table = shiftTable();
  table.setData("SEQUENCE", "AA");
  const GDB before = table;
  std::istringstream bad("REMARK x\nDATA SEQUENCE M\nVARS A\nFORMAT %d\n1\nFORMAT %x\n");
  EXPECT_TRUE(table.readTable(bad).has_value());
  std::istringstream bare("REMARK x\nVARS A\nFORMAT %d\n1\nREMARK\n");
  EXPECT_THROW(table.readTable(bare), std::out_of_range);
  EXPECT_TRUE(table.setFormats("%d %s %s %q").has_value());
  EXPECT_EQ(table.entries, before.entries);
  EXPECT_EQ(table.columnNames, before.columnNames);
  EXPECT_EQ(table.columnFormats, before.columnFormats);
  EXPECT_EQ(table.columnCount, 4);
  EXPECT_EQ(table.dataLines, before.dataLines);
  EXPECT_TRUE(table.remarks.empty());
}

TEST(TableParsing, TellsTheLinesOfRowsAndThoseThatItSkipped) {
  std::istringstream in("1 2\nREMARK x\nVARS A B\nFORMAT %d %d\n\n1 2\n1 2 3\n3 4\n");
  GDB table;
  TableLines lines;
  table.readTable(in, &lines);
  EXPECT_EQ(lines.rows, (std::vector<std::size_t>{6, 8}));
  EXPECT_EQ(lines.skipped, (std::vector<std::size_t>{1, 7}));
}

TEST(TableParsing, OfColumnsThatTheUserNumberedReadsThoseInTheCount) {
  GDB table;
  table.VARS_str_parser("A B");
  table.columnNames[7] = "FAR";
  table.columnNames[-1] = "BEFORE";
  std::istringstream in("FORMAT %d %d\n1 2\n");
  table.readTable(in);
  EXPECT_EQ(table.getEntry(1), (GDB::Row{{"A", "1"}, {"B", "2"}}));
}

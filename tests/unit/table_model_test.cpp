// The table in memory: rows, column types, column editing, data pairs, remarks, residues.
#include "support.h"

namespace {

using support::addRow;
using support::Output;
using support::outputOf;

// Ten rows; rows 3 and 7 hold residue 12.
GDB residueTable() {
  GDB table;
  for (int i = 1; i <= 10; ++i) {
    addRow(table, {{"RESID", i == 3 || i == 7 ? "12" : std::to_string(100 + i)},
                   {"ATOMNAME", i == 7 ? "CB" : "CA"},
                   {"SHIFT", std::to_string(i) + ".5"}});
  }
  return table;
}

GDB shiftColumns() {
  GDB table;
  table.VARS_str_parser("RESID RESNAME ATOMNAME SHIFT");
  table.FORMAT_str_parser("%4d %1s %4s  %8.3f");
  return table;
}

// Columns, formats and rows as one text, to see that nothing changed.
std::string stateOf(const GDB& table) {
  std::string state = std::to_string(table.columnCount) + ";";
  for (const auto& [i, name] : table.columnNames) state += std::to_string(i) + name + ";";
  for (const auto& [i, item] : table.columnFormats) state += std::to_string(i) + item + ";";
  for (const auto& [number, row] : table.entries) {
    state += std::to_string(number);
    for (const auto& [col, text] : row) state += " " + col + "=" + text;
    state += ";";
  }
  return state;
}

}  // namespace

// --- An empty table -----------------------------------------------------------------------------

TEST(TableModel, StartsEmpty) {
  const GDB table;
  EXPECT_EQ(table.className, "");
  EXPECT_FALSE(table.plaintext);
  EXPECT_EQ(table.fileName, "");
  EXPECT_EQ(table.formatText, "");
  EXPECT_EQ(table.varsText, "");
  EXPECT_EQ(table.firstSeqResid, 1);
  EXPECT_TRUE(table.keyValues.empty());
  EXPECT_TRUE(table.residNames.empty());
  EXPECT_TRUE(table.remarks.empty());
  EXPECT_TRUE(table.dataLines.empty());
  EXPECT_EQ(stateOf(table), "0;");
  EXPECT_EQ(table.getEntryCount(), 0);
  EXPECT_GE(sizeof table.formatScratch, 100U);
}

// --- Rows ---------------------------------------------------------------------------------------

TEST(TableModel, SearchTakesTheWantedOccurrence) {
  const GDB table = residueTable();
  EXPECT_EQ(table.getEntry("RESID", "12", 1).at("SHIFT"), "3.5");
  EXPECT_EQ(table.getEntry("RESID", "12", 2).at("SHIFT"), "7.5");
  for (const int occurrence : {3, 0, -1}) EXPECT_TRUE(table.getEntry("RESID", "12", occurrence).empty());
  // By two cells, both must match.
  EXPECT_EQ(table.getEntry("RESID", "12", "ATOMNAME", "CB", 1).at("SHIFT"), "7.5");
  EXPECT_TRUE(table.getEntry("RESID", "12", "ATOMNAME", "CB", 2).empty());
  EXPECT_TRUE(table.getEntry("RESID", "101", "ATOMNAME", "CB", 1).empty());
}

TEST(TableModel, EmptyNameMatchesTheFirstRowOfATableWithoutTheKeyColumn) {
  GDB table;
  addRow(table, {{"CA_MIN", "-1"}});
  addRow(table, {{"CA_MIN", "-2"}});
  EXPECT_EQ(table.getEntry("RESNAME", "", 1).at("CA_MIN"), "-1");
  EXPECT_TRUE(table.getEntry("RESNAME", "A", 1).empty());
}

TEST(TableModel, RowNumberFiveOfThreeRowsIsEmptyAndIsInserted) {
  GDB table;
  for (int i = 1; i <= 3; ++i) table.addEntry("RESID", std::to_string(i));
  EXPECT_TRUE(table.getEntry(5).empty());
  EXPECT_EQ(table.getEntryCount(), 4);
  ASSERT_EQ(table.entries.count(5), 1U);
  EXPECT_TRUE(table.entries.at(5).empty());
  EXPECT_TRUE(table.getEntry(5).empty());
  EXPECT_EQ(table.getEntryCount(), 4) << "only the first time";
}

TEST(TableModel, AddEntryTakesTheNumberAfterTheRowCount) {
  GDB table;
  table.addEntry("RESID", "1");
  table.addEntry("RESID", "2");
  table.setEntry(2, "RESNAME", "K");
  table.setEntry(9, "RESID", "9");
  table.addEntry("RESID", "4");
  EXPECT_EQ(table.entries, (std::map<int, GDB::Row>{{1, {{"RESID", "1"}}},
                                                    {2, {{"RESID", "2"}, {"RESNAME", "K"}}},
                                                    {4, {{"RESID", "4"}}},
                                                    {9, {{"RESID", "9"}}}}));
  // One row, number 2: the next number is 2 again.
  GDB other;
  other.setEntry(2, "RESID", "2");
  other.addEntry("SHIFT", "8.1");
  EXPECT_EQ(other.entries, (std::map<int, GDB::Row>{{2, {{"RESID", "2"}, {"SHIFT", "8.1"}}}}));
}

TEST(TableModel, CellThatARowLacksReadsAsEmptyText) {
  const GDB::Row row{{"RESID", "1"}};
  EXPECT_EQ(GDB::cell(row, "RESID"), "1");
  EXPECT_EQ(GDB::cell(row, "SHIFT"), "");
}

// --- Column types -------------------------------------------------------------------------------

TEST(TableModel, ColumnTypesByIndexCountFromZeroOrGoByName) {
  const GDB table = shiftColumns();
  const std::vector<std::string> names = {"RESID", "RESNAME", "ATOMNAME", "SHIFT"};
  const std::string types = "issf";
  for (std::size_t i = 0; i < types.size(); ++i) {
    const int index = static_cast<int>(i);
    EXPECT_EQ(table.isVarInt(index), types[i] == 'i') << i;
    EXPECT_EQ(table.isVarString(index), types[i] == 's') << i;
    EXPECT_EQ(table.isVarFloat(index), types[i] == 'f') << i;
    EXPECT_EQ(table.isVarInt(names[i]), types[i] == 'i') << i;
    EXPECT_EQ(table.isVarString(names[i]), types[i] == 's') << i;
    EXPECT_EQ(table.isVarFloat(names[i]), types[i] == 'f') << i;
  }
  for (const int none : {-1, 4, 100})
    EXPECT_FALSE(table.isVarInt(none) || table.isVarFloat(none) || table.isVarString(none));
  EXPECT_FALSE(table.isVarFloat("shift"));
}

TEST(TableModel, ColumnTypeNeedsTheLetterExactlyOnce) {
  GDB table;
  table.columnFormats[0] = "%dd";
  table.columnFormats[1] = "%ds";
  EXPECT_FALSE(table.isVarInt(0));
  EXPECT_TRUE(table.isVarInt(1));
  EXPECT_TRUE(table.isVarString(1));
}

// --- Column editing -----------------------------------------------------------------------------

TEST(TableModel, SetVarCountsFromOneAndReplacesOrAddsAColumn) {
  GDB table = shiftColumns();
  table.addEntry("SHIFT", "8.1");
  const Output output = outputOf([&] {
    table.setVAR(4, "PPM", "%9.4f");
    table.setVAR(5, "NOTE", "%s");
    table.addVAR("MORE", "%s ");
  });
  EXPECT_EQ(output.err, "");
  EXPECT_EQ(stateOf(table),
            "6;0RESID;1RESNAME;2ATOMNAME;3PPM;4NOTE;5MORE;"
            "0%4d ;1%1s ;2%4s  ;3%9.4f;4%s;5%s ;1 SHIFT=8.1;");
}

TEST(TableModel, SetVarThatIsRefusedSaysSoAndChangesNothing) {
  const std::string number = "\tPlease use number 1-5 as index for varible 'NOTE' with format '%-4s'\n";
  struct Case {
    int index;
    const char* name;
    const char* format;
    std::string message;
  };
  // The format is checked first, then the name, then the index.
  for (const Case& c :
       std::initializer_list<Case>{{0, "NOTE", "%-4s", number},
                                   {6, "NOTE", "%-4s", number},
                                   {-1, "NOTE", "%-4s", number},
                                   {1, "RESID", "%5.1e", "\tBad format syntax '%5.1e'\n"},
                                   {7, "A B", "%x", "\tBad format syntax '%x'\n"},
                                   {7, "A B", "%d", "\tInvalid varible name 'A B' (with space)\n"}}) {
    GDB table = shiftColumns();
    const std::string before = stateOf(table);
    EXPECT_EQ(outputOf([&] { table.setVAR(c.index, c.name, c.format); }).err, c.message);
    EXPECT_EQ(stateOf(table), before);
  }
}

TEST(TableModel, AddVarChecksFormatAndName) {
  GDB table = shiftColumns();
  const std::string before = stateOf(table);
  const Output output = outputOf([&] {
    table.addVAR("NOTE", "%ld");
    table.addVAR("MY NOTE", "%s");
  });
  EXPECT_EQ(output.err, "\tBad format syntax '%ld'\n\tInvalid varible name 'MY NOTE' (with space)\n");
  EXPECT_EQ(stateOf(table), before);
}

// --- Data pairs, remarks, residues --------------------------------------------------------------

TEST(TableModel, GetDataTakesTheTextAfterTheFirstBlank) {
  GDB table;
  table.setData("SEQUENCE", "MKT");
  table.setData("SEQUENCE", "AYI");
  table.setData("NOTE", "two  words ");
  table.setData("EMPTY", "");
  table.dataLines.push_back("BARE");
  EXPECT_EQ(table.dataLines,
            (std::vector<std::string>{"SEQUENCE MKT", "SEQUENCE AYI", "NOTE two  words ", "EMPTY ", "BARE"}));
  EXPECT_EQ(table.getData("SEQUENCE"), "MKTAYI") << "two pairs are joined";
  EXPECT_EQ(table.getData("NOTE"), "two  words ");
  for (const char* key : {"note", "NOT", "EMPTY"}) EXPECT_EQ(table.getData(key), "") << key;
  EXPECT_EQ(table.getData("BARE"), "BARE");
}

TEST(TableModel, AddRemarkKeepsTheOrder) {
  GDB table;
  for (const char* remark : {"first", "", "third"}) table.addRemark(remark);
  EXPECT_EQ(table.remarks, (std::vector<std::string>{"first", "", "third"}));
}

TEST(TableModel, ResidNameOutsideTheSequenceIsEmptyAndIsInserted) {
  GDB table;
  table.residNames[5] = "P";
  EXPECT_EQ(table.getResidName(5), "P");
  EXPECT_EQ(table.getResidName(6), "");
  EXPECT_EQ(table.residNames.size(), 2U);
}

// Cells and columns of CSV files.
#include "util/delimited_text.h"

#include <gtest/gtest.h>

#include "formats/csv_columns.h"

namespace {

using Cells = std::vector<std::string>;
using zorvela::Separator;
using zorvela::splitCells;

TEST(DelimitedText, TellsTheSeparator) {
  EXPECT_EQ(zorvela::separatorOf("a,b;c\td"), Separator::tab);
  EXPECT_EQ(zorvela::separatorOf("a,b;c"), Separator::semicolon);
  EXPECT_EQ(zorvela::separatorOf("a,b c"), Separator::comma);
  EXPECT_EQ(zorvela::separatorOf("a b c"), Separator::blank);
}

TEST(DelimitedText, CutsCells) {
  EXPECT_EQ(splitCells("a, b ,,d,", Separator::comma), (Cells{"a", "b", "", "d", ""}));
  EXPECT_EQ(splitCells("\ta\t\tb", Separator::tab), (Cells{"", "a", "", "b"}));
  EXPECT_EQ(splitCells("  a  \t b c  ", Separator::blank), (Cells{"a", "b", "c"}));
  EXPECT_EQ(splitCells("a;8,25", Separator::semicolon), (Cells{"a", "8,25"}));
  EXPECT_EQ(splitCells("", Separator::comma), (Cells{""}));
  EXPECT_EQ(splitCells("", Separator::blank), Cells{});
}

TEST(DelimitedText, CellsMayBeQuoted) {
  EXPECT_EQ(splitCells("\"a,b\",\"c \"\"d\"\"\", \" e \"", Separator::comma), (Cells{"a,b", "c \"d\"", "e"}));
  EXPECT_EQ(splitCells("\"a b\" c", Separator::blank), (Cells{"a b", "c"}));
  EXPECT_EQ(splitCells("5\",b", Separator::comma), (Cells{"5\"", "b"}));  // inches, not quotes
  EXPECT_EQ(splitCells("\"a,b", Separator::comma), std::nullopt);
}

TEST(CsvColumns, UsualNames) {
  const char* headers[][4] = {{"resid", "resname", "atom", "shift"},
                              {"Res. ID", "Residue Name", "Atom Name", "Chemical Shift (ppm)"},
                              {"seq", "aa", "name", "cs"},
                              {"number", "res_type", "atom_name", "value"},
                              {"Comp_index_ID", "Comp_ID", "Atom_ID", "Val"},
                              {"_Atom_chem_shift.Seq_ID", "_Atom_chem_shift.Comp_ID",
                               "_Atom_chem_shift.Atom_ID", "_Atom_chem_shift.Val"},
                              {"resnum", "type", "atom", "ppm"}};
  for (const auto& header : headers) {
    const auto columns = zorvela::readColumns({header[0], header[1], header[2], header[3]});
    EXPECT_TRUE(columns.areEnough()) << header[0];
    EXPECT_EQ(columns.number, 0U) << header[0];
    EXPECT_EQ(columns.name, 1U) << header[0];
    EXPECT_EQ(columns.atom, 2U) << header[0];
    EXPECT_EQ(columns.shift, 3U) << header[0];
  }
}

TEST(CsvColumns, OneColumnForNameAndNumber) {
  const auto columns = zorvela::readColumns({"residue", "atom", "shift"});
  EXPECT_TRUE(columns.areEnough());
  EXPECT_EQ(columns.residues, std::vector<std::size_t>{0});
  const auto weak = zorvela::readColumns({"residue", "type", "atom", "shift"});
  EXPECT_EQ(weak.residues, (std::vector<std::size_t>{0, 1}));
  const auto two = zorvela::readColumns({"res", "residue", "atom", "shift"});
  EXPECT_EQ(two.residues, (std::vector<std::size_t>{1, 0}));
}

TEST(CsvColumns, OneColumnPerAtom) {
  const auto columns = zorvela::readColumns({"resid", "aa", "N", "HN", "CA", "comment"});
  EXPECT_TRUE(columns.areEnough());
  ASSERT_EQ(columns.atoms.size(), 3U);
  EXPECT_EQ(columns.atoms[0], (std::pair<std::size_t, std::string>{2, "N"}));
  EXPECT_EQ(columns.atoms[2], (std::pair<std::size_t, std::string>{4, "CA"}));
}

TEST(CsvColumns, TellWhatIsMissing) {
  EXPECT_EQ(zorvela::readColumns({"resid", "resname", "shift"}).missing(), "atom name (atom)");
  EXPECT_EQ(zorvela::readColumns({"atom", "shift"}).missing(),
            "residue number (resid), residue name (resname)");
  EXPECT_FALSE(zorvela::readColumns({"a", "b"}).areEnough());
}

}  // namespace

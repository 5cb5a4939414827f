// A protein as a shift table.
#include "zorvela/protein.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "GDB.h"

namespace {

zorvela::Protein twoResidues() {
  zorvela::Protein protein;
  protein.sequence = "GP";
  protein.numbers = {"-1", "1"};
  protein.remarks = {"from\ta.str"};
  return protein;
}

TEST(Protein, RowsOfTheTable) {
  zorvela::Protein protein = twoResidues();
  protein.shifts = {{1, "HA2", "3.95"}, {2, "CG", "27.4123"}};
  GDB table = zorvela::toTable(protein);
  EXPECT_EQ(table.remarks, std::vector<std::string>{"from a.str"});
  EXPECT_EQ(table.residNames, (std::map<int, std::string>{{1, "G"}, {2, "P"}}));
  ASSERT_EQ(table.entries.size(), 2U);
  EXPECT_EQ(GDB::cell(table.entries[2], "RESID"), "2");
  EXPECT_EQ(GDB::cell(table.entries[2], "RESNAME"), "P");
  EXPECT_EQ(GDB::cell(table.entries[2], "ATOMNAME"), "CG");
  EXPECT_EQ(GDB::cell(table.entries[2], "SHIFT"), "27.4123");
}

TEST(Protein, WithoutShiftsThereAreNoRows) {
  EXPECT_TRUE(zorvela::toTable(twoResidues()).entries.empty());
}

TEST(Protein, AShiftOfNoResidueIsAnError) {
  for (const int resid : {0, -1, 3}) {
    zorvela::Protein protein = twoResidues();
    protein.shifts = {{resid, "CA", "55.1"}};
    EXPECT_THROW(zorvela::toTable(protein), std::out_of_range) << resid;
  }
}

}  // namespace

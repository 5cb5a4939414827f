// A protein as a shift table.
#include "zorvela/protein.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "made_shift.h"

namespace {

zorvela::Protein twoResidues() {
  zorvela::Protein protein;
  protein.sequence = "GP";
  protein.numbers = {"-1", "1"};
  protein.remarks = {"from\ta.str"};
  return protein;
}

std::string tableOf(const zorvela::Protein& protein) {
  std::ostringstream out;
  writeShiftTable(protein, out);
  return out.str();
}

TEST(Protein, IsWrittenAsATable) {
  zorvela::Protein protein = twoResidues();
  protein.shifts = {made::shift(1, "HA2", "3.95"), made::shift(2, "CG", "27.4126")};
  EXPECT_EQ(tableOf(protein),
            "REMARK from a.str\n\nDATA SEQUENCE GP\n\nVARS   RESID RESNAME ATOMNAME SHIFT \n"
            "FORMAT %4d %1s %4s  %8.3f\n\n   1 G  HA2     3.950\n   2 P   CG    27.413\n");
}

TEST(Protein, ASequenceThatFillsItsLinesEndsInAnEmptyOne) {
  zorvela::Protein protein;
  protein.sequence = std::string(55, 'A');
  EXPECT_NE(tableOf(protein).find("\nDATA SEQUENCE " + protein.sequence + "\nDATA SEQUENCE \n\nVARS"),
            std::string::npos);
}

TEST(Protein, AShiftOfNoResidueIsAnError) {
  for (const int position : {0, -1, 3}) {
    zorvela::Protein protein = twoResidues();
    protein.shifts = {made::shift(position, "CA", "55.1")};
    EXPECT_THROW(tableOf(protein), std::out_of_range) << position;
  }
}

TEST(Shift, IsShownAsTheFileHasIt) {
  for (const char* text : {"8.25", "-0.30", "120", "3.954321"})
    EXPECT_EQ(shiftText(made::shift(1, "CA", text)), text);
}

}  // namespace

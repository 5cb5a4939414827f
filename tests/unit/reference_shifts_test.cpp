// Random-coil shifts and their corrections, looked up in small tables.
#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::addRow;
using support::randomCoil;
using support::tableOf;

}  // namespace

class ReferenceLookups : public testing::Test {
 protected:
  ReferenceLookups() {
    zorvela.rcTable = randomCoil();
    addRow(zorvela.adjTable, {{"RESNAME", "A"}, {"CA", "0.25"}});
    addRow(zorvela.prevTable, {{"RESNAME", "A"}, {"CA", "0.5"}});
    addRow(zorvela.nextTable, {{"RESNAME", "A"}, {"CA", "-1.5"}});
  }

  ZORVELA zorvela;
};

TEST_F(ReferenceLookups, UnknownResidueTypeHasNoRandomCoilShiftAndNoCorrections) {
  EXPECT_EQ(zorvela.getRC("W", "CA"), 9999.0F);
  EXPECT_EQ(zorvela.getRCadj("W", "CA"), 0.0F);
  EXPECT_EQ(zorvela.getPrevRCadj("W", "CA"), 0.0F);
  EXPECT_EQ(zorvela.getNextRCadj("W", "CA"), 0.0F);
}

TEST_F(ReferenceLookups, KnownResidueTypeWithoutTheAtomColumnIsZero) {
  EXPECT_EQ(zorvela.getRC("A", "CG"), 0.0F);
  EXPECT_EQ(zorvela.getRCadj("A", "N"), 0.0F);
  EXPECT_EQ(zorvela.getPrevRCadj("A", "N"), 0.0F);
  EXPECT_EQ(zorvela.getNextRCadj("A", "N"), 0.0F);
}

TEST_F(ReferenceLookups, EmptyResidueNameMatchesTheFirstRowOfATableWithoutNames) {
  zorvela.prevTable = tableOf("VARS CA\nFORMAT %f\n0.75\n0.5\n");
  EXPECT_EQ(zorvela.getPrevRCadj("", "CA"), 0.75F);
  EXPECT_EQ(zorvela.getPrevRCadj("A", "CA"), 0.0F);
}

TEST_F(ReferenceLookups, FirstRowOfATypeWins) {
  addRow(zorvela.adjTable, {{"RESNAME", "A"}, {"CA", "7"}});
  EXPECT_EQ(zorvela.getRCadj("A", "CA"), 0.25F);
}

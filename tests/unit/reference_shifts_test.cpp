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
  std::vector<float> all(const std::string& type, const std::string& atom) {
    return {zorvela.getRC(type, atom), zorvela.getRCadj(type, atom), zorvela.getPrevRCadj(type, atom),
            zorvela.getNextRCadj(type, atom)};
  }

  ZORVELA zorvela;
};

TEST_F(ReferenceLookups, UnknownResidueTypeHasNoRandomCoilShiftAndNoCorrections) {
  EXPECT_EQ(all("A", "CA"), (std::vector<float>{52.5F, 0.25F, 0.5F, -1.5F}));
  EXPECT_EQ(all("W", "CA"), (std::vector<float>{9999, 0, 0, 0}));
  EXPECT_EQ(all("A", "CG"), (std::vector<float>{0, 0, 0, 0})) << "no column of a known type";
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

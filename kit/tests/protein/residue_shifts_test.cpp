// Shifts of some residues.
#include "protein/residue_shifts.h"

#include <gtest/gtest.h>

#include <string>

#include "made_shift.h"

namespace {

std::string namesOf(int first, int last) {
  zorvela::Protein protein;
  protein.shifts = {made::shift(1, "CA", "55"), made::shift(3, "N", "120"), made::shift(3, "CA", "56"),
                    made::shift(4, "CB", "30")};
  std::string names;
  for (const zorvela::Shift& shift : zorvela::shiftsOf(protein, first, last))
    names += std::to_string(shift.position) + std::string(nameOf(shift.atom)) + " ";
  return names;
}

TEST(ResidueShifts, ThoseOfTheFirstToTheLast) {
  EXPECT_EQ(namesOf(3, 3), "3N 3CA ");
  EXPECT_EQ(namesOf(1, 3), "1CA 3N 3CA ");
  EXPECT_EQ(namesOf(0, 9), "1CA 3N 3CA 4CB ");
}

TEST(ResidueShifts, NoneWhereThereAreNone) {
  EXPECT_EQ(namesOf(2, 2), "");
  EXPECT_EQ(namesOf(5, 7), "");
  EXPECT_EQ(namesOf(-1, 0), "");
}

}  // namespace

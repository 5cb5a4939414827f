#include "protein/implausible_shifts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "made_shift.h"

namespace zorvela {
namespace {

TEST(ImplausibleShifts, AreNamedWithTheirRange) {
  Protein protein;
  protein.sequence = "MAX";
  protein.numbers = {"1", "2", "3"};
  protein.shifts = {made::shift(1, "CA", "73.5"), made::shift(1, "CB", "33"), made::shift(2, "CA", "52.5"),
                    made::shift(3, "CB", "9.95")};
  EXPECT_EQ(implausibleShifts(protein), (std::vector<std::string>{"CA of M1 at 73.5 ppm (46.4 to 66.4)",
                                                                  "CB of X3 at 9.95 ppm (10.9 to 79.3)"}));
}

}  // namespace
}  // namespace zorvela

// Proteins by a sequence that the caller gives.
#include <cmath>

#include <gtest/gtest.h>

#include "made_shift.h"
#include "message_of.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"

namespace {

using Texts = std::vector<std::string>;
using zorvela::NamedShift;
using zorvela::Protein;
using zorvela::proteinOfShifts;

TEST(ProteinOfShifts, HasAtomsUnderAllTheirNamesInTheOrderOfATable) {
  const Protein protein =
      proteinOfShifts("MGP", {{13, "CG", 27.1}, {11, "CB", 32.5}, {11, "H", 8.2}, {12, "HA", 3.9}}, 11);
  EXPECT_EQ(made::shiftsOf(protein),
            (Texts{"11 HN 8.200", "11 CB 32.500", "12 HA2 3.900", "12 HA3 3.900", "13 CG 27.100"}));
  EXPECT_EQ(protein.numbers, (Texts{"11", "12", "13"}));
}

TEST(ProteinOfShifts, PassesOverOtherAtomsAndWhatIsMissing) {
  const Protein protein =
      proteinOfShifts("MGP", {{1, "HB2", 2.0}, {2, "CB", 40.0}, {3, "CA", 9999.0}, {1, "CE", 17.0}});
  EXPECT_TRUE(protein.shifts.empty());
  EXPECT_EQ(protein.asides, Texts{"2 shifts of other atoms (side chain and the like) not needed"});
  EXPECT_EQ(protein.notes, Texts{"atoms that this residue type does not have; ignored: 2 CB"});
}

TEST(ProteinOfShifts, HasOxidisedCysteinesByTheirCB) {
  const Protein protein = proteinOfShifts("CPC", {{1, "CB", 41.2}, {3, "CB", 28.0}});
  EXPECT_EQ(protein.sequence, "cPC");
  EXPECT_EQ(protein.notes,
            Texts{"cysteines assumed to be in a disulfide bond (CB above 33 ppm); written as c: "
                  "1 (CB 41.200)"});
}

TEST(ProteinOfShifts, SaysWhatIsWrong) {
  const auto message = [](const std::string& sequence, const NamedShift& shift) {
    return messageOf([&] { proteinOfShifts(sequence, {shift}); });
  };
  EXPECT_EQ(message("MQ", {3, "CA", 55}), "residue 3: is not in the sequence; its residues are 1 to 2");
  EXPECT_EQ(message("MQ", {-2147483647, "CA", 55}).find("residue -2147483647: is not in the sequence"), 0U);
  EXPECT_EQ(message("MQ", {1, "CX", 55}),
            "CX of residue 1: is not an atom of a protein; use names such as N, HN, HA, C, CA, CB and CG");
  EXPECT_EQ(message("MQ", {1, "CA", std::nan("")}),
            "CA of residue 1: has a shift that is not a number; leave out what was not measured");
  EXPECT_EQ(
      message("Mq", {1, "CA", 55}),
      "the sequence: has \"q\" at position 2; use one-letter codes in capitals, and X for other residues");
  EXPECT_EQ(message("", {1, "CA", 55}), "the sequence: is empty; give one-letter codes, as in \"MQIF\"");
  EXPECT_EQ(messageOf([] {
              proteinOfShifts("MQ", {{1, "H", 8.0}, {1, "HN", 8.1}});
            }),
            "HN of residue 1: has two values; keep one of them");
}

}  // namespace

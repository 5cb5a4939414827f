// What is subtracted from shifts, and how it is said.
#include "predict/corrections.h"

#include <gtest/gtest.h>

namespace zorvela {
namespace {

TEST(Corrections, OffsetsGoWithTheirAtom) {
  const Corrections corrections{{{"CA", 2}, {"HA", -0.5}}, 0};
  EXPECT_EQ(corrected(56.25, 'A', Atom::CA, corrections), 54.25);
  EXPECT_EQ(corrected(4.0, 'G', Atom::HA3, corrections), 4.5);
  EXPECT_EQ(corrected(120.1234567, 'A', Atom::N, corrections), 120.1234567);
  EXPECT_EQ(corrected(56.1234567, 'A', Atom::CA, corrections), 54.123457);
}

TEST(Corrections, IsotopeShiftsAreInProportionToTheDeuterons) {
  EXPECT_DOUBLE_EQ(corrected(62.31, 'P', Atom::CA, {{}, 1}), 63.0);
  EXPECT_DOUBLE_EQ(corrected(30.89, 'P', Atom::CB, {{}, 1}), 32.0);
  EXPECT_DOUBLE_EQ(corrected(26.415, 'P', Atom::CG, {{}, 0.5}), 27.0);
  EXPECT_EQ(corrected(4.3215678, 'P', Atom::HA, {{}, 1}), 4.3215678);
  EXPECT_EQ(corrected(62.3156789, 'P', Atom::CA, {{}, 0}), 62.3156789);
  EXPECT_DOUBLE_EQ(corrected(64.31, 'P', Atom::CA, {{{"CA", 2}}, 1}), 63.0) << "beside an offset";
}

TEST(Corrections, AreSaidInOneLine) {
  const Corrections both{{{"CA", 2.031}, {"CB", 2.031}, {"CG", 2.031}, {"HA", -0.312}}, 0};
  EXPECT_EQ(correctionText(both),
            "13C is 2.03 ppm too high, HA is 0.31 ppm too low; corrected before predicting (--as-referenced "
            "keeps it)");
  EXPECT_EQ(correctionRemark(both),
            "Corrected: 2.03 ppm subtracted from CA, CB and CG of proline, 0.31 ppm added to HA");
  EXPECT_EQ(correctionText({{}, 1}),
            "carbon is deuterated (100 %), which lowers it; corrected before predicting (--as-referenced "
            "keeps it)");
  EXPECT_EQ(correctionText({{}, 1, true}),
            "carbon is deuterated (100 %), which lowers it; corrected before predicting")
      << "--as-referenced keeps no isotope shift that the user names";
  EXPECT_EQ(correctionRemark({{}, 0.85}),
            "Corrected: isotope shifts of deuterium (85 %) subtracted from CA, CB and CG of proline");
}

}  // namespace
}  // namespace zorvela

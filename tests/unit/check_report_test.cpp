// The straight-line fit, and the report on outliers and referencing.
#include <cmath>

#include "support.h"
// The run object comes after the files and variables of its tests.
#include "ZORVELA.h"

namespace {

using support::addRow;
using support::Output;
using support::outputOf;
using support::tableOf;

using Floats = std::vector<float>;

const std::string kOutlierHeading = "\nChemical shift outlier checking...\n";
const std::string kReferencingHeading = "\nChemical shift referencing checking...\n";

std::string offsetLine(const std::string& atom, const std::string& offset, const std::string& error,
                       const std::string& size, bool recommended) {
  return "  Estimated " + atom + " shift referencing offset " + offset + " ppm (fitting error: " + error +
         ", size: " + size + ")" + (recommended ? " A referencing correction is recommended!" : "") + "\n";
}

}  // namespace

// --- Straight-line fit --------------------------------------------------------------------------

class StraightLine : public testing::Test {
 protected:
  // Values that stay where nothing is fitted.
  bool fit(const Floats& x, const Floats& y) {
    return zorvela.LinearLeastSquareFitting(x, y, slope, intercept, error);
  }

  ZORVELA zorvela;
  float slope = -7.0F;
  float intercept = -8.0F;
  float error = -9.0F;
};

TEST_F(StraightLine, FirstPairCountsInTheMeansOnly) {
  ASSERT_TRUE(fit({0.0F, 1.0F, 2.0F, 3.0F}, {1.0F, 3.0F, 5.0F, 7.0F}));
  // (34/3 x 4 - 1.5 x 16) / (14/3 x 4 - 1.5 x 6) = (64/3) / (29/3); 4 - 64/29 x 1.5 = 20/29
  EXPECT_FLOAT_EQ(slope, 64.0F / 29.0F);
  EXPECT_NEAR(intercept, 20.0 / 29.0, 1e-6);
  // Residuals 3, 5 and 7 less 84/29, 148/29 and 212/29: 3/29, -3/29 and -9/29.
  // sqrt((9 + 9 + 81) / 841 / 2) / sqrt(4)
  EXPECT_NEAR(error, std::sqrt(99.0 / 841.0 / 2.0) / 2.0, 1e-6);
}

TEST_F(StraightLine, VectorsOfDifferentLengthsAreNotFittedAndChangeNothing) {
  EXPECT_FALSE(fit({0.0F, 1.0F, 2.0F}, {1.0F, 3.0F, 5.0F, 7.0F}));
  EXPECT_FALSE(fit({1.0F}, {}));
  EXPECT_EQ(slope, -7.0F);
  EXPECT_EQ(intercept, -8.0F);
  EXPECT_EQ(error, -9.0F);
}

TEST_F(StraightLine, FewPairsOrEqualXDivideByZero) {
  ASSERT_TRUE(fit({1.0F, 2.0F}, {3.0F, 5.0F}));
  // (10 x 2 - 1.5 x 8) / (4 x 2 - 1.5 x 3) = 8 / 3.5; 4 - 1.5 x 16/7 = 4/7
  EXPECT_FLOAT_EQ(slope, 16.0F / 7.0F);
  EXPECT_NEAR(intercept, 4.0 / 7.0, 1e-6);
  EXPECT_TRUE(std::isinf(error)) << "a residual that is not 0, over 0";
  // (1 x 2 - 0 x 0) / (1 x 2 - 0 x 0) = 1; 0 - 1 x 0 = 0; residual 1 - 1 = 0; 0 / 0
  ASSERT_TRUE(fit({-1.0F, 1.0F}, {-1.0F, 1.0F}));
  EXPECT_EQ(slope, 1.0F);
  EXPECT_EQ(intercept, 0.0F);
  EXPECT_TRUE(std::isnan(error));
  ASSERT_TRUE(fit({2.0F}, {3.0F}));
  EXPECT_EQ(slope, 1.5F);
  EXPECT_EQ(intercept, 0.0F);
  EXPECT_TRUE(error == 0.0F && std::signbit(error));
  ASSERT_TRUE(fit({}, {}));
  EXPECT_TRUE(std::isnan(slope) && std::isnan(intercept) && std::isnan(error));
  // The pairs after the first: xy 2 and 3, xx 1 and 1. (2.5 x 3 - 1 x 6) / (3 - 3)
  ASSERT_TRUE(fit({1.0F, 1.0F, 1.0F}, {1.0F, 2.0F, 3.0F}));
  EXPECT_TRUE(std::isinf(slope) && std::isinf(intercept) && std::isnan(error));
}

// --- Report -------------------------------------------------------------------------------------

class CheckReport : public testing::Test {
 protected:
  CheckReport() {
    std::string columns;
    std::string formats;
    std::string cells;
    for (const char* atom : {"N", "HA", "C", "CA", "CB", "HN"}) {
      columns += std::string(" ") + atom + "_MIN " + atom + "_MAX";
      formats += " %f %f";
      cells += std::string(atom) == "HA" ? " -0.3 0.3" : std::string(atom) == "CA" ? " -3 3" : " -50 50";
    }
    zorvela.limitTable = tableOf("VARS RESNAME" + columns + "\nFORMAT %s" + formats + "\nK" + cells + "\n");
    for (int i = 0; i < 30; ++i) zorvela.resNames[i] = "K";
  }

  void add(const std::string& resid, const std::string& atom, const std::string& shift) {
    addRow(zorvela.resTable, {{"RESID", resid}, {"RESNAME", "K"}, {"ATOMNAME", atom}, {"SHIFT", shift}});
  }
  void addResidue(const std::string& resid, const std::string& ca, const std::string& cb,
                  const std::string& ha, const std::string& c) {
    add(resid, "CA", ca);
    add(resid, "CB", cb);
    add(resid, "HA", ha);
    add(resid, "C", c);
  }
  std::string report() {
    const Output output = outputOf([&] { zorvela.checkCS(); });
    EXPECT_EQ(output.err, "");
    return output.out;
  }
  // The text between the two headings.
  std::string outliersOf(const std::string& atom, const std::string& shift) {
    zorvela.resTable = GDB();
    add("12", atom, shift);
    const std::string text = report();
    EXPECT_EQ(text.substr(0, kOutlierHeading.size()), kOutlierHeading);
    const std::size_t end = text.find(kReferencingHeading);
    return text.substr(kOutlierHeading.size(), end - kOutlierHeading.size());
  }
  // The text after the second heading.
  std::string offsets() {
    const std::string text = report();
    return text.substr(text.find(kReferencingHeading) + kReferencingHeading.size());
  }

  ZORVELA zorvela;
};

TEST_F(CheckReport, OutliersAreMarkedFarBeyondTheirLimit) {
  struct Case {
    std::string atom;
    std::string shift;
    std::string line;
  };
  // Beyond twice the limit, HA beyond three times.
  for (const Case& c : std::initializer_list<Case>{
           {"CA", "5", "   12 K  CA Secondary Shift:    5.000    Limit:    3.000\n"},
           {"CA", "6", "   12 K  CA Secondary Shift:    6.000    Limit:    3.000\n"},
           {"CA", "7", "   12 K  CA Secondary Shift:    7.000    Limit:    3.000 !\n"},
           {"CA", "-6", "   12 K  CA Secondary Shift:   -6.000    Limit:   -3.000\n"},
           {"CA", "-6.1", "   12 K  CA Secondary Shift:   -6.100    Limit:   -3.000 !\n"},
           {"HA", "0.8", "   12 K  HA Secondary Shift:    0.800    Limit:    0.300\n"},
           {"HA", "1.0", "   12 K  HA Secondary Shift:    1.000    Limit:    0.300 !\n"},
           {"HA", "-1.0", "   12 K  HA Secondary Shift:   -1.000    Limit:   -0.300 !\n"},
           // There are no limits of CG, which are 0.
           {"CG", "0.001", "   12 K  CG Secondary Shift:    0.001    Limit:    0.000 !\n"},
           {"CG", "0", ""},
           // At its limit, or missing, a shift is not an outlier.
           {"CA", "3", ""},
           {"CA", "-3", ""},
           {"HA", "0.3", ""},
           {"CA", "999", ""},
           {"CA", "9999", ""}})
    EXPECT_EQ(outliersOf(c.atom, c.shift), c.line);
}

TEST_F(CheckReport, MarkIsDecidedInDoublePrecision) {
  // Three times 0.05 in single precision is 0.150000002235 in double. In single precision it would be
  // rounded up to 0.150000006, and a shift of just that would not be above it.
  zorvela.limitTable = tableOf("VARS RESNAME HA_MIN HA_MAX\nFORMAT %s %f %f\nK -0.05 0.05\n");
  EXPECT_EQ(outliersOf("HA", "0.150000006"), "   12 K  HA Secondary Shift:    0.150    Limit:    0.050 !\n");
  EXPECT_EQ(outliersOf("HA", "0.15"), "   12 K  HA Secondary Shift:    0.150    Limit:    0.050 !\n");
  EXPECT_EQ(outliersOf("HA", "0.149999"), "   12 K  HA Secondary Shift:    0.150    Limit:    0.050\n");
}

TEST_F(CheckReport, OffsetsOfFourResiduesFittedInTheOrderOfTheirNumbersAsText) {
  // CA, CB, HA and C of residues 9 to 12, "9" last; the fit leaves out the pair of residue 10. The
  // offsets are those of tests/program/reference.py.
  addResidue("9", "1.0", "2.5", "0.3", "9999");
  addResidue("10", "0.5", "4.0", "0.4", "-1.2");
  addResidue("11", "1.5", "3.4", "0.2", "-0.3");
  addResidue("12", "0.2", "4.5", "9999", "-1.0");
  EXPECT_EQ(offsets(), offsetLine("CA", "  5.894", " 1.124", "  4", true) +
                           offsetLine("CB", "  5.894", " 1.124", "  4", true) +
                           offsetLine("HA", "  0.032", " 0.062", "  3", false) +
                           offsetLine("C'", " -2.242", " 0.739", "  3", true));
}

TEST_F(CheckReport, OffsetsAtTheirBoundsNeedNoCorrection) {
  // d = -2, -1 and -3; CA, HA and C are constant. The mean of d without the first is that of all: the
  // slope is 0 and the offset is the constant. CB = 1 - d: slope -1, offset 1.
  addResidue("1", "1", "3", "0.25", "-1");
  addResidue("2", "1", "2", "0.25", "-1");
  addResidue("3", "1", "4", "0.25", "-1");
  EXPECT_EQ(offsets(), offsetLine("CA", "  1.000", " 0.000", "  3", false) +
                           offsetLine("CB", "  1.000", " 0.000", "  3", false) +
                           offsetLine("HA", "  0.250", " 0.000", "  3", false) +
                           offsetLine("C'", " -1.000", " 0.000", "  3", false));
  zorvela.resTable = GDB();
  addResidue("1", "1.25", "3.25", "-0.3125", "-1.5");
  addResidue("2", "1.25", "2.25", "-0.3125", "-1.5");
  addResidue("3", "1.25", "4.25", "-0.3125", "-1.5");
  EXPECT_EQ(offsets(), offsetLine("CA", "  1.250", " 0.000", "  3", true) +
                           offsetLine("CB", "  1.250", " 0.000", "  3", true) +
                           offsetLine("HA", " -0.312", " 0.000", "  3", true) +
                           offsetLine("C'", " -1.500", " 0.000", "  3", true));
}

TEST_F(CheckReport, AtomWithoutARowCountsAsAShiftOfZero) {
  // Residue 5 has CB alone: CA, HA and C read as 0, d = -2. Slopes 0, -1 / ..., intercepts 0.
  add("5", "CB", "2");
  EXPECT_EQ(offsets(), offsetLine("CA", "  0.000", "-0.000", "  1", false) +
                           offsetLine("CB", "  0.000", "-0.000", "  1", false) +
                           offsetLine("HA", "  0.000", "-0.000", "  1", false) +
                           offsetLine("C'", "  0.000", "-0.000", "  1", false));
}

TEST_F(CheckReport, LaterRowOfAnAtomReplacesTheEarlierOne) {
  add("5", "CA", "1");
  add("5", "CB", "0");
  add("5", "CA", "-3");
  // With CA = 1 the difference would not be below 0.
  EXPECT_EQ(offsets().substr(0, offsets().find('\n') + 1),
            offsetLine("CA", "  0.000", "-0.000", "  1", false));
}

TEST_F(CheckReport, OffsetsOfTheReportAreThoseGivenAsNumbers) {
  addResidue("1", "1.5", "3.5", "9999", "0.5");
  addResidue("2", "1.5", "2.5", "9999", "0.5");
  addResidue("3", "1.5", "4.5", "9999", "0.5");
  const std::vector<FittedOffset> fits = zorvela.referencingOffsets();
  ASSERT_EQ(fits.size(), 4U);
  EXPECT_EQ(fits[0].atom, "CA");
  EXPECT_EQ(fits[0].offset, 1.5F);
  EXPECT_EQ(fits[0].size, 3);
  EXPECT_TRUE(fits[0].recommended);
  EXPECT_EQ(fits[2].atom, "HA");
  EXPECT_EQ(fits[2].size, 0);
  EXPECT_FALSE(fits[2].recommended);
  EXPECT_EQ(fits[3].atom, "C");
  EXPECT_EQ(fits[3].offset, 0.5F);
  EXPECT_FALSE(fits[3].recommended);
}

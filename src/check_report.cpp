// The report on outliers and referencing.
#include <cmath>   // for std::fabs, std::sqrt
#include <cstdio>  // for std::printf, std::puts, std::putchar

#include "ZORVELA.h"
#include "names.h"

namespace {

// Outliers beyond this many times their limit are marked. HA scatters more because of ring currents.
constexpr double kMarkedOutlier = 2.0;
constexpr double kMarkedOutlierHA = 3.0;

// Offsets (ppm) above which a referencing correction is recommended.
constexpr double kOffsetBound = 1.0;
constexpr double kOffsetBoundHA = 0.25;

// Secondary shifts (ppm) of one residue by atom. An atom without an entry reads as 0.
using AtomShifts = std::map<std::string, float>;

float shiftOf(const AtomShifts& shifts, const std::string& atom) {
  const auto found = shifts.find(atom);
  return found == shifts.end() ? 0.0F : found->second;
}

bool isMarkedOutlier(float shift, float limit, const std::string& atom) {
  const double size = std::fabs(shift);
  const double bound = std::fabs(limit);
  return size > kMarkedOutlier * bound && (atom != "HA" || size > kMarkedOutlierHA * bound);
}

// Residues by RESID as text, so that "10" comes before "9": the fit leaves out the first of them.
std::map<std::string, AtomShifts> shiftsByResidue(const GDB& table) {
  std::map<std::string, AtomShifts> residues;
  for (const auto& [number, row] : table.entries)
    residues[GDB::cell(row, kResid)][GDB::cell(row, kAtomName)] = GDB::toFloat(GDB::cell(row, kShift));
  return residues;
}

// CA - CB against the shift of an atom, for the residues that take part in the fit of that atom.
struct FitPoints {
  std::vector<float> x;
  std::vector<float> y;
};

// CA - CB does not depend on referencing, and residues below 0 (strands) lie on a straight line.
FitPoints pointsBelowZero(const std::map<std::string, AtomShifts>& residues, const std::string& atom) {
  FitPoints points;
  for (const auto& [resid, shifts] : residues) {
    const float ca = shiftOf(shifts, "CA");
    const float cb = shiftOf(shifts, "CB");
    if (!(ca < zorvela::kMissingBound && cb < zorvela::kMissingBound)) continue;
    const float d = ca - cb;
    const float shift = shiftOf(shifts, atom);
    if (!(d < 0.0F && shift < zorvela::kMissingBound)) continue;
    points.x.push_back(d);
    points.y.push_back(shift);
  }
  return points;
}

}  // namespace

void ZORVELA::checkCS() {
  std::puts("\nChemical shift outlier checking...");
  for (const auto& [number, row] : resTable.entries) reportOutlier(row);

  std::puts("\nChemical shift referencing checking...");
  for (const FittedOffset& fit : referencingOffsets()) {
    const char* label = fit.atom == "C" ? "C'" : fit.atom.c_str();
    std::printf("  Estimated %s shift referencing offset %7.3f ppm (fitting error: %6.3f, size: %3d)", label,
                static_cast<double>(fit.offset), static_cast<double>(fit.error), fit.size);
    std::puts(fit.recommended ? " A referencing correction is recommended!" : "");
  }
}

void ZORVELA::reportOutlier(const GDB::Row& row) {
  const std::string& atom = GDB::cell(row, kAtomName);
  const float shift = GDB::toFloat(GDB::cell(row, kShift));
  const int resid = GDB::toInt(GDB::cell(row, kResid));
  const float limit = clipSShift(resid, shift, atom);
  if (limit == shift) return;
  std::printf("  %3d %s %3s Secondary Shift: %8.3f    Limit: %8.3f", resid, resNames[resid].c_str(),
              atom.c_str(), static_cast<double>(shift), static_cast<double>(limit));
  if (isMarkedOutlier(shift, limit, atom)) std::printf(" !");
  std::putchar('\n');
}

std::vector<FittedOffset> ZORVELA::referencingOffsets() {
  const std::map<std::string, AtomShifts> residues = shiftsByResidue(resTable);
  std::vector<FittedOffset> offsets;
  for (const char* atom : {"CA", "CB", "HA", "C"}) {
    const FitPoints points = pointsBelowZero(residues, atom);
    FittedOffset fit;
    fit.atom = atom;
    float slope = 0.0F;
    if (!LinearLeastSquareFitting(points.x, points.y, slope, fit.offset, fit.error)) continue;
    fit.size = static_cast<int>(points.y.size());
    fit.recommended = std::fabs(fit.offset) > (fit.atom == "HA" ? kOffsetBoundHA : kOffsetBound);
    offsets.push_back(fit);
  }
  return offsets;
}

bool ZORVELA::LinearLeastSquareFitting(const std::vector<float>& x, const std::vector<float>& y, float& a,
                                       float& b, float& err) {
  if (x.size() != y.size()) return false;
  const float n = static_cast<float>(x.size());
  std::vector<float> xy;
  std::vector<float> xx;
  // The first pair counts in the means of x and y only.
  for (std::size_t i = 1; i < x.size(); ++i) {
    xy.push_back(y[i] * x[i]);
    xx.push_back(x[i] * x[i]);
  }
  const float mx = getAverage(x);
  const float my = getAverage(y);
  a = (getAverage(xy) * n - mx * (my * n)) / (getAverage(xx) * n - mx * (mx * n));
  b = my - a * mx;

  std::vector<float> residuals;
  for (std::size_t i = 1; i < x.size(); ++i) residuals.push_back(y[i] - (x[i] * a + b));
  err = getSTDev(residuals) / std::sqrt(n);
  return true;
}

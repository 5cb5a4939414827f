// Share of right calls by the shifts behind them, from cross-validation with the shipped tables.
#include <algorithm>
#include <array>

#include "report/words.h"
#include "util/number.h"

namespace zorvela {

namespace {

/// The shifts by which prolines were counted.
enum class Known { cbAndCg, cbAlone, noCb, fewShifts };

constexpr int kFewestShifts = 10;

struct MeasuredCall {
  Known known;
  float above;  ///< P_CIS_NORM, up to that of the next row
  int prolines;
  int cis;
};

/// Printed by script/measured-calls.
constexpr std::array<MeasuredCall, 20> kMeasuredCalls = {{
    {Known::cbAndCg, 0.0F, 1128, 0}, {Known::cbAndCg, 0.01F, 50, 0},    {Known::cbAndCg, 0.05F, 19, 2},
    {Known::cbAndCg, 0.5F, 2, 1},    {Known::cbAndCg, 0.8F, 32, 32},    {Known::cbAlone, 0.0F, 421, 1},
    {Known::cbAlone, 0.01F, 157, 4}, {Known::cbAlone, 0.05F, 57, 12},   {Known::cbAlone, 0.5F, 6, 3},
    {Known::cbAlone, 0.8F, 11, 8},   {Known::noCb, 0.0F, 57, 0},        {Known::noCb, 0.01F, 76, 2},
    {Known::noCb, 0.05F, 38, 7},     {Known::noCb, 0.5F, 1, 1},         {Known::noCb, 0.8F, 0, 0},
    {Known::fewShifts, 0.0F, 59, 2}, {Known::fewShifts, 0.01F, 144, 6}, {Known::fewShifts, 0.05F, 81, 17},
    {Known::fewShifts, 0.5F, 1, 1},  {Known::fewShifts, 0.8F, 0, 0},
}};

Known knownOf(const Evidence& evidence) {
  const auto shifts = std::count_if(evidence.shifts.begin(), evidence.shifts.end(),
                                    [](const ShiftContribution& shift) { return shift.secondary; });
  if (shifts < kFewestShifts) return Known::fewShifts;
  if (!evidence.shift(kIndexCB).secondary) return Known::noCb;
  return evidence.shift(kIndexCG).secondary ? Known::cbAndCg : Known::cbAlone;
}

std::string textOf(Known known) {
  static const std::array<const char*, 4> kTexts = {"with CB and CG", "with CB, without CG", "without CB",
                                                    "with fewer than ten shifts"};
  return kTexts.at(static_cast<std::size_t>(known));
}

/// Finds the highest level that a probability reaches; a bound of a call belongs to the call.
const MeasuredCall& measuredCall(Known known, Call call, float p) {
  const MeasuredCall* found = nullptr;
  for (const MeasuredCall& row : kMeasuredCalls) {
    const bool fits = row.above == 0 || p > row.above || (call == Call::cis && row.above == kCisFrom);
    if (row.known == known && fits) found = &row;
  }
  return *found;
}

std::string rangeOf(const MeasuredCall& row, Call call) {
  if (call == Call::undecided) return "";
  if (row.above > kCisFrom) return " and P_CIS_NORM above " + numberText(row.above);
  if (call == Call::cis) return " and P_CIS_NORM from 0.5 to 0.8";
  return row.above > 0 ? " and P_CIS_NORM from 0.01 to 0.05" : " and P_CIS_NORM up to 0.01";
}

std::string shareText(int part, int whole) {
  return std::to_string(part) + " of " + std::to_string(whole) + " ";
}

/// "; 1 of 10 cis prolines without CB was called cis", if less than half of them are.
std::string sensitivityText(Known known) {
  int found = 0;
  int all = 0;
  for (const MeasuredCall& row : kMeasuredCalls) {
    if (row.known != known) continue;
    all += row.cis;
    if (row.above >= kCisFrom) found += row.cis;
  }
  if (2 * found >= all) return "";
  return "; " + shareText(found, all) + "cis prolines " + textOf(known) + (found == 1 ? " was" : " were") +
         " called cis";
}

}  // namespace

std::string howOftenRight(const ProlineResult& proline) {
  if (!proline.evidence || !proline.pCisNorm) return "";
  const Known known = knownOf(*proline.evidence);
  const MeasuredCall& row = measuredCall(known, proline.call, *proline.pCisNorm);
  const std::string sensitivity = proline.call == Call::cis ? "" : sensitivityText(known);
  const std::string group = "prolines " + textOf(known) + rangeOf(row, proline.call);
  if (row.prolines == 0) return "in cross-validation, there were no " + group + sensitivity;
  const bool isTrans = proline.call == Call::trans;
  return "in cross-validation, " + shareText(isTrans ? row.prolines - row.cis : row.cis, row.prolines) +
         (proline.call == Call::undecided ? "undecided " : "") + group +
         (isTrans ? " were trans" : " were cis") + sensitivity;
}

}  // namespace zorvela

// The contributions of one proline: a row for each shift, bars to the left for trans and to the right for
// cis.
#include <algorithm>
#include <cmath>

#include "report/pictures.h"
#include "report/svg.h"
#include "report/words.h"

namespace zorvela {

namespace {

constexpr double kRow = 14;
constexpr double kTop = 30;
constexpr double kBetweenGroups = 5;
constexpr double kBar = 9;       // height
constexpr double kBaseline = 9;  // of the text of a row, from its top
constexpr double kAtomX = 58;
constexpr double kObservedX = 134;  // right end
constexpr double kZeroX = 262;
constexpr double kPerNat = 15.5;
constexpr double kMostNats = 6;  // longer bars end in a tip
constexpr double kTip = 5;
constexpr double kBetween = 4;  // of a bar and its number
/// A gain (bits) that rounds to 0.00 has no number.
constexpr double kNoGain = 0.005;
/// A contribution (nats) that rounds to 0.0 has neither a bar nor a number.
constexpr double kNothing = 0.05;

/// Rows from top to bottom: what every proline starts with, the residue before, the proline, the residue
/// after, the sum.
constexpr int kPriorRow = 0;
constexpr int kBeforeRow = 1;
constexpr int kProlineRow = 8;
constexpr int kAfterRow = 13;
constexpr int kAfterTypeRow = 19;
constexpr int kSumRow = 20;

double topOf(int row) {
  int gaps = 0;
  for (const int first : {kBeforeRow, kProlineRow, kAfterRow, kSumRow})
    if (row >= first) ++gaps;
  return kTop + row * kRow + gaps * kBetweenGroups;
}

const double kHeight = topOf(kSumRow) + kRow + 22;

/// The row of a shift; -1 for N and HN of the proline, which are not used.
int rowOf(int index) {
  if (index < 6) return kBeforeRow + 1 + index;
  if (index == kIndexCG) return kAfterRow - 1;
  if (index >= 12) return kAfterRow + index - 12;
  return index == 6 || index == 11 ? -1 : kProlineRow + index - 7;
}

// --- One row ------------------------------------------------------------------------------------

double endOf(double nats) {
  return kZeroX + std::clamp(nats, -kMostNats, kMostNats) * kPerNat;
}

std::string barShape(double nats, double top, const std::string& cssClass) {
  const double end = endOf(nats);
  if (std::fabs(nats) <= kMostNats) return svgBox(kZeroX, top + 1, end - kZeroX, kBar, cssClass);
  const double tip = nats > 0 ? kTip : -kTip;
  return "<path class=\"" + cssClass + "\" d=\"M" + coordinate(kZeroX) + " " + coordinate(top + 1) + "H" +
         coordinate(end - tip) + "l" + coordinate(tip) + " " + coordinate(kBar / 2) + "l" + coordinate(-tip) +
         " " + coordinate(kBar / 2) + "H" + coordinate(kZeroX) + "z\"/>";
}

std::string valueText(double nats) {
  if (std::isnan(nats)) return "unknown";
  if (std::isinf(nats)) return nats > 0 ? "+∞" : "−∞";
  return signedFigure(nats, 1);
}

/// A bar with its number at its end.
std::string bar(double nats, double top, const std::string& cssClass, const std::string& mark = "") {
  if (std::fabs(nats) < kNothing) return "";
  const bool isLeft = nats < 0;
  const double end = std::isnan(nats) ? kZeroX : endOf(nats);
  const std::string number = svgText(isLeft ? end - kBetween : end + kBetween, top + kBaseline,
                                     valueText(nats) + mark, isLeft ? "class=\"e\"" : "");
  return (std::isnan(nats) ? "" : barShape(nats, top, cssClass)) + number;
}

std::string classOf(double nats) {
  return nats > 0 ? "c" : "t";
}

/// "CA 62.90 ppm (cis 63.0, trans 63.6)"; with the observed one where it was corrected.
std::string titleOf(const ShiftContribution& shift, int index) {
  const std::string atom = atomName(index);
  const auto expected = [&](const ClassShift& of) {
    return figureText(expectedShift(shift, of, index).value_or(0), decimalsOf(atom));
  };
  const auto figure = [&](const std::optional<float>& ppm) {
    return figureText(static_cast<double>(ppm.value_or(0)), decimalsOf(atom) + 1);
  };
  return atom + " " + figure(shift.observed) +
         (shift.corrected ? " ppm, corrected " + figure(shift.corrected) : "") + " ppm (cis " +
         expected(shift.cis) + ", trans " + expected(shift.trans) + ")";
}

std::string measuredRow(const ShiftContribution& shift, int index, double top) {
  std::string row = "<g><title>" + escaped(titleOf(shift, index)) + "</title>";
  if (shift.observed)
    row += svgText(kObservedX, top + kBaseline,
                   figureText(static_cast<double>(*shift.compared()), decimalsOf(atomName(index))) +
                       (shift.corrected ? "°" : ""),
                   "class=\"e\"");
  return row + bar(shift.nats, top, classOf(shift.nats), shift.clipped ? "‡" : "") + "</g>\n";
}

std::string missingRow(const Evidence& evidence, int index, double top) {
  double bits = 0;
  for (const NextShift& next : evidence.next)
    if (next.index == index) bits = next.bits;
  const std::string worth = bits < kNoGain ? ""
                                           : svgText(kZeroX + 4 + kBetween, top + kBaseline,
                                                     figureText(bits, 2) + " bits", "class=\"s\"");
  return svgBox(kZeroX - 4, top + 1, 8, 8, "h") + worth + "\n";
}

std::string shiftRow(const Evidence& evidence, int index) {
  const int row = rowOf(index);
  if (row < 0) return "";
  const ShiftContribution& shift = evidence.shift(index);
  if (shift.secondary) return measuredRow(shift, index, topOf(row));
  if (shift.measurable) return missingRow(evidence, index, topOf(row));
  return svgText(kObservedX, topOf(row) + kBaseline, "–", "class=\"e\"");
}

// --- The frame ----------------------------------------------------------------------------------

std::string rowName(int row, const std::string& name) {
  return svgText(kAtomX, topOf(row) + kBaseline, name);
}

std::string groupName(int row, const std::string& name, const std::string& attributes = "") {
  return svgText(0, topOf(row) + kBaseline, shortened(name, 7), attributes);
}

std::string describe(const ProlineResult& proline) {
  return "P" + proline.number + ", strongest in nats: " + strongestOf(proline);
}

}  // namespace

std::string evidenceDefinitions() {
  std::string frame =
      "<svg class=\"defs\" width=\"0\" height=\"0\" aria-hidden=\"true\"><defs><g id=\"f\">\n";
  const double bottom = topOf(kSumRow) + kRow;
  for (const int nats : {-6, -3, 0, 3, 6}) {
    const double x = endOf(nats);
    frame += svgLine(x, kTop - 3, x, bottom, nats == 0 ? "z" : "g") +
             svgText(x, bottom + 12, figureText(nats, 0), "class=\"m s\"") + "\n";
  }
  frame += svgText(kZeroX - 8, 12, "← for trans", "class=\"e\"") + svgText(kZeroX + 8, 12, "for cis →") +
           svgText(kObservedX, 12, "ppm", "class=\"e s\"") +
           svgText(kObservedX, bottom + 12, "nats", "class=\"e s\"");
  for (int index = 0; index <= kIndexCG; ++index)
    if (rowOf(index) >= 0) frame += rowName(rowOf(index), atomName(index));
  frame += groupName(kPriorRow, "Start") + rowName(kPriorRow, "1 in 20 are cis") +
           rowName(kBeforeRow, "type") + rowName(kAfterTypeRow, "type") +
           groupName(kSumRow, "Sum", "class=\"b\"");
  return frame + "</g></defs></svg>\n";
}

std::string evidencePicture(const ProlineResult& proline) {
  if (!proline.evidence) return "";
  const Evidence& evidence = *proline.evidence;
  std::string picture = openPicture(kHeight, describe(proline)) + "<use href=\"#f\"/>";
  picture += groupName(kBeforeRow, proline.previous + proline.previousNumber) +
             groupName(kProlineRow, "P" + proline.number, "class=\"b\"") +
             groupName(kAfterRow, proline.next + proline.nextNumber) + "\n";
  picture += bar(Evidence::prior(), topOf(kPriorRow), "p") +
             bar(evidence.before.nats, topOf(kBeforeRow), classOf(evidence.before.nats)) + "\n";
  for (int index = 0; index <= kIndexCG; ++index) picture += shiftRow(evidence, index);
  picture += bar(evidence.after.nats, topOf(kAfterTypeRow), classOf(evidence.after.nats)) +
             bar(evidence.logOdds(), topOf(kSumRow), letterOf(proline.call)) + "\n";
  return picture + kClosePicture;
}

}  // namespace zorvela

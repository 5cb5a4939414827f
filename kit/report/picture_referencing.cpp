// The referencing offsets as points with error bars, each in units of its bound, so that carbon and proton
// share an axis.
#include <algorithm>
#include <cmath>

#include "predict/referencing.h"
#include "report/fields.h"
#include "report/pictures.h"
#include "report/svg.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr double kZeroX = 190;
constexpr double kPerBound = 40;
constexpr double kMostBounds = 2;  // points further out stand at the edge
constexpr double kTop = 24;
constexpr double kRow = 26;
constexpr double kFigureX = 398;  // right end
constexpr double kBottom = kTop + kRow * static_cast<double>(kOffsetAtoms.size());
constexpr double kHeight = kBottom + 34;

double firstRow() {
  return kTop + kRow / 2;
}

double xOf(double offset, double bound) {
  return kZeroX + std::clamp(offset / bound, -kMostBounds, kMostBounds) * kPerBound;
}

std::string nameOf(const std::string& atom) {
  return atom == "C" ? "C′" : atom;
}

std::string figures(const ReferencingOffset& offset) {
  const int decimals = offset.atom == "HA" ? 2 : 1;
  std::string text = signedFigure(static_cast<double>(offset.offset), decimals);
  if (std::isfinite(offset.error)) text += " ± " + figureText(static_cast<double>(offset.error), decimals);
  return text + " ppm";
}

std::string rowOf(const ReferencingOffset* offset, const std::string& atom, double y) {
  if (offset == nullptr || !std::isfinite(offset->offset))
    return "<circle class=\"h\" cx=\"" + coordinate(kZeroX) + "\" cy=\"" + coordinate(y) + "\" r=\"4\"/>" +
           svgText(kFigureX, y + 4, "too few residues", "class=\"e\"") + "\n";
  const double bound = correctionBound(atom);
  const auto value = static_cast<double>(offset->offset);
  std::string row;
  if (std::isfinite(offset->error)) {
    const auto error = static_cast<double>(offset->error);
    row += svgLine(xOf(value - error, bound), y, xOf(value + error, bound), y, "o");
  }
  const std::string cssClass = callsForCorrection(*offset) ? "v" : "k";
  row += "<circle class=\"" + cssClass + "\" cx=\"" + coordinate(xOf(value, bound)) + "\" cy=\"" +
         coordinate(y) + "\" r=\"4.5\"/>";
  return row + svgText(kFigureX, y + 4, figures(*offset), "class=\"e\"") + "\n";
}

std::string describe(const ProteinResult& protein) {
  std::string text = "Referencing offsets:";
  for (const ReferencingOffset& offset : protein.offsets)
    text += " " + nameOf(offset.atom) + " " +
            (std::isfinite(offset.offset) ? figures(offset) : "from too few residues") + ";";
  text.back() = '.';
  return text;
}

}  // namespace

std::string referencingTitle(const ProteinResult& protein) {
  std::vector<std::string> corrected, certain, uncertain, unknown, right;
  for (const ReferencingOffset& offset : protein.offsets) {
    if (offset.atom == "CB") continue;  // on the axis of CA
    const std::string name = offset.atom == "CA" ? "13C" : nameOf(offset.atom);
    const auto value = static_cast<double>(offset.offset);
    const std::string size = name + " " + figureText(std::fabs(value), offset.atom == "HA" ? 2 : 1) +
                             " ppm too " + (value > 0 ? "high" : "low");
    if (!std::isfinite(value))
      unknown.push_back(name);
    else if (callsForCorrection(offset))
      (offset.correctedBy ? corrected : certain).push_back(size);
    else if (isUncertain(offset))
      uncertain.push_back(size);
    else if (2 * static_cast<double>(offset.error) > correctionBound(offset.atom))
      unknown.push_back(name);  // an offset that matters would not be seen
    else
      right.push_back(name);
  }
  if (right.size() == protein.offsets.size() - 1) return "The referencing looks right";
  std::string title;
  const auto add = [&title](const std::string& what, const std::vector<std::string>& atoms) {
    if (!atoms.empty()) title += (title.empty() ? "" : ". ") + what + ": " + enumerated(atoms);
  };
  add("Corrected", corrected);
  add("Check the referencing", certain);
  add("Perhaps, but not certain", uncertain);
  add("Not known", unknown);
  add("Looks right", right);
  return title;
}

std::string referencingDefinitions() {
  std::string frame =
      "<svg class=\"defs\" width=\"0\" height=\"0\" aria-hidden=\"true\"><defs><g id=\"o\">\n";
  for (const double bounds : {-1.0, 0.0, 1.0})
    frame += svgLine(kZeroX + bounds * kPerBound, kTop - 8, kZeroX + bounds * kPerBound, kBottom,
                     bounds == 0 ? "z" : "d");
  frame += svgText(kZeroX - kPerBound - 8, 12, "too low", "class=\"e\"") +
           svgText(kZeroX + kPerBound + 8, 12, "too high");
  double y = firstRow();
  for (const std::string& atom : kOffsetAtoms) {
    frame += svgText(0, y + 4, nameOf(atom), "class=\"b\"") +
             svgText(28, y + 4, "± " + figureText(correctionBound(atom), 2) + " ppm", "class=\"s\"");
    y += kRow;
  }
  for (const double bounds : {-1.0, 0.0, 1.0})
    frame += svgText(kZeroX + bounds * kPerBound, kBottom + 13, signedFigure(bounds, 0), "class=\"m s\"");
  return frame + svgText(kZeroX, kBottom + 28, "offset / bound", "class=\"m\"") + "</g></defs></svg>\n";
}

std::string referencingPicture(const ProteinResult& protein) {
  std::string picture = openPicture(kHeight, describe(protein)) + "<use href=\"#o\"/>\n";
  double y = firstRow();
  for (const std::string& atom : kOffsetAtoms) {
    picture += rowOf(offsetOf(protein, atom), atom, y);
    y += kRow;
  }
  return picture + kClosePicture;
}

}  // namespace zorvela

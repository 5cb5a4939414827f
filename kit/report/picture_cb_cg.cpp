// CB against CG of the prolines: means and one and two deviations of both classes, the lines between which
// CB - CG is unclear, and the chain's prolines as labelled points.
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>

#include "predict/cb_minus_cg.h"
#include "report/html_parts.h"
#include "report/html_pieces.h"
#include "report/walk.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr double kLeft = 36;
constexpr double kRight = 282;
constexpr double kTop = 10;
constexpr double kBottom = 240;
constexpr double kHeight = 276;
constexpr double kDashTop = kBottom - 12;   // of a proline without CG
constexpr double kDashMark = kDashTop - 6;  // of its verdict
constexpr double kDeviationsShown = 2.4;
constexpr double kTextHeight = 12;
constexpr double kFromPoint = 2;  // between a label and its point
constexpr std::size_t kLongestNumber = 6;
constexpr double kDegrees = 57.29577951308232;  // in a radian
constexpr double kLineTextAt = 0.06;            // of the line
constexpr int kMostSteps = 9;                   // of an axis

/// Mean and deviation of a class (ppm).
struct Spread {
  double mean, deviation;

  double at(double deviations) const { return mean + deviations * deviation; }
};

/// The shifts of one atom, from whole number to whole number (ppm), between two edges of the picture.
struct Axis {
  Spread cis, trans;
  double start, end;
  double from, to;

  Axis(const ClassStatistics& classes, int index, float reference, double startEdge, double endEdge)
      : cis(spreadOf(classes.cis, index, reference)),
        trans(spreadOf(classes.trans, index, reference)),
        start(startEdge),
        end(endEdge),
        from(std::floor(std::min(cis.at(-kDeviationsShown), trans.at(-kDeviationsShown)))),
        to(std::ceil(std::max(cis.at(kDeviationsShown), trans.at(kDeviationsShown)))) {}

  double at(double shift) const { return start + (shift - from) / (to - from) * (end - start); }
  /// Whole ppm, few enough steps to be read.
  double step() const { return std::max(1.0, std::ceil((to - from) / kMostSteps)); }

 private:
  static Spread spreadOf(const std::array<ClassShift, kShifts>& shifts, int index, float reference) {
    const ClassShift& shift = shifts[static_cast<std::size_t>(index)];
    return {static_cast<double>(reference) + static_cast<double>(shift.mean),
            static_cast<double>(shift.deviation)};
  }
};

/// The part that all pictures with the same tables share.
struct Frame {
  Axis cb, cg;

  explicit Frame(const ClassStatistics& classes)
      : cb(classes, kIndexCB, classes.prolineCB, kLeft, kRight), cg(classes, kIndexCG, 0, kBottom, kTop) {}
};

// --- Behind every chain -------------------------------------------------------------------------

std::string ellipses(const Frame& frame, Spread Axis::*of, const std::string& cssClass) {
  const Spread& cb = frame.cb.*of;
  const Spread& cg = frame.cg.*of;
  const double x = frame.cb.at(cb.mean);
  const double y = frame.cg.at(cg.mean);
  std::string shapes;
  for (const int deviations : {2, 1})
    shapes += "<ellipse class=\"" + cssClass + "\" cx=\"" + coordinate(x) + "\" cy=\"" + coordinate(y) +
              "\" rx=\"" + coordinate(frame.cb.at(cb.at(deviations)) - x) + "\" ry=\"" +
              coordinate(frame.cg.at(cg.at(-deviations)) - y) + "\"/>";
  return shapes + "\n";
}

std::string axes(const Frame& frame) {
  std::string text =
      svgLine(kLeft, kBottom, kRight, kBottom, "z") + svgLine(kLeft, kTop, kLeft, kBottom, "z");
  for (double cb = frame.cb.from; cb <= frame.cb.to; cb += frame.cb.step())
    text += svgText(frame.cb.at(cb), kBottom + 15, figureText(cb, 0), "m s");
  for (double cg = frame.cg.from; cg <= frame.cg.to; cg += frame.cg.step())
    text += svgText(kLeft - 6, frame.cg.at(cg) + 4, figureText(cg, 0), "e s");
  return text + svgText((kLeft + kRight) / 2, kBottom + 33, "CB (ppm)", "m") +
         svgText(0, 0, "CG (ppm)", "m", turned(12, (kTop + kBottom) / 2, -90)) + "\n";
}

struct Box {
  double x, y, width, height;

  bool touches(const Box& other) const {
    return x < other.x + other.width && other.x < x + width && y < other.y + other.height &&
           other.y < y + height;
  }
  bool isInside() const {
    return x >= kLeft + 2 && x + width <= kRight && y >= kTop && y + height <= kBottom - 2;
  }
};

/// The line of one CB - CG (ppm) within the picture, with its text. It goes from the lower left to the upper
/// right.
struct DifferenceLine {
  double x, y, width, height, angle;
  std::string text;
  double textX, textY;

  DifferenceLine(double ppm, const Frame& frame) {
    const double from = std::max(frame.cb.from, frame.cg.from + ppm);
    const double to = std::min(frame.cb.to, frame.cg.to + ppm);
    x = frame.cb.at(from);
    y = frame.cg.at(from - ppm);
    width = frame.cb.at(to) - x;
    height = y - frame.cg.at(to - ppm);
    angle = std::atan2(height, width);
    text = (ppm == kTransCbMinusCgUpTo ? "CB − CG = " : "") + figureText(ppm, 1) + " ppm";
    textX = x + kLineTextAt * width;
    textY = y - kLineTextAt * height;
  }
  Box textBox() const {
    const double length = labelWidth(text) * 0.8;  // its signs are counted in bytes
    const double textHeight = length * std::sin(angle) + kTextHeight;
    return {textX, textY - textHeight, length * std::cos(angle), textHeight};
  }
};

/// Between these two lines, CB - CG is unclear.
std::array<DifferenceLine, 2> differenceLines(const Frame& frame) {
  return {DifferenceLine(kTransCbMinusCgUpTo, frame), DifferenceLine(kCisCbMinusCgFrom, frame)};
}

std::string drawn(const DifferenceLine& line) {
  if (line.width <= 0) return "";
  return svgLine(line.x, line.y, line.x + line.width, line.y - line.height, "d") +
         svgText(0, -4, line.text, "s", turned(line.textX, line.textY, -line.angle * kDegrees)) + "\n";
}

// --- Points and labels --------------------------------------------------------------------------

struct Point {
  const ProlineResult* proline;
  bool hasCg = true;  ///< without, it is a dash on the axis of CB
  double x = 0;
  double y = 0;
  double half = 6;
  std::string title = {};
  std::string arrow = {};  ///< points to its place, if that is off the axes
};

/// Returns a shift as the ellipses have it: without a referencing offset that was subtracted.
std::optional<double> shiftOf(const ProlineResult& proline, int index) {
  if (!proline.evidence) return std::nullopt;
  const auto& shift = proline.evidence->shift(index).compared();
  if (!shift) return std::nullopt;
  return static_cast<double>(*shift);
}

std::string arrowTo(double x, double y) {
  if (x < kLeft) return "←";
  if (x > kRight) return "→";
  if (y < kTop) return "↑";
  return y > kBottom ? "↓" : "";
}

Point pointOf(const ProlineResult& proline, double cb, const std::optional<double>& cg, const Frame& frame) {
  const bool isMarked = is(proline, Verdict::agree) || is(proline, Verdict::disagree);
  const double x = frame.cb.at(cb);
  Point point{&proline, cg.has_value()};
  point.title = "P" + proline.number + " (CB " + figureText(cb, 2);
  if (cg) {
    const double y = frame.cg.at(*cg);
    point.x = std::clamp(x, kLeft + 7, kRight - 7);
    point.y = std::clamp(y, kTop + 7, kBottom - 7);
    if (isMarked) point.half = kVerdictSize + 2;
    point.title += ", CG " + figureText(*cg, 2);
    point.arrow = arrowTo(x, y);
  } else {
    point.x = std::clamp(x, kLeft + 2, kRight - 2);
    point.y = isMarked ? kDashMark : kDashTop;
    point.arrow = arrowTo(x, kTop);
  }
  point.title += " ppm)";
  return point;
}

/// The prolines with CB, those without CG last.
std::vector<Point> pointsOf(const ProteinResult& protein, const Frame& frame) {
  std::vector<Point> points;
  for (const ProlineResult& proline : protein.prolines)
    if (const auto cb = shiftOf(proline, kIndexCB))
      points.push_back(pointOf(proline, *cb, shiftOf(proline, kIndexCG), frame));
  std::stable_partition(points.begin(), points.end(), [](const Point& point) { return point.hasCg; });
  return points;
}

/// A point off the axes is an arrow, so that nobody reads its shifts from the axes.
std::string markOf(const Point& point) {
  const std::string letter = letterOf(point.proline->call);
  if (!point.arrow.empty()) return svgText(point.x, point.y + 5, point.arrow, "m b " + letter);
  if (point.hasCg) return svgSymbol(point.proline->call, point.x, point.y, point.title);
  return "<path class=\"r" + letter + "\" d=\"M" + coordinate(point.x) + " " + coordinate(kDashTop) + "V" +
         coordinate(kBottom) + "\"><title>" + escaped(point.title) + "</title></path>";
}

/// Places beside a point, the best first.
std::vector<Box> placesBeside(const Point& point, double width) {
  const double distance = point.half + kFromPoint;
  const double right = point.x + distance;
  const double left = point.x - distance - width;
  const double middle = point.x - width / 2;
  const double above = point.y - distance - kTextHeight;
  const double below = point.y + distance;
  const double level = point.y - kTextHeight / 2;
  const auto at = [width](double x, double y) { return Box{x, y, width, kTextHeight}; };
  return {at(right, level),     at(left, level),      at(middle, above),   at(middle, below),
          at(right, above + 4), at(right, below - 4), at(left, above + 4), at(left, below - 4)};
}

std::string drawn(const std::string& label, const Box& place, const std::string& cssClass = "m") {
  return svgText(place.x + place.width / 2, place.y + kTextHeight - 2, label, cssClass);
}

/// Labels that touch nothing. One without a place is left out: the table has it. Prolines whose structure
/// disagrees come first, then cis ones.
std::string labels(std::vector<Point> points, std::vector<Box> taken) {
  for (const Point& point : points)
    taken.push_back({point.x - point.half, point.y - point.half, 2 * point.half, 2 * point.half});
  const auto rank = [](const Point& point) {
    if (is(*point.proline, Verdict::disagree)) return -1;
    return static_cast<int>(point.proline->call != Call::cis) +
           static_cast<int>(point.proline->call == Call::trans);
  };
  std::stable_sort(points.begin(), points.end(),
                   [&](const Point& a, const Point& b) { return rank(a) < rank(b); });
  const auto isFree = [&taken](const Box& box) {
    return box.isInside() &&
           std::none_of(taken.begin(), taken.end(), [&](const Box& other) { return box.touches(other); });
  };
  std::string text;
  for (const Point& point : points) {
    const std::string label = "P" + shortened(point.proline->number, kLongestNumber);
    const std::vector<Box> places = placesBeside(point, labelWidth(label));
    const auto place = std::find_if(places.begin(), places.end(), isFree);
    if (place == places.end()) continue;
    text += drawn(label, *place, point.proline->call == Call::cis ? "m b" : "m");
    taken.push_back(*place);
  }
  return text;
}

/// Place of the name of a class: outside its ellipses, on the side away from the other class.
Box classLabel(const Frame& frame, Spread Axis::*of, bool isUpper, double width) {
  constexpr double kOutside = 1.5;  // deviations, up and to the side
  const double side = isUpper ? -kOutside : kOutside;
  const double x = frame.cb.at((frame.cb.*of).at(side)) - (isUpper ? width : 0);
  const double y = frame.cg.at((frame.cg.*of).at(-side)) - (isUpper ? kTextHeight : 0);
  return {std::clamp(x, kLeft + 4, kRight - width), y, width, kTextHeight};
}

/// Places of the names of cis and trans.
std::array<Box, 2> classLabels(const Frame& frame) {
  const bool isCisUpper = frame.cg.cis.mean > frame.cg.trans.mean;
  return {classLabel(frame, &Axis::cis, isCisUpper, 22), classLabel(frame, &Axis::trans, !isCisUpper, 32)};
}

std::string titleOf(const ProteinResult& protein) {
  std::map<Call, std::vector<std::string>> names;
  for (const ProlineResult& proline : protein.prolines) {
    const auto cb = shiftOf(proline, kIndexCB);
    const auto cg = shiftOf(proline, kIndexCG);
    if (cb && cg) names[callOfCbMinusCg(*cb - *cg)].push_back("P" + proline.number);
  }
  if (names.empty()) return "No proline has both CB and CG";
  std::vector<std::string> parts;
  for (const auto& [call, what] :
       {std::pair(Call::cis, "cis"), {Call::undecided, "unclear"}, {Call::trans, "trans"}})
    if (const std::vector<std::string>& some = names[call]; !some.empty())
      parts.push_back((call == Call::trans ? std::to_string(some.size()) : enumerated(some)) +
                      (some.size() == 1 ? " is " : " are ") + what);
  return "By CB − CG: " + enumerated(parts);
}

}  // namespace

std::string cbCgDefinitions(const ClassStatistics& classes) {
  const Frame frame(classes);
  const auto [cis, trans] = classLabels(frame);
  const auto [first, second] = differenceLines(frame);
  return "<svg class=\"defs\" width=\"0\" height=\"0\" aria-hidden=\"true\"><defs><g id=\"k\">\n" +
         ellipses(frame, &Axis::trans, "et") + ellipses(frame, &Axis::cis, "ec") + drawn(first) +
         drawn(second) + axes(frame) + drawn("cis", cis) + drawn("trans", trans) + "</g></defs></svg>\n";
}

std::string cbCgFigure(const ProteinResult& protein, const ClassStatistics& classes) {
  const Frame frame(classes);
  const std::vector<Point> points = pointsOf(protein, frame);
  if (points.empty()) return "";
  std::string marks;
  std::vector<std::string> offAxes;
  for (const Point& point : points) {
    marks += markOf(point) + svgVerdict(*point.proline, point.x, point.y, !point.hasCg) + "\n";
    if (!point.arrow.empty()) offAxes.push_back(point.title);
  }
  std::vector<Box> taken;
  for (const Box& label : classLabels(frame)) taken.push_back(label);
  for (const DifferenceLine& line : differenceLines(frame)) taken.push_back(line.textBox());
  const std::string title = titleOf(protein);
  const std::string structure = structureSentence(protein);
  return "<figure><h2>" + escaped(title) + "</h2>\n" +
         openPicture(kHeight, title + (structure.empty() ? "" : ". " + structure)) + "<use href=\"#k\"/>\n" +
         marks + labels(points, taken) + "\n" + kClosePicture + "<figcaption>" +
         escaped(
             "Ellipses: one and two standard deviations of each class. Between the lines, CB − CG is "
             "unclear. Marks on the axis: no CG." +
             (offAxes.empty() ? "" : " Arrows, off the axes: " + enumerated(offAxes) + ".") +
             markCaption(protein)) +
         "</figcaption></figure>\n";
}

}  // namespace zorvela

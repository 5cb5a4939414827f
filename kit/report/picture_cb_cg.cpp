// CB against CG of the prolines: means and one and two deviations of both classes, the lines between which
// CB - CG is unclear, and the chain's prolines as labelled points.
#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "protein/states_by_shift.h"
#include "report/pictures.h"
#include "report/svg.h"
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

/// From whole number to whole number (ppm).
struct Range {
  double from, to;
};

/// Mean and deviation of a class (ppm).
struct Spread {
  double mean, deviation;
};

struct Centre {
  Spread cb, cg;
};

struct Scale {
  Range cb, cg;

  double x(double shift) const { return kLeft + (shift - cb.from) / (cb.to - cb.from) * (kRight - kLeft); }
  double y(double shift) const { return kBottom - (shift - cg.from) / (cg.to - cg.from) * (kBottom - kTop); }
};

Centre centreOf(const std::array<ClassShift, 19>& shifts, float prolineCB) {
  const auto spread = [&](int index, float reference) {
    const ClassShift& shift = shifts[static_cast<std::size_t>(index)];
    return Spread{static_cast<double>(reference) + static_cast<double>(shift.mean),
                  static_cast<double>(shift.deviation)};
  };
  return {spread(kIndexCB, prolineCB), spread(kIndexCG, 0)};
}

Scale scaleOf(const Centre& cis, const Centre& trans) {
  const auto range = [](const Spread& a, const Spread& b) {
    return Range{std::floor(std::min(a.mean - kDeviationsShown * a.deviation,
                                     b.mean - kDeviationsShown * b.deviation)),
                 std::ceil(std::max(a.mean + kDeviationsShown * a.deviation,
                                    b.mean + kDeviationsShown * b.deviation))};
  };
  return {range(cis.cb, trans.cb), range(cis.cg, trans.cg)};
}

/// The part that all pictures with the same tables share.
struct Frame {
  Centre cis, trans;
  Scale scale;

  explicit Frame(const ClassStatistics& classes)
      : cis(centreOf(classes.cis, classes.prolineCB)),
        trans(centreOf(classes.trans, classes.prolineCB)),
        scale(scaleOf(cis, trans)) {}
};

// --- Behind every chain -------------------------------------------------------------------------

std::string ellipses(const Centre& centre, const Scale& scale, const std::string& cssClass) {
  const double x = scale.x(centre.cb.mean);
  const double y = scale.y(centre.cg.mean);
  std::string shapes;
  for (const int deviations : {2, 1})
    shapes += "<ellipse class=\"" + cssClass + "\" cx=\"" + coordinate(x) + "\" cy=\"" + coordinate(y) +
              "\" rx=\"" + coordinate(scale.x(centre.cb.mean + deviations * centre.cb.deviation) - x) +
              "\" ry=\"" + coordinate(scale.y(centre.cg.mean - deviations * centre.cg.deviation) - y) +
              "\"/>";
  return shapes + "\n";
}

/// Whole ppm, few enough steps to be read.
double stepOf(const Range& range) {
  return std::max(1.0, std::ceil((range.to - range.from) / kMostSteps));
}

std::string axes(const Scale& scale) {
  std::string text =
      svgLine(kLeft, kBottom, kRight, kBottom, "z") + svgLine(kLeft, kTop, kLeft, kBottom, "z");
  for (double cb = scale.cb.from; cb <= scale.cb.to; cb += stepOf(scale.cb))
    text += svgText(scale.x(cb), kBottom + 15, figureText(cb, 0), "class=\"m s\"");
  for (double cg = scale.cg.from; cg <= scale.cg.to; cg += stepOf(scale.cg))
    text += svgText(kLeft - 6, scale.y(cg) + 4, figureText(cg, 0), "class=\"e s\"");
  return text + svgText((kLeft + kRight) / 2, kBottom + 33, "CB (ppm)", "class=\"m\"") +
         svgText(
             0, 0, "CG (ppm)",
             "class=\"m\" transform=\"translate(12 " + coordinate((kTop + kBottom) / 2) + ") rotate(-90)\"") +
         "\n";
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

/// The line of one CB - CG (ppm) within the picture, from the lower left to the upper right.
struct DifferenceLine {
  double difference, x, y, width, height;

  DifferenceLine(double ppm, const Scale& scale) : difference(ppm) {
    const double from = std::max(scale.cb.from, scale.cg.from + ppm);
    const double to = std::min(scale.cb.to, scale.cg.to + ppm);
    x = scale.x(from);
    y = scale.y(from - ppm);
    width = scale.x(to) - x;
    height = y - scale.y(to - ppm);
  }
  std::string text() const {
    return (difference == kTransCbMinusCgUpTo ? "CB − CG = " : "") + figureText(difference, 1) + " ppm";
  }
  double textX() const { return x + kLineTextAt * width; }
  double textY() const { return y - kLineTextAt * height; }
  double angle() const { return std::atan2(height, width); }
  Box textBox() const {
    const double length = labelWidth(text()) * 0.8;  // its signs are counted in bytes
    const double textHeight = length * std::sin(angle()) + kTextHeight;
    return {textX(), textY() - textHeight, length * std::cos(angle()), textHeight};
  }
};

/// Between these two lines, CB - CG is unclear.
std::array<DifferenceLine, 2> differenceLines(const Scale& scale) {
  return {DifferenceLine(kTransCbMinusCgUpTo, scale), DifferenceLine(kCisCbMinusCgFrom, scale)};
}

std::string drawn(const DifferenceLine& line) {
  if (line.width <= 0) return "";
  return svgLine(line.x, line.y, line.x + line.width, line.y - line.height, "d") +
         svgText(0, -4, line.text(),
                 "class=\"s\" transform=\"translate(" + coordinate(line.textX()) + " " +
                     coordinate(line.textY()) + ") rotate(" + coordinate(-line.angle() * kDegrees) + ")\"") +
         "\n";
}

// --- Points and labels --------------------------------------------------------------------------

struct Point {
  const ProlineResult* proline;
  double x, y;
  std::string title;
  std::string arrow = {};  ///< points to its place, if that is off the axes
  double half = 6;
  bool hasCg = true;  ///< without, it is a dash on the axis of CB

  Box box() const { return {x - half, y - half, 2 * half, 2 * half}; }
};

/// Returns a shift as the ellipses have it: without a referencing offset that was subtracted.
std::optional<double> shiftOf(const ProlineResult& proline, int index) {
  if (!proline.evidence) return std::nullopt;
  const auto& shift = proline.evidence->shift(index).compared();
  if (!shift) return std::nullopt;
  return static_cast<double>(*shift);
}

bool isMarked(const ProlineResult& proline) {
  return verdictOf(proline) == Verdict::agree || verdictOf(proline) == Verdict::disagree;
}

std::string arrowTo(double x, double y) {
  if (x < kLeft) return "←";
  if (x > kRight) return "→";
  if (y < kTop) return "↑";
  return y > kBottom ? "↓" : "";
}

Point pointOf(const ProlineResult& proline, double cb, const std::optional<double>& cg, const Scale& scale) {
  const double x = scale.x(cb);
  const std::string title = "P" + proline.number + " (CB " + figureText(cb, 2);
  if (!cg)
    return {&proline,
            std::clamp(x, kLeft + 2, kRight - 2),
            isMarked(proline) ? kDashMark : kDashTop,
            title + " ppm)",
            arrowTo(x, kTop),
            6,
            false};
  const double y = scale.y(*cg);
  return {&proline,
          std::clamp(x, kLeft + 7, kRight - 7),
          std::clamp(y, kTop + 7, kBottom - 7),
          title + ", CG " + figureText(*cg, 2) + " ppm)",
          arrowTo(x, y),
          isMarked(proline) ? kVerdictSize + 2 : 6};
}

/// The prolines with CB, those without CG last.
std::vector<Point> pointsOf(const ProteinResult& protein, const Scale& scale) {
  std::vector<Point> points;
  for (const ProlineResult& proline : protein.prolines)
    if (const auto cb = shiftOf(proline, kIndexCB))
      points.push_back(pointOf(proline, *cb, shiftOf(proline, kIndexCG), scale));
  std::stable_partition(points.begin(), points.end(), [](const Point& point) { return point.hasCg; });
  return points;
}

/// A point off the axes is an arrow, so that nobody reads its shifts from the axes.
std::string markOf(const Point& point) {
  const std::string letter = letterOf(point.proline->call);
  if (!point.arrow.empty()) return svgText(point.x, point.y + 5, point.arrow, "class=\"m b " + letter + "\"");
  if (point.hasCg) return svgSymbol(point.proline->call, point.x, point.y, point.title);
  return "<path class=\"r" + letter + "\" d=\"M" + coordinate(point.x) + " " + coordinate(kDashTop) + "V" +
         coordinate(kBottom) + "\"><title>" + escaped(point.title) + "</title></path>";
}

std::string labelOf(const Point& point) {
  return "P" + shortened(point.proline->number, kLongestNumber);
}

/// Places beside a point, the best first.
std::array<Box, 8> placesBeside(const Point& point, double width) {
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

bool isFree(const Box& box, const std::vector<Box>& taken) {
  return box.isInside() &&
         std::none_of(taken.begin(), taken.end(), [&](const Box& other) { return box.touches(other); });
}

/// Labels that touch nothing. One without a place is left out: the table has it. Prolines whose structure
/// disagrees come first, then cis ones.
std::string labels(std::vector<Point> points, std::vector<Box> taken) {
  for (const Point& point : points) taken.push_back(point.box());
  const auto rank = [](const Point& point) {
    if (verdictOf(*point.proline) == Verdict::disagree) return -1;
    return static_cast<int>(point.proline->call != Call::cis) +
           static_cast<int>(point.proline->call == Call::trans);
  };
  std::stable_sort(points.begin(), points.end(),
                   [&](const Point& a, const Point& b) { return rank(a) < rank(b); });
  std::string text;
  for (const Point& point : points) {
    const std::string label = labelOf(point);
    for (const Box& place : placesBeside(point, labelWidth(label))) {
      if (!isFree(place, taken)) continue;
      const std::string style = point.proline->call == Call::cis ? "class=\"m b\"" : "class=\"m\"";
      text += svgText(place.x + place.width / 2, place.y + kTextHeight - 2, label, style);
      taken.push_back(place);
      break;
    }
  }
  return text;
}

/// Place of the name of a class: outside its ellipses, on the side away from the other class.
Box classLabel(const Centre& centre, const Scale& scale, bool isUpper, double width) {
  constexpr double kOutside = 1.5;  // deviations, up and to the side
  const double side = isUpper ? -kOutside : kOutside;
  const double x = scale.x(centre.cb.mean + side * centre.cb.deviation) - (isUpper ? width : 0);
  const double y = scale.y(centre.cg.mean - side * centre.cg.deviation) - (isUpper ? kTextHeight : 0);
  return {std::clamp(x, kLeft + 4, kRight - width), y, width, kTextHeight};
}

Box cisLabel(const Frame& frame) {
  return classLabel(frame.cis, frame.scale, frame.cis.cg.mean > frame.trans.cg.mean, 22);
}

Box transLabel(const Frame& frame) {
  return classLabel(frame.trans, frame.scale, frame.cis.cg.mean <= frame.trans.cg.mean, 32);
}

}  // namespace

std::string cbCgDefinitions(const ClassStatistics& classes) {
  const Frame frame(classes);
  const auto name = [](const Box& box, const std::string& text) {
    return svgText(box.x + box.width / 2, box.y + kTextHeight - 2, text, "class=\"m\"");
  };
  return "<svg class=\"defs\" width=\"0\" height=\"0\" aria-hidden=\"true\"><defs><g id=\"k\">\n" +
         ellipses(frame.trans, frame.scale, "et") + ellipses(frame.cis, frame.scale, "ec") +
         drawn(differenceLines(frame.scale)[0]) + drawn(differenceLines(frame.scale)[1]) + axes(frame.scale) +
         name(cisLabel(frame), "cis") + name(transLabel(frame), "trans") + "</g></defs></svg>\n";
}

std::string cbCgTitle(const ProteinResult& protein) {
  std::map<Call, std::vector<std::string>> names;
  for (const ProlineResult& proline : protein.prolines) {
    const auto cb = shiftOf(proline, kIndexCB);
    const auto cg = shiftOf(proline, kIndexCG);
    if (cb && cg) names[callOfCbMinusCg(*cb - *cg)].push_back("P" + proline.number);
  }
  if (names.empty()) return "No proline has both CB and CG";
  std::vector<std::string> parts;
  const auto add = [&](Call call, const std::string& what) {
    const std::vector<std::string>& some = names[call];
    if (some.empty()) return;
    parts.push_back((call == Call::trans ? std::to_string(some.size()) : enumerated(some)) +
                    (some.size() == 1 ? " is " : " are ") + what);
  };
  add(Call::cis, "cis");
  add(Call::undecided, "unclear");
  add(Call::trans, "trans");
  return "By CB − CG: " + enumerated(parts);
}

std::string offAxesText(const ProteinResult& protein, const ClassStatistics& classes) {
  std::vector<std::string> names;
  for (const Point& point : pointsOf(protein, Frame(classes).scale))
    if (!point.arrow.empty()) names.push_back(point.title);
  return names.empty() ? "" : " Arrows, off the axes: " + enumerated(names) + ".";
}

std::string cbCgPicture(const ProteinResult& protein, const ClassStatistics& classes) {
  const Frame frame(classes);
  const std::vector<Point> points = pointsOf(protein, frame.scale);
  if (points.empty()) return "";
  std::string marks;
  for (const Point& point : points)
    marks += markOf(point) + svgVerdict(verdictOf(*point.proline), point.x, point.y, !point.hasCg) + "\n";
  std::vector<Box> taken = {cisLabel(frame), transLabel(frame)};
  for (const DifferenceLine& line : differenceLines(frame.scale)) taken.push_back(line.textBox());
  const std::string structure = structureSentence(protein);
  const std::string description = cbCgTitle(protein) + (structure.empty() ? "" : ". " + structure);
  return openPicture(kHeight, description) + "<use href=\"#k\"/>\n" + marks + labels(points, taken) + "\n" +
         kClosePicture;
}

}  // namespace zorvela

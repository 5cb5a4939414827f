// CB against CG of the prolines: means and one and two deviations of both classes, the rule of the bench, and
// the chain's prolines as labelled points.
#include <algorithm>
#include <array>
#include <cmath>

#include "report/pictures.h"
#include "report/svg.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr double kLeft = 40;
constexpr double kRight = 392;
constexpr double kTop = 12;
constexpr double kBottom = 300;
constexpr double kHeight = 340;
constexpr double kRugTop = kBottom - 12;
constexpr double kRugMark = kRugTop - 6;  // of a verdict, above its dash
constexpr double kDeviationsShown = 2.4;
constexpr double kTextHeight = 12;
constexpr double kFromPoint = 2;  // between a label and its point
constexpr std::size_t kLongestNumber = 6;
constexpr double kDegrees = 57.29577951308232;  // in a radian
constexpr double kRuleTextAt = 0.2;             // of the line
constexpr double kRuleTextWidth = 105;

/// What a picture shows (ppm), from whole number to whole number.
struct Scale {
  double cbFrom = 0, cbTo = 1, cgFrom = 0, cgTo = 1;

  double x(double cb) const { return kLeft + (cb - cbFrom) / (cbTo - cbFrom) * (kRight - kLeft); }
  double y(double cg) const { return kBottom - (cg - cgFrom) / (cgTo - cgFrom) * (kBottom - kTop); }
};

struct Centre {
  double cb, cbDeviation, cg, cgDeviation;
};

Centre centreOf(const std::array<ClassShift, 19>& shifts, float prolineCB) {
  const ClassShift& cb = shifts[kIndexCB];
  const ClassShift& cg = shifts[kIndexCG];
  return {static_cast<double>(prolineCB) + static_cast<double>(cb.mean), static_cast<double>(cb.deviation),
          static_cast<double>(cg.mean), static_cast<double>(cg.deviation)};
}

Scale scaleOf(const ClassStatistics& classes) {
  const Centre cis = centreOf(classes.cis, classes.prolineCB);
  const Centre trans = centreOf(classes.trans, classes.prolineCB);
  const auto lowest = [](double a, double da, double b, double db) {
    return std::floor(std::min(a - kDeviationsShown * da, b - kDeviationsShown * db));
  };
  const auto highest = [](double a, double da, double b, double db) {
    return std::ceil(std::max(a + kDeviationsShown * da, b + kDeviationsShown * db));
  };
  return {lowest(cis.cb, cis.cbDeviation, trans.cb, trans.cbDeviation),
          highest(cis.cb, cis.cbDeviation, trans.cb, trans.cbDeviation),
          lowest(cis.cg, cis.cgDeviation, trans.cg, trans.cgDeviation),
          highest(cis.cg, cis.cgDeviation, trans.cg, trans.cgDeviation)};
}

// --- Behind every chain -------------------------------------------------------------------------

std::string ellipses(const Centre& centre, const Scale& scale, const std::string& cssClass) {
  std::string shapes;
  for (const int deviations : {2, 1})
    shapes += "<ellipse class=\"" + cssClass + "\" cx=\"" + coordinate(scale.x(centre.cb)) + "\" cy=\"" +
              coordinate(scale.y(centre.cg)) + "\" rx=\"" +
              coordinate(scale.x(centre.cb + deviations * centre.cbDeviation) - scale.x(centre.cb)) +
              "\" ry=\"" +
              coordinate(scale.y(centre.cg - deviations * centre.cgDeviation) - scale.y(centre.cg)) + "\"/>";
  return shapes + "\n";
}

/// Steps of 1, 2, 5, ... ppm, few enough to be read.
int stepOf(double range) {
  int step = 1;
  for (const int wider : {2, 5, 10, 20, 50, 100, 200, 500, 1000})
    if (range / step > 9) step = wider;
  return step;
}

std::string axes(const Scale& scale) {
  std::string text =
      svgLine(kLeft, kBottom, kRight, kBottom, "z") + svgLine(kLeft, kTop, kLeft, kBottom, "z");
  const int cbStep = stepOf(scale.cbTo - scale.cbFrom);
  for (double cb = scale.cbFrom; cb <= scale.cbTo; cb += cbStep)
    text += svgText(scale.x(cb), kBottom + 15, figureText(cb, 0), "class=\"m s\"");
  const int cgStep = stepOf(scale.cgTo - scale.cgFrom);
  for (double cg = scale.cgFrom; cg <= scale.cgTo; cg += cgStep)
    text += svgText(kLeft - 6, scale.y(cg) + 4, figureText(cg, 0), "class=\"e s\"");
  return text + svgText((kLeft + kRight) / 2, kBottom + 33, "CB (ppm)", "class=\"m\"") +
         svgText(
             0, 0, "CG (ppm)",
             "class=\"m\" transform=\"translate(12 " + coordinate((kTop + kBottom) / 2) + ") rotate(-90)\"") +
         "\n";
}

/// The part of the line CB - CG = 7.1 ppm that lies in the picture, from the lower left to the upper right.
struct RuleLine {
  double x, y, width, height;

  explicit RuleLine(const Scale& scale) {
    const double from = std::max(scale.cbFrom, scale.cgFrom + kRuleCisAbove);
    const double to = std::min(scale.cbTo, scale.cgTo + kRuleCisAbove);
    x = scale.x(from);
    y = scale.y(from - kRuleCisAbove);
    width = scale.x(to) - x;
    height = y - scale.y(to - kRuleCisAbove);
  }
  /// Where its text stands, along the line.
  double textX() const { return x + kRuleTextAt * width; }
  double textY() const { return y - kRuleTextAt * height; }
  double angle() const { return std::atan2(height, width); }
};

std::string ruleLine(const Scale& scale) {
  const RuleLine line(scale);
  if (line.width <= 0) return "";
  return svgLine(line.x, line.y, line.x + line.width, line.y - line.height, "d") +
         svgText(0, -4, "CB − CG = " + figureText(kRuleCisAbove, 1) + " ppm",
                 "class=\"m s\" transform=\"translate(" + coordinate(line.textX()) + " " +
                     coordinate(line.textY()) + ") rotate(" + coordinate(-line.angle() * kDegrees) + ")\"") +
         "\n";
}

// --- Points and labels --------------------------------------------------------------------------

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

Box ruleTextBox(const Scale& scale) {
  const RuleLine line(scale);
  const double width = kRuleTextWidth * std::cos(line.angle()) + kTextHeight;
  const double height = kRuleTextWidth * std::sin(line.angle()) + kTextHeight;
  return {line.textX() - width / 2, line.textY() - height / 2 - 4, width, height};
}

struct Point {
  const ProlineResult* proline = nullptr;
  double x = 0;
  double y = 0;
  bool isOffScale = false;
  std::string title;

  double half = 6;

  Box box() const { return {x - half, y - half, 2 * half, 2 * half}; }
};

std::optional<double> observed(const ProlineResult& proline, int index) {
  if (!proline.evidence) return std::nullopt;
  const auto& shift = proline.evidence->shift(index).observed;
  if (!shift) return std::nullopt;
  return static_cast<double>(*shift);
}

bool isMarked(const ProlineResult& proline) {
  return verdictOf(proline) == Verdict::agree || verdictOf(proline) == Verdict::disagree;
}

std::vector<Point> pointsOf(const ProteinResult& protein, const Scale& scale) {
  std::vector<Point> points;
  for (const ProlineResult& proline : protein.prolines) {
    const auto cb = observed(proline, kIndexCB);
    const auto cg = observed(proline, kIndexCG);
    if (!cb || !cg) continue;
    const double x = scale.x(*cb);
    const double y = scale.y(*cg);
    Point point{&proline, std::clamp(x, kLeft + 7, kRight - 7), std::clamp(y, kTop + 7, kBottom - 7), false,
                ""};
    point.isOffScale = x < kLeft || x > kRight || y < kTop || y > kBottom;
    if (isMarked(proline)) point.half = kVerdictSize + 2;
    point.title = "P" + proline.number + " " + toText(proline.call) + ": CB " + figureText(*cb, 2) + ", CG " +
                  figureText(*cg, 2) + " ppm" + verdictSuffix(proline);
    points.push_back(point);
  }
  return points;
}

std::string labelOf(const Point& point) {
  return "P" + shortened(point.proline->number, kLongestNumber) + (point.isOffScale ? " off scale" : "");
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

/// Labels that touch nothing; those that find no place are left to the table. Prolines whose structure
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

/// Prolines with CB and without CG, as marks on the axis of CB.
std::vector<Point> rugOf(const ProteinResult& protein, const Scale& scale) {
  std::vector<Point> points;
  for (const ProlineResult& proline : protein.prolines) {
    const auto cb = observed(proline, kIndexCB);
    if (!cb || observed(proline, kIndexCG)) continue;
    Point point{&proline, std::clamp(scale.x(*cb), kLeft + 2, kRight - 2), kRugTop, false, ""};
    point.isOffScale = scale.x(*cb) < kLeft || scale.x(*cb) > kRight;
    if (isMarked(proline)) point.y = kRugMark;
    point.title = "P" + proline.number + " " + toText(proline.call) + ": CB " + figureText(*cb, 2) +
                  " ppm, CG missing" + verdictSuffix(proline);
    points.push_back(point);
  }
  return points;
}

std::string rugMark(const Point& point) {
  return "<path class=\"r" + letterOf(point.proline->call) + "\" d=\"M" + coordinate(point.x) + " " +
         coordinate(kRugTop) + "V" + coordinate(kBottom) + "\"><title>" + escaped(point.title) +
         "</title></path>";
}

/// Where the name of a class stands: outside of its ellipses, on the side away from the other class.
Box classLabel(const Centre& centre, const Scale& scale, bool isUpper, double width) {
  constexpr double kOutside = 1.5;  // deviations, up and to the side
  const double side = isUpper ? -kOutside : kOutside;
  const double x = scale.x(centre.cb + side * centre.cbDeviation) - (isUpper ? width : 0);
  const double y = scale.y(centre.cg - side * centre.cgDeviation) - (isUpper ? kTextHeight : 0);
  return {std::clamp(x, kLeft + 4, kRight - width), y, width, kTextHeight};
}

struct ClassLabels {
  Box cis, trans;
};

std::string describe(const ProteinResult& protein) {
  const std::string structure = structureSentence(protein);
  return cbCgTitle(protein) + (structure.empty() ? "" : ". " + structure);
}

ClassLabels classLabels(const ClassStatistics& classes, const Scale& scale) {
  const Centre cis = centreOf(classes.cis, classes.prolineCB);
  const Centre trans = centreOf(classes.trans, classes.prolineCB);
  const bool isCisAbove = cis.cg > trans.cg;
  return {classLabel(cis, scale, isCisAbove, 22), classLabel(trans, scale, !isCisAbove, 32)};
}

}  // namespace

std::string cbCgDefinitions(const ClassStatistics& classes) {
  const Scale scale = scaleOf(classes);
  const ClassLabels names = classLabels(classes, scale);
  const auto name = [](const Box& box, const std::string& text) {
    return svgText(box.x + box.width / 2, box.y + kTextHeight - 2, text, "class=\"m\"");
  };
  return "<svg class=\"defs\" width=\"0\" height=\"0\" aria-hidden=\"true\"><defs><g id=\"k\">\n" +
         ellipses(centreOf(classes.trans, classes.prolineCB), scale, "et") +
         ellipses(centreOf(classes.cis, classes.prolineCB), scale, "ec") + ruleLine(scale) + axes(scale) +
         name(names.cis, "cis") + name(names.trans, "trans") + "</g></defs></svg>\n";
}

std::string cbCgTitle(const ProteinResult& protein) {
  std::vector<std::string> cis;
  std::size_t count = 0;
  for (const ProlineResult& proline : protein.prolines) {
    const auto cb = observed(proline, kIndexCB);
    const auto cg = observed(proline, kIndexCG);
    if (!cb || !cg) continue;
    ++count;
    if (*cb - *cg > kRuleCisAbove) cis.push_back("P" + proline.number);
  }
  if (count == 0) return "No proline has both CB and CG";
  if (!cis.empty()) return "By CB − CG, " + enumerated(cis) + (cis.size() == 1 ? " is cis" : " are cis");
  return count == 1 ? "By CB − CG, the one proline that has both is trans"
                    : "By CB − CG, all " + std::to_string(count) + " prolines that have both are trans";
}

std::string cbCgPicture(const ProteinResult& protein, const ClassStatistics& classes) {
  const Scale scale = scaleOf(classes);
  const std::vector<Point> points = pointsOf(protein, scale);
  const std::vector<Point> rug = rugOf(protein, scale);
  if (points.empty() && rug.empty()) return "";
  std::string marks;
  for (const Point& point : points) {
    marks += svgSymbol(point.proline->call, point.x, point.y, point.title) +
             svgVerdict(verdictOf(*point.proline), point.x, point.y) + "\n";
  }
  for (const Point& point : rug) {
    marks += rugMark(point) + svgVerdict(verdictOf(*point.proline), point.x, kRugMark, true) + "\n";
  }
  std::vector<Point> all = points;
  all.insert(all.end(), rug.begin(), rug.end());
  const ClassLabels names = classLabels(classes, scale);
  return openPicture(kHeight, describe(protein)) + "<use href=\"#k\"/>\n" + marks +
         labels(all, {names.cis, names.trans, ruleTextBox(scale)}) + "\n" + kClosePicture;
}

}  // namespace zorvela

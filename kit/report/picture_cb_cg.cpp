// CB against CG of the prolines: means and one and two deviations of both classes, the lines between which
// CB - CG is unclear, and the chain's prolines as labelled points.
#include <algorithm>
#include <array>
#include <cmath>

#include "protein/proline_shifts.h"
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
constexpr double kRugTop = kBottom - 12;
constexpr double kRugMark = kRugTop - 6;  // of a verdict, above its dash
constexpr double kDeviationsShown = 2.4;
constexpr double kTextHeight = 12;
constexpr double kFromPoint = 2;  // between a label and its point
constexpr std::size_t kLongestNumber = 6;
constexpr double kDegrees = 57.29577951308232;  // in a radian
constexpr double kLineTextAt = 0.06;            // of the line

/// From whole number to whole number (ppm).
struct Range {
  double from, to;
};

/// Mean and deviation of a class.
struct Spread {
  double mean, deviation;
};

/// Where a class lies.
struct Centre {
  Spread cb, cg;
};

/// What a picture shows.
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

/// What all pictures with the same tables share.
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

/// Steps of 1, 2, 5, ... ppm, few enough to be read.
int stepOf(const Range& range) {
  int step = 1;
  for (const int wider : {2, 5, 10, 20, 50, 100, 200, 500, 1000})
    if ((range.to - range.from) / step > 9) step = wider;
  return step;
}

std::string axes(const Scale& scale) {
  std::string text =
      svgLine(kLeft, kBottom, kRight, kBottom, "z") + svgLine(kLeft, kTop, kLeft, kBottom, "z");
  const int cbStep = stepOf(scale.cb);
  for (double cb = scale.cb.from; cb <= scale.cb.to; cb += cbStep)
    text += svgText(scale.x(cb), kBottom + 15, figureText(cb, 0), "class=\"m s\"");
  const int cgStep = stepOf(scale.cg);
  for (double cg = scale.cg.from; cg <= scale.cg.to; cg += cgStep)
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

/// The part of the line of one CB - CG (ppm) that lies in the picture, from the lower left to the upper
/// right.
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
  /// Where the text starts, along the line.
  double textX() const { return x + kLineTextAt * width; }
  double textY() const { return y - kLineTextAt * height; }
  double angle() const { return std::atan2(height, width); }
  Box textBox() const {
    const double length = labelWidth(text()) * 0.8;  // its signs are counted in bytes
    const double textHeight = length * std::sin(angle()) + kTextHeight;
    return {textX(), textY() - textHeight, length * std::cos(angle()), textHeight};
  }
};

/// What lies between the two is unclear.
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
  const ProlineResult* proline = nullptr;
  double x = 0;
  double y = 0;
  std::string arrow;  ///< to where it lies, if that is off the axes
  std::string title;
  double half = 6;

  Box box() const { return {x - half, y - half, 2 * half, 2 * half}; }
};

/// Prolines with both shifts, and those with CB alone, which are marks on its axis.
struct Points {
  std::vector<Point> both, rug;
};

/// As the ellipses have it: without a referencing offset that was taken away.
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

Points pointsOf(const ProteinResult& protein, const Scale& scale) {
  Points points;
  for (const ProlineResult& proline : protein.prolines) {
    const auto cb = shiftOf(proline, kIndexCB);
    const auto cg = shiftOf(proline, kIndexCG);
    if (!cb) continue;
    const double x = scale.x(*cb);
    const std::string title = "P" + proline.number + " (CB " + figureText(*cb, 2);
    if (!cg) {
      points.rug.push_back({&proline, std::clamp(x, kLeft + 2, kRight - 2),
                            isMarked(proline) ? kRugMark : kRugTop, arrowTo(x, kTop), title + " ppm)"});
      continue;
    }
    const double y = scale.y(*cg);
    points.both.push_back(
        {&proline, std::clamp(x, kLeft + 7, kRight - 7), std::clamp(y, kTop + 7, kBottom - 7), arrowTo(x, y),
         title + ", CG " + figureText(*cg, 2) + " ppm)", isMarked(proline) ? kVerdictSize + 2 : 6});
  }
  return points;
}

/// What is off the axes is an arrow, so that it cannot be taken for a point.
std::string markOf(const Point& point) {
  if (point.arrow.empty()) return svgSymbol(point.proline->call, point.x, point.y, point.title);
  return svgText(point.x, point.y + 5, point.arrow, "class=\"m b " + letterOf(point.proline->call) + "\"");
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

std::string rugMark(const Point& point) {
  if (!point.arrow.empty()) return markOf(point);
  return "<path class=\"r" + letterOf(point.proline->call) + "\" d=\"M" + coordinate(point.x) + " " +
         coordinate(kRugTop) + "V" + coordinate(kBottom) + "\"><title>" + escaped(point.title) +
         "</title></path>";
}

/// Where the name of a class stands: outside of its ellipses, on the side away from the other class.
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
  std::vector<std::string> cis, unclear;
  std::size_t trans = 0;
  for (const ProlineResult& proline : protein.prolines) {
    const auto cb = shiftOf(proline, kIndexCB);
    const auto cg = shiftOf(proline, kIndexCG);
    if (!cb || !cg) continue;
    if (*cb - *cg <= kTransCbMinusCgUpTo)
      ++trans;
    else
      (*cb - *cg >= kCisCbMinusCgFrom ? cis : unclear).push_back("P" + proline.number);
  }
  std::vector<std::string> parts;
  const auto add = [&parts](const std::vector<std::string>& names, const std::string& what) {
    if (!names.empty()) parts.push_back(enumerated(names) + (names.size() == 1 ? " is " : " are ") + what);
  };
  add(cis, "cis");
  add(unclear, "unclear");
  if (trans > 0) parts.push_back(std::to_string(trans) + (trans == 1 ? " is trans" : " are trans"));
  if (parts.empty()) return "No proline has both CB and CG";
  return "By CB − CG: " + enumerated(parts);
}

std::string offAxesText(const ProteinResult& protein, const ClassStatistics& classes) {
  const Points points = pointsOf(protein, Frame(classes).scale);
  std::vector<std::string> names;
  for (const std::vector<Point>* some : {&points.both, &points.rug})
    for (const Point& point : *some)
      if (!point.arrow.empty()) names.push_back(point.title);
  return names.empty() ? "" : " Arrows, off the axes: " + enumerated(names) + ".";
}

std::string cbCgPicture(const ProteinResult& protein, const ClassStatistics& classes) {
  const Frame frame(classes);
  const Points points = pointsOf(protein, frame.scale);
  std::vector<Point> all = points.both;
  all.insert(all.end(), points.rug.begin(), points.rug.end());
  if (all.empty()) return "";
  std::string marks;
  for (const Point& point : points.both)
    marks += markOf(point) + svgVerdict(verdictOf(*point.proline), point.x, point.y) + "\n";
  for (const Point& point : points.rug)
    marks += rugMark(point) + svgVerdict(verdictOf(*point.proline), point.x, kRugMark, true) + "\n";
  std::vector<Box> taken = {cisLabel(frame), transLabel(frame)};
  for (const DifferenceLine& line : differenceLines(frame.scale)) taken.push_back(line.textBox());
  const std::string structure = structureSentence(protein);
  const std::string description = cbCgTitle(protein) + (structure.empty() ? "" : ". " + structure);
  return openPicture(kHeight, description) + "<use href=\"#k\"/>\n" + marks + labels(all, taken) + "\n" +
         kClosePicture;
}

}  // namespace zorvela

// Deviations from known curves, their median, and when it counts.
#include "predict/referencing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "util/number.h"
#include "util/robust.h"

namespace zorvela {

namespace {

constexpr std::size_t kFewestResidues = 10;
// Residues further from the median than this many deviations are left out: wrong assignments.
constexpr double kOutlier = 4.0;

// Offsets (ppm) that matter; re-referenced chains hardly ever reach them.
constexpr double kAlphaCarbonBound = 0.75;  // CA and CB
constexpr double kCarbonylBound = 1.0;
constexpr double kAlphaProtonBound = 0.25;
// An offset of more errors than this is certain.
constexpr double kCertainErrors = 3.0;
// A difference of more errors than this is worth a note.
constexpr double kLikelyErrors = 2.0;

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

std::optional<double> caMinusCb(const BackboneValues& residue) {
  const auto ca = shiftAt(residue, Atom::CA);
  const auto cb = shiftAt(residue, Atom::CB);
  if (!ca || !cb) return std::nullopt;
  return *ca - *cb;
}

std::optional<double> amideProtons(const std::vector<BackboneValues>& residues, std::size_t i) {
  const auto own = shiftAt(residues[i], Atom::HN);
  const auto next = i + 1 < residues.size() ? shiftAt(residues[i + 1], Atom::HN) : std::nullopt;
  if (own && next) return (*own + *next) / 2;
  return own ? own : next;
}

std::optional<double> valueOf(Measure measure, const std::vector<BackboneValues>& residues, std::size_t i) {
  switch (measure) {
    case Measure::caMinusCb:
      return caMinusCb(residues[i]);
    case Measure::alphaProton:
      return shiftAt(residues[i], Atom::HA);
    case Measure::amideProtons:
      break;
  }
  return amideProtons(residues, i);
}

/// Tells whether a value of the measure occurs: at most one step beyond the ends of the curve.
bool isKnown(const ShiftRelation& relation, double value) {
  const double place = (value - relation.first) / relation.step;
  return place >= -1 && place <= static_cast<double>(relation.points.size());
}

/// The curve at a value of the measure; level beyond its ends.
double curveAt(const ShiftRelation& relation, double value) {
  const double last = static_cast<double>(relation.points.size() - 1);
  const double place = std::clamp((value - relation.first) / relation.step, 0.0, last);
  const auto below = static_cast<std::size_t>(std::min(std::floor(place), std::max(last - 1, 0.0)));
  if (below + 1 == relation.points.size()) return relation.points[below];
  const double share = place - static_cast<double>(below);
  return relation.points[below] * (1 - share) + relation.points[below + 1] * share;
}

struct Centre {
  double median = kNone;
  double error = kNone;
  int count = 0;
};

/// Median of the deviations without those far out, and its standard error.
Centre centreOf(std::vector<double> values, const ShiftRelation& relation) {
  if (values.size() < kFewestResidues) return {kNone, kNone, static_cast<int>(values.size())};
  const auto spreadAround = [&](double median) {
    return std::max(robustDeviation(values, median), relation.scatter);
  };
  const double all = median(values);
  const double reach = kOutlier * spreadAround(all);
  values.erase(std::remove_if(values.begin(), values.end(),
                              [&](double value) { return std::fabs(value - all) > reach; }),
               values.end());
  Centre centre;
  centre.median = median(values);
  centre.count = static_cast<int>(values.size());
  const double ofMedian = kMedianOverMean * spreadAround(centre.median) / std::sqrt(centre.count);
  centre.error = std::hypot(ofMedian, relation.betweenChains);
  return centre;
}

/// The offset of an atom by the relation that gives it best. HA that is off itself no longer tells helix.
OffsetEstimate bestEstimate(const std::string& atom, const std::vector<BackboneValues>& residues,
                            const std::vector<ShiftRelation>& relations, bool isProtonTrusted = true) {
  OffsetEstimate best{atom, kNone, kNone, 0};
  for (const ShiftRelation& relation : relations) {
    if (relation.atom != atom) continue;
    if (relation.measure == Measure::alphaProton && !isProtonTrusted) continue;
    const Centre centre = centreOf(deviations(residues, relation), relation);
    if (std::isnan(best.error) || centre.error < best.error)
      best = {atom, centre.median, centre.error, centre.count};
  }
  return best;
}

bool hasAtom(const std::vector<BackboneValues>& residues, Atom atom) {
  return std::any_of(residues.begin(), residues.end(),
                     [&](const BackboneValues& residue) { return shiftAt(residue, atom).has_value(); });
}

}  // namespace

std::optional<double> shiftAt(const BackboneValues& residue, Atom atom) {
  const float shift = residue[indexOf(atom)];
  if (!std::isfinite(shift) || isMissingSecondary(shift)) return std::nullopt;
  return shift;
}

const std::vector<ShiftRelation>& knownRelations() {
  // clang-format off
  static const std::vector<ShiftRelation> relations = {
      {"CA", Measure::caMinusCb, -6, 1, {-2.284, -1.973, -1.675, -1.386, -1.050, -0.610, -0.090, 0.536,
       1.485, 2.278, 2.879, 3.562, 4.407, 5.111, 5.784}, 0.620, 0.090},
      {"CA", Measure::alphaProton, -0.8, 0.2, {3.395, 3.230, 2.743, 2.094, 0.182, -0.465, -1.108, -1.331,
       -1.476, -1.719}, 1.150, 0.303},
      {"CA", Measure::amideProtons, -1, 0.25, {0.569, 0.849, 1.170, 1.101, 0.195, 0.077, -0.532, -0.908,
       -0.996}, 1.848, 0.621},
      {"HA", Measure::caMinusCb, -6, 1, {0.816, 0.630, 0.518, 0.413, 0.287, 0.152, 0.050, -0.017, -0.121,
       -0.195, -0.255, -0.368, -0.479, -0.542, -0.524}, 0.223, 0.039},
      {"HA", Measure::amideProtons, -1, 0.25, {-0.104, -0.088, -0.100, -0.069, 0.014, 0.057, 0.219, 0.411,
       0.524}, 0.305, 0.079},
      {"C", Measure::caMinusCb, -6, 1, {-1.652, -1.534, -1.377, -1.132, -0.836, -0.570, -0.278, 0.013, 0.611,
       1.338, 1.954, 1.988, 1.757, 1.622, 1.543}, 1.142, 0.240},
      {"C", Measure::alphaProton, -0.8, 0.2, {1.053, 1.173, 1.347, 1.174, -0.053, -0.493, -0.970, -1.109,
       -1.227, -1.243}, 1.329, 0.407},
      {"C", Measure::amideProtons, -1, 0.25, {0.033, 0.213, 0.466, 0.474, -0.006, -0.018, -0.439, -0.808,
       -0.941}, 1.564, 0.630}};
  // clang-format on
  return relations;
}

std::vector<MeasuredShift> measuredShifts(const std::vector<BackboneValues>& residues,
                                          const std::string& atom, Measure measure) {
  std::vector<MeasuredShift> found;
  const Atom place = atomNamed(atom).value();
  for (std::size_t i = 0; i < residues.size(); ++i) {
    const auto shift = shiftAt(residues[i], place);
    const auto value = valueOf(measure, residues, i);
    if (shift && value) found.push_back({*value, *shift});
  }
  return found;
}

std::vector<double> deviations(const std::vector<BackboneValues>& residues, const ShiftRelation& relation) {
  std::vector<double> found;
  for (const MeasuredShift& residue : measuredShifts(residues, relation.atom, relation.measure))
    if (isKnown(relation, residue.measure))
      found.push_back(residue.shift - curveAt(relation, residue.measure));
  return found;
}

std::vector<OffsetEstimate> estimateOffsets(const std::vector<BackboneValues>& residues,
                                            const std::vector<ShiftRelation>& relations) {
  const OffsetEstimate ha = bestEstimate("HA", residues, relations);
  const bool isProtonTrusted = !callsForCorrection(ha);
  const OffsetEstimate ca = bestEstimate("CA", residues, relations, isProtonTrusted);
  OffsetEstimate cb{"CB", kNone, kNone, 0};
  if (hasAtom(residues, Atom::CB)) {
    cb = ca;
    cb.atom = "CB";
  }
  return {ca, cb, ha, bestEstimate("C", residues, relations, isProtonTrusted)};
}

double correctionBound(const std::string& atom) {
  if (atom == "HA") return kAlphaProtonBound;
  return atom == "C" ? kCarbonylBound : kAlphaCarbonBound;
}

bool callsForCorrection(const OffsetEstimate& estimate) {
  const double size = std::fabs(estimate.offset);
  return size > correctionBound(estimate.atom) && size > kCertainErrors * estimate.error;
}

Offsets correctionsOf(const std::vector<OffsetEstimate>& estimates) {
  Offsets corrections;
  for (const OffsetEstimate& estimate : estimates) {
    if (!callsForCorrection(estimate)) continue;
    corrections[estimate.atom] = estimate.offset;
    if (estimate.atom == "CA") corrections["CB"] = corrections["CG"] = estimate.offset;
  }
  return corrections;
}

std::string deuterationNote(const std::vector<OffsetEstimate>& estimates) {
  const OffsetEstimate& alpha = estimates[0];
  const OffsetEstimate& proton = estimates[2];
  const OffsetEstimate& carbonyl = estimates[3];
  const double difference = alpha.offset - carbonyl.offset;
  const double error = std::hypot(alpha.error, carbonyl.error);
  if (proton.residues > 0 || !(difference < -kLikelyErrors * error)) return "";
  return "the protein may be deuterated: it has no HA, and CA and CB are " + fixedText(-difference, 2) +
         " ppm lower than C' suggests (error " + fixedText(error, 2) + "); if it is, add --deuterated";
}

}  // namespace zorvela

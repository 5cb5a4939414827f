// Percentiles, class means and deviations, then the two tables that hold them.
//
// Everything is summed in a fixed order, so that the same data give the same bytes on every machine.
#include "train/table_training.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "predict/chain.h"
#include "train/table_cells.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using Values = std::vector<double>;

// --- Limits ---------------------------------------------------------------------------------------

// With fewer shifts than this the percentiles of a residue type mean nothing.
constexpr std::size_t kFewestForLimits = 50;

/// Sorted secondary shifts of an atom by residue type. A proline is a proline, however it is written.
using TypeValues = std::map<char, Values>;

char limitsKey(char type) {
  return isProline(type) ? kProlineCode : type;
}

TypeValues secondaryShifts(const LabelledProlines& data, std::size_t atom) {
  TypeValues values;
  for (const EntryShifts& entry : data.entries)
    for (std::size_t i = 0; i < entry.residues.size(); ++i)
      if (const float shift = entry.secondary[i][atom]; shift < kMissingBound)
        values[limitsKey(entry.residues[i].type)].push_back(static_cast<double>(shift));
  for (auto& [type, ofType] : values) std::sort(ofType.begin(), ofType.end());
  return values;
}

/// N and HN of proline are never used, though random-coil sets list its N.
bool hasAtom(const Model& model, char type, std::size_t atom) {
  return !(isProline(type) && isAmide(kBackbone[atom])) && model.type(type).randomCoil[atom] < kMissingBound;
}

float limit(const Values& sorted, double percent) {
  return sorted.empty() ? 0 : thousandths(percentile(sorted, percent));
}

/// Sets percentiles of the shifts of each type; a type with few of an atom has those of all types. Returns
/// the number of shifts.
std::size_t setLimits(const LabelledProlines& data, double percent, Model& model) {
  std::size_t count = 0;
  for (std::size_t k = 0; k < kBackboneAtoms; ++k) {
    TypeValues values = secondaryShifts(data, k);
    Values all;
    for (const auto& [type, ofType] : values) all.insert(all.end(), ofType.begin(), ofType.end());
    std::sort(all.begin(), all.end());
    count += all.size();
    for (const std::string& name : rowNames()) {
      const char type = name.front();
      const Values& own = values[limitsKey(type)];
      const bool isEnough = own.size() >= kFewestForLimits;
      if (!isEnough && !hasAtom(model, type, k)) continue;
      const Values& used = isEnough ? own : all;
      model.type(type).lowest[k] = limit(used, percent);
      model.type(type).highest[k] = limit(used, 100.0 - percent);
    }
  }
  return count;
}

// --- Shifts around prolines -----------------------------------------------------------------------

/// The shifts of one class by index, as the program sees them (clipped). Each window counts once, with the
/// median of its measurements.
struct ClassShifts {
  std::array<Values, kShifts> shifts;
  std::size_t windows = 0;
};

ClassShifts shiftsOf(Call label, const LabelledProlines& data, const Model& model) {
  std::map<std::string, std::array<Values, kShifts>> windows;
  for (const LabelledProline& proline : data.prolines) {
    const EntryShifts& entry = data.entryOf(proline);
    if (proline.structure != label || !isPredictable(entry.residues, proline.place())) continue;
    const CisPrediction predicted =
        predict(model, tripletAt(entry.residues, entry.secondary, proline.place()));
    std::array<Values, kShifts>& values = windows[proline.window];
    for (std::size_t i = 0; i < kShifts; ++i)
      if (const ShiftEvidence& shift = predicted.evidence.shifts[i]; !shift.isMissing)
        values[i].push_back(static_cast<double>(shift.used));
  }
  if (windows.empty())
    throw Error(data.path, 0, "no " + toText(label) + " proline with enough shifts is labelled by structure",
                "add entries with " + toText(label) + " prolines");
  ClassShifts result;
  result.windows = windows.size();
  for (const auto& [window, values] : windows)
    for (std::size_t i = 0; i < kShifts; ++i)
      if (!values[i].empty()) result.shifts[i].push_back(median(values[i]));
  return result;
}

// Share of cis among prolines, by which deviations are pooled.
constexpr double kNaturalCisShare = 0.05;
// The least that the table can hold (ppm); a deviation of 0 would end in a division by zero.
constexpr double kSmallestDeviation = 0.001;

/// Deviations for the table, before they are widened. A class without a deviation of its own takes that
/// of the other; with none at all they are 1.
void setDeviations(IndexStatistics& s, const std::string& pooling) {
  const double cis = s.cis.deviation > 0 ? s.cis.deviation : s.trans.deviation;
  const double trans = s.trans.deviation > 0 ? s.trans.deviation : cis;
  if (!(trans > 0)) return;
  s.stdCis = cis;
  s.stdTrans = trans;
  if (pooling == "none") return;
  const double share = pooling == "natural" ? kNaturalCisShare : 0.5;
  s.stdCis = s.stdTrans = std::sqrt(share * cis * cis + (1 - share) * trans * trans);
}

IndexStatistics statisticsOf(std::size_t index, const Values& cis, const Values& trans,
                             const TrainingChoices& choices) {
  const ShiftPlace place = shiftPlace(index);
  const bool isOwn = place.residue == 0;
  IndexStatistics s;
  if (isOwn && isAmide(place.atom)) return s;
  s.cis = trimmedSample(cis, choices.trim);
  s.trans = trimmedSample(trans, choices.trim);
  setDeviations(s, choices.pooling);
  // A shift that one class never has is not evidence: both means are then equal.
  if (s.cis.count == 0) s.cis.mean = s.trans.mean;
  if (s.trans.count == 0) s.trans.mean = s.cis.mean;
  const double widen = isOwn ? choices.widenProline : choices.widenNeighbours;
  s.stdCis = std::max(kSmallestDeviation, s.stdCis * widen);
  s.stdTrans = std::max(kSmallestDeviation, s.stdTrans * widen);
  return s;
}

}  // namespace

Training train(const Model& published, const LabelledProlines& data, const TrainingChoices& choices) {
  Training training;
  training.model = published;
  training.secondaryShifts = setLimits(data, choices.limitPercent, training.model);
  training.entries = data.entries.size();
  const ClassShifts cis = shiftsOf(Call::cis, data, training.model);
  const ClassShifts trans = shiftsOf(Call::trans, data, training.model);
  training.cisProlines = cis.windows;
  training.transProlines = trans.windows;
  for (std::size_t i = 0; i < kShifts; ++i) {
    const IndexStatistics s = training.shifts[i] = statisticsOf(i, cis.shifts[i], trans.shifts[i], choices);
    training.model.shifts[i] = {{thousandths(s.cis.mean), thousandths(s.stdCis)},
                                {thousandths(s.trans.mean), thousandths(s.stdTrans)}};
  }
  return training;
}

// --- Tables ---------------------------------------------------------------------------------------

namespace {

/// A number as short as it can be written ("2", "0.5").
std::string shortest(double value) {
  return formatted("%g", value);
}

}  // namespace

GDB limitsTable(const Training& training, const TrainingChoices& choices) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& name : rowNames()) {
    rows.push_back({name});
    const ReferenceValues& type = training.model.type(name.front());
    for (std::size_t k = 0; k < kBackboneAtoms; ++k)
      for (const float value : {type.lowest[k], type.highest[k]})
        rows.back().push_back(fixed(static_cast<double>(value), 3));
  }
  std::string columns = "RESNAME";
  std::string formats = "%s";
  for (const Atom atom : kBackbone) {
    const std::string name(nameOf(atom));
    columns.append(" ").append(name).append("_MIN ").append(name).append("_MAX");
    formats += " %8.3f %8.3f";
  }
  return tableOf(
      {std::string("Limits of secondary shifts. RESNAME: one-letter code of the residue; ") +
           "for each atom the lowest and the",
       "highest secondary shift (observed - random coil) that is used, ppm. 0 and 0: no such atom.",
       "Percentiles " + shortest(choices.limitPercent) + " and " + shortest(100.0 - choices.limitPercent) +
           " of " + std::to_string(training.secondaryShifts) + " secondary shifts in " +
           std::to_string(training.entries) + " BMRB entries, re-referenced by RefDB.",
       "A type with fewer than " + std::to_string(kFewestForLimits) +
           " shifts of an atom has the percentiles of all types. p: as P."},
      columns, formats + " ", rows);
}

GDB shiftTable(const Training& training, const TrainingChoices& choices) {
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 0; i < kShifts; ++i) {
    const IndexStatistics& s = training.shifts[i];
    rows.push_back({std::to_string(i)});
    for (const double value :
         {s.cis.mean, s.trans.mean, s.stdCis, s.stdTrans, s.cis.deviation, s.trans.deviation})
      rows.back().push_back(fixed(value, 3));
    for (const std::size_t count : {s.cis.count, s.trans.count}) rows.back().push_back(std::to_string(count));
  }
  const std::map<std::string, std::string> pooled = {
      {"natural", "the two classes' variances weighted 1 to 19"},
      {"equal", "the two classes' variances weighted equally"},
      {"none", "each class's own deviation"}};
  return tableOf(
      {"Shifts around cis and trans prolines, ppm. index: 0 to 5 the atoms N, HA, C, CA, CB, HN of the",
       "residue before the proline, 6 to 11 of the proline, 12 to 17 of the residue after it (secondary",
       "shifts, brought into the limits of sslimit.tab); 18 CG of the proline (the shift itself).",
       "avg: class means. std: deviations that the prediction uses: " + pooled.at(choices.pooling) + ",",
       "times " + shortest(choices.widenProline) + " for the proline and " +
           shortest(choices.widenNeighbours) +
           " for its neighbours, because the shifts of a triplet are correlated.",
       "sd: deviations of the sample. n: number of values. Values further than " + shortest(choices.trim) +
           " robust deviations from",
       "the class median are left out. Index 6 and 11 (N and HN of the proline) are not used.",
       std::to_string(training.cisProlines) + " cis and " + std::to_string(training.transProlines) +
           " trans prolines of BMRB entries, labelled by structure; prolines with the same",
       "9-residue window count once, with the median of their shifts."},
      "index avg_cis avg_trans std_cis std_trans sd_cis sd_trans n_cis n_trans",
      "%5d %9.3f %9.3f %9.3f %9.3f %9.3f %9.3f %5d %5d ", rows);
}

}  // namespace zorvela

// Percentiles, class means and deviations, then the two tables that hold them.
//
// Everything is summed in a fixed order, so that the same data give the same bytes on every machine.
#include "train/table_training.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>
#include <utility>

#include "predict/chain.h"
#include "train/table_cells.h"
#include "util/robust.h"
#include "zorvela/error.h"

namespace zorvela {

// --- Limits ---------------------------------------------------------------------------------------

namespace {

using Values = std::vector<double>;
using TypeValues = std::map<char, std::array<Values, kBackboneAtoms>>;

// With fewer shifts than this the percentiles of a residue type mean nothing.
constexpr std::size_t kFewestForLimits = 50;

/// A proline is a proline, however it is written.
char limitsKey(char type) {
  return isProline(type) ? kProlineCode : type;
}

TypeValues secondaryShifts(const LabelledProlines& data, const std::vector<bool>& useEntry) {
  TypeValues values;
  for (std::size_t e = 0; e < data.entries.size(); ++e) {
    if (!useEntry[e]) continue;
    const EntryShifts& entry = data.entries[e];
    for (std::size_t i = 0; i < entry.residues.size(); ++i) {
      auto& ofType = values[limitsKey(entry.residues[i].type)];
      for (std::size_t k = 0; k < kBackboneAtoms; ++k)
        if (entry.secondary[i][k] < kMissingBound) ofType[k].push_back(entry.secondary[i][k]);
    }
  }
  for (auto& [name, ofType] : values)
    for (Values& ofAtom : ofType) std::sort(ofAtom.begin(), ofAtom.end());
  return values;
}

Values allTypes(const TypeValues& values, std::size_t atom) {
  Values all;
  for (const auto& [name, ofType] : values) all.insert(all.end(), ofType[atom].begin(), ofType[atom].end());
  std::sort(all.begin(), all.end());
  return all;
}

struct Limits {
  float lowest = 0;
  float highest = 0;
};

Limits limitsOf(const Values& sorted, double percent) {
  if (sorted.empty()) return {};
  return {thousandths(percentile(sorted, percent)), thousandths(percentile(sorted, 100.0 - percent))};
}

/// N and HN of proline are never used, though random-coil sets list its N.
bool hasAtom(const Model& model, char type, std::size_t atom) {
  return !(isProline(type) && isAmide(kBackbone[atom])) && model.type(type).randomCoil[atom] < kMissingBound;
}

/// Percentiles of the shifts of each type; a type with few of an atom has those of all types.
void setLimits(Model& model, const TypeValues& values, double percent) {
  for (std::size_t k = 0; k < kBackboneAtoms; ++k) {
    const Limits ofAll = limitsOf(allTypes(values, k), percent);
    for (const std::string& name : rowNames()) {
      const char type = name.front();
      const auto found = values.find(limitsKey(type));
      Limits limits;
      if (found != values.end() && found->second[k].size() >= kFewestForLimits)
        limits = limitsOf(found->second[k], percent);
      else if (hasAtom(model, type, k))
        limits = ofAll;
      model.type(type).lowest[k] = limits.lowest;
      model.type(type).highest[k] = limits.highest;
    }
  }
}

std::size_t countOf(const TypeValues& values) {
  std::size_t count = 0;
  for (const auto& [name, ofType] : values)
    for (const Values& ofAtom : ofType) count += ofAtom.size();
  return count;
}

// --- Shifts around prolines -----------------------------------------------------------------------

/// Shifts by index, as the program sees them (clipped); none if missing.
using ShiftValues = std::array<Values, kShifts>;
/// The prolines of one class by their windows. A window that was measured in several entries has several
/// values of a shift.
using Windows = std::map<std::string, ShiftValues>;

struct BothClasses {
  Windows cis;
  Windows trans;
};

void addShifts(const EntryShifts& entry, std::size_t place, const Model& model, ShiftValues& values) {
  const ProlineEvidence evidence = predict(model, tripletAt(entry.residues, entry.secondary, place)).evidence;
  for (std::size_t i = 0; i < kShifts; ++i)
    if (!evidence.shifts[i].isMissing) values[i].push_back(evidence.shifts[i].used);
}

BothClasses collect(const Model& model, const LabelledProlines& data, const std::vector<bool>& useLabel) {
  BothClasses classes;
  for (std::size_t i = 0; i < useLabel.size(); ++i) {
    const ProlineLabel& label = data.labels.prolines[i];
    if (!useLabel[i] || !label.structure) continue;
    if (!isPredictable(data.entry(i).residues, data.place(i))) continue;
    Windows& windows = label.structure == Omega::cis ? classes.cis : classes.trans;
    addShifts(data.entry(i), data.place(i), model, windows[data.windows[i]]);
  }
  return classes;
}

/// Each window counts once, with the median of its values.
ShiftValues mediansOf(const Windows& windows) {
  ShiftValues medians;
  for (const auto& [window, values] : windows)
    for (std::size_t i = 0; i < kShifts; ++i)
      if (!values[i].empty()) medians[i].push_back(median(values[i]));
  return medians;
}

// Share of cis among prolines, by which deviations are pooled.
constexpr double kNaturalCisShare = 0.05;
// The least that the table can hold (ppm); a deviation of 0 would end in a division by zero.
constexpr double kSmallestDeviation = 0.001;

/// Deviations for the table, before they are widened. A class without a deviation of its own takes that
/// of the other; with none at all they are 1.
void setDeviations(IndexStatistics& s, Pooling pooling) {
  const double cis = s.cis.deviation > 0 ? s.cis.deviation : s.trans.deviation;
  const double trans = s.trans.deviation > 0 ? s.trans.deviation : cis;
  if (!(trans > 0)) return;
  s.stdCis = cis;
  s.stdTrans = trans;
  if (pooling == Pooling::none) return;
  const double share = pooling == Pooling::natural ? kNaturalCisShare : 0.5;
  s.stdCis = s.stdTrans = std::sqrt(share * cis * cis + (1 - share) * trans * trans);
}

/// A shift that one class never has is not evidence: both means are then equal.
void setMeans(IndexStatistics& s) {
  if (s.cis.count == 0) s.cis.mean = s.trans.mean;
  if (s.trans.count == 0) s.trans.mean = s.cis.mean;
}

bool isOwnShift(std::size_t index) {
  return shiftPlace(index).residue == 0;
}

/// Nitrogen and amide proton of the proline are never used.
bool isUnused(std::size_t index) {
  return isOwnShift(index) && isAmide(shiftPlace(index).atom);
}

IndexStatistics statisticsOf(std::size_t index, const Values& cis, const Values& trans,
                             const TrainingChoices& choices) {
  IndexStatistics s;
  if (isUnused(index)) return s;
  s.cis = trimmedSample(cis, choices.trim);
  s.trans = trimmedSample(trans, choices.trim);
  setDeviations(s, choices.pooling);
  setMeans(s);
  const double widen = isOwnShift(index) ? choices.widenProline : choices.widenNeighbours;
  s.stdCis = std::max(kSmallestDeviation, s.stdCis * widen);
  s.stdTrans = std::max(kSmallestDeviation, s.stdTrans * widen);
  return s;
}

void requireClass(const LabelledProlines& data, const Windows& windows, const std::string& name) {
  if (windows.empty())
    throw Error(data.labels.path, 0, "no " + name + " proline with enough shifts is labelled by structure",
                "add entries with " + name + " prolines");
}

}  // namespace

Training train(const Model& published, const LabelledProlines& data, const std::vector<bool>& useEntry,
               const std::vector<bool>& useLabel, const TrainingChoices& choices) {
  Training training;
  training.model = published;
  const TypeValues byType = secondaryShifts(data, useEntry);
  setLimits(training.model, byType, choices.limitPercent);
  training.secondaryShifts = countOf(byType);
  training.entries = static_cast<std::size_t>(std::count(useEntry.begin(), useEntry.end(), true));
  const BothClasses classes = collect(training.model, data, useLabel);
  requireClass(data, classes.cis, "cis");
  requireClass(data, classes.trans, "trans");
  training.cisProlines = classes.cis.size();
  training.transProlines = classes.trans.size();
  const ShiftValues cis = mediansOf(classes.cis);
  const ShiftValues trans = mediansOf(classes.trans);
  for (std::size_t i = 0; i < kShifts; ++i) {
    const IndexStatistics s = training.shifts[i] = statisticsOf(i, cis[i], trans[i], choices);
    training.model.shifts[i] = {{thousandths(s.cis.mean), thousandths(s.stdCis)},
                                {thousandths(s.trans.mean), thousandths(s.stdTrans)}};
  }
  return training;
}

// --- Tables ---------------------------------------------------------------------------------------

namespace {

GDB startLimitsTable(const Training& training, double percent) {
  std::string columns = "RESNAME";
  for (const std::string& atom : backboneNames())
    columns.append(" ").append(atom).append("_MIN ").append(atom).append("_MAX");
  return startTable(
      {std::string("Limits of secondary shifts. RESNAME: one-letter code of the residue; ") +
           "for each atom the lowest and the",
       "highest secondary shift (observed - random coil) that is used, ppm. 0 and 0: no such atom.",
       "Percentiles " + shortest(percent) + " and " + shortest(100.0 - percent) + " of " +
           std::to_string(training.secondaryShifts) + " secondary shifts in " +
           std::to_string(training.entries) + " BMRB entries, re-referenced by RefDB.",
       "A type with fewer than " + std::to_string(kFewestForLimits) +
           " shifts of an atom has the percentiles of all types. p: as P."},
      columns, "%s" + repeated(" %8.3f", 2 * kBackboneAtoms) + " ");
}

GDB startShiftTable(const Training& training, const TrainingChoices& choices) {
  static const std::array<std::string, 3> kPooled = {"the two classes' variances weighted 1 to 19",
                                                     "the two classes' variances weighted equally",
                                                     "each class's own deviation"};
  return startTable(
      {"Shifts around cis and trans prolines, ppm. index: 0 to 5 the atoms N, HA, C, CA, CB, HN of the",
       "residue before the proline, 6 to 11 of the proline, 12 to 17 of the residue after it (secondary",
       "shifts, brought into the limits of sslimit.tab); 18 CG of the proline (the shift itself).",
       "avg: class means. std: deviations that the prediction uses: " +
           kPooled[static_cast<std::size_t>(choices.pooling)] + ",",
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
      "%5d %9.3f %9.3f %9.3f %9.3f %9.3f %9.3f %5d %5d ");
}

}  // namespace

GDB limitsTable(const Training& training, const TrainingChoices& choices) {
  GDB table = startLimitsTable(training, choices.limitPercent);
  for (const std::string& name : rowNames()) {
    std::vector<std::string> cells = {name};
    const ReferenceValues& type = training.model.type(name.front());
    for (std::size_t k = 0; k < kBackboneAtoms; ++k) {
      cells.push_back(fixed(static_cast<double>(type.lowest[k]), 3));
      cells.push_back(fixed(static_cast<double>(type.highest[k]), 3));
    }
    addRow(table, cells);
  }
  return table;
}

GDB shiftTable(const Training& training, const TrainingChoices& choices) {
  GDB table = startShiftTable(training, choices);
  for (std::size_t i = 0; i < kShifts; ++i) {
    const IndexStatistics& s = training.shifts[i];
    addRow(table, {std::to_string(i), fixed(s.cis.mean, 3), fixed(s.trans.mean, 3), fixed(s.stdCis, 3),
                   fixed(s.stdTrans, 3), fixed(s.cis.deviation, 3), fixed(s.trans.deviation, 3),
                   std::to_string(s.cis.count), std::to_string(s.trans.count)});
  }
  return table;
}

}  // namespace zorvela

// Percentiles, class means and deviations from proteins with known prolines.
//
// Everything is summed in a fixed order, so that the same data give the same bytes on every machine.
#include "train/table_training.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>
#include <utility>

#include "train/statistics_tools.h"
#include "train/table_cells.h"
#include "util/robust.h"
#include "zorvela/error.h"

namespace zorvela {

// --- Limits ---------------------------------------------------------------------------------------

namespace {

struct Limits {
  double low = 0;
  double high = 0;
};

using Values = std::vector<double>;
using TypeValues = std::map<std::string, std::array<Values, kBackboneAtoms>>;

// With fewer shifts than this the percentiles of a residue type mean nothing.
constexpr std::size_t kFewestForLimits = 50;

std::string limitsKey(const std::string& name) {
  return name == kKnownCis ? "P" : name;
}

TypeValues secondaryShifts(const LabelledProlines& data, const std::vector<bool>& useEntry) {
  TypeValues values;
  for (std::size_t e = 0; e < data.entries.size(); ++e) {
    if (!useEntry[e]) continue;
    const EntryShifts& entry = data.entries[e];
    for (std::size_t i = 0; i < entry.names.size(); ++i) {
      auto& ofType = values[limitsKey(entry.names[i])];
      for (std::size_t k = 0; k < kAtoms.size(); ++k)
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

Limits limitsOf(const Values& sorted, double percent) {
  if (sorted.empty()) return {};
  return {percentile(sorted, percent), percentile(sorted, 100.0 - percent)};
}

/// Percentiles by residue type and atom, and those of all types.
class LimitFinder {
 public:
  LimitFinder(TypeValues byType, double percentBelow) : values(std::move(byType)), percent(percentBelow) {
    for (std::size_t k = 0; k < kAtoms.size(); ++k) ofAll[k] = limitsOf(allTypes(values, k), percent);
  }

  /// 0 and 0 where the type has no such atom.
  Limits find(const std::string& name, std::size_t atom, const GDB& randomCoil) const {
    const auto found = values.find(limitsKey(name));
    const std::size_t count = found == values.end() ? 0 : found->second[atom].size();
    if (count >= kFewestForLimits) return limitsOf(found->second[atom], percent);
    return hasAtom(name, atom, randomCoil, count) ? ofAll[atom] : Limits{};
  }

  std::size_t shiftCount() const {
    std::size_t count = 0;
    for (const auto& [name, ofType] : values)
      for (const Values& ofAtom : ofType) count += ofAtom.size();
    return count;
  }

 private:
  /// N and HN of proline are never used, though random-coil sets list its N.
  static bool hasAtom(const std::string& name, std::size_t atom, const GDB& randomCoil, std::size_t count) {
    if (limitsKey(name) == "P" && count == 0) return false;
    const GDB::Row* row = randomCoil.findEntry("RESNAME", name, 1);
    return row != nullptr && GDB::toFloat(GDB::cell(*row, kAtoms[atom])) < kMissingBound;
  }

  TypeValues values;
  double percent;
  std::array<Limits, kBackboneAtoms> ofAll;
};

GDB startLimitsTable(std::size_t shifts, std::ptrdiff_t entries, double percent) {
  std::string columns = "RESNAME";
  for (const std::string& atom : kAtoms)
    columns.append(" ").append(atom).append("_MIN ").append(atom).append("_MAX");
  return startTable(
      {std::string("Limits of secondary shifts. RESNAME: one-letter code of the residue; ") +
           "for each atom the lowest and the",
       "highest secondary shift (observed - random coil) that is used, ppm. 0 and 0: no such atom.",
       "Percentiles " + shortest(percent) + " and " + shortest(100.0 - percent) + " of " +
           std::to_string(shifts) + " secondary shifts in " + std::to_string(entries) +
           " BMRB entries, re-referenced by RefDB.",
       "A type with fewer than " + std::to_string(kFewestForLimits) +
           " shifts of an atom has the percentiles of all types. p: as P."},
      columns, "%s" + repeated(" %8.3f", 2 * kAtoms.size()) + " ");
}

GDB limitsTable(const LabelledProlines& data, const std::vector<bool>& useEntry, const GDB& randomCoil,
                double percent) {
  const LimitFinder limits(secondaryShifts(data, useEntry), percent);
  GDB table =
      startLimitsTable(limits.shiftCount(), std::count(useEntry.begin(), useEntry.end(), true), percent);
  for (const std::string& name : rowNames()) {
    std::vector<std::string> cells = {name};
    for (std::size_t k = 0; k < kAtoms.size(); ++k) {
      const Limits found = limits.find(name, k, randomCoil);
      cells.push_back(fixed(found.low, 3));
      cells.push_back(fixed(found.high, 3));
    }
    addRow(table, cells);
  }
  return table;
}

// --- Shifts around prolines -----------------------------------------------------------------------

constexpr std::size_t kShiftIndices = kBackboneShifts + 1;
using ClassValues = std::array<Values, kShiftIndices>;

const std::array<std::string, 3> kPositions = {"_R1", "_R2", "_R3"};

/// The shifts of one proline by index, as the program sees them (clipped); none where missing.
using ShiftVector = std::array<Values, kShiftIndices>;

/// Adds the shifts of a proline; false if the program would not predict it.
bool addShifts(ZORVELA& run, int resid, ShiftVector& shifts) {
  std::map<std::string, std::string> triplet = run.getTriplet(resid);
  if (triplet["RESNAME_R2"] != "P" || !run.testTriplet(triplet)) return false;
  std::size_t index = 0;
  for (const std::string& position : kPositions) {
    for (const std::string& atom : kAtoms) {
      const float shift = GDB::toFloat(triplet[atom + position]);
      if (!(shift > kMissingSecondaryShift)) shifts[index].push_back(shift);
      ++index;
    }
  }
  const float cg = run.cgShifts[resid];
  if (!(cg >= kMissingBound)) shifts[kBackboneShifts].push_back(cg);
  return true;
}

/// Prolines of one class. A window that was measured in several entries counts once, with the median of
/// what was measured.
struct ClassShifts {
  std::map<std::string, ShiftVector> windows;

  ClassValues values() const {
    ClassValues all;
    for (const auto& [window, shifts] : windows)
      for (std::size_t i = 0; i < kShiftIndices; ++i)
        if (!shifts[i].empty()) all[i].push_back(median(shifts[i]));
    return all;
  }
};

struct BothClasses {
  ClassShifts cis;
  ClassShifts trans;
};

BothClasses collect(ZORVELA& run, const LabelledProlines& data, const std::vector<bool>& useLabel) {
  // By entry, because putting an entry back into the run costs more than a proline.
  std::vector<std::vector<std::size_t>> byEntry(data.entries.size());
  for (std::size_t i = 0; i < useLabel.size(); ++i)
    if (useLabel[i] && data.labels.prolines[i].structure) byEntry[data.entryOf[i]].push_back(i);

  BothClasses classes;
  for (std::size_t e = 0; e < byEntry.size(); ++e) {
    if (byEntry[e].empty()) continue;
    EntryView view(run, data.entries[e]);
    for (const std::size_t i : byEntry[e]) {
      const ProlineLabel& label = data.labels.prolines[i];
      view.focus(label.resid);
      ShiftVector shifts;
      if (!addShifts(run, label.resid, shifts)) continue;
      auto& windows = (label.structure == Omega::cis ? classes.cis : classes.trans).windows;
      ShiftVector& known = windows[data.windows[i]];
      for (std::size_t k = 0; k < kShiftIndices; ++k)
        known[k].insert(known[k].end(), shifts[k].begin(), shifts[k].end());
    }
  }
  return classes;
}

/// One line of Pro.cs.tab.
struct IndexStatistics {
  Sample cis;
  Sample trans;
  double stdCis = 1;
  double stdTrans = 1;
};

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

/// A shift that one class was never seen with says nothing: both means are then the same.
void setMeans(IndexStatistics& s) {
  if (s.cis.count == 0) s.cis.mean = s.trans.mean;
  if (s.trans.count == 0) s.trans.mean = s.cis.mean;
}

bool isOwnShift(std::size_t index) {
  return index == kBackboneShifts || index / kBackboneAtoms == 1;
}

// Indices of the proline's own nitrogen and amide proton.
constexpr std::size_t kProlineN = 6;
constexpr std::size_t kProlineHN = 11;

/// Nitrogen and amide proton of the proline are never used.
bool isUnused(std::size_t index) {
  return index == kProlineN || index == kProlineHN;
}

GDB startShiftTable(const BothClasses& classes, const TrainingChoices& choices) {
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
       std::to_string(classes.cis.windows.size()) + " cis and " +
           std::to_string(classes.trans.windows.size()) +
           " trans prolines of BMRB entries, labelled by structure; prolines with the same",
       "9-residue window count once, with the median of their shifts."},
      "index avg_cis avg_trans std_cis std_trans sd_cis sd_trans n_cis n_trans",
      "%5d %9.3f %9.3f %9.3f %9.3f %9.3f %9.3f %5d %5d ");
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

GDB shiftTable(const BothClasses& classes, const TrainingChoices& choices) {
  GDB table = startShiftTable(classes, choices);
  const ClassValues cis = classes.cis.values();
  const ClassValues trans = classes.trans.values();
  for (std::size_t i = 0; i < kShiftIndices; ++i) {
    const IndexStatistics s = statisticsOf(i, cis[i], trans[i], choices);
    addRow(table, {std::to_string(i), fixed(s.cis.mean, 3), fixed(s.trans.mean, 3), fixed(s.stdCis, 3),
                   fixed(s.stdTrans, 3), fixed(s.cis.deviation, 3), fixed(s.trans.deviation, 3),
                   std::to_string(s.cis.count), std::to_string(s.trans.count)});
  }
  return table;
}

void requireClass(const LabelledProlines& data, const ClassShifts& shifts, const std::string& name) {
  if (shifts.windows.empty())
    throw Error(data.labels.path, 0, "no " + name + " proline with enough shifts is labelled by structure",
                "add entries with " + name + " prolines");
}

}  // namespace

void trainTables(ReferenceTables& tables, const LabelledProlines& data, const std::vector<bool>& useEntry,
                 const std::vector<bool>& useLabel, const TrainingChoices& choices) {
  tables.limits = limitsTable(data, useEntry, tables.randomCoil, choices.limitPercent);
  ZORVELA run;
  run.limitTable = tables.limits;
  const BothClasses classes = collect(run, data, useLabel);
  requireClass(data, classes.cis, "cis");
  requireClass(data, classes.trans, "trans");
  tables.shifts = shiftTable(classes, choices);
}

}  // namespace zorvela

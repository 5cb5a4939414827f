// Published values into tables; percentiles, class means and deviations from proteins with known prolines.
//
// Everything is summed in a fixed order and printed with fixed formats, so that the same data give the
// same bytes on every machine.
#include "table_training.h"

#include <algorithm>   // for std::sort, std::min
#include <array>       // for std::array
#include <cmath>       // for std::abs, std::floor, std::sqrt
#include <cstdio>      // for std::snprintf
#include <filesystem>  // for std::filesystem::create_directories
#include <map>         // for std::map
#include <set>         // for std::set
#include <utility>     // for std::move

#include <CLI/CLI.hpp>

#include "common.h"
#include "statistics_tools.h"
#include "strict_csv.h"

namespace kit {

namespace {

using AtomValues = std::array<double, kAtomsPerResidue>;

const std::array<std::string, kAtomsPerResidue> kAtoms = {"N", "HA", "C", "CA", "CB", "HN"};
const std::string kResidueTypes = "ACDEFGHIKLMNPQRSTVWY";
// Rows that take their values from another type: disulfide cysteine, and proline known to be cis.
const std::string kDisulfide = "c";
const std::string kKnownCis = "p";
// Letters that a sequence can hold beside the 20 types; ? stands for a gap or an unknown residue.
const std::string kOtherLetters = "BJOUX?";

// --- Text cells -----------------------------------------------------------------------------------

std::string fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  // A value that rounds to zero is zero, whatever its sign.
  const bool isZero = std::string(text).find_first_not_of("-0.") == std::string::npos;
  return isZero && text[0] == '-' ? text + 1 : text;
}

void addRow(GDB& table, const std::vector<std::string>& cells) {
  const int row = table.getEntryCount() + 1;
  for (std::size_t i = 0; i < cells.size(); ++i)
    table.setEntry(row, table.columnNames.at(static_cast<int>(i)), cells[i]);
}

/// An empty table whose first column is text and whose others are numbers.
GDB startTable(const std::vector<std::string>& remarks, const std::string& columns,
               const std::string& formats) {
  GDB table;
  for (const std::string& remark : remarks) table.addRemark(remark);
  table.VARS_str_parser(columns);
  table.FORMAT_str_parser(formats);
  return table;
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

void addAtomRow(GDB& table, const std::string& name, const AtomValues& values) {
  std::vector<std::string> cells = {name};
  for (const double value : values) cells.push_back(fixed(value, 3));
  addRow(table, cells);
}

GDB atomTable(const std::vector<std::string>& remarks) {
  return startTable(remarks, "RESNAME N HA C CA CB HN", "%s" + repeated(" %9.3f", kAtoms.size()) + " ");
}

// --- Origin ---------------------------------------------------------------------------------------

std::string fileName(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

/// The paper behind a file of published values; the name of the file where it is not known.
std::string citation(const std::string& path) {
  const std::string name = fileName(path);
  static const std::vector<std::pair<std::string, std::string>> kPapers = {
      {"nielsen_mulder_2018",
       "Nielsen & Mulder (2018) J. Biomol. NMR 70, 141-165, doi:10.1007/s10858-018-0166-5; 25 C, pH 7"},
      {"kjaergaard_poulsen_2011_25C",
       "Kjaergaard, Brander & Poulsen (2011) J. Biomol. NMR 49, 139-149, doi:10.1007/s10858-011-9472-x; 25 "
       "C"},
      {"kjaergaard_poulsen_2011_neighbours",
       "Kjaergaard & Poulsen (2011) J. Biomol. NMR 50, 157-165, doi:10.1007/s10858-011-9508-2"},
      {"de_simone_2009",
       "De Simone et al. (2009) J. Am. Chem. Soc. 131, 16332-16333, doi:10.1021/ja904937a; pH 7"},
      {"proline_neighbour_counts",
       "counts in 5280 chains of the PDB_SELECT 25 % list, X-ray structures to 2.5 A"},
      {"wishart_1995", "Wishart et al. (1995) J. Biomol. NMR 5, 67-81, doi:10.1007/BF00227471; 25 C, pH 5"}};
  for (const auto& [start, paper] : kPapers)
    if (name.compare(0, start.size(), start) == 0) return paper;
  return "file " + name;
}

// --- Random-coil shifts ---------------------------------------------------------------------------

// Oxidised less reduced cysteine: N, HA, C, CA, CB, HN in ppm, after Wishart et al. (1995).
constexpr AtomValues kOxidisedLessReduced = {-0.2, 0.16, 0.0, -2.8, 13.1, 0.11};

/// A published value; missing where the file has none (empty or 0).
double publishedShift(const StrictCsv& csv, const StrictCsv::Row& row, std::size_t column) {
  if (row.fields[column].empty()) return kMissingShift;
  const double value = csv.number(row, column);
  return value == 0.0 ? static_cast<double>(kMissingShift) : value;
}

void requireTypes(const std::string& path, const std::map<std::string, AtomValues>& values) {
  for (const char type : kResidueTypes)
    if (values.count(std::string(1, type)) == 0)
      throw UserError(path, 0, std::string("has no line for residue type ") + type, "add the line");
}

std::map<std::string, AtomValues> readRandomCoil(const std::string& path) {
  const StrictCsv csv(path);
  const std::size_t type = csv.column("res");
  std::map<std::string, AtomValues> shifts;
  for (const StrictCsv::Row& row : csv.rows)
    for (std::size_t k = 0; k < kAtoms.size(); ++k)
      shifts[row.fields[type]][k] = publishedShift(csv, row, csv.column(kAtoms[k]));
  requireTypes(path, shifts);
  const AtomValues& reduced = shifts["C"];
  AtomValues& oxidised = shifts[kDisulfide];
  for (std::size_t k = 0; k < kAtoms.size(); ++k) oxidised[k] = reduced[k] + kOxidisedLessReduced[k];
  shifts[kKnownCis] = shifts["P"];
  return shifts;
}

/// The 20 types, then the two that are written in lower case.
std::vector<std::string> rowNames() {
  std::vector<std::string> names;
  for (const char type : kResidueTypes) names.emplace_back(1, type);
  names.push_back(kDisulfide);
  names.push_back(kKnownCis);
  return names;
}

GDB tableOf(const std::map<std::string, AtomValues>& values, const std::vector<std::string>& remarks) {
  GDB table = atomTable(remarks);
  for (const std::string& name : rowNames()) addAtomRow(table, name, values.at(name));
  return table;
}

GDB randomCoilTable(const std::string& path) {
  return tableOf(
      readRandomCoil(path),
      {"Random-coil shifts. RESNAME: one-letter code of the residue; one column for each atom, ppm.",
       "HN is the amide proton. 9999.000: the residue type has no such atom.",
       "Source: " + citation(path) + ".",
       "c (disulfide-bonded cysteine): row C plus oxidised less reduced cysteine after",
       "Wishart et al. (1995) J. Biomol. NMR 5, 67-81, doi:10.1007/BF00227471.", "p: as P."});
}

GDB noAdjustments() {
  std::map<std::string, AtomValues> zeros;
  for (const std::string& name : rowNames()) zeros[name] = {};
  return tableOf(zeros,
                 {"Corrections to the random-coil shifts of the residue itself. RESNAME: one-letter code",
                  "of the residue; one column for each atom, ppm, added to randcoil.tab.",
                  "All zero: the random-coil set is used as published."});
}

// --- Neighbour effects ----------------------------------------------------------------------------

/// `where`: "preceding" or "following", seen from the residue that is shifted.
GDB neighbourTable(const std::string& path, const std::string& column, const std::string& where) {
  const StrictCsv csv(path);
  const std::size_t type = csv.column("neighbour");
  const std::size_t atom = csv.column("atom");
  const std::size_t value = csv.column(column);
  std::map<std::string, AtomValues> effects;
  for (const StrictCsv::Row& row : csv.rows) {
    const auto found = std::find(kAtoms.begin(), kAtoms.end(), row.fields[atom]);
    if (found == kAtoms.end())
      csv.fail(row, "atom is \"" + row.fields[atom] + "\", not one of N, HA, C, CA, CB, HN",
               "correct or remove the line");
    const auto k = static_cast<std::size_t>(found - kAtoms.begin());
    effects[row.fields[type]][k] = csv.number(row, value);
  }
  requireTypes(path, effects);
  effects[kDisulfide] = effects["C"];
  effects[kKnownCis] = effects["P"];
  return tableOf(
      effects, {"Effect of the " + where + " residue on random-coil shifts. RESNAME: one-letter code of the",
                where + " residue; one column for each atom of the residue beside it, ppm,",
                "added to randcoil.tab.", "Source: " + citation(path) + ".", "c: as C. p: as P."});
}

// --- Neighbours of prolines -----------------------------------------------------------------------

const std::array<std::string, 4> kShareColumns = {"cis_prev", "cis_next", "trans_prev", "trans_next"};

GDB sequenceTable(const std::string& path, int pseudocount) {
  const StrictCsv csv(path);
  const std::size_t type = csv.column("resname");
  std::map<std::string, std::array<double, 4>> counts;
  std::array<double, 4> totals{};
  std::array<long long, 4> observed{};
  for (const StrictCsv::Row& row : csv.rows) {
    const std::string& name = row.fields[type];
    if (name.size() != 1 || kResidueTypes.find(name) == std::string::npos)
      csv.fail(row, "resname is \"" + name + "\", not one of the 20 residue types",
               "correct or remove the line");
    for (std::size_t i = 0; i < kShareColumns.size(); ++i) {
      const std::size_t column = csv.column(kShareColumns[i]);
      const int count = csv.integer(row, column);
      if (count < 0) csv.fail(row, kShareColumns[i] + " is negative", "give the count");
      observed[i] += count;
      counts[name][i] = count + pseudocount;
      totals[i] += count + pseudocount;
    }
  }
  for (const char name : kResidueTypes)
    if (counts.count(std::string(1, name)) == 0)
      throw UserError(path, 0, std::string("has no line for residue type ") + name, "add the line");

  GDB table = startTable(
      {"Share of each residue type before and after prolines, by class; each column adds up to 1 over the",
       "20 residue types. resname: one-letter code of the neighbour; cis_prev, cis_next: before and after",
       "a cis proline; trans_prev, trans_next: before and after a trans proline.",
       "Source: " + citation(path) + ";",
       std::to_string(observed[0]) + " and " + std::to_string(observed[1]) + " neighbours of cis, " +
           std::to_string(observed[2]) + " and " + std::to_string(observed[3]) + " of trans prolines; " +
           std::to_string(pseudocount) + " added to each count.",
       "c: as C. p: as P. B, J, O, U, X and ? (other residue, unknown, gap): even shares, which favour "
       "neither."},
      "resname cis_prev cis_next trans_prev trans_next", "%s" + repeated(" %9.6f", 4) + " ");
  const auto add = [&](const std::string& name, const std::array<double, 4>& shares) {
    std::vector<std::string> cells = {name};
    for (const double share : shares) cells.push_back(fixed(share, 6));
    addRow(table, cells);
  };
  const auto sharesOf = [&](const std::string& name) {
    std::array<double, 4> shares{};
    for (std::size_t i = 0; i < shares.size(); ++i) shares[i] = counts[name][i] / totals[i];
    return shares;
  };
  for (const char name : kResidueTypes) add(std::string(1, name), sharesOf(std::string(1, name)));
  add(kDisulfide, sharesOf("C"));
  add(kKnownCis, sharesOf("P"));
  const double even = 1.0 / static_cast<double>(kResidueTypes.size());
  for (const char name : kOtherLetters) add(std::string(1, name), {even, even, even, even});
  return table;
}

}  // namespace

ReferenceTables publishedTables(const PublishedData& data, const TrainingChoices& choices) {
  ReferenceTables tables;
  tables.randomCoil = randomCoilTable(data.randomCoil);
  tables.adjustments = noAdjustments();
  tables.previous = neighbourTable(data.neighbourEffects, "nbr_at_i-1", "preceding");
  tables.next = neighbourTable(data.neighbourEffects, "nbr_at_i+1", "following");
  tables.sequence = sequenceTable(data.neighbours, choices.pseudocount);
  return tables;
}

// --- Limits ---------------------------------------------------------------------------------------

namespace {

struct Limits {
  double low = 0;
  double high = 0;
};

using Values = std::vector<double>;
using TypeValues = std::map<std::string, std::array<Values, kAtomsPerResidue>>;

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

std::string number(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

GDB limitsTable(const LabelledProlines& data, const std::vector<bool>& useEntry, const GDB& randomCoil,
                double percent) {
  const TypeValues values = secondaryShifts(data, useEntry);
  std::array<Limits, kAtomsPerResidue> ofAll;
  for (std::size_t k = 0; k < kAtoms.size(); ++k) ofAll[k] = limitsOf(allTypes(values, k), percent);

  std::size_t shifts = 0;
  for (const auto& [name, ofType] : values)
    for (const Values& ofAtom : ofType) shifts += ofAtom.size();
  std::string columns = "RESNAME";
  for (const std::string& atom : kAtoms) columns += " " + atom + "_MIN " + atom + "_MAX";
  GDB table = startTable(
      {"Limits of secondary shifts. RESNAME: one-letter code of the residue; for each atom the lowest and "
       "the",
       "highest secondary shift (observed - random coil) that is used, ppm. 0 and 0: no such atom.",
       "Percentiles " + number(percent) + " and " + number(100.0 - percent) + " of " +
           std::to_string(shifts) + " secondary shifts in " +
           std::to_string(std::count(useEntry.begin(), useEntry.end(), true)) +
           " BMRB entries, re-referenced by RefDB.",
       "A type with fewer than " + std::to_string(kFewestForLimits) +
           " shifts of an atom has the percentiles of all types. p: as P."},
      columns, "%s" + repeated(" %8.3f", 2 * kAtoms.size()) + " ");
  for (const std::string& name : rowNames()) {
    const auto found = values.find(limitsKey(name));
    const GDB::Row* row = randomCoil.findEntry("RESNAME", name, 1);
    std::vector<std::string> cells = {name};
    for (std::size_t k = 0; k < kAtoms.size(); ++k) {
      const std::size_t count = found == values.end() ? 0 : found->second[k].size();
      const bool hasAtom = row != nullptr && GDB::toFloat(GDB::cell(*row, kAtoms[k])) < kMissingBound &&
                           !(limitsKey(name) == "P" && count == 0);
      Limits limits = ofAll[k];
      if (!hasAtom) limits = {};
      if (count >= kFewestForLimits) limits = limitsOf(found->second[k], percent);
      cells.push_back(fixed(limits.low, 3));
      cells.push_back(fixed(limits.high, 3));
    }
    addRow(table, cells);
  }
  return table;
}

// --- Shifts around prolines -----------------------------------------------------------------------

constexpr std::size_t kShiftIndices = kProlineCG + 1;
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
  if (!(cg >= kMissingBound)) shifts[kProlineCG].push_back(cg);
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
  return index == kProlineCG || index / kAtomsPerResidue == 1;
}

/// Nitrogen and amide proton of the proline, which are never used.
bool isUnused(std::size_t index) {
  return index == 6 || index == 11;
}

GDB shiftTable(const BothClasses& classes, const TrainingChoices& choices) {
  static const std::array<std::string, 3> kPooled = {"the two classes' variances weighted 1 to 19",
                                                     "the two classes' variances weighted equally",
                                                     "each class's own deviation"};
  GDB table = startTable(
      {"Shifts around cis and trans prolines, ppm. index: 0 to 5 the atoms N, HA, C, CA, CB, HN of the",
       "residue before the proline, 6 to 11 of the proline, 12 to 17 of the residue after it (secondary",
       "shifts, brought into the limits of sslimit.tab); 18 CG of the proline (the shift itself).",
       "avg: class means. std: deviations that the prediction uses: " +
           kPooled[static_cast<std::size_t>(choices.pooling)] + ",",
       "times " + number(choices.widenProline) + " for the proline and " + number(choices.widenNeighbours) +
           " for its neighbours, because the shifts of a triplet are correlated.",
       "sd: deviations of the sample. n: number of values. Values further than " + number(choices.trim) +
           " robust deviations from",
       "the class median are left out. Index 6 and 11 (N and HN of the proline) are not used.",
       std::to_string(classes.cis.windows.size()) + " cis and " +
           std::to_string(classes.trans.windows.size()) +
           " trans prolines of BMRB entries, labelled by structure; prolines with the same",
       "9-residue window count once, with the median of their shifts."},
      "index avg_cis avg_trans std_cis std_trans sd_cis sd_trans n_cis n_trans",
      "%5d %9.3f %9.3f %9.3f %9.3f %9.3f %9.3f %5d %5d ");
  const ClassValues cis = classes.cis.values();
  const ClassValues trans = classes.trans.values();
  for (std::size_t i = 0; i < kShiftIndices; ++i) {
    IndexStatistics s;
    if (!isUnused(i)) {
      s.cis = trimmedSample(cis[i], choices.trim);
      s.trans = trimmedSample(trans[i], choices.trim);
      setDeviations(s, choices.pooling);
      setMeans(s);
      const double widen = isOwnShift(i) ? choices.widenProline : choices.widenNeighbours;
      s.stdCis *= widen;
      s.stdTrans *= widen;
    }
    addRow(table, {std::to_string(i), fixed(s.cis.mean, 3), fixed(s.trans.mean, 3), fixed(s.stdCis, 3),
                   fixed(s.stdTrans, 3), fixed(s.cis.deviation, 3), fixed(s.trans.deviation, 3),
                   std::to_string(s.cis.count), std::to_string(s.trans.count)});
  }
  return table;
}

void requireClass(const LabelledProlines& data, const ClassShifts& shifts, const std::string& name) {
  if (shifts.windows.empty())
    throw UserError(data.labels.path, 0,
                    "no " + name + " proline with enough shifts is labelled by structure",
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

// --- Use and files ----------------------------------------------------------------------------------

void useTables(const ReferenceTables& tables, ZORVELA& run) {
  run.rcTable = tables.randomCoil;
  run.adjTable = tables.adjustments;
  run.prevTable = tables.previous;
  run.nextTable = tables.next;
  run.limitTable = tables.limits;
  for (const auto& [number, row] : tables.shifts.entries) {
    const int index = GDB::toInt(GDB::cell(row, "index"));
    run.avgCis[index] = GDB::toFloat(GDB::cell(row, "avg_cis"));
    run.avgTrans[index] = GDB::toFloat(GDB::cell(row, "avg_trans"));
    run.stdCis[index] = GDB::toFloat(GDB::cell(row, "std_cis"));
    run.stdTrans[index] = GDB::toFloat(GDB::cell(row, "std_trans"));
  }
  for (const auto& [number, row] : tables.sequence.entries) {
    const std::string& name = GDB::cell(row, "resname");
    run.proSeqCis[name][1] = GDB::toFloat(GDB::cell(row, "cis_prev"));
    run.proSeqCis[name][3] = GDB::toFloat(GDB::cell(row, "cis_next"));
    run.proSeqTrans[name][1] = GDB::toFloat(GDB::cell(row, "trans_prev"));
    run.proSeqTrans[name][3] = GDB::toFloat(GDB::cell(row, "trans_next"));
  }
}

void writeTables(ReferenceTables& tables, const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    throw UserError(folder, 0, "cannot be made: " + error.message(), "choose another folder with --output");
  const std::array<std::pair<const char*, GDB*>, 7> files = {{{"randcoil.tab", &tables.randomCoil},
                                                              {"rcadj.tab", &tables.adjustments},
                                                              {"rcprev.tab", &tables.previous},
                                                              {"rcnext.tab", &tables.next},
                                                              {"sslimit.tab", &tables.limits},
                                                              {"Pro.cs.tab", &tables.shifts},
                                                              {"Pro.seq.tab", &tables.sequence}}};
  for (const auto& [name, table] : files)
    writeWhole(folder + "/" + name, [&table = table](std::ostream& out) { table->writeTable(out); });
}

// --- Options --------------------------------------------------------------------------------------

std::vector<CLI::Option*> addTrainingOptions(CLI::App& command, TrainingChoices& choices) {
  const std::map<std::string, Pooling> poolings = {
      {"natural", Pooling::natural}, {"equal", Pooling::equal}, {"none", Pooling::none}};
  const std::vector<CLI::Option*> options = {
      command
          .add_option("--limit-percent", choices.limitPercent,
                      "clip secondary shifts below this percentile and above its mirror")
          ->check(CLI::Range(0.0, 25.0))
          ->capture_default_str(),
      command
          .add_option(
              "--trim", choices.trim,
              "leave out values further from the class median than this many robust deviations (0: none)")
          ->check(CLI::Range(0.0, 100.0))
          ->capture_default_str(),
      command
          .add_option("--pool", choices.pooling,
                      "deviations: natural (one for both classes, variances 1 to 19), equal (1 to 1), none")
          ->transform(CLI::CheckedTransformer(poolings, CLI::ignore_case).description(""))
          ->type_name("MODE")
          ->default_str("natural"),
      command
          .add_option("--widen-proline", choices.widenProline,
                      "factor on deviations of the proline's own shifts")
          ->check(CLI::Range(0.1, 100.0))
          ->capture_default_str(),
      command
          .add_option("--widen-neighbours", choices.widenNeighbours,
                      "factor on deviations of the neighbours' shifts")
          ->check(CLI::Range(0.1, 100.0))
          ->capture_default_str(),
      command.add_option("--pseudocount", choices.pseudocount, "added to each count of neighbours")
          ->check(CLI::Range(0, 1000000))
          ->capture_default_str()};
  for (CLI::Option* option : options) option->group("Choices in training");
  return options;
}

}  // namespace kit

// Published values into tables: random-coil shifts, neighbour effects, neighbours of prolines.
#include "train/published_tables.h"

#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "train/strict_csv.h"
#include "train/table_cells.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using AtomValues = std::array<double, kBackboneAtoms>;

// --- Origin ---------------------------------------------------------------------------------------

/// The paper of a file of published values; the name of the file where it is not known.
std::string citation(const std::string& path) {
  const std::string name = baseName(path);
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

template <class Value>
void requireTypes(const std::string& path, const std::map<std::string, Value>& values) {
  for (const char type : kAminoAcids)
    if (values.count(std::string(1, type)) == 0)
      throw Error(path, 0, std::string("has no line for residue type ") + type, "add the line");
}

[[noreturn]] void failTwice(const StrictCsv& csv, const StrictCsv::Row& row, const std::string& what) {
  csv.fail(row, what + " has a line before this one", "remove one of the lines");
}

std::map<std::string, AtomValues> readRandomCoil(const std::string& path) {
  const StrictCsv csv(path);
  const std::size_t type = csv.column("res");
  std::map<std::string, AtomValues> shifts;
  for (const StrictCsv::Row& row : csv.rows) {
    const auto [found, isNew] = shifts.try_emplace(row.fields[type]);
    if (!isNew) failTwice(csv, row, row.fields[type]);
    for (std::size_t k = 0; k < kBackboneAtoms; ++k)
      found->second[k] = publishedShift(csv, row, csv.column(backboneNames()[k]));
  }
  requireTypes(path, shifts);
  const AtomValues& reduced = shifts["C"];
  AtomValues& oxidised = shifts[kDisulfide];
  for (std::size_t k = 0; k < kBackboneAtoms; ++k) oxidised[k] = reduced[k] + kOxidisedLessReduced[k];
  shifts[kKnownCis] = shifts["P"];
  return shifts;
}

GDB tableOf(const std::map<std::string, AtomValues>& values, const std::vector<std::string>& remarks) {
  GDB table = startTable(remarks, "RESNAME N HA C CA CB HN", "%s" + repeated(" %9.3f", kBackboneAtoms) + " ");
  for (const std::string& name : rowNames()) {
    std::vector<std::string> cells = {name};
    for (const double value : values.at(name)) cells.push_back(fixed(value, 3));
    addRow(table, cells);
  }
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
  std::set<std::pair<std::string, std::string>> seen;
  for (const StrictCsv::Row& row : csv.rows) {
    const std::optional<Atom> shifted = atomNamed(row.fields[atom]);
    if (!shifted || indexOf(*shifted) >= kBackboneAtoms)
      csv.fail(row, "atom is \"" + row.fields[atom] + "\", not one of N, HA, C, CA, CB, HN", kCorrectLine);
    if (!seen.emplace(row.fields[type], row.fields[atom]).second)
      failTwice(csv, row, row.fields[atom] + " beside " + row.fields[type]);
    effects[row.fields[type]][indexOf(*shifted)] = csv.number(row, value);
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

using Counts = std::array<double, 4>;

std::map<std::string, Counts> readCounts(const StrictCsv& csv) {
  std::map<std::string, Counts> counts;
  const std::size_t type = csv.column("resname");
  for (const StrictCsv::Row& row : csv.rows) {
    const std::string& name = row.fields[type];
    if (name.size() != 1 || kAminoAcids.find(name) == std::string::npos)
      csv.fail(row, "resname is \"" + name + "\", not one of the 20 residue types", kCorrectLine);
    const auto [found, isNew] = counts.try_emplace(name);
    if (!isNew) failTwice(csv, row, name);
    for (std::size_t i = 0; i < kShareColumns.size(); ++i) {
      const int count = csv.integer(row, csv.column(kShareColumns[i]));
      if (count < 0) csv.fail(row, kShareColumns[i] + " is negative", "give the count");
      found->second[i] = count;
    }
  }
  requireTypes(csv.path, counts);
  return counts;
}

Counts sumOf(const std::map<std::string, Counts>& counts) {
  Counts sum{};
  for (const auto& [name, ofType] : counts)
    for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += ofType[i];
  return sum;
}

GDB startSequenceTable(const std::string& path, const Counts& observed, int pseudocount) {
  return startTable(
      {"Share of each residue type before and after prolines, by class; each column adds up to 1 over the",
       "20 residue types. resname: one-letter code of the neighbour; cis_prev, cis_next: before and after",
       "a cis proline; trans_prev, trans_next: before and after a trans proline.",
       "Source: " + citation(path) + ";",
       fixed(observed[0], 0) + " and " + fixed(observed[1], 0) + " neighbours of cis, " +
           fixed(observed[2], 0) + " and " + fixed(observed[3], 0) + " of trans prolines; " +
           std::to_string(pseudocount) + " added to each count.",
       std::string("c: as C. p: as P. ") +
           "B, J, O, U, X and ? (other residue, unknown, gap): even shares, which favour neither."},
      "resname cis_prev cis_next trans_prev trans_next",
      "%s" + repeated(" %9.6f", kShareColumns.size()) + " ");
}

void addShares(GDB& table, const std::string& name, const Counts& shares) {
  std::vector<std::string> cells = {name};
  for (const double share : shares) cells.push_back(fixed(share, 6));
  addRow(table, cells);
}

GDB sequenceTable(const std::string& path, int pseudocount) {
  const StrictCsv csv(path);
  std::map<std::string, Counts> counts = readCounts(csv);
  GDB table = startSequenceTable(path, sumOf(counts), pseudocount);
  for (auto& [name, ofType] : counts)
    for (double& count : ofType) count += pseudocount;
  const Counts total = sumOf(counts);
  for (std::size_t i = 0; i < total.size(); ++i)
    if (!(total[i] > 0)) throw Error(path, 0, kShareColumns[i] + " holds no counts", "give the counts");
  for (auto& [name, ofType] : counts)
    for (std::size_t i = 0; i < total.size(); ++i) ofType[i] /= total[i];

  counts[kDisulfide] = counts["C"];
  counts[kKnownCis] = counts["P"];
  for (const std::string& name : rowNames()) addShares(table, name, counts[name]);
  const double even = 1.0 / static_cast<double>(kAminoAcids.size());
  for (const char name : kOtherLetters) addShares(table, std::string(1, name), {even, even, even, even});
  return table;
}

}  // namespace

PublishedData besideLabels(PublishedData published, const std::string& labels) {
  const std::filesystem::path folder = std::filesystem::path(labels).parent_path();
  const auto fill = [&](std::string& path, const char* name) {
    if (path.empty()) path = (folder / name).string();
  };
  fill(published.neighbours, "proline_neighbour_counts.csv");
  fill(published.randomCoil, "random_coil/nielsen_mulder_2018.csv");
  fill(published.neighbourEffects, "random_coil/nielsen_mulder_2018_neighbours.csv");
  return published;
}

ReferenceTables publishedTables(const PublishedData& data, int pseudocount) {
  ReferenceTables tables;
  tables.randomCoil = randomCoilTable(data.randomCoil);
  tables.adjustments = noAdjustments();
  tables.previous = neighbourTable(data.neighbourEffects, "nbr_at_i-1", "preceding");
  tables.next = neighbourTable(data.neighbourEffects, "nbr_at_i+1", "following");
  tables.sequence = sequenceTable(data.neighbours, pseudocount);
  return tables;
}

}  // namespace zorvela

// Published values into tables: random-coil shifts, neighbour effects, neighbours of prolines.
#include "train/published_tables.h"

#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "train/data_rows.h"
#include "train/table_cells.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

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

// --- Values by residue type -----------------------------------------------------------------------

/// The values of each residue type, one for each column of a table.
using Values = std::vector<double>;
using TypeValues = std::map<std::string, Values>;

void requireTypes(const std::string& path, const TypeValues& values) {
  for (const char type : kAminoAcids)
    if (values.count(std::string(1, type)) == 0)
      throw Error(path, 0, std::string("has no line for residue type ") + type, "add the line");
}

[[noreturn]] void failTwice(const DataRow& row, const std::string& what) {
  row.fail(what + " has a line before this one", "remove one of the lines");
}

/// Reads a file with one line for each type, whose name is in the first of the columns.
TypeValues readByType(const std::string& path, const std::vector<std::string>& columns,
                      const std::function<double(const DataRow& row, const std::string& column)>& read) {
  TypeValues values;
  for (const DataRow& row : readDataRows(path, columns)) {
    const auto [found, isNew] = values.try_emplace(row.text(columns.front()));
    if (!isNew) failTwice(row, found->first);
    for (std::size_t i = 1; i < columns.size(); ++i) found->second.push_back(read(row, columns[i]));
  }
  requireTypes(path, values);
  return values;
}

std::vector<std::vector<std::string>> rowsOf(const TypeValues& values, const std::vector<std::string>& types,
                                             int decimals) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& type : types) {
    rows.push_back({type});
    for (const double value : values.at(type)) rows.back().push_back(fixed(value, decimals));
  }
  return rows;
}

GDB tableOfShifts(const TypeValues& values, const std::vector<std::string>& remarks) {
  return tableOf(remarks, "RESNAME N HA C CA CB HN", "%s %9.3f %9.3f %9.3f %9.3f %9.3f %9.3f ",
                 rowsOf(values, rowNames(), 3));
}

// --- Random-coil shifts ---------------------------------------------------------------------------

// Oxidised less reduced cysteine: N, HA, C, CA, CB, HN in ppm, after Wishart et al. (1995).
constexpr std::array<double, kBackboneAtoms> kOxidisedLessReduced = {-0.2, 0.16, 0.0, -2.8, 13.1, 0.11};

/// A published value; missing where the file has none (empty or 0).
double publishedShift(const DataRow& row, const std::string& column) {
  const double value = row.text(column).empty() ? 0 : row.number(column);
  return value == 0 ? static_cast<double>(kMissingShift) : value;
}

GDB randomCoilTable(const std::string& path) {
  TypeValues shifts = readByType(path, {"res", "N", "HA", "C", "CA", "CB", "HN"}, publishedShift);
  shifts[kDisulfide] = shifts["C"];
  for (std::size_t k = 0; k < kBackboneAtoms; ++k) shifts[kDisulfide][k] += kOxidisedLessReduced[k];
  shifts[kKnownCis] = shifts["P"];
  return tableOfShifts(
      shifts, {"Random-coil shifts. RESNAME: one-letter code of the residue; one column for each atom, ppm.",
               "HN is the amide proton. 9999.000: the residue type has no such atom.",
               "Source: " + citation(path) + ".",
               "c (disulfide-bonded cysteine): row C plus oxidised less reduced cysteine after",
               "Wishart et al. (1995) J. Biomol. NMR 5, 67-81, doi:10.1007/BF00227471.", "p: as P."});
}

GDB noAdjustments() {
  TypeValues zeros;
  for (const std::string& name : rowNames()) zeros[name] = Values(kBackboneAtoms, 0);
  return tableOfShifts(
      zeros, {"Corrections to the random-coil shifts of the residue itself. RESNAME: one-letter code",
              "of the residue; one column for each atom, ppm, added to randcoil.tab.",
              "All zero: the random-coil set is used as published."});
}

// --- Neighbour effects ----------------------------------------------------------------------------

/// `where`: "preceding" or "following", seen from the residue that is shifted.
GDB neighbourTable(const std::string& path, const std::string& column, const std::string& where) {
  TypeValues effects;
  std::set<std::pair<std::string, std::string>> seen;
  for (const DataRow& row : readDataRows(path, {"neighbour", "atom", column})) {
    const std::string& type = row.text("neighbour");
    const std::string& atom = row.text("atom");
    const std::optional<Atom> shifted = atomNamed(atom);
    if (!shifted || indexOf(*shifted) >= kBackboneAtoms)
      row.fail("atom is \"" + atom + "\", not one of N, HA, C, CA, CB, HN");
    if (!seen.emplace(type, atom).second) failTwice(row, atom + " beside " + type);
    effects.try_emplace(type, kBackboneAtoms).first->second[indexOf(*shifted)] = row.number(column);
  }
  requireTypes(path, effects);
  effects[kDisulfide] = effects["C"];
  effects[kKnownCis] = effects["P"];
  return tableOfShifts(
      effects, {"Effect of the " + where + " residue on random-coil shifts. RESNAME: one-letter code of the",
                where + " residue; one column for each atom of the residue beside it, ppm,",
                "added to randcoil.tab.", "Source: " + citation(path) + ".", "c: as C. p: as P."});
}

// --- Neighbours of prolines -----------------------------------------------------------------------

double publishedCount(const DataRow& row, const std::string& column) {
  const std::string& name = row.text("resname");
  if (name.size() != 1 || kAminoAcids.find(name) == std::string::npos)
    row.fail("resname is \"" + name + "\", not one of the 20 residue types");
  const int count = row.integer(column);
  if (count < 0) row.fail(column + " is negative", "give the count");
  return count;
}

GDB sequenceTable(const std::string& path, int pseudocount) {
  const std::vector<std::string> columns = {"resname", "cis_prev", "cis_next", "trans_prev", "trans_next"};
  TypeValues shares = readByType(path, columns, publishedCount);
  std::vector<std::string> observed;
  for (std::size_t i = 0; i + 1 < columns.size(); ++i) {
    double counts = 0;
    for (const auto& [name, ofType] : shares) counts += ofType[i];
    observed.push_back(fixed(counts, 0));
    const double total = counts + pseudocount * static_cast<double>(shares.size());
    if (!(total > 0)) throw Error(path, 0, columns[i + 1] + " holds no counts", "give the counts");
    for (auto& [name, ofType] : shares) ofType[i] = (ofType[i] + pseudocount) / total;
  }
  shares[kDisulfide] = shares["C"];
  shares[kKnownCis] = shares["P"];
  std::vector<std::string> types = rowNames();
  for (const char letter : kOtherLetters) {
    types.emplace_back(1, letter);
    shares[types.back()] = Values(observed.size(), 1.0 / static_cast<double>(kAminoAcids.size()));
  }
  return tableOf(
      {"Share of each residue type before and after prolines, by class; each column adds up to 1 over the",
       "20 residue types. resname: one-letter code of the neighbour; cis_prev, cis_next: before and after",
       "a cis proline; trans_prev, trans_next: before and after a trans proline.",
       "Source: " + citation(path) + ";",
       observed[0] + " and " + observed[1] + " neighbours of cis, " + observed[2] + " and " + observed[3] +
           " of trans prolines; " + std::to_string(pseudocount) + " added to each count.",
       std::string("c: as C. p: as P. ") +
           "B, J, O, U, X and ? (other residue, unknown, gap): even shares, which favour neither."},
      "resname cis_prev cis_next trans_prev trans_next", "%s %9.6f %9.6f %9.6f %9.6f ",
      rowsOf(shares, types, 6));
}

}  // namespace

PublishedData besideLabels(PublishedData published, const std::string& labels) {
  const std::filesystem::path folder = std::filesystem::path(labels).parent_path();
  for (const auto path :
       {&PublishedData::neighbours, &PublishedData::randomCoil, &PublishedData::neighbourEffects})
    if ((published.*path).empty()) published.*path = (folder / kUsualNames.*path).string();
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

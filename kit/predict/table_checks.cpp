// Checks that each reference table is complete, and finds the line at fault.
#include "predict/table_checks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <vector>

#include "names/nomenclature.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/core.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

/// Shares are written with six decimals.
constexpr double kLargestGapInShares = 0.001;
constexpr double kLargestShift = 300;
/// A random-coil shift of N or C is above it.
constexpr double kLargestCorrection = 100;

/// The columns that the prediction reads, and the rows that must be there.
struct Layout {
  std::string keyColumn;
  std::vector<std::string> keys;
  std::vector<std::string> values;
};

/// The types that have shifts of their own.
std::vector<std::string> residueTypes() {
  std::vector<std::string> types;
  for (const char letter : kAminoAcids) types.emplace_back(1, letter);
  for (const char letter : {kDisulfideCysteine, kPassedProlineCode}) types.emplace_back(1, letter);
  return types;
}

/// All types that can be beside a proline: one without a share would have no prediction.
std::vector<std::string> neighbourTypes() {
  std::vector<std::string> types = residueTypes();
  for (const char letter : kOtherLetters) types.emplace_back(1, letter);
  return types;
}

std::vector<std::string> shiftIndices() {
  std::vector<std::string> indices;
  for (std::size_t i = 0; i < kShifts; ++i) indices.push_back(std::to_string(i));
  return indices;
}

/// The names of the backbone atoms, each with all these endings.
std::vector<std::string> atomColumns(const std::vector<std::string>& endings) {
  std::vector<std::string> columns;
  for (const Atom atom : kBackbone)
    for (const std::string& ending : endings) columns.push_back(std::string(nameOf(atom)) + ending);
  return columns;
}

Layout layoutOf(const std::string& name) {
  if (name == "sslimit.tab") return {"RESNAME", residueTypes(), atomColumns({"_MIN", "_MAX"})};
  if (name == "Pro.cs.tab")
    return {"index", shiftIndices(), {"avg_cis", "avg_trans", "std_cis", "std_trans"}};
  if (name == "Pro.seq.tab")
    return {"resname", neighbourTypes(), {"cis_prev", "cis_next", "trans_prev", "trans_next"}};
  return {"RESNAME", residueTypes(), atomColumns({""})};
}

/// One table under check.
struct Checked : ReadTable {
  Layout layout;

  [[noreturn]] void fail(std::size_t line, const std::string& what) const {
    throw TableError(file, line, what, "");
  }
  std::size_t lineOf(int row) const { return lines.rows.at(static_cast<std::size_t>(row) - 1); }
};

void checkColumns(const Checked& checked) {
  std::vector<std::string> columns = checked.layout.values;
  columns.insert(columns.begin(), checked.layout.keyColumn);
  for (const std::string& column : columns) {
    const auto holds = [&](const auto& indexed) { return indexed.second == column; };
    const auto& names = checked.table.columnNames;
    if (std::none_of(names.begin(), names.end(), holds)) checked.fail(0, "has no column " + column);
  }
  if (checked.table.entries.empty()) checked.fail(0, "has no rows");
}

/// Rejects the faults that the reader silently accepts.
void checkLines(const Checked& checked) {
  for (const std::size_t line : checked.lines.skipped)
    if (line > checked.lines.rows.front())
      checked.fail(line,
                   "does not have a value for each of the " +
                       counted(static_cast<std::size_t>(checked.table.columnCount), "column", "columns"));
  if (checked.text.back() != '\n' && checked.text.back() != '\r')
    checked.fail(0, "does not end with a newline and may be truncated");
}

void checkNumbers(const Checked& checked) {
  for (const auto& [number, row] : checked.table.entries)
    for (const std::string& column : checked.layout.values) {
      const std::string cell = GDB::cell(row, column);
      if (!toDecimal(cell) || !std::isfinite(GDB::toFloat(cell)))
        checked.fail(checked.lineOf(number), column + " is \"" + printable(cell, 40) + "\", not a number");
    }
}

void checkRows(const Checked& checked) {
  const std::vector<std::string>& keys = checked.layout.keys;
  const bool isByIndex = checked.layout.keyColumn == "index";
  std::set<std::string> seen;
  for (const auto& [number, row] : checked.table.entries) {
    const std::string key = GDB::cell(row, checked.layout.keyColumn);
    // The program takes the digits that an index begins with, so that "7x" and "07" replace the row of 7.
    if (isByIndex && std::find(keys.begin(), keys.end(), key) == keys.end())
      checked.fail(checked.lineOf(number), "index is \"" + printable(key, 40) + "\", not a shift index");
    if (!seen.insert(key).second)
      checked.fail(checked.lineOf(number),
                   checked.layout.keyColumn + " " + printable(key, 40) + " is given twice");
  }
  for (const std::string& key : keys)
    if (seen.count(key) == 0)
      checked.fail(0, isByIndex ? "has no row with index " + key : "has no row for residue type " + key);
}

/// Of alanine, whose shifts are far apart: another order means exchanged columns or tables.
void checkRandomCoil(const Checked& checked) {
  for (const auto& [number, row] : checked.table.entries) {
    if (GDB::cell(row, "RESNAME") != "A") continue;
    const std::array<std::string, 6> fromHighToLow = {"C", "N", "CA", "CB", "HN", "HA"};
    for (std::size_t i = 1; i < fromHighToLow.size(); ++i) {
      const std::string& high = fromHighToLow[i - 1];
      const std::string& low = fromHighToLow[i];
      if (GDB::toFloat(GDB::cell(row, high)) < GDB::toFloat(GDB::cell(row, low)))
        checked.fail(checked.lineOf(number), high + " of alanine is below " + low + ", which no peptide has");
    }
  }
}

/// Shifts and their differences (ppm) are far below the mark of an atom that a residue does not have.
void checkSizes(const Checked& checked, double most) {
  for (const auto& [number, row] : checked.table.entries)
    for (const std::string& column : checked.layout.values)
      if (const float value = GDB::toFloat(GDB::cell(row, column));
          std::fabs(static_cast<double>(value)) > most && value != kMissingShift)
        checked.fail(checked.lineOf(number),
                     column + " is " + GDB::cell(row, column) + ", beyond " + fixedText(most, 0) + " ppm");
}

void checkLimits(const Checked& checked) {
  for (const auto& [number, row] : checked.table.entries)
    for (const std::string& atom : atomColumns({""}))
      if (GDB::toFloat(GDB::cell(row, atom + "_MIN")) > GDB::toFloat(GDB::cell(row, atom + "_MAX")))
        checked.fail(checked.lineOf(number), atom + "_MIN is above " + atom + "_MAX");
}

void checkDeviations(const Checked& checked) {
  for (const auto& [number, row] : checked.table.entries)
    for (const char* column : {"std_cis", "std_trans"})
      // The inverse of the smallest numbers is infinite.
      if (const float deviation = GDB::toFloat(GDB::cell(row, column));
          !(deviation > 0) || !std::isfinite(1 / deviation))
        checked.fail(checked.lineOf(number), std::string(column) + " is not above 0");
}

void checkShares(const Checked& checked) {
  for (const std::string& column : checked.layout.values) {
    double sum = 0;
    for (const auto& [number, row] : checked.table.entries) {
      const double share = GDB::toDouble(GDB::cell(row, column));
      if (share < 0 || share > 1) checked.fail(checked.lineOf(number), column + " is not between 0 and 1");
      const std::string name = GDB::cell(row, checked.layout.keyColumn);
      if (name.size() == 1 && contains(kAminoAcids, name)) sum += share;
    }
    if (std::fabs(sum - 1) > kLargestGapInShares)
      checked.fail(0, column + " of the 20 residue types adds up to " + fixedText(sum, 4) + ", not 1");
  }
}

}  // namespace

void checkTable(const std::string& name, const ReadTable& read) {
  const Checked checked{read, layoutOf(name)};
  checkColumns(checked);
  checkLines(checked);
  checkNumbers(checked);
  checkRows(checked);
  if (name != "Pro.seq.tab")
    checkSizes(checked, name.rfind("rc", 0) == 0 ? kLargestCorrection : kLargestShift);
  if (name == "randcoil.tab") checkRandomCoil(checked);
  if (name == "sslimit.tab") checkLimits(checked);
  if (name == "Pro.cs.tab") checkDeviations(checked);
  if (name == "Pro.seq.tab") checkShares(checked);
}

}  // namespace zorvela

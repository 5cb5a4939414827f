// How rows are found by value: a scan in a small table, an index by cell text in a large one.
#include <algorithm>   // for std::sort, std::lower_bound
#include <functional>  // for std::hash

#include "GDB.h"

namespace {

// Up to this many rows a scan is as fast as an index and needs no memory.
constexpr std::size_t kScanLimit = 32;

}  // namespace

const std::string& GDB::cell(const Row& row, const std::string& col) {
  return row.text(col);
}

const GDB::Row* GDB::findEntry(const std::string& col, const std::string& value, int n) const {
  if (n <= 0) return nullptr;
  const Row* match = nullptr;
  visitMatches(col, value, [&](const Row& row) {
    if (--n == 0) match = &row;
    return n > 0;
  });
  return match;
}

const GDB::Row* GDB::findEntry(const std::string& col1, const std::string& value1, const std::string& col2,
                               const std::string& value2, int n) const {
  if (n <= 0) return nullptr;
  const Row* match = nullptr;
  visitMatches(col1, value1, [&](const Row& row) {
    if (cell(row, col2) == value2 && --n == 0) match = &row;
    return n > 0;
  });
  return match;
}

std::vector<const GDB::Row*> GDB::findEntries(const std::string& col, const std::string& value) const {
  std::vector<const Row*> matches;
  visitMatches(col, value, [&](const Row& row) {
    matches.push_back(&row);
    return true;
  });
  return matches;
}

// Shows the rows whose cell `col` is `value` to `visit`, in row order, for as long as that returns true.
template <class Visit>
void GDB::visitMatches(const std::string& col, const std::string& value, Visit visit) const {
  Row::Column column(col);
  if (entries.size() <= kScanLimit) {
    for (const auto& [number, row] : entries)
      if (column.of(row) == value && !visit(row)) return;
    return;
  }
  const std::vector<RowIndex::Run>& runs = indexOf(col).runs;
  const std::size_t hash = std::hash<std::string>{}(value);
  auto run = std::lower_bound(runs.begin(), runs.end(), hash,
                              [](const RowIndex::Run& a, std::size_t wanted) { return a.hash < wanted; });
  for (; run != runs.end() && run->hash == hash; ++run) {
    auto at = entries.lower_bound(run->firstRow);
    for (; at != entries.end() && at->first <= run->lastRow; ++at)
      if (column.of(at->second) == value && !visit(at->second)) return;
  }
}

const RowIndex::Column& GDB::indexOf(const std::string& col) const {
  RowIndex::Column& column = index.columns[col];
  if (column.rowCount == entries.size()) return column;
  column.rowCount = entries.size();
  std::vector<RowIndex::Run>& runs = column.runs;
  runs.clear();
  Row::Column cells(col);
  for (const auto& [number, row] : entries) {
    const std::size_t hash = std::hash<std::string>{}(cells.of(row));
    if (runs.empty() || runs.back().hash != hash)
      runs.push_back({hash, number, number});
    else
      runs.back().lastRow = number;
  }
  std::sort(runs.begin(), runs.end(), [](const RowIndex::Run& a, const RowIndex::Run& b) {
    return std::pair(a.hash, a.firstRow) < std::pair(b.hash, b.firstRow);
  });
  return column;
}

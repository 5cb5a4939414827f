// How rows are found by value: a scan in a small table, an index by cell text in a large one.
#include <functional>  // for std::hash

#include "GDB.h"

namespace {

// Up to this many rows a scan is as fast as an index and needs no memory.
constexpr std::size_t kScanLimit = 32;

}  // namespace

const std::string& GDB::cell(const Row& row, const std::string& col) {
  return row.value(col);
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
  const RowIndex::Column& rows = indexOf(col);
  const std::size_t hash = std::hash<std::string>{}(value);
  int run = rows.firstInBucket[hash % rows.firstInBucket.size()];
  for (; run != RowIndex::kNone; run = rows.runs[static_cast<std::size_t>(run)].next) {
    const RowIndex::Run& candidates = rows.runs[static_cast<std::size_t>(run)];
    if (candidates.hash != hash) continue;
    auto at = entries.lower_bound(candidates.firstRow);
    for (; at != entries.end() && at->first <= candidates.lastRow; ++at)
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
  // Backwards, so that a bucket holds its runs in the order of the rows.
  column.firstInBucket.assign(runs.size(), RowIndex::kNone);
  for (std::size_t i = runs.size(); i-- > 0;) {
    int& first = column.firstInBucket[runs[i].hash % runs.size()];
    runs[i].next = first;
    first = static_cast<int>(i);
  }
  return column;
}

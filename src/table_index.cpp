// How rows are found by value: a scan in a small table, an index by cell text in a large one.
#include <algorithm>   // for std::sort, std::lower_bound
#include <functional>  // for std::hash

#include "GDB.h"

namespace {

// Up to this many rows a scan is as fast as an index and needs no memory.
constexpr std::size_t kScanLimit = 64;

const std::string kNoText;

}  // namespace

const std::string& GDB::cell(const Row& row, const std::string& col) {
  const auto found = row.find(col);
  return found == row.end() ? kNoText : found->second;
}

const GDB::Row* GDB::findEntry(const std::string& col, const std::string& value, int n) const {
  return findMatch(col, value, n, [&](const Row& row) { return cell(row, col) == value; });
}

const GDB::Row* GDB::findEntry(const std::string& col1, const std::string& value1, const std::string& col2,
                               const std::string& value2, int n) const {
  return findMatch(col1, value1, n,
                   [&](const Row& row) { return cell(row, col1) == value1 && cell(row, col2) == value2; });
}

// The n-th row that matches, among those whose cell `col` may be `value`.
template <class Matches>
const GDB::Row* GDB::findMatch(const std::string& col, const std::string& value, int n,
                               Matches matches) const {
  if (n <= 0) return nullptr;
  if (entries.size() <= kScanLimit) {
    for (const auto& [number, row] : entries)
      if (matches(row) && --n == 0) return &row;
    return nullptr;
  }
  const RowIndex::Column& column = indexOf(col);
  const std::size_t hash = std::hash<std::string>{}(value);
  auto hit = std::lower_bound(column.begin(), column.end(), hash,
                              [](const auto& entry, std::size_t wanted) { return entry.first < wanted; });
  for (; hit != column.end() && hit->first == hash; ++hit) {
    const auto found = entries.find(hit->second);
    if (found != entries.end() && matches(found->second) && --n == 0) return &found->second;
  }
  return nullptr;
}

const RowIndex::Column& GDB::indexOf(const std::string& col) const {
  RowIndex::Column& column = index.columns[col];
  if (column.size() == entries.size()) return column;
  column.clear();
  column.reserve(entries.size());
  for (const auto& [number, row] : entries)
    column.emplace_back(std::hash<std::string>{}(cell(row, col)), number);
  std::sort(column.begin(), column.end());
  return column;
}

// Indexes the rows of a shift table by residue.
#include "residue_rows.h"

#include <algorithm>  // for std::is_sorted, std::stable_sort, std::lower_bound, std::find_if
#include <charconv>   // for std::from_chars
#include <optional>   // for std::optional

#include "names.h"

namespace {

bool isBefore(const ResidueRows::Entry& a, const ResidueRows::Entry& b) {
  return a.resid < b.resid;
}

// The number that is written so in decimal, if there is one.
std::optional<int> plainNumber(const std::string& text) {
  int number = 0;
  const char* last = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), last, number);
  if (error != std::errc() || parsed != last) return std::nullopt;
  const bool isNegative = text[0] == '-';
  const bool startsWithZero = text[isNegative ? 1 : 0] == '0';
  if (startsWithZero && text != "0") return std::nullopt;
  return number;
}

}  // namespace

ResidueRows::ResidueRows(const GDB& table) {
  entries.reserve(table.entries.size());
  for (const auto& [number, row] : table.entries)
    if (const auto resid = plainNumber(GDB::cell(row, kResid)))
      entries.push_back({*resid, &GDB::cell(row, kAtomName), &row});
  const bool inOrder = std::is_sorted(entries.begin(), entries.end(), isBefore);
  if (!inOrder) std::stable_sort(entries.begin(), entries.end(), isBefore);
}

ResidueRows::Residue ResidueRows::of(int resid) const {
  const Place first = std::lower_bound(entries.begin(), entries.end(), resid,
                                       [](const Entry& entry, int wanted) { return entry.resid < wanted; });
  Place end = first;
  while (end != entries.end() && end->resid == resid) ++end;
  return {first, end};
}

const GDB::Row* ResidueRows::Residue::find(const std::string& atomName) const {
  const Place found =
      std::find_if(first, end, [&](const Entry& entry) { return *entry.atomName == atomName; });
  return found == end ? nullptr : found->row;
}

float ResidueRows::Residue::shiftOf(const std::string& atomName, float absent) const {
  const GDB::Row* row = find(atomName);
  return row ? GDB::toFloat(GDB::cell(*row, kShift)) : absent;
}

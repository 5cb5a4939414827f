#include "formats/text/csv_without_names.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "formats/text/csv_cells.h"
#include "formats/text/residue_label.h"
#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

bool isTableAtomName(const std::string& cell) {
  return readAtom('A', cell).isInTable() || readAtom('G', cell).isInTable() ||
         readAtom(kProlineCode, cell).isInTable();
}

/// A name such as HB2, CG1, QQD or CD1/2: a nucleus, then where it is.
bool isAtomName(const std::string& cell) {
  const std::string text = upper(withLatinLetters(cell));
  constexpr std::size_t kLongest = 8;
  return !text.empty() && text.size() <= kLongest && contains("HCNQMOS", text.substr(0, 1)) &&
         std::all_of(text.begin(), text.end(), [](char c) {
           return isLetter(c) || isDigit(c) || contains("%*#'\"/|+", {&c, 1});
         });
}

bool isResidueName(const std::string& cell) {
  return !toInteger(cell) && polypeptideResidue(cell).letter != kUnknownResidue;
}

bool isResidueLabel(const std::string& cell) {
  const auto read = readLabel(cell);
  return read && !read->number.empty() && !read->name.empty();
}

std::string atomOfLabel(const std::string& cell) {
  const auto read = readLabel(cell, true);
  return read && !read->number.empty() ? read->atom : std::string();
}

/// A kind of column. All its cells fit; where `isCertain` is given, it must be true for one of them at least.
struct ColumnKind {
  const char* title;
  std::size_t CsvColumns::*place;  ///< nullptr: one of `CsvColumns::residues`
  bool (*fits)(const std::string& cell);
  bool (*isCertain)(const std::string& cell) = nullptr;
};

constexpr ColumnKind kNumber = {"residue number", &CsvColumns::counter,
                                [](const std::string& cell) { return toInteger(cell).has_value(); }};
constexpr ColumnKind kName = {"residue name", &CsvColumns::name, isResidueName};
constexpr ColumnKind kAtom = {"atom", &CsvColumns::atom, isAtomName, isTableAtomName};
constexpr ColumnKind kResidue = {"residue", nullptr, isResidueLabel};
constexpr ColumnKind kAssignment = {
    "residue with atom", &CsvColumns::assignment,
    [](const std::string& cell) { return isAtomName(atomOfLabel(cell)); },
    [](const std::string& cell) { return isTableAtomName(atomOfLabel(cell)); }};
constexpr ColumnKind kShift = {"shift", &CsvColumns::shift, isNumber, [](const std::string& cell) {
                                 return cell.find_first_of(".,") != std::string::npos;
                               }};

/// The kinds of the columns from left to right, and which of these are certain.
struct Order {
  std::vector<const ColumnKind*> kinds;
  std::vector<bool> isCertain;

  /// False where a cell does not fit.
  bool add(const std::vector<std::string>& cells) {
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      if (!kinds[i]->fits(cells[i])) return false;
      isCertain[i] = isCertain[i] || kinds[i]->isCertain == nullptr || kinds[i]->isCertain(cells[i]);
    }
    return true;
  }
};

/// Returns all orders of a table with so many columns.
std::vector<Order> ordersOf(std::size_t width) {
  std::vector<const ColumnKind*> kinds = {&kAssignment, &kShift};
  if (width == 3) kinds = {&kResidue, &kAtom, &kShift};
  if (width == 4) kinds = {&kNumber, &kName, &kAtom, &kShift};
  std::sort(kinds.begin(), kinds.end(), std::less<>());
  std::vector<Order> orders;
  do orders.push_back({kinds, std::vector<bool>(kinds.size(), false)});
  while (std::next_permutation(kinds.begin(), kinds.end(), std::less<>()));
  return orders;
}

/// Returns the one order of which all columns are certain; nullptr where there are two or none.
const Order* onlyOrder(const std::vector<Order>& orders) {
  const Order* only = nullptr;
  for (const Order& order : orders) {
    if (std::count(order.isCertain.begin(), order.isCertain.end(), false) > 0) continue;
    if (only != nullptr) return nullptr;
    only = &order;
  }
  return only;
}

CsvTable tableOf(CsvLayout layout, const Order& order) {
  CsvTable table{std::move(layout), {}};
  for (std::size_t i = 0; i < order.kinds.size(); ++i) {
    const ColumnKind& kind = *order.kinds[i];
    table.layout.names[i] = kind.title;
    if (kind.place != nullptr)
      table.columns.*kind.place = i;
    else
      table.columns.residues = {i};
  }
  return table;
}

}  // namespace

PlainTable tableWithoutNames(std::string_view text) {
  std::size_t pos = 0;
  std::size_t line = 0;
  std::optional<std::string_view> first = nextFilledLine(text, pos, line);
  while (first && trimmed(*first).front() == '#') first = nextFilledLine(text, pos, line);
  auto layout = first ? layoutOf(*first, text, 0, 0) : std::nullopt;
  if (!layout || layout->width() < 2 || layout->width() > 4) return {};
  layout->places.clear();
  PlainTable result;
  std::vector<Order> orders = ordersOf(layout->width());
  std::size_t rows = 0;
  // Text of another kind fails within its first rows, and the rest is skipped.
  forEachRow(text, *layout, [&](const CsvRow& row) {
    if (orders.empty()) return;
    ++rows;
    const bool wasTable = onlyOrder(orders) != nullptr;
    std::vector<Order> fitting;
    for (Order& order : orders)
      if (row.fault.empty() && order.add(row.cells)) fitting.push_back(std::move(order));
    orders = std::move(fitting);
    if (orders.empty() && wasTable) result.oddLine = row.line;
  });
  constexpr std::size_t kFewestRows = 2;
  const Order* order = onlyOrder(orders);
  if (order != nullptr && rows >= kFewestRows) result.table = tableOf(std::move(*layout), *order);
  return result;
}

}  // namespace zorvela

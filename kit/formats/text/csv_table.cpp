#include "formats/text/csv_table.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "formats/text/cells.h"
#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kColumnsRemedy =
    "give NMR-STAR, NEF, the program's shift table, or text with a header line such as "
    "resid,resname,atom,shift";
// There may be a page of titles and comments above the column names.
constexpr std::size_t kMostLinesAbove = 50;

// --- Without column names -----------------------------------------------------------------------

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
constexpr ColumnKind kShift = {
    "shift", &CsvColumns::shift, [](const std::string& cell) { return numberIn(cell).has_value(); },
    [](const std::string& cell) { return cell.find_first_of(".,") != std::string::npos; }};

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

/// Returns the table in a text without column names; nothing where a row has other cells, or where there are
/// two ways to read them. FileError for a row unlike those of the table above it.
std::optional<CsvTable> tableWithoutNames(std::string_view text, const std::string& file) {
  std::size_t pos = 0;
  std::size_t line = 0;
  std::optional<std::string_view> first = nextFilledLine(text, pos, line);
  while (first && trimmed(*first).front() == '#') first = nextFilledLine(text, pos, line);
  auto layout = first ? layoutOf(*first, text, 0) : std::nullopt;
  if (!layout || layout->names.size() < 2 || layout->names.size() > 4) return std::nullopt;
  std::vector<Order> orders = ordersOf(layout->names.size());
  std::size_t rows = 0;
  // Text of another kind fails within its first rows, and the rest is skipped.
  forEachRow(*layout, [&](const CsvRow& row) {
    if (orders.empty()) return;
    ++rows;
    const bool wasTable = onlyOrder(orders) != nullptr;
    const auto isUnlike = [&](Order& order) { return !row.fault.empty() || !order.add(row.cells); };
    orders.erase(std::remove_if(orders.begin(), orders.end(), isUnlike), orders.end());
    if (orders.empty() && wasTable)
      throw FileError(file, row.line, "is not like the rows above it, and the table has no column names",
                      "correct or remove this row, or add a line of column names");
  });
  constexpr std::size_t kFewestRows = 2;
  const Order* order = onlyOrder(orders);
  if (order == nullptr || rows < kFewestRows) return std::nullopt;
  CsvTable table{std::move(*layout), {}};
  for (std::size_t i = 0; i < order->kinds.size(); ++i) {
    const ColumnKind& kind = *order->kinds[i];
    table.layout.names[i] = kind.title;
    if (kind.place != nullptr)
      table.columns.*kind.place = i;
    else
      table.columns.residues = {i};
  }
  return table;
}

}  // namespace

CsvTable findTable(std::string_view text, const std::string& file, std::vector<std::string>& notes) {
  std::size_t pos = 0;
  std::size_t line = 0;
  std::string_view first;
  std::size_t firstLine = 0;
  CsvColumns firstColumns;
  for (std::size_t above = 0; above < kMostLinesAbove; ++above) {
    const auto header = nextFilledLine(text, pos, line);
    if (!header) break;
    const auto layout = layoutOf(*header, text.substr(std::min(pos, text.size())), line);
    const CsvColumns columns = layout ? readColumns(layout->names) : CsvColumns();
    if (columns.areEnough()) {
      if (above > 0) notes.push_back(lineRange(firstLine, line - 1) + " above the column names ignored");
      return {*layout, columns};
    }
    if (above > 0) continue;
    first = *header;
    firstLine = line;
    firstColumns = columns;
  }
  if (auto table = tableWithoutNames(text, file)) {
    notes.push_back("no column names; by their contents, the columns are " + enumerated(table->layout.names));
    return *std::move(table);
  }
  const std::size_t start = first.find_first_not_of("# \t");
  const std::string begin = printable(trimmed(start == first.npos ? first : first.substr(start)), 60);
  const bool isPartly = firstColumns.shift != kNoColumn || firstColumns.atom != kNoColumn;
  throw FileError(file, firstLine,
                  isPartly ? "the columns lack " + firstColumns.missing()
                           : "is not a known kind of shift file; it begins with \"" + begin + "\"",
                  kColumnsRemedy);
}

}  // namespace zorvela

#include "formats/text/csv_without_names.h"

#include <algorithm>
#include <array>
#include <string>

#include "formats/text/csv_cells.h"
#include "formats/text/residue_label.h"
#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

enum Role : std::size_t { number, name, atom, label, assignment, shift, roleCount };

/// What a column can be: every cell will do, and one is plainly so (an atom of the table, a decimal point).
struct Fit {
  bool all = true;
  bool isPlain = false;
};
using Fits = std::array<Fit, roleCount>;

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

/// Whether a cell can have a role, and whether it plainly has.
struct RoleTest {
  bool (*fits)(const std::string& cell);
  bool (*isPlain)(const std::string& cell);
};

bool always(const std::string&) {
  return true;
}

// In the order of `Role`.
constexpr std::array<RoleTest, roleCount> kTests = {{
    {[](const std::string& cell) { return toInteger(cell).has_value(); }, always},
    {isResidueName, always},
    {isAtomName, isTableAtomName},
    {isResidueLabel, always},
    {[](const std::string& cell) { return isAtomName(atomOfLabel(cell)); },
     [](const std::string& cell) { return isTableAtomName(atomOfLabel(cell)); }},
    {isNumber, [](const std::string& cell) { return cell.find_first_of(".,") != std::string::npos; }},
}};

void narrow(const std::string& cell, Fits& fits) {
  for (std::size_t role = 0; role < roleCount; ++role) {
    fits[role].all = fits[role].all && kTests[role].fits(cell);
    fits[role].isPlain = fits[role].isPlain || (fits[role].all && kTests[role].isPlain(cell));
  }
}

/// What a plain table of so many columns holds, in whatever order.
std::vector<Role> rolesOf(std::size_t width) {
  if (width == 4) return {number, name, atom, shift};
  if (width == 3) return {atom, label, shift};
  return {assignment, shift};
}

/// The one order of roles that all columns allow; nothing where there are two or none.
std::optional<std::vector<Role>> onlyOrder(const std::vector<Fits>& columns) {
  std::vector<Role> roles = rolesOf(columns.size());
  std::optional<std::vector<Role>> found;
  do {
    bool isFit = true;
    for (std::size_t i = 0; i < roles.size(); ++i) {
      const Fit& fit = columns[i][roles[i]];
      isFit = isFit && fit.all && fit.isPlain;
    }
    if (isFit && found) return std::nullopt;
    if (isFit) found = roles;
  } while (std::next_permutation(roles.begin(), roles.end()));
  return found;
}

/// The columns by their roles, with names for them.
void setColumns(const std::vector<Role>& roles, CsvTable& table) {
  constexpr std::array<const char*, roleCount> kNames = {"residue number", "residue name",      "atom",
                                                         "residue",        "residue with atom", "shift"};
  CsvColumns& columns = table.columns;
  columns.residues.resize(1, kNoColumn);
  const std::array<std::size_t*, roleCount> places = {&columns.counter,    &columns.name,
                                                      &columns.atom,       &columns.residues.front(),
                                                      &columns.assignment, &columns.shift};
  for (std::size_t i = 0; i < roles.size(); ++i) {
    *places[roles[i]] = i;
    table.layout.names[i] = kNames[roles[i]];
  }
}

}  // namespace

PlainTable tableWithoutNames(std::string_view text) {
  std::size_t pos = 0;
  std::size_t line = 0;
  std::optional<std::string_view> first = nextFilledLine(text, pos, line);
  while (first && trimmed(*first).front() == '#') first = nextFilledLine(text, pos, line);
  const auto layout = first ? layoutOf(*first, text, 0, 0) : std::nullopt;
  if (!layout || layout->width() < 2 || layout->width() > 4) return {};
  PlainTable result;
  CsvTable table;
  table.layout = *layout;
  table.layout.places.clear();
  table.layout.names.assign(layout->width(), "");
  std::vector<Fits> fits(layout->width());
  std::size_t rows = 0;
  bool isWhole = true;
  // Text of another kind fails within its first rows, and is not looked at further.
  forEachRow(text, table.layout, [&](const CsvRow& row) {
    if (!isWhole) return;
    ++rows;
    const std::vector<Fits> before = fits;
    for (std::size_t i = 0; row.fault.empty() && i < fits.size(); ++i) narrow(row.cells[i], fits[i]);
    isWhole = row.fault.empty() && std::all_of(fits.begin(), fits.end(), [](const Fits& column) {
                return std::any_of(column.begin(), column.end(), [](const Fit& fit) { return fit.all; });
              });
    if (!isWhole && onlyOrder(before)) result.oddLine = row.line;
  });
  constexpr std::size_t kFewestRows = 2;
  const auto roles = isWhole && rows >= kFewestRows ? onlyOrder(fits) : std::nullopt;
  if (!roles) return result;
  setColumns(*roles, table);
  result.table = std::move(table);
  return result;
}

}  // namespace zorvela

#include "formats/text/csv_without_names.h"

#include <algorithm>
#include <string>
#include <utility>

#include "formats/text/csv_cells.h"
#include "formats/text/residue_label.h"
#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// What all cells of a column can be.
struct Kinds {
  bool number = true;
  bool name = true;
  bool atom = true;
  bool label = true;
  bool assignment = true;
  bool shift = true;
  bool hasPoint = false;      ///< some number has decimals
  bool hasTableAtom = false;  ///< some cell is an atom that the shift table holds
};

bool isTableAtomName(const std::string& cell) {
  for (const char letter : {'A', 'G', 'P'})
    if (readAtom(letter, cell).isInTable()) return true;
  return false;
}

/// A name such as HB2, CG1, NE or QD: a nucleus, then where it is.
bool isAtomName(const std::string& cell) {
  const std::string name = upper(withLatinLetters(cell));
  return !name.empty() && name.size() <= 5 &&
         std::string_view("HCNQM").find(name.front()) != std::string_view::npos &&
         std::all_of(name.begin() + 1, name.end(), [](char c) {
           return isDigit(c) || std::string_view("ABGDEZHNOXYC%*#'\"").find(c) != std::string_view::npos;
         });
}

bool isResidueName(const std::string& cell) {
  return polypeptideResidue(cell).letter != kUnknownResidue && toInteger(cell) == std::nullopt;
}

void narrow(const std::string& cell, Kinds& kinds) {
  const auto label = readLabel(cell);
  const auto assignment = readLabel(cell, true);
  kinds.number = kinds.number && toInteger(cell).has_value();
  kinds.name = kinds.name && isResidueName(cell);
  kinds.atom = kinds.atom && isAtomName(cell);
  kinds.label = kinds.label && label && !label->number.empty() && !label->name.empty();
  kinds.assignment =
      kinds.assignment && assignment && !assignment->number.empty() && isAtomName(assignment->atom);
  kinds.shift = kinds.shift && isNumber(cell);
  kinds.hasPoint = kinds.hasPoint || cell.find_first_of(".,") != std::string::npos;
  kinds.hasTableAtom = kinds.hasTableAtom || isTableAtomName(assignment ? assignment->atom : cell);
}

/// The one column of a kind, if there is but one.
std::size_t onlyColumn(const std::vector<Kinds>& columns, bool (*is)(const Kinds&)) {
  std::size_t found = kNoColumn;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!is(columns[i])) continue;
    if (found != kNoColumn) return kNoColumn;
    found = i;
  }
  return found;
}

bool isShift(const Kinds& kinds) {
  return kinds.shift && kinds.hasPoint;
}

/// Which of the two columns beside number and shift is the name, which the atom; both readings are no good.
bool splitNameAndAtom(const std::vector<Kinds>& kinds, CsvColumns& columns) {
  std::vector<std::size_t> rest;
  for (std::size_t i = 0; i < kinds.size(); ++i)
    if (i != columns.counter && i != columns.shift) rest.push_back(i);
  const auto fits = [&](std::size_t name, std::size_t atom) {
    return kinds[name].name && kinds[atom].atom && kinds[atom].hasTableAtom;
  };
  if (rest.size() != 2 || fits(rest[0], rest[1]) == fits(rest[1], rest[0])) return false;
  columns.name = fits(rest[0], rest[1]) ? rest[0] : rest[1];
  columns.atom = fits(rest[0], rest[1]) ? rest[1] : rest[0];
  return true;
}

bool findRoles(const std::vector<Kinds>& kinds, CsvColumns& columns) {
  columns.shift = onlyColumn(kinds, isShift);
  if (columns.shift == kNoColumn) return false;
  if (kinds.size() == 4) {
    columns.counter = onlyColumn(kinds, [](const Kinds& one) { return one.number && !one.hasPoint; });
    return columns.counter != kNoColumn && splitNameAndAtom(kinds, columns);
  }
  if (kinds.size() == 3) {
    const std::size_t label = onlyColumn(kinds, [](const Kinds& one) { return one.label; });
    columns.atom = onlyColumn(kinds, [](const Kinds& one) { return one.atom && one.hasTableAtom; });
    columns.residues = {label};
    return label != kNoColumn && columns.atom != kNoColumn && label != columns.atom;
  }
  columns.assignment = onlyColumn(kinds, [](const Kinds& one) { return one.assignment && one.hasTableAtom; });
  return kinds.size() == 2 && columns.assignment != kNoColumn;
}

/// Whether there still is a column for each role; once there is none, no row brings it back.
bool mayHaveRoles(const std::vector<Kinds>& kinds) {
  const auto any = [&kinds](bool Kinds::*is) {
    return std::any_of(kinds.begin(), kinds.end(), [is](const Kinds& one) { return one.*is; });
  };
  if (!any(&Kinds::shift)) return false;
  if (kinds.size() == 4) return any(&Kinds::number) && any(&Kinds::name) && any(&Kinds::atom);
  if (kinds.size() == 3) return any(&Kinds::label) && any(&Kinds::atom);
  return any(&Kinds::assignment);
}

}  // namespace

std::optional<CsvTable> tableWithoutNames(std::string_view text) {
  constexpr std::size_t kFewestRows = 2;
  CsvTable table;
  std::size_t pos = 0;
  std::size_t line = 0;
  std::optional<std::string_view> first = nextFilledLine(text, pos, line);
  while (first && trimmed(*first).front() == '#') first = nextFilledLine(text, pos, line);
  if (!first) return std::nullopt;
  const auto layout = layoutOf(*first, text, 0, 0);
  if (!layout || layout->width() < 2 || layout->width() > 4) return std::nullopt;
  table.layout = *layout;
  table.layout.places.clear();
  table.layout.names.assign(layout->width(), "");
  std::vector<Kinds> kinds(layout->width());
  std::size_t rows = 0;
  bool isPlain = true;
  forEachRow(text, table.layout, [&](const CsvRow& row) {
    ++rows;
    isPlain = isPlain && row.fault.empty();
    for (std::size_t i = 0; isPlain && i < kinds.size(); ++i) narrow(row.cells[i], kinds[i]);
    isPlain = isPlain && mayHaveRoles(kinds);
  });
  if (!isPlain || rows < kFewestRows || !findRoles(kinds, table.columns)) return std::nullopt;
  return table;
}

}  // namespace zorvela

#include "formats/text/csv_residue.h"

#include <algorithm>
#include <utility>

#include "formats/text/csv_cells.h"

namespace zorvela {

namespace {

const std::string& cellAt(const std::vector<std::string>& cells, std::size_t column) {
  static const std::string kNone;
  return column < cells.size() ? cells[column] : kNone;
}

/// The columns that may give the number of a residue, in order of trust.
std::vector<std::size_t> numberSources(const CsvColumns& columns) {
  std::vector<std::size_t> sources = {columns.number, columns.assignment};
  sources.insert(sources.end(), columns.residues.begin(), columns.residues.end());
  sources.push_back(columns.name);
  sources.push_back(columns.counter);
  return sources;
}

/// The same for its name.
std::vector<std::size_t> nameSources(const CsvColumns& columns) {
  std::vector<std::size_t> sources = {columns.name};
  sources.insert(sources.end(), columns.residues.begin(), columns.residues.end());
  sources.insert(sources.end(), {columns.assignment, columns.number, columns.counter});
  return sources;
}

void takeChain(const ResidueLabel& label, const std::string& cell, RowResidue& residue) {
  if (label.chain.empty()) return;
  if (residue.chain.empty()) residue.chain = label.chain;
  if (residue.chain != label.chain) residue.strayLabel = cell;
}

void findNumber(const std::vector<std::string>& cells, const CsvColumns& columns, RowResidue& residue) {
  for (const std::size_t column : numberSources(columns)) {
    if (column == kNoColumn) continue;
    const bool isAssignment = column == columns.assignment;
    auto label = readLabel(cellAt(cells, column), isAssignment);
    if (!label || label->number.empty()) continue;
    residue.label = std::move(*label);
    residue.isByCounter = column == columns.counter;
    if (isAssignment) residue.atom = residue.label.atom;
    takeChain(residue.label, cellAt(cells, column), residue);
    return;
  }
}

void findName(const std::vector<std::string>& cells, const CsvColumns& columns, RowResidue& residue) {
  for (const std::size_t column : nameSources(columns)) {
    const std::string& cell = cellAt(cells, column);
    if (cell.empty()) continue;
    const auto label = readLabel(cell, column == columns.assignment);
    if (label && !label->name.empty() && (label->number.empty() || label->number == residue.label.number)) {
      residue.name = label->name;
      takeChain(*label, cell, residue);
      return;
    }
    // A name that is not known stays as it is, where the number is known without it.
    const bool mayBeName =
        column == columns.name ||
        std::find(columns.residues.begin(), columns.residues.end(), column) != columns.residues.end();
    if (mayBeName && (!label || label->number != residue.label.number)) {
      residue.name = cell;
      return;
    }
  }
}

}  // namespace

RowResidue residueOf(const std::vector<std::string>& cells, const CsvColumns& columns) {
  RowResidue residue;
  residue.chain = cellAt(cells, columns.chain);
  findNumber(cells, columns, residue);
  findName(cells, columns, residue);
  return residue;
}

bool isPlaced(const RowResidue& residue, const CsvColumns& columns) {
  const bool hasAtom = !columns.lackAtoms() || !residue.atom.empty();
  return hasAtom && !residue.label.number.empty() && residue.strayLabel.empty();
}

std::string whyNotPlaced(const RowResidue& residue, const std::vector<std::string>& cells,
                         const CsvColumns& columns) {
  if (!residue.strayLabel.empty())
    return quotedCell(residue.strayLabel) + " is of another chain than the row";
  const char* what = residue.label.number.empty() ? " is no residue number" : " names no atom";
  for (const std::size_t column : numberSources(columns))
    if (!cellAt(cells, column).empty()) return quotedCell(cellAt(cells, column)) + what;
  return quotedCell("") + what;
}

}  // namespace zorvela

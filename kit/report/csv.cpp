// The results as CSV: RFC 4180, with line feeds.
#include <ostream>
#include <utility>

#include "report/fields.h"
#include "report/walk.h"
#include "report/words.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

// --- The cells of a proline -----------------------------------------------------------------------

/// The names and cells of a row.
using Cells = std::vector<std::pair<std::string, Value>>;

template <class Item>
void addFields(const Item& item, Cells& cells) {
  for (const Field<Item>& field : fieldsOf(item))
    if (field.isInCsv()) cells.emplace_back(field.name, field.valueOf(item));
}

Value atomsToCorrect(const ProteinResult& protein) {
  std::string atoms;
  for (const ReferencingOffset& offset : protein.offsets)
    if (callsForCorrection(offset)) atoms += (atoms.empty() ? "" : " ") + offset.atom;
  return orNothing(atoms);
}

Cells cellsOf(const ProteinResult& protein, const ProlineResult& proline) {
  Cells cells;
  addFields(protein, cells);
  addFields(proline, cells);
  for (const ReferencingOffset& offset : protein.offsets)
    cells.emplace_back("offset_" + lower(offset.atom), orNothing(offset.offset));
  cells.emplace_back("to_correct", atomsToCorrect(protein));
  for (const ReferencingOffset& offset : protein.offsets)
    cells.emplace_back("corrected_" + lower(offset.atom), orNothing(offset.correctedBy));
  cells.emplace_back("strongest", orNothing(strongestOf(proline)));
  cells.emplace_back("next_shift", orNothing(nextShiftOf(proline)));
  cells.emplace_back("cis_flag", orNothing(proline.cisFlag));
  if (proline.structure) addFields(*proline.structure, cells);
  cells.emplace_back("p_cis_norm_as_referenced", orNothing(proline.pCisNormAsReferenced));
  cells.emplace_back("call_as_referenced",
                     proline.callAsReferenced ? toText(*proline.callAsReferenced) : Value());
  return cells;
}

// --- Text -----------------------------------------------------------------------------------------

struct CellText {
  std::string operator()(std::monostate) const { return ""; }
  std::string operator()(int number) const { return std::to_string(number); }
  std::string operator()(float number) const { return numberText(number); }
  std::string operator()(double number) const { return numberText(static_cast<float>(number)); }
  std::string operator()(bool isSo) const { return isSo ? "yes" : "no"; }
  std::string operator()(const std::string& text) const { return csvCell(text); }
};

void writeLine(const std::vector<Value>& cells, std::ostream& out) {
  for (std::size_t i = 0; i < cells.size(); ++i)
    out << (i > 0 ? "," : "") << std::visit(CellText(), cells[i]);
  out << '\n';
}

/// A file that failed has its name, the call "error", and the message as the reason.
Value errorCell(const FileReport& file, const std::string& column) {
  if (column == "file") return file.file;
  if (column == "call") return std::string("error");
  if (column == "reason") return file.error;
  return {};
}

}  // namespace

std::vector<std::string> csvColumns(bool withStructures) {
  ProteinResult protein;
  for (const char* atom : {"CA", "CB", "HA", "C"}) protein.offsets.emplace_back().atom = atom;
  ProlineResult proline;
  if (withStructures) proline.structure.emplace();
  std::vector<std::string> names;
  for (const auto& [name, cell] : cellsOf(protein, proline)) names.push_back(name);
  return names;
}

std::vector<Value> csvRow(const ProteinResult& protein, const ProlineResult& proline) {
  std::vector<Value> row;
  for (auto& [name, cell] : cellsOf(protein, proline)) row.push_back(std::move(cell));
  return row;
}

void writeCsv(const RunReport& report, const ReportStyle&, std::ostream& out) {
  const std::vector<std::string> columns = csvColumns(!report.structures.empty());
  writeLine({columns.begin(), columns.end()}, out);
  forEachProline(report, [&](const ProteinResult& protein, const ProlineResult& proline) {
    writeLine(csvRow(protein, proline), out);
  });
  for (const FileReport& file : report.files) {
    std::vector<Value> cells;
    for (const std::string& column : columns) cells.push_back(errorCell(file, column));
    if (!file.error.empty()) writeLine(cells, out);
  }
}

}  // namespace zorvela

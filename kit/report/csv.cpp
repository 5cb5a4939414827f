// The results as CSV: RFC 4180, with line feeds.
#include <ostream>

#include "report/walk.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

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

void writeCsv(const RunReport& report, const ReportStyle&, std::ostream& out) {
  const std::vector<std::string> columns = csvColumns(!report.structures.empty());
  writeLine({columns.begin(), columns.end()}, out);
  forEachProline(report, [&](const ProteinResult& protein, const ProlineResult& proline) {
    writeLine(csvRow(protein, proline), out);
  });
  forEachError(report, [&](const FileReport& file) {
    std::vector<Value> cells;
    for (const std::string& column : columns) cells.push_back(errorCell(file, column));
    writeLine(cells, out);
  });
}

}  // namespace zorvela

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

/// Writes the cells of one line, a comma before each but the first.
class Line {
 public:
  explicit Line(std::ostream& stream) : out(stream) {}
  ~Line() { out << '\n'; }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  void add(const Value& value) {
    if (!isFirst) out << ',';
    isFirst = false;
    out << std::visit(CellText(), value);
  }

 private:
  std::ostream& out;
  bool isFirst = true;
};

/// A file that failed has its name, "error" for a call and the message for a reason.
Value errorCell(const FileReport& file, const std::string& column) {
  if (column == "file") return file.file;
  if (column == "call") return std::string("error");
  if (column == "reason") return file.error;
  return {};
}

}  // namespace

void writeCsv(const RunReport& report, const ReportStyle&, std::ostream& out) {
  const std::vector<std::string> columns = csvColumns(!report.structures.empty());
  {
    Line header(out);
    for (const std::string& column : columns) header.add(Value(column));
  }
  forEachProline(report, [&](const ProteinResult& protein, const ProlineResult& proline) {
    Line line(out);
    for (const Value& value : csvRow(protein, proline)) line.add(value);
  });
  forEachError(report, [&](const FileReport& file) {
    Line line(out);
    for (const std::string& column : columns) line.add(errorCell(file, column));
  });
}

}  // namespace zorvela

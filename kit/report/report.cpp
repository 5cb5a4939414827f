// The formats, of which a new one is a file and a line here, and the counts of a report.
#include "zorvela/report.h"
#include "report/walk.h"
#include "zorvela/error.h"

namespace zorvela {

std::size_t countCalls(const RunReport& report, Call call) {
  std::size_t count = 0;
  forEachProline(report, [&](const ProteinResult&, const ProlineResult& proline) {
    if (proline.call == call) ++count;
  });
  return count;
}

std::size_t countVerdicts(const RunReport& report, Verdict verdict) {
  std::size_t count = 0;
  forEachProline(report, [&](const ProteinResult&, const ProlineResult& proline) {
    if (verdictOf(proline) == verdict) ++count;
  });
  return count;
}

std::size_t countErrors(const RunReport& report) {
  std::size_t count = 0;
  forEachError(report, [&](const FileReport&) { ++count; });
  return count;
}

const std::vector<ReportFormat>& reportFormats() {
  static const std::vector<ReportFormat> formats = {
      {"table", writeTable}, {"csv", writeCsv}, {"json", writeJson}, {"html", writeHtml}};
  return formats;
}

void writeReport(const std::string& format, const RunReport& report, const ReportStyle& style,
                 std::ostream& out) {
  for (const ReportFormat& known : reportFormats())
    if (format == known.name) {
      known.write(report, style, out);
      return;
    }
  std::string names;
  for (const ReportFormat& known : reportFormats())
    names += (names.empty() ? "" : ", ") + std::string(known.name);
  throw Error("unknown report format \"" + format + "\"; use one of " + names);
}

}  // namespace zorvela

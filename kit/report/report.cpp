// The formats, of which a new one is a file and a line here, and the counts of a report.
#include "zorvela/report.h"
#include "report/walk.h"
#include "zorvela/error.h"

namespace zorvela {

std::size_t countCalls(const RunReport& report, Call call) {
  return countIf(report, [call](const ProlineResult& proline) { return proline.call == call; });
}

std::size_t countVerdicts(const RunReport& report, Verdict verdict) {
  return countIf(report, [verdict](const ProlineResult& proline) { return verdictOf(proline) == verdict; });
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

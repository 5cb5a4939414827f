// The ways out. A new one is a file of its own and a line here.
#include "zorvela/error.h"
#include "zorvela/report.h"

namespace zorvela {

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
  throw Error("there is no report format \"" + format + "\"");
}

}  // namespace zorvela

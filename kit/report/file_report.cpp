// What became of one file.
#include "report/file_report.h"

#include <exception>
#include <new>

#include "zorvela/error.h"

namespace zorvela {

std::vector<ProteinResult> resultsOf(const std::vector<Protein>& proteins, Predictor& predictor) {
  std::vector<ProteinResult> results;
  results.reserve(proteins.size());
  for (const Protein& protein : proteins) results.push_back(predictor.predict(protein));
  return results;
}

FileReport filledReport(const std::string& file, const std::function<void(FileReport&)>& fill) {
  FileReport report;
  report.file = file;
  try {
    fill(report);
    return report;
  } catch (const Error& e) {
    report.error = e.what();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& e) {
    report.error = Error(file, 0, std::string("cannot be predicted: ") + e.what(), "").what();
  }
  report.proteins.clear();
  report.matches.clear();
  return report;
}

FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    Predictor& predictor) {
  return filledReport(file, [&](FileReport& report) { report.proteins = resultsOf(read(), predictor); });
}

}  // namespace zorvela

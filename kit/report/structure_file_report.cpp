// What became of one file, with what structures say. Apart from the report without, so that the page, which
// reads no structures, does without the code that reads and aligns them.
#include <utility>

#include "report/file_report.h"
#include "zorvela/compare.h"

namespace zorvela {

namespace {

/// Puts what the structures say into the report.
void addFindings(const std::vector<Protein>& proteins, const std::vector<ProteinStructure>& structures,
                 FileReport& report) {
  std::vector<ComparedProtein> compared = compareWithStructures(proteins, report.proteins, structures);
  report.proteins.clear();
  for (ComparedProtein& protein : compared) {
    report.proteins.push_back(std::move(protein.result));
    report.matches.insert(report.matches.end(), protein.matches.begin(), protein.matches.end());
  }
}

}  // namespace

FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    Predictor& predictor, const std::vector<ProteinStructure>& structures) {
  return filledReport(file, [&](FileReport& report) {
    const std::vector<Protein> proteins = read();
    report.proteins = resultsOf(proteins, predictor);
    if (!structures.empty()) addFindings(proteins, structures, report);
  });
}

}  // namespace zorvela

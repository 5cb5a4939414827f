// What became of one file.
#include <exception>
#include <new>
#include <utility>

#include "formats/input_bytes.h"
#include "zorvela/error.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

std::vector<ProteinResult> resultsOf(const std::vector<Protein>& proteins, Predictor& predictor) {
  std::vector<ProteinResult> results;
  results.reserve(proteins.size());
  for (const Protein& protein : proteins) results.push_back(predictor.predict(protein));
  return results;
}

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
  FileReport report;
  report.file = file;
  try {
    const std::vector<Protein> proteins = read();
    report.proteins = resultsOf(proteins, predictor);
    if (!structures.empty()) addFindings(proteins, structures, report);
    return report;
  } catch (const Error& e) {
    report.error = e.what();
  } catch (const std::bad_alloc&) {
    report.error = inputError(InputFault::noMemory, file).what();
  } catch (const std::exception& e) {
    report.error = Error(file, 0, std::string("cannot be predicted: ") + e.what(), "").what();
  }
  report.proteins.clear();
  report.matches.clear();
  return report;
}

}  // namespace zorvela

// Shifts against structures as a table to read, as CSV and as JSON.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "zorvela/compare.h"

namespace zorvela {

/// A file that could not be read, with the message.
struct FailedFile {
  std::string file;
  std::string message;
};

struct CompareReport {
  std::string tables;                        ///< folder of the reference tables
  std::vector<ProteinStructure> structures;  ///< in the order in which they were given
  std::vector<ComparedProtein> proteins;
  std::vector<std::string> chainsWithoutShifts;
  std::vector<FailedFile> errors;
};

/// How many prolines have that verdict.
std::size_t countVerdicts(const CompareReport& report, Verdict verdict);

/// For people: a row for each proline, a sentence for each disagreement, a summary. Disagreements are marked
/// by an exclamation mark and, with `colour`, printed bold.
void writeCompareTable(const CompareReport& report, bool colour, std::ostream& out);
/// For spreadsheets and scripts: a row for each proline, then one for each file that failed.
void writeCompareCsv(const CompareReport& report, std::ostream& out);
/// For programs; kit/report/compare.schema.json describes it.
void writeCompareJson(const CompareReport& report, std::ostream& out);

}  // namespace zorvela

// The results of a run as a table to read, as CSV and as JSON.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "zorvela/predict.h"

namespace zorvela {

/// What became of one file: its proteins, or the error in one line.
struct FileReport {
  std::string file;
  std::vector<ProteinResult> proteins;
  std::string error;
};

struct RunReport {
  std::string tables;             ///< folder of the reference tables
  std::vector<FileReport> files;  ///< in the order of the command line
};

/// How many prolines were called so.
std::size_t countCalls(const RunReport& report, Call call);
/// How many files could not be read.
std::size_t countErrors(const RunReport& report);

/// For people: prolines, referencing offsets, errors and a summary. Cis prolines are marked by an
/// asterisk and, with `colour`, printed bold.
void writeTable(const RunReport& report, bool colour, std::ostream& out);
/// For spreadsheets and scripts: a row for each proline, then one for each file that failed.
void writeCsv(const RunReport& report, std::ostream& out);
/// For programs; kit/report/run.schema.json describes it.
void writeJson(const RunReport& report, std::ostream& out);

/// The shortest decimal text that gives back the same number.
std::string numberText(float value);

}  // namespace zorvela

// The results of a run as a table to read, as CSV, as JSON and as a page with pictures.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <variant>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/structure.h"

namespace zorvela {

/// What became of one file: its proteins, or the error in one line.
struct FileReport {
  std::string file;
  std::vector<ProteinResult> proteins;
  std::string error;
};

/// The results of a run; `reportOn` gives those of a file.
struct RunReport {
  std::string tables;                             ///< folder of the reference tables
  ClassStatistics classes;                        ///< of these tables; the pictures of `writeHtml` show them
  std::vector<FileReport> files;                  ///< in the order in which they were given
  std::vector<ProteinStructure> structures = {};  ///< that the results were compared with
  std::vector<std::string> chainsWithoutShifts = {};  ///< of the structures, a line each
};

/// How many prolines were called so.
std::size_t countCalls(const RunReport& report, Call call);
/// How many prolines have that verdict of the structures.
std::size_t countVerdicts(const RunReport& report, Verdict verdict);
/// How many files could not be read.
std::size_t countErrors(const RunReport& report);

/// Returns what the user should look at, a line each: offsets that call for a correction and were kept, and
/// flags of the file that differ from the call.
std::vector<std::string> warningsOf(const ProteinResult& protein);

/// What a cell of a table of results holds: nothing, a count, a number or a text.
using Value = std::variant<std::monostate, int, float, double, bool, std::string>;

/// Returns the names of the columns of `writeCsv`, in their order.
std::vector<std::string> csvColumns(bool withStructures);
/// Returns the cells of a proline, one for each of these columns; with structures where it has a finding.
std::vector<Value> csvRow(const ProteinResult& protein, const ProlineResult& proline);

/// How a report looks where there is a choice; a report may ignore it.
struct ReportStyle {
  bool colour = false;   ///< with the control sequences of a terminal
  bool explain = false;  ///< with the evidence below each proline of `residues`, or of each if that is empty
  std::vector<std::string> residues = {};  ///< residue numbers as the files have them
};

/// For people: prolines, referencing offsets, errors and a summary. Cis prolines are marked by an asterisk,
/// those whose structure disagrees by an exclamation mark; with colour both are bold.
void writeTable(const RunReport& report, const ReportStyle& style, std::ostream& out);
/// For spreadsheets and scripts: a row for each proline, then one for each file that failed.
void writeCsv(const RunReport& report, const ReportStyle& style, std::ostream& out);
/// For programs; kit/report/run.schema.json describes it.
void writeJson(const RunReport& report, const ReportStyle& style, std::ostream& out);
/// To look at and to print: a page of HTML with pictures that stands alone, without a script, loading
/// nothing. The same report gives the same bytes.
void writeHtml(const RunReport& report, const ReportStyle& style, std::ostream& out);

/// A way out by its name.
struct ReportFormat {
  const char* name;
  void (*write)(const RunReport& report, const ReportStyle& style, std::ostream& out);
};

/// All of them; the first is the one for people.
const std::vector<ReportFormat>& reportFormats();

/// Writes the format of that name; Error if there is none.
void writeReport(const std::string& format, const RunReport& report, const ReportStyle& style,
                 std::ostream& out);

}  // namespace zorvela

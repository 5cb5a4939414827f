// Writes the results of a run as a table for people, as CSV, as JSON and as a page with pictures.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <variant>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/structure.h"

namespace zorvela {

/// The results of one file: its proteins, or the error in one line.
struct FileReport {
  std::string file;
  std::vector<ProteinResult> proteins;
  std::string error;
  bool needsSequence = false;  ///< the error: the sequence is missing or does not fit
};

/// The results of a run; `reportOn` gives those of a file.
struct RunReport {
  std::string tables;                                 ///< folder of the reference tables
  ClassStatistics classes;                            ///< of these tables, for the pictures of `writeHtml`
  std::vector<FileReport> files;                      ///< in the order in which they were given
  std::vector<ProteinStructure> structures = {};      ///< that the results were compared with
  std::vector<std::string> chainsWithoutShifts = {};  ///< of the structures, a line each
};

/// Counts the prolines with this call.
std::size_t countCalls(const RunReport& report, Call call);
/// Counts the prolines with this verdict.
std::size_t countVerdicts(const RunReport& report, Verdict verdict);
/// Counts the files that could not be read.
std::size_t countErrors(const RunReport& report);

/// Returns what the user should look at, a line each: offsets that call for a correction and were kept, and
/// flags of the file that differ from the call.
std::vector<std::string> warningsOf(const ProteinResult& protein);

/// A cell of a table of results: nothing, a count, a number or a text.
using Value = std::variant<std::monostate, int, float, double, bool, std::string>;

/// Returns the names of the columns of `writeCsv`, in their order.
std::vector<std::string> csvColumns(bool withStructures);
/// Returns the cells of a proline, one for each of these columns; with structures if it has a finding.
std::vector<Value> csvRow(const ProteinResult& protein, const ProlineResult& proline);

/// Choices in the look of a report; a report may ignore them.
struct ReportStyle {
  bool colour = false;   ///< with the control sequences of a terminal
  bool explain = false;  ///< with the evidence below each proline, or only below those in `residues`
  std::vector<std::string> residues = {};  ///< residue numbers as the files have them
};

/// Writes a table for people: prolines, referencing offsets, errors and a summary. An asterisk marks cis
/// prolines, an exclamation mark those whose structure disagrees; with colour both are bold.
void writeTable(const RunReport& report, const ReportStyle& style, std::ostream& out);
/// Writes CSV for spreadsheets and scripts: a row for each proline, then one for each file that failed.
void writeCsv(const RunReport& report, const ReportStyle& style, std::ostream& out);
/// Writes JSON for programs; kit/report/run.schema.json describes it.
void writeJson(const RunReport& report, const ReportStyle& style, std::ostream& out);
/// Writes a page of HTML with pictures. It needs no other file, has no script and loads nothing. The same
/// report gives the same bytes.
void writeHtml(const RunReport& report, const ReportStyle& style, std::ostream& out);

/// An output format and its name.
struct ReportFormat {
  const char* name;
  void (*write)(const RunReport& report, const ReportStyle& style, std::ostream& out);
};

/// All formats; the first is the one for people.
const std::vector<ReportFormat>& reportFormats();

/// Writes the format of that name; throws Error if there is none.
void writeReport(const std::string& format, const RunReport& report, const ReportStyle& style,
                 std::ostream& out);

}  // namespace zorvela

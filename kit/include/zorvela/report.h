// The results of a run as a table to read, as CSV, as JSON and as a page with pictures.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "zorvela/compare.h"
#include "zorvela/predict.h"

namespace zorvela {

/// What became of one file: its proteins, or the error in one line.
struct FileReport {
  std::string file;
  std::vector<ProteinResult> proteins;
  std::string error;
  std::vector<ChainMatch> matches = {};  ///< of structures with these proteins
};

/// Predicts what `read` gives for a file. An exception of the reading or of the prediction is the error of
/// this file and ends nothing else, but for std::bad_alloc, which is passed on.
FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    Predictor& predictor);
/// The same, compared with the structures, if there are any; an exception of that is the file's error as
/// well.
FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    Predictor& predictor, const std::vector<ProteinStructure>& structures);

struct RunReport {
  std::string tables;             ///< folder of the reference tables
  ClassStatistics classes;        ///< of these tables; the pictures of `writeHtml` show them
  std::vector<FileReport> files;  ///< in the order in which they were given
  std::vector<std::string> structureNotes =
      {};  ///< of the structures, and which of their chains have no shifts
};

/// How many prolines were called so.
std::size_t countCalls(const RunReport& report, Call call);
/// How many files could not be read.
std::size_t countErrors(const RunReport& report);

/// How a report looks where there is a choice; a report may ignore it.
struct ReportStyle {
  bool colour = false;   ///< with the control sequences of a terminal
  bool explain = false;  ///< with the evidence below each proline of `residues`, or of each if that is empty
  std::vector<std::string> residues = {};  ///< residue numbers as the files have them
};

/// For people: prolines, referencing offsets, errors and a summary. Cis prolines are marked by an
/// asterisk and, with colour, printed bold.
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

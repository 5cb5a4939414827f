// The sub-command `run`: import, predict and collect, for one file or thousands.
#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/jobs.h"
#include "cli/messages.h"
#include "cli/progress.h"
#include "cli/reference_tables.h"
#include "cli/structures.h"
#include "cli/whole_file.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

constexpr std::size_t kNotesShown = 5;

struct RunSettings {
  std::vector<std::string> files;
  std::vector<std::string> structures;
  ImportOptions import;
  PredictorOptions predict;
  std::string tables;
  std::string format = reportFormats().front().name;
  std::string output = "-";
  bool explain = false;
  std::vector<std::string> residues;
  int jobs = usualJobs();
};

// --- Predicting ---------------------------------------------------------------------------------

/// At most `count`, but at least one: fewer where memory ends.
std::vector<Predictor> makePredictors(std::size_t count, const Tables& tables,
                                      const PredictorOptions& options) {
  std::vector<Predictor> predictors;
  predictors.reserve(count);
  try {
    while (predictors.size() < count) predictors.emplace_back(tables, options);
  } catch (const std::bad_alloc&) {
    if (predictors.empty()) throw;
  }
  return predictors;
}

/// Each job takes the next file that nobody has; results go to the place of the file, so their order
/// does not depend on the number of jobs. Files for which there is too little memory beside others come
/// again, one at a time.
std::vector<FileReport> predictFiles(const RunSettings& settings, const Tables& tables,
                                     const std::vector<ProteinStructure>& structures) {
  std::vector<FileReport> reports(settings.files.size());
  std::vector<Predictor> predictors = makePredictors(
      std::min(static_cast<std::size_t>(settings.jobs), reports.size()), tables, settings.predict);

  Progress progress("Predicting", settings.files.size());
  const auto predictFile = [&](std::size_t item, Predictor& predictor, auto read) {
    const std::string& file = settings.files[item];
    reports[item] = reportOn(
        file, [&] { return read(file, settings.import); }, predictor, structures);
  };
  const std::vector<std::size_t> notDone =
      inThreads(reports.size(), predictors.size(), [&](std::size_t item, std::size_t job) {
        predictFile(item, predictors[job], readInput);
        if (reports[item].isForScarcity) throw std::bad_alloc();
        progress.step();
      });
  predictors.erase(predictors.begin() + 1, predictors.end());
  for (const std::size_t item : notDone) {
    predictFile(item, predictors.front(), readInputAgain);
    progress.step();
  }
  return reports;
}

std::vector<ProteinStructure> readStructures(const std::vector<std::string>& files) {
  std::vector<ProteinStructure> structures;
  structures.reserve(files.size());
  for (const std::string& file : files) structures.push_back(readStructureArgument(file));
  return structures;
}

/// What is to be known of the structures as such: what could not be used of them, and chains without shifts.
std::vector<std::string> notesOn(const std::vector<ProteinStructure>& structures,
                                 const std::vector<FileReport>& files) {
  std::vector<std::string> notes;
  for (const ProteinStructure& structure : structures)
    for (const std::string& note : structure.notes)
      notes.push_back(messageName(structure.file, "") + ": " + note);
  std::vector<ChainMatch> matches;
  for (const FileReport& file : files)
    matches.insert(matches.end(), file.matches.begin(), file.matches.end());
  for (const std::string& line : chainsWithoutShifts(matches, structures)) notes.push_back(line);
  return notes;
}

// --- Reporting ----------------------------------------------------------------------------------

std::string offsetWarning(const ReferencingOffset& offset) {
  const std::string size = fixedText(std::fabs(static_cast<double>(offset.offset)), 2);
  const std::string error = fixedText(static_cast<double>(offset.error), 2);
  return (offset.atom == "C" ? "C'" : offset.atom) + " shifts seem " + size + " ppm too " +
         (offset.offset > 0 ? "high" : "low") + " (error " + error + " ppm, " + std::to_string(offset.size) +
         " residues); check the referencing and correct it, or add --rereference";
}

std::string flagWarning(const ProlineResult& proline) {
  return "P" + proline.number + " is marked " + (*proline.cisFlag ? "cis" : "trans") +
         " in the file but predicted " + toText(proline.call) + " (" +
         fixedText(static_cast<double>(*proline.pCisNorm), 3) + ")";
}

std::vector<ChainNotes> chainNotes(const FileReport& file, std::vector<std::string> ProteinResult::*notes) {
  std::vector<ChainNotes> chains;
  for (const ProteinResult& protein : file.proteins) chains.push_back({protein.chain, protein.*notes});
  return chains;
}

void sayAll(const RunReport& report) {
  for (const std::string& note : report.structureNotes) say("note: " + note);
  for (const FileReport& file : report.files) {
    sayFileNotes(file.file, chainNotes(file, &ProteinResult::notes), kNotesShown,
                 "--format json has them all");
    sayFileNotes(file.file, chainNotes(file, &ProteinResult::structureNotes), kNotesShown,
                 "the report has them all");
    for (const ProteinResult& protein : file.proteins) {
      const std::string name = messageName(protein.file, protein.chain);
      for (const ReferencingOffset& offset : protein.offsets)
        if (callsForCorrection(offset) && !offset.correctedBy)
          say("warning: " + name + ": " + offsetWarning(offset));
      for (const ProlineResult& proline : protein.prolines)
        if (differsFromFlag(proline)) say("warning: " + name + ": " + flagWarning(proline));
    }
    if (!file.error.empty()) say(file.error);
  }
}

bool hasProline(const RunReport& report, const std::string& number) {
  for (const FileReport& file : report.files)
    for (const ProteinResult& protein : file.proteins)
      for (const ProlineResult& proline : protein.prolines)
        if (proline.number == number) return true;
  return false;
}

void sayUnknownResidues(const RunSettings& settings, const RunReport& report) {
  for (const std::string& number : settings.residues)
    if (!hasProline(report, number))
      say("warning: --residue " + number + ": no file has a proline of this number");
}

void mustFitFormat(const RunSettings& settings) {
  if (settings.explain && settings.format != "table")
    throw Error("--explain goes with --format table; the other formats hold the evidence without it");
  if (!settings.structures.empty() && settings.format != "html")
    throw Error("--structure goes with --format html; for a table, CSV or JSON use zorvela-kit compare");
}

std::vector<std::string> formatNames() {
  std::vector<std::string> names;
  for (const ReportFormat& format : reportFormats()) names.emplace_back(format.name);
  return names;
}

void run(const RunSettings& settings) {
  mustFitFormat(settings);
  RunReport report;
  report.tables = findTables(settings.tables);
  InputFiles inputs(settings.files);
  inputs.add(settings.structures);
  inputs.addFolder(report.tables);
  inputs.mustNotHold(settings.output);
  mustBeGivenOnce(settings.structures);
  const Tables tables = loadTables(report.tables);
  report.classes = statisticsOf(tables);
  const std::vector<ProteinStructure> structures = readStructures(settings.structures);
  report.files = predictFiles(settings, tables, structures);
  report.structureNotes = notesOn(structures, report.files);
  sayAll(report);
  sayUnknownResidues(settings, report);
  const ReportStyle style{wantsColour(settings.output), settings.explain, settings.residues};
  writeWhole(settings.output, [&](std::ostream& out) { writeReport(settings.format, report, style, out); });
  if (const std::size_t errors = countErrors(report); errors > 0) {
    sayFailures(errors, report.files.size(), "predicted");
    throw ReportedFailure();
  }
}

std::string footer() {
  return "Call: cis where P_CIS_NORM is at least " + numberText(kCisFrom) + ", trans where it is at most " +
         numberText(kTransUpTo) + R"(, undecided between.
Tables: --tables, else tab/ in ZORVELA_DIR, else share/zorvela/tab of the installation, else ./tab.
Exit status: 0 if every file was predicted, 1 if one was not.)";
}

}  // namespace

void addRun(CommandLine& line) {
  const auto settings = std::make_shared<RunSettings>();
  Command command = line.addCommand("run", "Predict the prolines of any shift files");
  command
      .add("FILE", settings->files, "",
           "NMR-STAR, NEF, CSV/TSV or shift table, also gzipped; - is standard input")
      .required();
  command.add(
      "--format", settings->format, {"FORMAT", formatNames()},
      "table to read, csv for spreadsheets, json for programs, html to look at and to print; default: " +
          settings->format);
  command.add("--output", settings->output, "FILE", "Write to this file instead of standard output");
  command.add("--structure", settings->structures, "MODEL",
              "With --format html: structures (PDB, mmCIF) to compare with, after the shift files");
  const Option explain =
      command.addFlag("--explain", settings->explain,
                      "Below each proline: what speaks for cis and for trans, and what to measure next");
  command.add("--residue", settings->residues, "N", "Explain only prolines of this number; may be repeated")
      .repeated()
      .needs(explain);
  command.add("--tables", settings->tables, "DIR", "Folder of the seven reference tables");
  command.addFlag("--rereference", settings->predict.rereference,
                  "Take away referencing offsets that call for a correction before predicting");
  command.add("--chain", settings->import.chains, "NAME", "Only the chain of this name; may be repeated")
      .repeated();
  command
      .add("--list", settings->import.lists, "NAME",
           "Only the shift list of this name, or all; may be repeated. Default: the list with most shifts")
      .repeated();
  command.add("--jobs", settings->jobs, {"N", 1, kMostJobs},
              "Files worked on at the same time; default: one for each core");
  command.footer(footer());
  command.runs([settings] { run(*settings); });
}

}  // namespace zorvela

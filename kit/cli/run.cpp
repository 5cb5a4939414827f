// The sub-command `run`: import, predict and collect, for one file or thousands.
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

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

/// Each job takes the next file that nobody has; results go to the place of the file, so their order
/// does not depend on the number of jobs.
std::vector<FileReport> predictFiles(const RunSettings& settings, const Tables& tables,
                                     const std::vector<ProteinStructure>& structures) {
  std::vector<FileReport> reports(settings.files.size());
  const std::size_t jobs = std::min(static_cast<std::size_t>(settings.jobs), reports.size());
  std::vector<Predictor> predictors;
  for (std::size_t job = 0; job < jobs; ++job) predictors.emplace_back(tables, settings.predict);
  Progress progress("Predicting", settings.files.size());
  inThreads(reports.size(), jobs, [&](std::size_t item, std::size_t job) {
    const std::string& file = settings.files[item];
    const auto read = [&] { return readInput(file, settings.import); };
    reports[item] = reportOn(file, read, predictors[job], structures);
    progress.step();
  });
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

void addRun(CLI::App& app) {
  const auto settings = std::make_shared<RunSettings>();
  CLI::App* command = app.add_subcommand("run", "Predict the prolines of any shift files");
  command->add_option("FILE", settings->files)
      ->required()
      ->type_name("")
      ->description("NMR-STAR, NEF, CSV/TSV or shift table, also gzipped; - is standard input");
  command->add_option("--format", settings->format)
      ->type_name("FORMAT")
      ->check(CLI::IsMember(formatNames()))
      ->description("default: " + settings->format);
  command->add_option("--output", settings->output)
      ->type_name("FILE")
      ->description("Write to this file instead of standard output");
  command->add_option("--structure", settings->structures)
      ->type_name("MODEL")
      ->description("With --format html: structures (PDB, mmCIF) to compare with, after the shift files");
  CLI::Option* explain =
      command->add_flag("--explain", settings->explain)
          ->description("Below each proline: what speaks for cis and for trans, and what to measure next");
  command->add_option("--residue", settings->residues)
      ->type_name("N")
      ->allow_extra_args(false)
      ->needs(explain)
      ->description("Explain only prolines of this number; may be repeated");
  command->add_option("--tables", settings->tables)
      ->type_name("DIR")
      ->description("Folder of the seven reference tables");
  command->add_flag("--rereference", settings->predict.rereference)
      ->description("Take away referencing offsets that call for a correction before predicting");
  command->add_option("--chain", settings->import.chains)
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->description("Only the chain of this name; may be repeated");
  command->add_option("--list", settings->import.lists)
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->description("Only the shift list of this name, or all; may be repeated");
  command->add_option("--jobs", settings->jobs)
      ->type_name("N")
      ->check(CLI::Range(1, kMostJobs))
      ->description("Files worked on at the same time; default: one for each core");
  command->footer(footer());
  command->callback([settings] { run(*settings); });
}

}  // namespace zorvela

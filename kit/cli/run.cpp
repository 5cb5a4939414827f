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
#include "zorvela/run.h"

namespace zorvela {

namespace {

constexpr std::size_t kNotesShown = 5;
constexpr const char* kAllNotes = "--format json has them all";

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
  bool failOnDisagreement = false;
  int jobs = usualJobs();
};

// --- Predicting ---------------------------------------------------------------------------------

/// Each job takes the next file that nobody has; results go to the place of the file, so their order
/// does not depend on the number of jobs.
void predictFiles(const RunSettings& settings, const Tables& tables, RunReport& report) {
  report.files.resize(settings.files.size());
  std::vector<Predictor> predictors;
  const std::size_t jobs = std::min(static_cast<std::size_t>(settings.jobs), report.files.size());
  while (predictors.size() < jobs) predictors.emplace_back(tables, settings.predict);
  Progress progress("Predicting", report.files.size());
  inThreads(report.files.size(), jobs, [&](std::size_t item, std::size_t job) {
    const std::string& file = settings.files[item];
    const auto read = [&] { return readInput(file, settings.import); };
    report.files[item] = reportOn(file, read, predictors[job], report.structures);
    progress.step();
  });
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
  for (const ProteinStructure& structure : report.structures)
    sayFileNotes(structure.file, {{"", structure.notes}}, kNotesShown, kAllNotes);
  for (const std::string& line : report.chainsWithoutShifts) say("note: " + line);
  for (const FileReport& file : report.files) {
    sayFileNotes(file.file, chainNotes(file, &ProteinResult::notes), kNotesShown, kAllNotes);
    sayFileNotes(file.file, chainNotes(file, &ProteinResult::structureNotes), kNotesShown, kAllNotes);
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
  for (const std::string& file : settings.structures)
    report.structures.push_back(readStructureArgument(file));
  predictFiles(settings, tables, report);
  noteChainsWithoutShifts(report);
  sayAll(report);
  sayUnknownResidues(settings, report);
  const ReportStyle style{wantsColour(settings.output), settings.explain, settings.residues};
  writeWhole(settings.output, [&](std::ostream& out) { writeReport(settings.format, report, style, out); });
  if (const std::size_t errors = countErrors(report); errors > 0) {
    sayFailures(errors, report.files.size(), "predicted");
    throw ReportedFailure();
  }
  const std::size_t disagreements = countVerdicts(report, Verdict::disagree);
  if (settings.failOnDisagreement && disagreements > 0) {
    say(counted(disagreements, "proline disagrees", "prolines disagree") + " with the structures");
    throw ReportedFailure();
  }
}

std::string footer() {
  return "Call: cis where P_CIS_NORM is at least " + numberText(kCisFrom) + ", trans where it is at most " +
         numberText(kTransUpTo) + R"(, undecided between.
Tables: --tables, else tab/ in ZORVELA_DIR, else share/zorvela/tab of the installation, else ./tab.
Structure: cis where |omega| is at most )" +
         fixedText(kCisOmegaUpTo, 0) + " degrees, trans where it is at least " +
         fixedText(kTransOmegaFrom, 0) + R"(, twisted between;
without the atoms of omega by the CA - CA distance, near 2.9 or 3.8 A.
Exit status: 0 if every file was predicted, whatever the verdicts; 1 if one was not, or with
--fail-on-disagreement if a proline disagrees.)";
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
  CLI::Option* structure =
      command->add_option("--structure", settings->structures)
          ->type_name("MODEL")
          ->description("Structures (PDB, mmCIF, also gzipped) to compare with, after the shift files");
  command->add_flag("--fail-on-disagreement", settings->failOnDisagreement)
      ->needs(structure)
      ->description("End with exit status 1 if the structure of a proline disagrees");
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

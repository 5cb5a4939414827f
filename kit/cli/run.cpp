// The sub-command `run`: import, predict and collect, for one file or thousands.
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/joined_inputs.h"
#include "cli/messages.h"
#include "cli/process.h"
#include "cli/reference_tables.h"
#include "cli/shared_options.h"
#include "cli/whole_file.h"
#include "cli/work.h"
#include "report/words.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"
#include "zorvela/report.h"
#include "zorvela/run_file.h"

namespace zorvela {

namespace {

struct RunSettings {
  FileArguments named;
  JoinArguments joining;
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

// --- Structures ---------------------------------------------------------------------------------

bool isShiftFile(const std::string& path) {
  try {
    readShiftFile(path, {});
    return true;
  } catch (const Error&) {
    return false;
  }
}

/// Reads structures. An Error where two paths lead to one file, whose models would count twice. --structure
/// takes all names after it, so the error for a shift file tells where its name belongs.
std::vector<ProteinStructure> readStructures(const std::vector<std::string>& paths) {
  std::vector<ProteinStructure> structures;
  std::set<std::filesystem::path> files;
  for (const std::string& path : paths) {
    try {
      structures.push_back(readStructureFile(path));
    } catch (const FileError&) {
      if (!isShiftFile(path)) throw;
      throw FileError(path, 0, "has shifts, not a structure",
                      "name shift files before --structure, or after --");
    }
    std::error_code isPipe;
    const std::filesystem::path file = std::filesystem::canonical(path, isPipe);
    if (!isPipe && !files.insert(file).second)
      throw Error(path, 0, "is given twice", "name each structure once");
  }
  return structures;
}

// --- Predicting ---------------------------------------------------------------------------------

/// Results keep the order of the files, whatever the number of jobs.
void predictFiles(const RunSettings& settings, const JoinedInputs& joined, const Tables& tables,
                  RunReport& report) {
  report.files.resize(joined.inputs().size());
  const Predictor predictor(tables, settings.predict);
  Progress progress("Predicting");
  inThreads(report.files.size(), settings.jobs, [&](std::size_t item) {
    const std::string& file = joined.inputs()[item];
    const auto read = [&] { return joined.read(file, settings.import); };
    report.files[item] = reportOn(file, read, predictor, report.structures);
    progress.step(report.files.size());
  });
}

// --- Reporting ----------------------------------------------------------------------------------

/// The first lines of the table name the corrections; a terminal would show them twice.
void sayAll(const RunReport& report, bool areCorrectionsShown) {
  for (const ProteinStructure& structure : report.structures)
    sayFileNotes(structure.file, {{"", structure.notes}});
  LimitedNotes unmatched("chains without shifts");  // a virus shell has hundreds
  for (const std::string& line : report.chainsWithoutShifts) unmatched.add(line);
  std::vector<std::string> notes;
  unmatched.appendTo(notes);
  for (const std::string& note : notes) say("note: " + note);
  for (const FileReport& file : report.files) {
    std::vector<ChainNotes> imported;
    std::vector<ChainNotes> compared;
    for (const ProteinResult& protein : file.proteins) {
      imported.push_back({protein.chain, areCorrectionsShown ? otherNotes(protein) : protein.notes});
      compared.push_back({protein.chain, protein.structureNotes});
    }
    sayFileNotes(file.file, imported);
    sayFileNotes(file.file, compared);
    for (const ProteinResult& protein : file.proteins) {
      const std::string name = messageName(protein.file, protein.chain);
      for (const std::string& warning : warningsOf(protein)) say("warning: " + name + ": " + warning);
    }
    if (!file.error.empty()) say(file.error);
  }
}

void sayUnknownResidues(const RunSettings& settings, const RunReport& report) {
  std::set<std::string> known;
  for (const FileReport& file : report.files)
    for (const ProteinResult& protein : file.proteins)
      for (const ProlineResult& proline : protein.prolines) known.insert(proline.number);
  for (const std::string& number : settings.residues)
    if (known.count(number) == 0)
      say("warning: --residue " + number + ": no file has a proline of this number");
}

/// A pipeline must not pass because no call met a bond.
void failOnDisagreement(const RunReport& report) {
  const std::size_t disagreements = countVerdicts(report, Verdict::disagree);
  const std::size_t others = countVerdicts(report, Verdict::agree) + countVerdicts(report, Verdict::mixed);
  if (disagreements == 0 && others > 0) return;
  say(disagreements == 0
          ? "no call could be compared with the structures"
          : counted(disagreements, "proline disagrees", "prolines disagree") + " with the structures");
  throw ReportedFailure();
}

void run(const RunSettings& settings) {
  if (settings.explain && settings.format != "table")
    throw Error("--explain needs --format table; the other formats always hold the evidence");
  RunReport report;
  report.tables = findTables(settings.tables);
  const JoinedInputs joined(settings.named, settings.joining);
  InputFiles inputs;
  inputs.add(joined.files());
  inputs.add(settings.structures);
  inputs.add({report.tables});
  inputs.mustNotHold({settings.output});
  const Tables tables = loadTables(report.tables);
  report.classes = statisticsOf(tables);
  report.structures = readStructures(settings.structures);
  predictFiles(settings, joined, tables, report);
  noteChainsWithoutShifts(report);
  const bool isTableShown = settings.format == "table" && settings.output == "-";
  sayAll(report, isTableShown);
  joined.sayLookAlikes();
  sayUnknownResidues(settings, report);
  // The error of a single file has been reported already.
  const bool isSaid = isTableShown && report.files.size() == 1 && countErrors(report) == 1;
  const ReportStyle style{wantsColour(settings.output), settings.explain, settings.residues};
  if (!isSaid)
    writeWhole(settings.output, [&](std::ostream& out) { writeReport(settings.format, report, style, out); });
  if (countErrors(report) > 0) {
    std::vector<Failure> failures;
    for (const FileReport& file : report.files)
      if (!file.error.empty()) failures.push_back({file.file, file.error});
    sayFailures(failures, report.files.size(), "predicted");
    throw ReportedFailure();
  }
  if (settings.failOnDisagreement) failOnDisagreement(report);
}

std::string remarks() {
  return "Calls: cis where P_CIS_NORM is at least " + numberText(kCisFrom) + ", trans where it is at most " +
         numberText(kTransUpTo) + R"(, undecided between
Structures: cis where |omega| is at most )" +
         fixedText(kCisOmegaUpTo, 0) + " degrees, trans where it is at least " +
         fixedText(kTransOmegaFrom, 0) +
         R"(, twisted between; without the atoms of omega, the CA-CA distance (near 2.9 or 3.8 A) decides
Exit status: 0 if every file was predicted, whatever the verdicts; 1 if one was not; with --fail-on-disagreement also 1 if a proline disagrees or none could be compared)";
}

}  // namespace

void addRun(Command& program) {
  const auto settings = std::make_shared<RunSettings>();
  Command command = program.addCommand("run", "Predict the prolines of any shift files");
  addFiles(command, settings->named,
           "Shift files in any format, also gzipped, or folders of them; - is standard input");
  command
      .add("--format", settings->format, {"FORMAT", namesOf(reportFormats())},
           "Write a table to read, csv for spreadsheets, json for programs, or html to look at and to print")
      .showsDefault();
  addOutput(command, settings->output);
  const Option structure = command.add(
      "--structure", settings->structures, "FILE",
      "Compare with these structures (PDB or mmCIF, also gzipped); name them after the shift files");
  command
      .addFlag("--fail-on-disagreement", settings->failOnDisagreement,
               "Exit with status 1 if a proline disagrees with its structure, or none could be compared")
      .needs(structure);
  const Option explain =
      command.addFlag("--explain", settings->explain,
                      "Show below each proline what speaks for cis and for trans, and what to measure next");
  command
      .add("--residue", settings->residues, "N", "Explain only the prolines of this number; may be repeated")
      .repeated()
      .needs(explain);
  addTables(command, settings->tables);
  addPredictionOptions(command, settings->predict);
  addChains(command, settings->import.chains);
  addLists(command, settings->import.lists,
           "Use only this shift list (name or number), or all of them (all); may be repeated");
  addJoining(command, settings->joining);
  addJobs(command, settings->jobs);
  command.ends(remarks(), {"zorvela-kit run examples/nuclease.str --structure examples/nuclease.pdb.gz",
                           "zorvela-kit run --format html --output report.html examples/nuclease.str"});
  command.runs([settings] {
    if (settings->named.files.empty() && settings->named.list.empty()) readStructures(settings->structures);
    run(*settings);
  });
}

}  // namespace zorvela

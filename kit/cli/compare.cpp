// The sub-command `compare`: the calls from shifts beside the bonds in structures.
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/progress.h"
#include "cli/reference_tables.h"
#include "cli/structures.h"
#include "cli/whole_file.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/compare_report.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"

namespace zorvela {

namespace {

constexpr std::size_t kNotesShown = 5;
constexpr const char* kAllNotes = "--format json has them all";

struct CompareSettings {
  std::vector<std::string> shifts;
  std::vector<std::string> structures;
  ImportOptions import;
  std::string tables;
  std::string format = "table";
  std::string output = "-";
  bool failOnDisagreement = false;
};

/// Does the work on one file; what goes wrong with it stays with it.
template <class Work>
void guarded(const std::string& file, CompareReport& report, Work work) {
  std::string message;
  try {
    work();
    return;
  } catch (const Error& error) {
    message = error.what();
  } catch (const std::bad_alloc&) {
    message = Error(file, 0, "does not fit into memory", "give a smaller file").what();
  } catch (const std::exception& error) {
    message = Error(file, 0, std::string("cannot be used: ") + error.what(), "").what();
  }
  report.errors.push_back({file, message});
}

void compareFile(const std::string& file, const ImportOptions& import, Predictor& predictor,
                 CompareReport& report) {
  const std::vector<Protein> proteins = readInput(file, import);
  std::vector<ProteinResult> results;
  results.reserve(proteins.size());
  for (const Protein& protein : proteins) results.push_back(predictor.predict(protein));
  for (ComparedProtein& protein : compareWithStructures(proteins, results, report.structures))
    report.proteins.push_back(std::move(protein));
}

CompareReport compareAll(const CompareSettings& settings) {
  CompareReport report;
  report.tables = findTables(settings.tables);
  Predictor predictor(loadTables(report.tables));
  Progress progress("Comparing", settings.structures.size() + settings.shifts.size());
  for (const std::string& file : settings.structures) {
    guarded(file, report, [&] { report.structures.push_back(readStructureArgument(file)); });
    progress.step();
  }
  if (report.structures.empty()) return report;
  for (const std::string& file : settings.shifts) {
    guarded(file, report, [&] { compareFile(file, settings.import, predictor, report); });
    progress.step();
  }
  std::vector<ChainMatch> matches;
  for (const ComparedProtein& protein : report.proteins)
    matches.insert(matches.end(), protein.matches.begin(), protein.matches.end());
  report.chainsWithoutShifts = chainsWithoutShifts(matches, report.structures);
  return report;
}

/// The notes of the shift files, those of the import before those of the comparison.
void sayShiftNotes(const CompareReport& report) {
  for (auto first = report.proteins.begin(); first != report.proteins.end();) {
    const std::string& file = first->result.file;
    std::vector<ChainNotes> imported;
    std::vector<ChainNotes> compared;
    for (; first != report.proteins.end() && first->result.file == file; ++first) {
      imported.push_back({first->result.chain, first->result.notes});
      compared.push_back({first->result.chain, first->notes});
    }
    sayFileNotes(file, imported, kNotesShown, kAllNotes);
    sayFileNotes(file, compared, kNotesShown, kAllNotes);
  }
}

void sayAll(const CompareReport& report) {
  for (const ProteinStructure& structure : report.structures)
    sayFileNotes(structure.file, {{"", structure.notes}}, kNotesShown, kAllNotes);
  sayShiftNotes(report);
  for (const std::string& line : report.chainsWithoutShifts) say("note: " + line);
  for (const FailedFile& failed : report.errors) say(failed.message);
}

void compare(const CompareSettings& settings) {
  std::vector<std::string> inputs = settings.shifts;
  inputs.insert(inputs.end(), settings.structures.begin(), settings.structures.end());
  InputFiles files(inputs);
  files.addFolder(findTables(settings.tables));
  files.mustNotHold(settings.output);
  mustBeGivenOnce(settings.structures);
  const CompareReport report = compareAll(settings);
  sayAll(report);
  if (report.structures.empty()) throw ReportedFailure();
  writeWhole(settings.output, [&](std::ostream& out) {
    if (settings.format == "csv")
      writeCompareCsv(report, out);
    else if (settings.format == "json")
      writeCompareJson(report, out);
    else
      writeCompareTable(report, wantsColour(settings.output), out);
  });
  if (!report.errors.empty()) {
    sayFailures(report.errors.size(), inputs.size(), "compared");
    throw ReportedFailure();
  }
  const std::size_t disagreements = countVerdicts(report, Verdict::disagree);
  if (settings.failOnDisagreement && disagreements > 0) {
    say(counted(disagreements, "proline disagrees", "prolines disagree") + " with the structures");
    throw ReportedFailure();
  }
}

std::string footer() {
  return "Structure: cis where |omega| is at most " + fixedText(kCisOmegaUpTo, 0) +
         " degrees, trans where it is at least " + fixedText(kTransOmegaFrom, 0) +
         R"(, twisted between;
without the atoms of omega by the CA - CA distance, near 2.9 or 3.8 A.
Exit status: 0 if every file was compared, whatever the verdicts; 1 if one was not, or with
--fail-on-disagreement if a proline disagrees.)";
}

}  // namespace

void addCompare(CommandLine& line) {
  const auto settings = std::make_shared<CompareSettings>();
  Command command = line.addCommand("compare", "Find prolines whose shifts and structure disagree");
  command.add("SHIFTS", settings->shifts, "", "Shift files of any kind that run reads; - is standard input")
      .required();
  command
      .add("--structure", settings->structures, "MODEL",
           "Structures, PDB or mmCIF, also gzipped; one or several, after the shift files")
      .required();
  command.add("--format", settings->format, {"FORMAT", {"table", "csv", "json"}}, "default: table");
  command.add("--output", settings->output, "FILE", "Write to this file instead of standard output");
  command.add("--tables", settings->tables, "DIR", "Folder of the seven reference tables");
  command
      .add("--chain", settings->import.chains, "NAME",
           "Only the chain of this name in the shift files; may be repeated")
      .repeated();
  command
      .add("--list", settings->import.lists, "NAME",
           "Only the shift list of this name, or all; may be repeated")
      .repeated();
  command.addFlag("--fail-on-disagreement", settings->failOnDisagreement,
                  "End with exit status 1 if a proline disagrees");
  command.footer(footer());
  command.runs([settings] { compare(*settings); });
}

}  // namespace zorvela

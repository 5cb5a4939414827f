// zorvela-kit import: any shift file to a shift table.
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/joined_inputs.h"
#include "cli/messages.h"
#include "cli/reference_tables.h"
#include "cli/shared_options.h"
#include "cli/table_names.h"
#include "cli/whole_file.h"
#include "cli/work.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kAllNotes = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kMostPathsNamed = 20;

struct ImportArguments {
  FileArguments named;
  JoinArguments joining;
  std::string output;
  std::string tables;
  bool rereference = false;
  PredictorOptions predict;
  ImportOptions options;

  bool corrects() const { return rereference || predict.deuterated; }
};

// --- Reading ------------------------------------------------------------------------------------

/// The proteins of all files that could be read.
struct Imported {
  std::vector<Protein> proteins;
  std::vector<std::string> names;  ///< of their tables
  std::size_t notes = 0;
  std::vector<Failure> failures;
};

Imported readFiles(const ImportArguments& given, const JoinedInputs& joined, const TableNames& names) {
  Imported imported;
  std::optional<Predictor> predictor;
  PredictorOptions options = given.predict;
  options.asReferenced = !given.rereference;
  if (given.corrects()) predictor.emplace(loadTables(findTables(given.tables)), options);
  Progress progress("import");
  const std::vector<std::string>& files = joined.inputs();
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string& file = files[i];
    try {
      std::vector<ChainNotes> notes;
      std::vector<Protein> proteins = joined.read(file, given.options);
      for (std::string& name : names.of(i, proteins)) imported.names.push_back(std::move(name));
      for (Protein& protein : proteins) {
        if (predictor) protein = predictor->corrected(protein);
        notes.push_back({protein.chain, std::move(protein.notes)});
        imported.proteins.push_back(std::move(protein));
      }
      imported.notes += sayFileNotes(file, notes, kAllNotes);
    } catch (const Error& error) {
      say(error.what());
      imported.failures.push_back({file, error.what()});
    }
    progress.step(files.size());
  }
  return imported;
}

// --- Writing ------------------------------------------------------------------------------------

void writeTable(const std::string& path, const Protein& protein) {
  writeWhole(path, [&protein](std::ostream& out) { writeShiftTable(protein, out); });
}

/// Tells whether all goes to one file or stream, and not to named files in a folder.
bool isOneStream(const std::string& output, const Imported& imported) {
  if (output.empty()) return imported.proteins.size() + imported.failures.size() == 1;
  if (output == "-") return true;
  std::error_code unknown;  // what is wrong with the path is said when it is written
  return output.back() != '/' && !fs::is_directory(output, unknown);
}

void writeOne(const ImportArguments& given, const std::vector<Protein>& proteins, const InputFiles& inputs) {
  const std::string path = given.output.empty() ? "-" : given.output;
  if (proteins.size() > 1)
    throw Error(path == "-" ? "standard output" : path, 0,
                "cannot hold " + std::to_string(proteins.size()) + " tables",
                "name a folder (with / at the end), or choose one with --chain and --list");
  inputs.mustNotHold({path});
  writeTable(path, proteins.front());
}

void sayPaths(const ImportArguments& given, const std::vector<std::string>& paths,
              const std::vector<Protein>& proteins) {
  if (paths.size() > kMostPathsNamed) {
    say("wrote " + std::to_string(paths.size()) + " tables to " +
        (given.output.empty() ? "the current folder" : given.output));
    return;
  }
  for (std::size_t i = 0; i < paths.size(); ++i)
    say("wrote " + paths[i] + " (" + counted(proteins[i].sequence.size(), "residue", "residues") + ", " +
        counted(proteins[i].shifts.size(), "shift", "shifts") + ")");
}

void writeTables(const ImportArguments& given, const Imported& imported, const TableNames& names,
                 const InputFiles& inputs) {
  if (isOneStream(given.output, imported)) {
    writeOne(given, imported.proteins, inputs);
    return;
  }
  for (const std::string& note : names.notes()) say("note: " + note);
  std::vector<std::string> paths;
  for (const std::string& name : imported.names)
    paths.push_back((fs::path(given.output) / (name + ".tab")).string());
  inputs.mustNotHold(paths);
  if (!given.output.empty()) makeFolder(given.output);
  for (std::size_t i = 0; i < paths.size(); ++i) writeTable(paths[i], imported.proteins[i]);
  sayPaths(given, paths, imported.proteins);
}

void importFiles(const ImportArguments& given) {
  const JoinedInputs joined(given.named, given.joining);
  InputFiles inputs;
  inputs.add(joined.files());
  if (given.corrects()) inputs.add({findTables(given.tables)});
  const TableNames names(joined.inputs());
  const Imported imported = readFiles(given, joined, names);
  joined.sayLookAlikes();
  if (!imported.proteins.empty()) writeTables(given, imported, names, inputs);
  if (imported.notes > 0)
    say(counted(imported.notes, "note", "notes") + " on " +
        counted(imported.proteins.size(), "table", "tables"));
  if (imported.failures.empty()) return;
  sayFailures(imported.failures, joined.inputs().size(), "imported");
  throw ReportedFailure();
}

// --- Options ------------------------------------------------------------------------------------

constexpr const char* kRemarks =
    "Formats: NMR-STAR 3 and 2.1, NEF, CSV or TSV with column names (resid, resname, atom, shift), shift "
    "tables, and the working files of assignment programs (XEASY/CYANA .prot with .seq, NMRView ppm.out, "
    "Sparky resonance list, CcpNmr table ...), also gzipped; recognised by content\n"
    "Numbers: residues are numbered from 1; a REMARK keeps the numbers of the file\n"
    "Notes: standard error has a line for all that was renamed, left out or guessed";

constexpr const char* kOutputHelp =
    "A folder (existing, or with / at the end) for tables named after file and chain, FILE_CHAIN.tab; or the "
    "file for the one table; - is standard output";

}  // namespace

void addImport(Command& program) {
  const auto arguments = std::make_shared<ImportArguments>();
  Command command = program.addCommand("import", "Convert chemical shift files to shift tables");
  addFiles(command, arguments->named, "Shift files, or folders of them; - is standard input");
  command.add("-o,--output", arguments->output, "DIR|FILE", kOutputHelp)
      .showsDefault("standard output for one table, the current folder for several");
  addChains(command, arguments->options.chains);
  addLists(
      command, arguments->options.lists,
      "Use only this shift list (name or number), or all of them, one table each (all); may be repeated");
  command.addFlag(
      "--rereference", arguments->rereference,
      "Write the shifts that run uses: certain referencing offsets, and the isotope shifts of a deuterated "
      "sample, are corrected; a REMARK tells how much");
  addDeuterationOptions(command, arguments->predict);
  addTables(command, arguments->tables);
  addJoining(command, arguments->joining);
  command.ends(kRemarks, {"zorvela-kit import --output nuclease.tab examples/nuclease.str",
                          "zorvela-kit import --rereference --output tables/ examples/nuclease.str"});
  command.runs([arguments] { importFiles(*arguments); });
}

}  // namespace zorvela

// zorvela-kit import: any shift file to a shift table.
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/progress.h"
#include "cli/reference_tables.h"
#include "cli/whole_file.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

constexpr const char* kStandardOutput = "-";
constexpr std::size_t kAllNotes = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kMostPathsNamed = 20;

struct ImportArguments {
  std::vector<std::string> files;
  std::string output;
  std::string tables;
  bool rereference = false;
  ImportOptions options;
};

/// A letter, digit, or mark that is harmless in a file name.
bool isPlainInName(char c) {
  return isLetter(c) || isDigit(c) || c == '-' || c == '.' || c == '+' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// What `ls` would show a terminal may be obeyed as well.
std::string safeName(const std::string& text) {
  constexpr std::size_t kLongest = 60;
  std::string name = shown(firstBytes(text, kLongest), '_');
  for (char& c : name)
    if (!isPlainInName(c)) c = '_';
  return name;
}

/// The file's name without folder, ".gz" and the ending.
std::string stemOf(const std::string& path) {
  if (path == "-") return "stdin";
  fs::path name = fs::path(path).filename();
  if (equalIgnoringCase(name.extension().string(), ".gz")) name = name.stem();
  return name.has_stem() ? name.stem().string() : name.string();
}

// --- Reading ------------------------------------------------------------------------------------

/// The proteins of all files that could be read.
struct Imported {
  std::vector<Protein> proteins;
  std::size_t notes = 0;
  std::size_t failures = 0;
};

Imported readFiles(const ImportArguments& given) {
  Imported imported;
  std::optional<Predictor> predictor;
  if (given.rereference) predictor.emplace(loadTables(findTables(given.tables)));
  Progress progress("import", given.files.size());
  for (const std::string& file : given.files) {
    try {
      std::vector<ChainNotes> notes;
      for (Protein& protein : readInput(file, given.options)) {
        if (predictor) protein = predictor->corrected(protein);
        notes.push_back({protein.chain, std::move(protein.notes)});
        imported.proteins.push_back(std::move(protein));
      }
      imported.notes += sayFileNotes(file, notes, kAllNotes, "");
    } catch (const Error& error) {
      say(error.what());
      ++imported.failures;
    }
    progress.step();
  }
  return imported;
}

// --- Writing ------------------------------------------------------------------------------------

void writeTable(const std::string& path, const Protein& protein) {
  writeWhole(path, [&protein](std::ostream& out) { writeShiftTable(protein, out); });
}

/// Whether all goes to one file or stream, and not to named files in a folder.
bool isOneStream(const std::string& output, std::size_t tables) {
  if (output.empty()) return tables == 1;
  if (output == kStandardOutput) return true;
  std::error_code unknown;  // what is wrong with the path is said when it is written
  return output.back() != '/' && !fs::is_directory(output, unknown);
}

void writeOne(const ImportArguments& given, const std::vector<Protein>& proteins, const InputFiles& inputs) {
  const std::string path = given.output.empty() ? kStandardOutput : given.output;
  if (proteins.size() > 1)
    throw Error(path == kStandardOutput ? "standard output" : path, 0,
                "cannot hold " + std::to_string(proteins.size()) + " tables",
                "name a folder (with / at the end), or choose one with --chain and --list");
  inputs.mustNotHold(path);
  writeTable(path, proteins.front());
}

/// FILE_CHAIN, with the list where a chain has several.
std::vector<std::string> tableNames(const std::vector<Protein>& proteins) {
  std::map<std::pair<std::string, std::string>, int> listsOf;
  for (const Protein& protein : proteins) ++listsOf[{protein.file, protein.chain}];
  std::vector<std::string> names;
  for (const Protein& protein : proteins) {
    std::string name = stemOf(protein.file);
    if (!protein.chain.empty()) name += "_" + safeName(protein.chain);
    if (listsOf[{protein.file, protein.chain}] > 1) name += "_" + safeName(protein.list);
    names.push_back(name);
  }
  return names;
}

/// Gives every table a name of its own: x, x_2, x_3. Names that differ in case alone are one name to some
/// file systems.
void tellApart(std::vector<std::string>& names, const std::vector<Protein>& proteins) {
  std::unordered_set<std::string> wanted;
  for (const std::string& name : names) wanted.insert(lower(name));
  std::unordered_map<std::string, std::size_t> users;
  std::unordered_map<std::string, int> tries;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string key = lower(names[i]);
    const auto [first, isNew] = users.emplace(key, i);
    if (isNew) continue;
    std::string other;
    int& number = tries.emplace(key, 1).first->second;
    do other = names[i] + "_" + std::to_string(++number);
    while (!wanted.insert(lower(other)).second);
    say("note: " + messageName(proteins[i].file, proteins[i].chain) + ": its table is named " + other +
        ".tab, as " + names[first->second] + ".tab is that of " +
        messageName(proteins[first->second].file, proteins[first->second].chain));
    names[i] = other;
  }
}

/// Where the tables go; none takes the place of a file that was read.
std::vector<std::string> tablePaths(const std::string& folder, const std::vector<Protein>& proteins,
                                    const InputFiles& inputs) {
  std::vector<std::string> names = tableNames(proteins);
  tellApart(names, proteins);
  std::vector<std::string> paths;
  for (const std::string& name : names) {
    paths.push_back((fs::path(folder) / (name + ".tab")).string());
    inputs.mustNotHold(paths.back());
  }
  mustDiffer(paths);
  return paths;
}

void makeFolder(const std::string& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error)
    throw Error(folder, 0, "cannot be made: " + error.message(), "choose another place with --output");
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

void writeTables(const ImportArguments& given, const std::vector<Protein>& proteins,
                 const InputFiles& inputs) {
  if (isOneStream(given.output, proteins.size())) {
    writeOne(given, proteins, inputs);
    return;
  }
  const std::vector<std::string> paths = tablePaths(given.output, proteins, inputs);
  if (!given.output.empty()) makeFolder(given.output);
  for (std::size_t i = 0; i < paths.size(); ++i) writeTable(paths[i], proteins[i]);
  sayPaths(given, paths, proteins);
}

void importFiles(const ImportArguments& given) {
  InputFiles inputs(given.files);
  if (given.rereference) inputs.addFolder(findTables(given.tables));
  const Imported imported = readFiles(given);
  if (!imported.proteins.empty()) writeTables(given, imported.proteins, inputs);
  if (imported.notes > 0)
    say(counted(imported.notes, "note", "notes") + " on " +
        counted(imported.proteins.size(), "table", "tables"));
  if (imported.failures == 0) return;
  sayFailures(imported.failures, given.files.size(), "imported");
  throw ReportedFailure();
}

// --- Options ------------------------------------------------------------------------------------

constexpr const char* kDescription =
    "Any chemical shift file to the program's shift table.\n\n"
    "Reads NMR-STAR 3 and 2.1, NEF, CSV or TSV with column names (resid, resname, atom, shift) and shift "
    "tables,\n"
    "also gzipped; the content says which. Residues are numbered from 1; a REMARK keeps their own numbers.\n"
    "Whatever was renamed, left out or guessed is named in one line each on standard error.";

constexpr const char* kOutputHelp =
    "A folder (existing, or with / at the end): tables are named after file and chain, FILE_CHAIN.tab. Else "
    "the file for the one table; - is standard output. Without it, one table goes to standard output and "
    "several to files in the current folder.";

}  // namespace

void addImport(CommandLine& line) {
  const auto arguments = std::make_shared<ImportArguments>();
  Command command = line.addCommand("import", kDescription);
  command.add("FILE", arguments->files, "", "Shift files; - is standard input").required();
  command.add("-o,--output", arguments->output, "DIR|FILE", kOutputHelp);
  command
      .add("--chain", arguments->options.chains, "NAME",
           "Only this chain (name, molecule or number in the file; may be repeated). Default: every "
           "polypeptide chain with shifts")
      .repeated();
  command
      .add("--list", arguments->options.lists, "NAME",
           "Only this shift list (name or number; may be repeated), or all of them, one table each: all. "
           "Default: for each chain the list with most backbone shifts")
      .repeated();
  const Option rereference =
      command.addFlag("--rereference", arguments->rereference,
                      "Take away referencing offsets that are certain; a REMARK says how much");
  command
      .add("--tables", arguments->tables, "DIR", "Folder of the seven reference tables, which know offsets")
      .needs(rereference);
  command.runs([arguments] { importFiles(*arguments); });
}

}  // namespace zorvela

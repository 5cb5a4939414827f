// zorvela-kit import: any shift file to a shift table.
#include <sys/stat.h>  // for stat

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <unordered_map>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/input.h"
#include "cli/progress.h"
#include "cli/whole_file.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

constexpr const char* kName = "zorvela-kit: ";
constexpr const char* kStandardOutput = "-";
constexpr std::size_t kMostPathsTold = 20;

struct ImportArguments {
  std::vector<std::string> files;
  std::string output;
  ImportOptions options;
};

/// A letter, digit, or mark that is harmless in a file name.
bool isPlainInName(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == '+' || static_cast<unsigned char>(c) >= 0x80;
}

std::string safeName(const std::string& text) {
  constexpr std::size_t kLongest = 60;
  std::string name;
  for (const char c : text.substr(0, kLongest)) name.push_back(isPlainInName(c) ? c : '_');
  return name;
}

/// The file's name without folder, ".gz" and the ending.
std::string stemOf(const std::string& path) {
  if (path == "-") return "stdin";
  fs::path name = fs::path(path).filename();
  if (equalIgnoringCase(name.extension().string(), ".gz")) name = name.stem();
  return name.has_stem() ? name.stem().string() : name.string();
}

/// Imports the files and writes the tables, all or none for each file.
class Importer {
 public:
  explicit Importer(const ImportArguments& arguments) : given(arguments) {}

  void run() {
    readFiles();
    if (!proteins.empty()) writeTables();
    if (noteCount > 0)
      std::cerr << kName << counted(noteCount, "note", "notes") << " on "
                << counted(proteins.size(), "table", "tables") << std::endl;
    if (failures == 0) return;
    if (given.files.size() > 1)
      std::cerr << kName << failures << " of " << given.files.size() << " files could not be imported"
                << std::endl;
    throw ReportedFailure();
  }

 private:
  void readFiles() {
    Progress progress("import", given.files.size());
    for (const std::string& file : given.files) {
      try {
        for (Protein& protein : readInput(file, given.options)) {
          printNotes(protein);
          proteins.push_back(std::move(protein));
        }
      } catch (const Error& error) {
        std::cerr << kName << error.what() << std::endl;
        ++failures;
      }
      progress.step();
    }
  }

  void printNotes(const Protein& protein) {
    std::string from = inputName(protein.file);
    if (!protein.chain.empty()) from += ", chain " + printable(protein.chain, 60);
    for (const std::string& note : protein.notes)
      std::cerr << kName << "note: " << from << ": " << note << std::endl;
    noteCount += protein.notes.size();
  }

  void writeTables() {
    if (isOneStream()) {
      writeOne(given.output.empty() ? kStandardOutput : given.output);
      return;
    }
    const std::vector<std::string> paths = tablePaths();
    checkPaths(paths);
    if (!given.output.empty()) makeFolder();
    for (std::size_t i = 0; i < paths.size(); ++i) writeTable(paths[i], proteins[i]);
    tellPaths(paths);
  }

  void tellPaths(const std::vector<std::string>& paths) const {
    if (paths.size() > kMostPathsTold) {
      std::cerr << kName << "wrote " << paths.size() << " tables to "
                << (given.output.empty() ? "the current folder" : given.output) << std::endl;
      return;
    }
    for (std::size_t i = 0; i < paths.size(); ++i)
      std::cerr << kName << "wrote " << paths[i] << " ("
                << counted(proteins[i].sequence.size(), "residue", "residues") << ", "
                << counted(proteins[i].shifts.size(), "shift", "shifts") << ")" << std::endl;
  }

  /// Whether all goes to one file or stream, and not to named files in a folder.
  bool isOneStream() const {
    if (given.output.empty()) return proteins.size() == 1;
    if (given.output == kStandardOutput) return true;
    return given.output.back() != '/' && !fs::is_directory(given.output);
  }

  void writeOne(const std::string& path) const {
    if (proteins.size() > 1)
      throw Error(path == kStandardOutput ? "standard output" : path, 0,
                  "cannot hold " + std::to_string(proteins.size()) + " tables",
                  "name a folder (with / at the end), or choose one with --chain and --list");
    checkPaths({path});
    writeTable(path, proteins.front());
  }

  static void writeTable(const std::string& path, const Protein& protein) {
    GDB table = toTable(protein);
    writeWhole(path, [&table](std::ostream& out) { table.writeTable(out); });
  }

  std::vector<std::string> tablePaths() const {
    std::map<std::pair<std::string, std::string>, int> listsOf;
    for (const Protein& protein : proteins) ++listsOf[{protein.file, protein.chain}];
    std::vector<std::string> paths;
    for (const Protein& protein : proteins) {
      std::string name = stemOf(protein.file);
      if (!protein.chain.empty()) name += "_" + safeName(protein.chain);
      if (listsOf[{protein.file, protein.chain}] > 1) name += "_" + safeName(protein.list);
      paths.push_back((fs::path(given.output) / (name + ".tab")).string());
    }
    return paths;
  }

  /// No table may replace another one, nor a file that it came from.
  void checkPaths(const std::vector<std::string>& paths) const {
    std::unordered_map<std::string, std::size_t> users;
    for (std::size_t i = 0; i < paths.size(); ++i) {
      const auto [other, isNew] = users.emplace(paths[i], i);
      if (!isNew)
        throw Error(paths[i], 0,
                    "would hold two tables, from " + inputName(proteins[other->second].file) + " and " +
                        inputName(proteins[i].file),
                    "import them into different folders");
      for (const std::string& file : given.files)
        if (isSameFile(paths[i], file))
          throw Error(paths[i], 0, "is an input file", "choose another place with --output");
    }
  }

  static bool isSameFile(const std::string& a, const std::string& b) {
    struct stat infoA {};
    struct stat infoB {};
    return stat(a.c_str(), &infoA) == 0 && stat(b.c_str(), &infoB) == 0 && S_ISREG(infoA.st_mode) &&
           infoA.st_dev == infoB.st_dev && infoA.st_ino == infoB.st_ino;
  }

  void makeFolder() const {
    std::error_code error;
    fs::create_directories(given.output, error);
    if (error)
      throw Error(given.output, 0, "cannot be made: " + error.message(),
                  "choose another place with --output");
  }

  const ImportArguments& given;
  std::vector<Protein> proteins;
  std::size_t noteCount = 0;
  std::size_t failures = 0;
};

constexpr const char* kDescription =
    "Any chemical shift file to the program's shift table.\n\n"
    "Reads NMR-STAR 3 and 2.1, NEF, CSV or TSV with column names (resid, resname, atom, shift) and shift "
    "tables,\n"
    "also gzipped; the content tells which. Residues are numbered from 1; a REMARK keeps their own numbers.\n"
    "Whatever was renamed, left out or guessed is told in one line each on standard error.";

constexpr const char* kOutputHelp =
    "A folder (existing, or with / at the end): tables are named after file and chain, FILE_CHAIN.tab. Else "
    "the "
    "file for the one table; - is standard output. Without it, one table goes to standard output and several "
    "to "
    "files in the current folder.";

}  // namespace

void addImport(CLI::App& app) {
  CLI::App* command = app.add_subcommand("import", kDescription);
  const auto arguments = std::make_shared<ImportArguments>();
  command->add_option("FILE", arguments->files, "Shift files; - is standard input")->required();
  command->add_option("-o,--output", arguments->output, kOutputHelp)->type_name("DIR|FILE");
  command
      ->add_option("--chain", arguments->options.chains,
                   "Only this chain (name, molecule or number in the file; may be repeated). Default: every "
                   "polypeptide chain with shifts")
      ->type_name("NAME")
      ->allow_extra_args(false);
  command
      ->add_option(
          "--list", arguments->options.lists,
          "Only this shift list (name or number; may be repeated), or all of them, one table each: all. "
          "Default: for each chain the list with most backbone shifts")
      ->type_name("NAME")
      ->allow_extra_args(false);
  command->callback([arguments] { Importer(*arguments).run(); });
}

}  // namespace zorvela

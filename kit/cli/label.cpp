// The sub-command `label`: labels for training from structures.
#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/shared_options.h"
#include "cli/whole_file.h"
#include "cli/work.h"
#include "formats/text/delimited_text.h"
#include "train/structure_labels.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

struct LabelSettings {
  std::string entries;
  std::string structures;
  std::string output;
  double identity = LabelVotes::kSameSequence;
  int jobs = usualJobs();
};

void requireAny(const std::vector<std::string>& files, const std::string& folder, const std::string& what) {
  if (files.empty()) throw Error(folder, 0, "holds no " + what, "name a folder with " + what);
}

/// Labels name the entry; `evaluate` finds its file by that name.
bool canStandInCsv(const std::string& name) {
  const std::string cell = csvCell(name);
  const auto cells = splitCells(cell, Separator::comma);
  return cell.find('\n') == std::string::npos && cells && withoutFormulaMark(cells->front()) == name;
}

/// Does the work on one file. Returns 1, after the message, where the file cannot be used.
std::size_t failuresOf(const std::function<void()>& work) {
  try {
    work();
    return 0;
  } catch (const Error& error) {
    say(error.what());
    return 1;
  }
}

/// Reads the shift tables of a folder into `proteins`. Returns how many could not be used.
std::size_t readEntries(const std::string& folder, std::vector<Protein>& proteins) {
  std::vector<std::string> files = filesIn(folder);
  const auto isOther = [](const fs::path& file) { return file.extension() != ".tab"; };
  files.erase(std::remove_if(files.begin(), files.end(), isOther), files.end());
  requireAny(files, folder, "shift tables (NAME.tab)");
  std::size_t failed = 0;
  Progress progress("Reading entries");
  for (const std::string& file : files) {
    failed += failuresOf([&] {
      if (!canStandInCsv(entryName(file)))
        throw Error(file, 0, "has a name that cannot be read back from a table of labels", "rename it");
      // A shift table is one chain.
      for (Protein& protein : readShiftFile(file, {})) proteins.push_back(std::move(protein));
    });
    progress.step(files.size());
  }
  return failed;
}

/// Counts the votes of the structures of a folder. Each job takes the next file that is not taken, and holds
/// one structure at a time. Returns how many could not be used.
std::size_t countVotes(const LabelSettings& settings, LabelVotes& votes) {
  const std::vector<std::string> files = filesIn(settings.structures);
  requireAny(files, settings.structures, "structures (PDB or mmCIF)");
  std::atomic<std::size_t> failed{0};
  std::mutex counting;
  std::vector<std::string> strangers;
  Progress progress("Reading structures");
  inThreads(files.size(), settings.jobs, [&](std::size_t item) {
    failed += failuresOf([&] {
      const auto bonds = votes.bondsOf(readStructureFile(files[item]));
      const std::lock_guard<std::mutex> lock(counting);
      if (bonds)
        votes.count(*bonds);
      else
        strangers.push_back(files[item]);
    });
    progress.step(files.size());
  });
  std::sort(strangers.begin(), strangers.end());
  for (const std::string& file : strangers) say("note: " + file + ": matches no entry");
  if (failed == files.size())
    throw Error(settings.structures, 0, "has no usable structure",
                "name a folder with structures (PDB or mmCIF)");
  return failed;
}

void label(const LabelSettings& settings) {
  InputFiles inputs;
  inputs.add({settings.entries, settings.structures});
  inputs.mustNotHold({settings.output});
  std::vector<Protein> proteins;
  std::size_t failed = readEntries(settings.entries, proteins);
  LabelVotes votes(std::move(proteins), settings.identity);
  failed += countVotes(settings, votes);
  writeWhole(settings.output, [&](std::ostream& out) { votes.write(out); });
  say(votes.summary());
  if (failed == 0) return;
  say(counted(failed, "file was", "files were") + " not used");
  throw ReportedFailure();
}

}  // namespace

void addLabel(Command& program) {
  const auto settings = std::make_shared<LabelSettings>();
  Command command = program.addCommand(
      "label", "Label the prolines of shift tables cis or trans by structures, for training");
  command.add("--entries", settings->entries, "DIR", "Folder of shift tables, NAME.tab for each entry")
      .required();
  command
      .add("--structures", settings->structures, "DIR", "Folder of structures (PDB or mmCIF, also gzipped)")
      .required();
  command
      .add("--output", settings->output, "FILE",
           "CSV file of prolines for train and evaluate; - is standard output")
      .required();
  command
      .add("--identity", settings->identity, {"N", 50, 100},
           "Least sequence identity in percent, over at least 25 residues")
      .showsDefault();
  addJobs(command, settings->jobs);
  command.ends(
      "Exit status: 0 if every file was used, 1 if one was not; the labels of the others are written all the "
      "same",
      {"zorvela-kit label --entries tables --structures pdb --output labels.csv",
       "zorvela-kit label --entries tables --structures pdb --output - --identity 90"});
  command.runs([settings] { label(*settings); });
}

}  // namespace zorvela

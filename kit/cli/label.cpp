// The sub-command `label`: labels for training from structures.
#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/file_arguments.h"
#include "cli/input_files.h"
#include "cli/jobs.h"
#include "cli/messages.h"
#include "cli/progress.h"
#include "cli/whole_file.h"
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

std::vector<std::string> requireAny(std::vector<std::string> files, const std::string& folder,
                                    const std::string& what) {
  if (files.empty()) throw Error(folder, 0, "holds no " + what, "name a folder with " + what);
  return files;
}

std::vector<std::string> tablesIn(const std::string& folder) {
  std::vector<std::string> files = filesIn(folder);
  const auto isOther = [](const fs::path& file) { return file.extension() != ".tab"; };
  files.erase(std::remove_if(files.begin(), files.end(), isOther), files.end());
  return requireAny(std::move(files), folder, "shift tables (NAME.tab)");
}

/// Labels name the entry; `evaluate` finds its file by that name.
bool canStandInCsv(const std::string& name) {
  const std::string cell = csvCell(name);
  const auto cells = splitCells(cell, Separator::comma);
  return cell.find('\n') == std::string::npos && cells && withoutFormulaMark(cells->front()) == name;
}

/// Counts and names the files that cannot be used.
class Failures {
 public:
  /// Does the work on one file; what is wrong with the file stays with it.
  template <class Work>
  void guard(Work work) {
    try {
      work();
    } catch (const Error& error) {
      say(error.what());
      ++failed;
    }
  }
  std::size_t count() const { return failed; }

 private:
  std::atomic<std::size_t> failed{0};
};

std::vector<Protein> readEntries(const std::string& folder, Failures& failures) {
  const std::vector<std::string> files = tablesIn(folder);
  std::vector<Protein> proteins;
  Progress progress("Reading entries", files.size());
  for (const std::string& file : files) {
    failures.guard([&] {
      if (!canStandInCsv(entryName(file)))
        throw Error(file, 0, "has a name that cannot be read back from a table of labels", "rename it");
      // A shift table is one chain.
      for (Protein& protein : readShiftFile(file, {})) proteins.push_back(std::move(protein));
    });
    progress.step();
  }
  return proteins;
}

/// Each job takes the next file that nobody has and holds one structure at a time.
void countVotes(const LabelSettings& settings, LabelVotes& votes, Failures& failures) {
  const std::vector<std::string> files =
      requireAny(filesIn(settings.structures), settings.structures, "structures (PDB or mmCIF)");
  std::mutex counting;
  std::vector<std::string> strangers;
  Progress progress("Reading structures", files.size());
  inThreads(files.size(), static_cast<std::size_t>(settings.jobs), [&](std::size_t item, std::size_t) {
    failures.guard([&] {
      const Ballots ballots = votes.ballots(readStructureFile(files[item]));
      const std::lock_guard<std::mutex> lock(counting);
      votes.count(ballots.list);
      if (!ballots.fits) strangers.push_back(files[item]);
    });
    progress.step();
  });
  std::sort(strangers.begin(), strangers.end());
  for (const std::string& file : strangers) say("note: " + file + ": matches no entry");
  if (failures.count() == files.size())
    throw Error(settings.structures, 0, "has no usable structure",
                "name a folder with structures (PDB or mmCIF)");
}

void label(const LabelSettings& settings) {
  InputFiles inputs;
  inputs.addFolder(settings.entries);
  inputs.addFolder(settings.structures);
  inputs.mustNotHold(settings.output);
  Failures entries;
  Failures structures;
  LabelVotes votes(readEntries(settings.entries, entries), settings.identity);
  countVotes(settings, votes, structures);
  writeWhole(settings.output, [&](std::ostream& out) { votes.write(out); });
  say(std::to_string(votes.labelled()) + " of " + counted(votes.prolines(), "proline", "prolines") + " in " +
      counted(votes.proteinCount(), "protein", "proteins") + " labelled");
  const std::size_t leftOut = entries.count() + structures.count();
  if (leftOut == 0) return;
  say(counted(leftOut, "file was", "files were") + " not used");
  throw ReportedFailure();
}

}  // namespace

void addLabel(CommandLine& line) {
  const auto settings = std::make_shared<LabelSettings>();
  Command command =
      line.addCommand("label", "Label the prolines of shift tables cis or trans by structures, for training");
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

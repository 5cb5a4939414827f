// The sub-command `label`: labels for training from structures.
#include <algorithm>
#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/input_files.h"
#include "cli/jobs.h"
#include "cli/messages.h"
#include "cli/number_option.h"
#include "cli/progress.h"
#include "cli/whole_file.h"
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

/// The files of a folder whose name fits, sorted by name.
template <class Fits>
std::vector<std::string> filesIn(const std::string& folder, const std::string& what, Fits fits) {
  std::error_code error;
  std::vector<std::string> files;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
    if (fits(at->path().filename().string()) && !at->is_directory(error))
      files.push_back(at->path().string());
  if (error) throw Error(folder, 0, "cannot be read: " + error.message(), "name a folder with " + what);
  if (files.empty()) throw Error(folder, 0, "holds no " + what, "name a folder with " + what);
  std::sort(files.begin(), files.end());
  return files;
}

bool isShiftTable(const std::string& name) {
  return fs::path(name).extension() == ".tab";
}

bool isVisible(const std::string& name) {
  return name.front() != '.';
}

/// Files that could not be used, counted and named.
struct Failures {
  std::mutex mutex;
  std::size_t count = 0;

  void add(const std::string& message) {
    const std::lock_guard<std::mutex> lock(mutex);
    say(message);
    ++count;
  }
};

/// Does the work on one file; what goes wrong with it stays with it, but for memory that ends.
template <class Work>
void guarded(const std::string& file, Failures& failures, Work work) {
  try {
    work();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const Error& error) {
    failures.add(error.what());
  } catch (const std::exception& error) {
    failures.add(Error(file, 0, std::string("cannot be used: ") + error.what(), "").what());
  }
}

std::vector<Protein> readEntries(const std::string& folder, Failures& failures) {
  const std::vector<std::string> files = filesIn(folder, "shift tables (NAME.tab)", isShiftTable);
  std::vector<Protein> proteins;
  Progress progress("Reading entries", files.size());
  for (const std::string& file : files) {
    guarded(file, failures, [&] {
      // A shift table is one chain.
      for (Protein& protein : readShiftFile(file, {})) proteins.push_back(std::move(protein));
    });
    progress.step();
  }
  return proteins;
}

/// Each job takes the next file that nobody has and holds one structure at a time.
void countVotes(const LabelSettings& settings, LabelVotes& votes, Failures& failures) {
  const std::vector<std::string> files = filesIn(settings.structures, "structures (PDB or mmCIF)", isVisible);
  std::mutex counting;
  Progress progress("Reading structures", files.size());
  inThreads(files.size(), static_cast<std::size_t>(settings.jobs), [&](std::size_t item, std::size_t) {
    guarded(files[item], failures, [&] {
      auto ballots = votes.ballots(readStructureFile(files[item]));
      const std::lock_guard<std::mutex> lock(counting);
      votes.count(std::move(ballots));
    });
    progress.step();
  });
  if (failures.count == files.size())
    throw Error(settings.structures, 0, "none of its files is a structure that can be used",
                "name a folder with structures (PDB or mmCIF)");
}

void label(const LabelSettings& settings) {
  InputFiles inputs;
  inputs.addFolder(settings.entries);
  inputs.addFolder(settings.structures);
  inputs.mustNotHold(settings.output);
  Failures failures;
  LabelVotes votes(readEntries(settings.entries, failures), settings.identity);
  const std::size_t failedEntries = failures.count;
  failures.count = 0;
  countVotes(settings, votes, failures);
  writeWhole(settings.output, [&](std::ostream& out) { votes.write(out); });
  say(std::to_string(votes.labelled()) + " of " + counted(votes.prolines(), "proline", "prolines") + " in " +
      counted(votes.proteinCount(), "protein", "proteins") + " labelled");
  if (failedEntries + failures.count == 0) return;
  say(counted(failedEntries + failures.count, "file was", "files were") + " left out");
  throw ReportedFailure();
}

}  // namespace

void addLabel(CLI::App& app) {
  const auto settings = std::make_shared<LabelSettings>();
  CLI::App* command = app.add_subcommand("label", "Make labels for training from structures");
  command->add_option("--entries", settings->entries)
      ->required()
      ->type_name("DIR")
      ->description("Folder of shift tables, one NAME.tab for each entry");
  command->add_option("--structures", settings->structures)
      ->required()
      ->type_name("DIR")
      ->description("Folder of structures, PDB or mmCIF, also gzipped");
  command->add_option("--output", settings->output)
      ->required()
      ->type_name("FILE")
      ->description("CSV of prolines as train and evaluate read it; - is standard output");
  command->add_option("--identity", settings->identity)
      ->type_name("PERCENT")
      ->check(numberFrom(50, 100))
      ->description("Least identity over at least 25 residues; default: 100, the same sequence");
  command->add_option("--jobs", settings->jobs)
      ->type_name("N")
      ->check(CLI::Range(1, kMostJobs))
      ->description("Files worked on at the same time; default: one for each core");
  command->footer(
      "Exit status: 0 if every file was used, 1 if one was not; the labels of the others are "
      "written all the same.");
  command->callback([settings] { label(*settings); });
}

}  // namespace zorvela

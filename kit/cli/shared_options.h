// Options that several sub-commands have.
#pragma once

#include <string>
#include <vector>

#include "cli/command_line.h"
#include "zorvela/predict.h"

namespace zorvela {

/// Returns the names of formats, for the option that chooses one.
template <class Formats>
std::vector<std::string> namesOf(const Formats& formats) {
  std::vector<std::string> names;
  for (const auto& format : formats) names.emplace_back(format.name);
  return names;
}

/// Adds --output, which is standard output unless it is given.
void addOutput(Command& command, std::string& path);

/// Adds --tables.
Option addTables(Command& command, std::string& folder);

/// Adds --as-referenced, and --deuterated and --protonated.
void addPredictionOptions(Command& command, PredictorOptions& options);

/// Adds --deuterated and --protonated.
void addDeuterationOptions(Command& command, PredictorOptions& options);

/// Adds --chain, which takes one name each time.
void addChains(Command& command, std::vector<std::string>& chains);

/// Adds --list, which takes one name each time.
void addLists(Command& command, std::vector<std::string>& lists, const std::string& text);

/// Adds --jobs.
void addJobs(Command& command, int& jobs);

}  // namespace zorvela

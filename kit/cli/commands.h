// The sub-commands of zorvela-kit: each function adds one, with its options, to the command line.
#pragma once

#include <exception>

namespace CLI {
class App;
}

namespace zorvela {

/// Thrown at the end of a command whose errors are reported already: `main` adds no message and ends
/// with status 1.
class ReportedFailure : public std::exception {};

/// Any shift file to a shift table.
void addImport(CLI::App& app);
/// Import, predict, compare with structures and collect, for one file or thousands.
void addRun(CLI::App& app);
/// The calls written into a NEF file.
void addAnnotate(CLI::App& app);
/// The cis prolines for structure calculation programs.
void addRestrain(CLI::App& app);
/// Labels for training from structures.
void addLabel(CLI::App& app);
/// The seven reference tables from proteins with known prolines.
void addTrain(CLI::App& app);
/// How often the predictor is right.
void addEvaluate(CLI::App& app);

}  // namespace zorvela

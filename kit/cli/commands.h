// The sub-commands of zorvela-kit: each function adds one, with its options, to the command line.
#pragma once

#include <exception>

namespace zorvela {

class CommandLine;

/// Thrown at the end of a command whose errors are reported already: `main` adds no message and ends
/// with status 1.
class ReportedFailure : public std::exception {};

/// Returns what to show to somebody who gave no arguments: three commands to begin with.
const char* firstCommands();

/// The prediction of an example, with words on how to read it.
void addDemo(CommandLine& line);
/// Any shift file to a shift table.
void addImport(CommandLine& line);
/// Import, predict, compare with structures and collect, for one file or thousands.
void addRun(CommandLine& line);
/// The calls written into a NEF file.
void addAnnotate(CommandLine& line);
/// The cis prolines for structure calculation programs.
void addRestrain(CommandLine& line);
/// Labels for training from structures.
void addLabel(CommandLine& line);
/// The seven reference tables from proteins with known prolines.
void addTrain(CommandLine& line);
/// How often the predictor is right.
void addEvaluate(CommandLine& line);

}  // namespace zorvela

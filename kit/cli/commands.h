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

/// Predicts an example, and explains how to read the answer.
void addDemo(CommandLine& line);
/// Converts shift files to shift tables.
void addImport(CommandLine& line);
/// Imports, predicts and compares with structures, for one file or thousands.
void addRun(CommandLine& line);
/// Writes the calls into a NEF file.
void addAnnotate(CommandLine& line);
/// Writes the cis prolines for structure calculation programs.
void addRestrain(CommandLine& line);
/// Labels prolines by structures, for training.
void addLabel(CommandLine& line);
/// Makes the seven reference tables from proteins with known prolines.
void addTrain(CommandLine& line);
/// Counts how often the predictor is right.
void addEvaluate(CommandLine& line);

}  // namespace zorvela

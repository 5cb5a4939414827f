// The sub-commands of zorvela-kit: each function adds one, with its options, to the command line.
#pragma once

#include <exception>

namespace zorvela {

class Command;

/// Thrown at the end of a command whose errors are reported already: `main` adds no message and ends
/// with status 1.
class ReportedFailure : public std::exception {};

/// The example of `demo`; the build makes its source from a file of examples/.
extern const char* const kExampleName;
extern const char* const kExample;

/// Returns what to show to somebody who gave no arguments: three commands to begin with.
const char* firstCommands();

/// Predicts an example, and explains how to read the answer.
void addDemo(Command& program);
/// Converts shift files to shift tables.
void addImport(Command& program);
/// Imports, predicts and compares with structures, for one file or thousands.
void addRun(Command& program);
/// Writes the calls into a NEF file.
void addAnnotate(Command& program);
/// Writes the cis prolines for structure calculation programs.
void addRestrain(Command& program);
/// Labels prolines by structures, for training.
void addLabel(Command& program);
/// Makes the seven reference tables from proteins with known prolines.
void addTrain(Command& program);
/// Counts how often the predictor is right.
void addEvaluate(Command& program);

}  // namespace zorvela

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

/// Each adds one sub-command.
void addDemo(Command& program);
void addRun(Command& program);
void addImport(Command& program);
void addAnnotate(Command& program);
void addRestrain(Command& program);
void addLabel(Command& program);
void addTrain(Command& program);
void addEvaluate(Command& program);

}  // namespace zorvela

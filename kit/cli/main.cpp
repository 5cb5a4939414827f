// zorvela-kit: files in, predictions out, and the tables for them.
#include <exception>
#include <iostream>
#include <new>
#include <sstream>
#include <string>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/messages.h"
#include "cli/process.h"
#include "cli/whole_file.h"
#include "zorvela/error.h"
#include "zorvela/version.h"

namespace {

int fail(const char* message, const char* kind = "") {
  zorvela::say(std::string(kind) + message);
  return 1;
}

int showFirstCommands() {
  zorvela::writeWhole("-", std::string(zorvela::firstCommands()));
  return 0;
}

/// Help and version go to standard output, errors of the arguments to standard error.
int runCommand(int argc, char** argv) {
  zorvela::CommandLine line("Predict cis and trans prolines from chemical shifts", zorvela::kProgramName,
                            zorvela::version());
  zorvela::addDemo(line);
  zorvela::addRun(line);
  zorvela::addImport(line);
  zorvela::addAnnotate(line);
  zorvela::addRestrain(line);
  zorvela::addLabel(line);
  zorvela::addTrain(line);
  zorvela::addEvaluate(line);
  std::ostringstream out;
  const int status = line.run(argc, argv, out, std::cerr);
  if (!out.str().empty()) zorvela::writeWhole("-", out.str());
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  zorvela::prepareProcess();
  try {
    if (argc < 2) return showFirstCommands();
    return runCommand(argc, argv);
  } catch (const zorvela::ReportedFailure&) {
    return 1;
  } catch (const zorvela::Error& e) {
    return fail(e.what());
  } catch (const std::bad_alloc&) {
    return fail("out of memory");
  } catch (const std::exception& e) {
    return fail(e.what(), "unexpected error: ");
  }
}

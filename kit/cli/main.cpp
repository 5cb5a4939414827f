// zorvela-kit: files in, predictions out, and the tables for them.
#include <exception>
#include <iostream>
#include <new>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/messages.h"
#include "cli/process.h"
#include "cli/whole_file.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/version.h"

namespace {

int fail(const char* message, const char* kind = "") {
  zorvela::say(std::string(kind) + message);
  return 1;
}

/// What the parser of the command line has to say: help and version on standard output, else what is wrong
/// on standard error. The command line may come from anywhere, so its words are no more trusted than a
/// file's.
int exitStatusOf(const CLI::App& app, const CLI::ParseError& error) {
  std::ostringstream out;
  std::ostringstream err;
  const int status = app.exit(error, out, err);
  std::cerr << zorvela::shownLines(err.str()) << std::flush;
  try {
    zorvela::writeWhole("-", [&out](std::ostream& stream) { stream << out.str(); });
  } catch (const zorvela::Error& e) {
    return fail(e.what());
  }
  return status;
}

int runCommand(int argc, char** argv) {
  CLI::App app("Chemical shift files in, cis/trans predictions for prolines out.", zorvela::kProgramName);
  app.set_version_flag("--version", std::string(zorvela::kProgramName) + " " + zorvela::version());
  app.require_subcommand(1);
  app.footer("Each sub-command has its own --help. Manual: zorvela-kit(1).");
  zorvela::addRun(app);
  zorvela::addImport(app);
  zorvela::addAnnotate(app);
  zorvela::addRestrain(app);
  zorvela::addLabel(app);
  zorvela::addTrain(app);
  zorvela::addEvaluate(app);
  try {
    app.parse(argc, argv);
    return 0;
  } catch (const CLI::ParseError& e) {
    return exitStatusOf(app, e);
  }
}

}  // namespace

int main(int argc, char** argv) {
  zorvela::prepareProcess();
  try {
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

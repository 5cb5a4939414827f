// zorvela-kit: files in, predictions out, and the tables for them.
#include <exception>
#include <new>
#include <string>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/messages.h"
#include "cli/process.h"
#include "cli/whole_file.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

int run(int argc, char** argv) {
  if (argc > 1)
    return runCommandLine(
        argc, argv, {addDemo, addRun, addImport, addAnnotate, addRestrain, addLabel, addTrain, addEvaluate});
  writeWhole("-", firstCommands());
  return 0;
}

int fail(const std::string& message) {
  say(message);
  return 1;
}

}  // namespace

}  // namespace zorvela

int main(int argc, char** argv) {
  zorvela::prepareProcess();
  try {
    return zorvela::run(argc, argv);
  } catch (const zorvela::ReportedFailure&) {
    return 1;
  } catch (const zorvela::Error& e) {
    return zorvela::fail(e.what());
  } catch (const std::bad_alloc&) {
    return zorvela::fail("out of memory");
  } catch (const std::exception& e) {
    return zorvela::fail(std::string("unexpected error: ") + e.what());
  }
}

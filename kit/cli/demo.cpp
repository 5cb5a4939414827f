// The sub-command `demo`: the prediction of an example that every copy of the program holds.
#include <memory>
#include <ostream>
#include <string>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/process.h"
#include "cli/reference_tables.h"
#include "cli/shared_options.h"
#include "cli/whole_file.h"
#include "zorvela/read.h"
#include "zorvela/run_file.h"

namespace zorvela {

namespace {

constexpr const char* kBefore =
    "Staphylococcal nuclease, shifts of BMRB entry 16585. In the crystal structure\n"
    "proline 117 is cis, and the four others are trans. By the shifts:\n\n";

constexpr const char* kAfter = R"(
How to read it

  P_CIS_NORM  the probability that the bond before the proline is cis: go by it.
              P_CIS is the same if cis and trans were equally common.
  Call        cis, trans or undecided, by P_CIS_NORM. Undecided: measure more.
  Shifts      how many of N, HA, C, CA, CB, HN each of the three residues has.
              With few of them the answer is uncertain.
  CG          shift of the proline's CG in ppm, with CB the best evidence.
              Measure it if it is missing.
  Offsets     referencing errors. Certain ones are corrected, with a note.

Your own protein: zorvela-kit run your.str
Why, and what to measure next: zorvela-kit run --explain your.str
)";

void demonstrate(const std::string& tablesGiven) {
  RunReport report;
  report.tables = findTables(tablesGiven);
  const Tables tables = loadTables(report.tables);
  report.classes = statisticsOf(tables);
  const auto read = [] { return readShiftBytes(kExample, kExampleName, {}); };
  report.files.push_back(reportOn(kExampleName, read, Predictor(tables)));
  const ReportStyle style{wantsColour("-")};
  writeWhole("-", [&](std::ostream& out) {
    out << kBefore;
    writeTable(report, style, out);
    out << kAfter;
  });
}

}  // namespace

const char* firstCommands() {
  return R"(Which prolines of a protein are cis? zorvela-kit answers from its chemical shifts.

An example, and how to read the answer:
  zorvela-kit demo
Your own file: NMR-STAR (such as a BMRB entry), NEF, CSV or a shift table:
  zorvela-kit run your.str
The same as a web page, with figures and the evidence:
  zorvela-kit run --format html --output report.html your.str

All commands: zorvela-kit --help
)";
}

void addDemo(Command& program) {
  const auto tables = std::make_shared<std::string>();
  Command command = program.addCommand("demo", "Predict an example, and explain how to read the answer");
  addTables(command, *tables);
  command.ends("", {"zorvela-kit demo", "zorvela-kit demo --tables tab"});
  command.runs([tables] { demonstrate(*tables); });
}

}  // namespace zorvela

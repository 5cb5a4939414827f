#include "cli/shared_options.h"

#include "cli/work.h"

namespace zorvela {

void addOutput(Command& command, std::string& path) {
  command.add("--output", path, "FILE", "Write to this file").showsDefault("standard output");
}

Option addTables(Command& command, std::string& folder) {
  return command.add("--tables", folder, "DIR", "Folder of the seven reference tables")
      .showsDefault("tab in ZORVELA_DIR, else the installed ones, else ./tab");
}

void addPredictionOptions(Command& command, PredictorOptions& options) {
  command.addFlag(
      "--as-referenced", options.asReferenced,
      "Use the shifts as the file has them; without it, certain referencing offsets are corrected, and the "
      "isotope shifts of a sample that the file calls deuterated");
  addDeuterationOptions(command, options);
}

void addDeuterationOptions(Command& command, PredictorOptions& options) {
  const Option deuterated =
      command.addFlag("--deuterated", options.deuterated,
                      "Correct isotope shifts even if the file does not call the sample deuterated");
  command
      .addFlag("--protonated", options.protonated,
               "Do not correct isotope shifts even if the file calls the sample deuterated")
      .excludes(deuterated);
}

void addChains(Command& command, std::vector<std::string>& chains) {
  command
      .add("--chain", chains, "NAME",
           "Use only this chain (name, molecule or number in the file); may be repeated")
      .repeated()
      .showsDefault("every polypeptide chain with shifts");
}

void addLists(Command& command, std::vector<std::string>& lists, const std::string& text) {
  command.add("--list", lists, "NAME", text)
      .repeated()
      .showsDefault("for each chain the list with most backbone shifts");
}

void addJobs(Command& command, int& jobs) {
  command.add("--jobs", jobs, {"N", 1, kMostJobs}, "Work on N files at the same time")
      .showsDefault("one for each core");
}

}  // namespace zorvela

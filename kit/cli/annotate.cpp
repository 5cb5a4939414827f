// The sub-command `annotate`: the calls written into a NEF file.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/reference_tables.h"
#include "cli/shared_options.h"
#include "cli/whole_file.h"
#include "formats/input_bytes.h"
#include "restrain/nef_flags.h"
#include "restrain/restraints.h"
#include "util/text.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

struct AnnotateSettings {
  std::string file;
  std::vector<std::string> shifts;
  std::string output;
  std::string tables;
  ImportOptions import;
  PredictorOptions predict;
  FlagRules rules;
};

/// Those of the file itself, or of the files that are named for it.
PredictedProteins predict(const AnnotateSettings& settings, const std::string& text,
                          const std::string& name) {
  const Predictor predictor(loadTables(findTables(settings.tables)), settings.predict);
  PredictedProteins predicted;
  predicted.areOfFile = settings.shifts.empty();
  const auto add = [&](std::vector<Protein> proteins) {
    for (Protein& protein : proteins) {
      predicted.results.push_back(predictor.predict(protein));
      const ProteinResult& result = predicted.results.back();
      if (!predicted.areOfFile)
        sayFileNotes(protein.file, {{protein.chain, result.notes}});
      else if (!result.correction.empty())
        say("note: " + messageName(name, protein.chain) + ": " + result.correction);
      predicted.proteins.push_back(std::move(protein));
    }
  };
  if (predicted.areOfFile) add(readShiftBytes(text, name, settings.import));
  for (const std::string& file : settings.shifts) add(readInput(file, settings.import));
  return predicted;
}

void annotate(const AnnotateSettings& settings) {
  InputFiles inputs;
  inputs.add({settings.file, findTables(settings.tables)});
  inputs.add(settings.shifts);
  inputs.mustNotHold({settings.output});
  const std::string name = inputName(settings.file);
  const std::string bytes = inputBytes(settings.file);
  const std::string text = unpacked(bytes, name);
  const PredictedProteins predicted = predict(settings, text, name);
  const auto [annotation, notes] = flaggedNef(text, name, predicted, settings.rules);
  writeWhole(settings.output, isGzipped(bytes) ? packed(annotation.text) : annotation.text);
  for (const std::string& note : notes) say("note: " + note);
  say(summaryOf(predicted.results));
  say(counted(annotation.written, "flag", "flags") + " written, " + std::to_string(annotation.confirmed) +
      " correct before");
}

}  // namespace

void addAnnotate(Command& program) {
  const auto settings = std::make_shared<AnnotateSettings>();
  Command command =
      program.addCommand("annotate", "Write the calls into the column cis_peptide of a NEF file");
  command.add("FILE", settings->file, "", "NEF file, also gzipped; - is standard input").required();
  command
      .add("--output", settings->output, "FILE",
           "Write the annotated file here, gzipped if the input is; - is standard output")
      .required();
  command
      .add("--shifts", settings->shifts, "FILE",
           "Predict from the shifts in this file, of any format; may be repeated")
      .repeated()
      .showsDefault("the NEF file");
  command.addFlag("--trans", settings->rules.trans, "Also write false for trans prolines");
  command.addFlag("--replace", settings->rules.replace,
                  "Replace flags that contradict a call; without it they stay, with a note");
  addTables(command, settings->tables);
  addPredictionOptions(command, settings->predict);
  addLists(command, settings->import.lists, "Use only this shift list (name or number); may be repeated");
  command.ends(
      "Flags: true is a cis bond before the residue; programs differ in how they read it, so check the model "
      "with run --structure\n"
      "Kept: flags of undecided prolines and of all other residues, and every other byte of the file",
      {"zorvela-kit annotate --output annotated.nef examples/nuclease.nef",
       "zorvela-kit annotate --trans --replace --output - examples/nuclease.nef"});
  command.runs([settings] { annotate(*settings); });
}

}  // namespace zorvela

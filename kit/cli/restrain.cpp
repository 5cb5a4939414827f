// The sub-command `restrain`: the cis prolines in the words of a structure calculation program.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
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
#include "restrain/restraints.h"
#include "util/text.h"
#include "zorvela/compare.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"
#include "zorvela/structure.h"

namespace zorvela {

namespace {

struct RestrainSettings {
  std::vector<std::string> files;
  std::string program;
  std::string into;
  std::string structure;
  std::string output = "-";
  std::vector<std::string> renamings;
  std::string tables;
  ImportOptions import;
  PredictorOptions predict;
};

const RestraintFormat& formatOf(const std::string& name) {
  const auto& formats = restraintFormats();
  return *std::find_if(formats.begin(), formats.end(),
                       [&name](const RestraintFormat& format) { return format.name == name; });
}

std::vector<ProteinResult> predictChains(const RestrainSettings& settings,
                                         const std::optional<ProteinStructure>& structure) {
  Predictor predictor(loadTables(findTables(settings.tables)), settings.predict);
  std::vector<Protein> proteins;
  std::vector<ProteinResult> results;
  for (const std::string& file : settings.files) {
    std::vector<ChainNotes> notes;
    for (Protein& protein : readInput(file, settings.import)) {
      results.push_back(predictor.predict(protein));
      notes.push_back({protein.chain, results.back().notes});
      proteins.push_back(std::move(protein));
    }
    sayFileNotes(file, notes);
  }
  if (structure) {
    compareWithStructures(proteins, {*structure}, results);
    sayFileNotes(structure->file, {{"", structure->notes}});
  }
  for (const ProteinResult& result : results)
    sayFileNotes(result.file, {{result.chain, result.structureNotes}});
  return results;
}

void restrain(const RestrainSettings& settings) {
  InputFiles inputs;
  inputs.add(settings.files);
  inputs.add({settings.into, settings.structure, findTables(settings.tables)});
  inputs.mustNotHold({settings.output});
  RestraintRequest request;
  if (!settings.structure.empty()) {
    const std::string text = unpacked(fileBytes(settings.structure), settings.structure);
    request.modelText = NamedText{settings.structure, text};
    request.structure = readStructureBytes(text, settings.structure);
  }
  const std::string there = settings.into.empty() ? std::string() : fileBytes(settings.into);
  if (!settings.into.empty()) request.into = NamedText{settings.into, unpacked(there, settings.into)};
  const RestraintFormat& format = formatOf(settings.program);
  mustFit(format, request);
  request.chains = predictChains(settings, request.structure);
  renameChains(settings.renamings, request.chains);
  RestraintText result = writeRestraints(format, request);
  if (isGzipped(there)) result.text = packed(std::move(result.text));
  writeWhole(settings.output, result.text);
  for (const std::string& note : result.notes) say("note: " + note);
  say(summaryOf(request.chains));
}

std::string remarks() {
  std::string text = "Programs:\n";
  for (const RestraintFormat& format : restraintFormats())
    text += "  " + std::string(format.name) + std::string(14 - std::string(format.name).size(), ' ') +
            format.writes + "\n";
  return text +
         "Prolines: undecided ones are comments, trans ones are left out; a comment marks what is not sure";
}

}  // namespace

void addRestrain(Command& program) {
  const auto settings = std::make_shared<RestrainSettings>();
  Command command = program.addCommand("restrain", "Write the cis prolines for a structure calculation");
  command.add("FILE", settings->files, "", "Shift files in any format, also gzipped; - is standard input")
      .required();
  command
      .add("--for", settings->program, {"PROGRAM", namesOf(restraintFormats())},
           "Write for this program, or in this format")
      .required();
  command.add("--into", settings->into, "FILE",
              "With cyana or nef: add to this file, and keep all its other bytes");
  command.add("--structure", settings->structure, "FILE",
              "With amber, pdb or mmcif: the structure (PDB or mmCIF, also gzipped)");
  addOutput(command, settings->output);
  command
      .add("--chain-as,--segid", settings->renamings, "[OLD=]NEW",
           "Write NEW as the name of the chain, or of the chain OLD; may be repeated")
      .repeated();
  addTables(command, settings->tables);
  addPredictionOptions(command, settings->predict);
  addChains(command, settings->import.chains);
  addLists(command, settings->import.lists, "Use only this shift list (name or number); may be repeated");
  command.ends(remarks(), {"zorvela-kit restrain --for cyana-aco examples/nuclease.str",
                           "zorvela-kit restrain --for tbl --output omega.tbl examples/nuclease.str"});
  command.runs([settings] { restrain(*settings); });
}

}  // namespace zorvela

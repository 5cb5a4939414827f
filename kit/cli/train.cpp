// The sub-command `train`: the seven reference tables from proteins with known prolines.
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <system_error>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/training_options.h"
#include "cli/whole_file.h"
#include "predict/tables.h"
#include "train/labelled_prolines.h"
#include "train/published_tables.h"
#include "train/table_training.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

struct TrainSettings {
  std::string entries;
  std::string labels;
  PublishedData published;
  std::string output;
  TrainingChoices choices;
};

/// The text of each table. Error unless every one is as `run` wants it, above all without nan.
std::map<std::string, std::string> checkedTexts(ReferenceTables& tables) {
  std::map<std::string, std::string> texts;
  for (const auto& [name, table] : namedTables(tables)) {
    std::ostringstream out;
    table->writeTable(out);
    texts[name] = out.str();
  }
  try {
    tablesFromTexts(texts);
  } catch (const TableError& e) {
    throw Error(std::string("the data make no usable table: ") + e.what() +
                "; look for shifts far outside the usual range");
  }
  return texts;
}

void writeTables(ReferenceTables& tables, const std::string& folder) {
  const std::map<std::string, std::string> texts = checkedTexts(tables);
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    throw Error(folder, 0, "cannot be made: " + error.message(), "choose another folder with --output");
  for (const auto& [name, text] : texts) writeWhole(folder + "/" + name, text);
}

/// Nothing that is read may be replaced: neither an entry of a table's name nor a published file.
void checkOutputs(const TrainSettings& settings) {
  InputFiles inputs({settings.labels, settings.published.neighbours, settings.published.randomCoil,
                     settings.published.neighbourEffects});
  inputs.addFolder(settings.entries);
  std::vector<std::string> outputs;
  for (const char* name : kTableNames) outputs.push_back(settings.output + "/" + name);
  for (const std::string& output : outputs) inputs.mustNotHold(output);
  mustDiffer(outputs);
}

void trainAndWrite(const TrainSettings& settings) {
  checkOutputs(settings);
  ReferenceTables tables = publishedTables(settings.published, settings.choices.pseudocount);
  const Model published = modelOf(tables);
  const LabelledProlines data =
      readLabelled(settings.labels, settings.entries, published, progressBar("Reading shift tables"));
  const Training training = train(published, data, settings.choices);
  tables.limits = limitsTable(training, settings.choices);
  tables.shifts = shiftTable(training, settings.choices);
  writeTables(tables, settings.output);
  std::cout << "Seven tables written to " + shown(settings.output) + "\n";
  flushStandardOutput();
}

}  // namespace

void addTrain(CommandLine& line) {
  const auto settings = std::make_shared<TrainSettings>();
  Command command =
      line.addCommand("train", "Make the seven reference tables from proteins with known prolines");
  addLabelledEntries(command, settings->entries, settings->labels);
  command.add("--output", settings->output, "DIR", "Folder for the tables; made if it is not there")
      .required();
  addPublishedData(command, settings->published);
  addTrainingOptions(command, settings->choices);
  command.ends(
      kDataToTry,
      {"zorvela-kit train --entries entries --labels prolines.csv --output tables",
       "zorvela-kit train --entries entries --labels prolines.csv \\\n    --output untrimmed --trim 0"});
  command.runs([settings] {
    settings->published = besideLabels(settings->published, settings->labels);
    trainAndWrite(*settings);
  });
}

}  // namespace zorvela

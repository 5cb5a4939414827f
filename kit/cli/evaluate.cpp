// The sub-command `evaluate`: how often the predictor is right, on prolines known from structures.
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input_files.h"
#include "cli/reference_tables.h"
#include "cli/training_options.h"
#include "cli/whole_file.h"
#include "train/evaluation.h"
#include "train/evaluation_report.h"
#include "train/labelled_prolines.h"
#include "train/published_tables.h"
#include "train/table_training.h"

namespace zorvela {

namespace {

struct EvaluateSettings {
  std::string entries;
  std::string labels;
  std::string tables;
  std::size_t folds = 0;
  PublishedData published;
  TrainingChoices choices;
  int rounds = 2000;
  bool json = false;
  std::string output = "-";
  std::string predictions;
  std::string roc;
  std::string calibration;
};

void checkOutputs(const EvaluateSettings& settings) {
  const std::vector<std::string> outputs = {settings.output, settings.predictions, settings.roc,
                                            settings.calibration};
  InputFiles inputs({settings.labels, settings.published.neighbours, settings.published.randomCoil,
                     settings.published.neighbourEffects});
  inputs.addFolder(settings.entries);
  if (settings.folds == 0) inputs.addFolder(findTables(settings.tables));
  for (const std::string& output : outputs) inputs.mustNotHold(output);
  mustDiffer(outputs);
}

/// The model of given tables, or of what is published and the same in all folds.
Model chosenModel(const EvaluateSettings& settings) {
  if (settings.folds == 0) return modelOf(*loadTables(findTables(settings.tables)));
  return modelOf(publishedTables(settings.published, settings.choices.pseudocount));
}

void write(const EvaluateSettings& settings, const Evaluation& result, const LabelledProlines& data) {
  const std::string origin = settings.folds == 0 ? findTables(settings.tables)
                                                 : "trained anew in each of " +
                                                       std::to_string(settings.folds) + " folds of clusters";
  const auto writeTo = [](const std::string& path, const std::function<void(std::ostream&)>& write) {
    if (!path.empty()) writeWhole(path, write);
  };
  writeTo(settings.predictions, [&](std::ostream& out) { writePredictions(out, result, data); });
  writeTo(settings.roc, [&](std::ostream& out) { writeRoc(out, result); });
  writeTo(settings.calibration, [&](std::ostream& out) { writeCalibration(out, result); });
  writeTo(settings.output, [&](std::ostream& out) {
    if (settings.json)
      writeEvaluationJson(out, result, origin, settings.rounds);
    else
      writeEvaluationTable(out, result, origin, settings.rounds);
  });
}

void evaluate(const EvaluateSettings& settings) {
  checkOutputs(settings);
  const Model model = chosenModel(settings);
  const LabelledProlines data =
      readLabelled(settings.labels, settings.entries, model, progressBar("Reading shift tables"));
  const FoldModels models = settings.folds == 0 ? oneModel(model, data)
                                                : trainFolds(model, data, settings.folds, settings.choices,
                                                             progressBar("Cross-validating"));
  write(settings, evaluation(data, predictAll(models, data)), data);
}

}  // namespace

void addEvaluate(CommandLine& line) {
  const auto settings = std::make_shared<EvaluateSettings>();
  Command command = line.addCommand("evaluate", "Compare predictions with prolines known from structures");
  addLabelledEntries(command, settings->entries, settings->labels);
  const Option tables = addTables(command, settings->tables);
  const Option folds =
      command.add("--cross-validate", settings->folds, {"N", 2, 1000},
                  "Train all tables anew without the clusters of each of N folds, and evaluate those");
  folds.excludes(tables);
  command.addFlag("--json", settings->json, "Write JSON instead of a table, with the calibration");
  addOutput(command, settings->output);
  command
      .add("--bootstrap", settings->rounds, {"N", 0, 100000},
           "Compute the intervals from N bootstrap rounds; 0 computes none")
      .showsDefault();
  const auto addFile = [&](const char* name, std::string& path, const char* text) {
    command.add(name, path, "FILE", text).group("CSV files for plots and a closer look");
  };
  addFile("--predictions", settings->predictions, "Write each proline with its label and probabilities");
  addFile("--roc", settings->roc, "Write the points of the ROC curves");
  addFile("--calibration", settings->calibration,
          "Write the predicted probability and the observed share of cis");
  std::vector<Option> forFolds = addTrainingOptions(command, settings->choices);
  const std::vector<Option> published = addPublishedData(command, settings->published);
  forFolds.insert(forFolds.end(), published.begin(), published.end());
  for (const Option option : forFolds) option.needs(folds);
  command.ends(kDataToTry,
               {"zorvela-kit evaluate --entries entries --labels prolines.csv --bootstrap 0",
                "zorvela-kit evaluate --entries entries --labels prolines.csv \\\n    --cross-validate 10"});
  command.runs([settings] {
    settings->published = besideLabels(settings->published, settings->labels);
    evaluate(*settings);
  });
}

}  // namespace zorvela

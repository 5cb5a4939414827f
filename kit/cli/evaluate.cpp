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
  const PublishedData published = besideLabels(settings.published, settings.labels);
  InputFiles inputs(
      {settings.labels, published.neighbours, published.randomCoil, published.neighbourEffects});
  inputs.addFolder(settings.entries);
  if (settings.folds == 0) inputs.addFolder(findTables(settings.tables));
  for (const std::string& output : outputs) inputs.mustNotHold(output);
  mustDiffer(outputs);
}

/// The model of given tables, or of what is published and the same in all folds.
Model chosenModel(const EvaluateSettings& settings) {
  if (settings.folds == 0) return modelOf(*loadTables(findTables(settings.tables)));
  return modelOf(
      publishedTables(besideLabels(settings.published, settings.labels), settings.choices.pseudocount));
}

void write(const EvaluateSettings& settings, const Evaluation& result, const LabelledProlines& data) {
  const std::vector<GroupFigures> figures = allFigures(result, settings.rounds);
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
      writeEvaluationJson(out, result, figures, origin, settings.rounds);
    else
      writeEvaluationTable(out, result, figures, origin);
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
  command.add("--entries", settings->entries, "DIR", "Folder of shift tables, one NAME.tab for each entry")
      .required();
  command
      .add("--labels", settings->labels, "FILE",
           "CSV of prolines: entry, resid, label_structure (cis, trans or empty), cluster, and label_shift "
           "(cis, trans, unclear or empty) where CB - CG says so")
      .required();
  const Option tables = command.add("--tables", settings->tables, "DIR",
                                    "Folder of the seven tables; default: those of zorvela");
  const Option folds =
      command.add("--cross-validate", settings->folds, {"N", 2, 1000},
                  "Instead of given tables: train all tables anew without the clusters of each of N folds");
  folds.excludes(tables);
  command.addFlag("--json", settings->json, "JSON instead of a table, with the calibration");
  command.add("--output", settings->output, "FILE", "File for the figures; default: standard output");
  command.add("--bootstrap", settings->rounds, {"N", 0, 100000}, "Rounds for the intervals").showsDefault();
  const auto addFile = [&](const char* name, std::string& path, const char* text) {
    command.add(name, path, "FILE", text).group("Files for plots and for a closer look (CSV)");
  };
  addFile("--predictions", settings->predictions, "Each proline with its label and probabilities");
  addFile("--roc", settings->roc, "Points of the ROC curves");
  addFile("--calibration", settings->calibration, "Predicted probability against observed share of cis");
  std::vector<Option> forFolds = addTrainingOptions(command, settings->choices);
  const auto addSource = [&](const char* name, std::string& path, const char* text) {
    forFolds.push_back(command.add(name, path, "FILE", text)
                           .group("Published data for --cross-validate (default: beside the labels)"));
  };
  addSource("--neighbours", settings->published.neighbours, "CSV of counts (proline_neighbour_counts.csv)");
  addSource("--random-coil", settings->published.randomCoil,
            "CSV of random-coil shifts (random_coil/nielsen_mulder_2018.csv)");
  addSource("--neighbour-effects", settings->published.neighbourEffects,
            "CSV of neighbour effects (random_coil/nielsen_mulder_2018_neighbours.csv)");
  for (const Option option : forFolds) option.needs(folds);
  command.runs([settings] { evaluate(*settings); });
}

}  // namespace zorvela

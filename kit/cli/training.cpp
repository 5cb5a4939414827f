// The sub-commands `train` and `evaluate`. The first makes the seven reference tables from proteins with
// known prolines. The second measures how often predictions are right for such prolines.
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input_files.h"
#include "cli/reference_tables.h"
#include "cli/shared_options.h"
#include "cli/whole_file.h"
#include "cli/work.h"
#include "predict/tables.h"
#include "train/evaluation.h"
#include "train/evaluation_report.h"
#include "train/labelled_prolines.h"
#include "train/published_tables.h"
#include "train/table_training.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// --- What both read -----------------------------------------------------------------------------

struct DataSettings {
  std::string entries;
  std::string labels;
  PublishedData published;
  TrainingChoices choices;
};

constexpr const char* kDataToTry =
    "Data to try: the folder of data/zorvela-data.tar.xz in the sources has all files that the examples name";

// Closer to the ends of the range, or to the median, too few shifts are left for a deviation.
constexpr double kLeastLimitPercent = 0.001;
constexpr double kLeastTrim = 1;
constexpr bool kOrZero = true;

void addLabelledEntries(Command& command, DataSettings& data) {
  command.add("--entries", data.entries, "DIR", "Folder of shift tables, NAME.tab for each entry").required();
  command
      .add(
          "--labels", data.labels, "FILE",
          "CSV file of prolines: entry, resid, label_structure (cis, trans or empty), cluster; evaluate also "
          "uses label_shift (cis, trans, unclear or empty)")
      .required();
}

/// Adds --neighbours, --random-coil and --neighbour-effects, and returns them.
std::vector<Option> addPublishedData(Command& command, PublishedData& published) {
  std::vector<Option> options;
  const auto add = [&](const char* name, std::string& path, const char* text, const std::string& usual) {
    options.push_back(command.add(name, path, "FILE", text)
                          .showsDefault(usual + " beside the labels")
                          .group("Published data"));
  };
  add("--neighbours", published.neighbours,
      "CSV file of counts: resname, cis_prev, cis_next, trans_prev, trans_next", kUsualNames.neighbours);
  add("--random-coil", published.randomCoil,
      "CSV file of random-coil shifts: res, N, HA, C, CA, CB, HN (ppm)", kUsualNames.randomCoil);
  add("--neighbour-effects", published.neighbourEffects,
      "CSV file of neighbour effects: neighbour, atom, nbr_at_i-1, nbr_at_i+1 (ppm)",
      kUsualNames.neighbourEffects);
  return options;
}

/// Adds the choices in training, and returns them.
std::vector<Option> addTrainingOptions(Command& command, TrainingChoices& choices) {
  std::vector<Option> options;
  const auto add = [&](const char* name, Command::Setting setting, const ValueKind& kind, const char* text) {
    options.push_back(command.add(name, setting, kind, text).showsDefault().group("Choices in training"));
  };
  add("--limit-percent", choices.limitPercent, {"N", kLeastLimitPercent, 25, kOrZero},
      "Clip secondary shifts below percentile N and above 100-N");
  add("--trim", choices.trim, {"N", kLeastTrim, 100, kOrZero},
      "Leave out values further than N robust deviations from the class median; 0 leaves out none");
  add("--pool", choices.pooling, {"MODE", {"natural", "equal", "none"}},
      "Pool the deviations of both classes: natural (variances weighted 1 to 19), equal (1 to 1) or none");
  add("--widen-proline", choices.widenProline, {"N", 0.1, 100},
      "Multiply the deviations of the proline's own shifts by N");
  add("--widen-neighbours", choices.widenNeighbours, {"N", 0.1, 100},
      "Multiply the deviations of the neighbours' shifts by N");
  add("--pseudocount", choices.pseudocount, {"N", 0, 1000000}, "Add N to each count of neighbours");
  return options;
}

/// The files that both read.
InputFiles inputsOf(const DataSettings& data) {
  InputFiles inputs;
  inputs.add({data.labels, data.published.neighbours, data.published.randomCoil,
              data.published.neighbourEffects, data.entries});
  return inputs;
}

/// Shows how far long work of the training library is.
OnStep progressBar(const std::string& what) {
  return [bar = std::make_shared<Progress>(what)](std::size_t total) { bar->step(total); };
}

LabelledProlines read(const DataSettings& data, const Model& model) {
  return readLabelled(data.labels, data.entries, model, progressBar("Reading shift tables"));
}

// --- Training -----------------------------------------------------------------------------------

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

void trainAndWrite(const DataSettings& data, const std::string& folder) {
  std::vector<std::string> outputs;
  for (const char* name : kTableNames) outputs.push_back(folder + "/" + name);
  inputsOf(data).mustNotHold(outputs);  // neither an entry of a table's name nor a published file
  ReferenceTables tables = publishedTables(data.published, data.choices.pseudocount);
  const Model published = modelOf(tables);
  const Training training = train(published, read(data, published), data.choices);
  tables.limits = limitsTable(training, data.choices);
  tables.shifts = shiftTable(training, data.choices);
  const std::map<std::string, std::string> texts = checkedTexts(tables);
  makeFolder(folder);
  for (const auto& [name, text] : texts) writeWhole(folder + "/" + name, text);
  std::cout << "Seven tables written to " + shown(folder) + "\n";
  flushStandardOutput();
}

// --- Evaluating ---------------------------------------------------------------------------------

struct EvaluateSettings {
  DataSettings data;
  std::string tables;
  std::size_t folds = 0;
  int rounds = 2000;
  bool json = false;
  std::string output = "-";
  std::string predictions;
  std::string roc;
  std::string calibration;
};

void evaluate(const EvaluateSettings& settings) {
  const DataSettings& given = settings.data;
  const bool isTrained = settings.folds > 0;
  const std::string tables = isTrained ? "" : findTables(settings.tables);
  InputFiles inputs = inputsOf(given);
  inputs.add({tables});
  inputs.mustNotHold({settings.output, settings.predictions, settings.roc, settings.calibration});
  const Model model =
      modelOf(isTrained ? publishedTables(given.published, given.choices.pseudocount) : *loadTables(tables));
  const LabelledProlines data = read(given, model);
  const FoldModels models =
      isTrained ? trainFolds(model, data, settings.folds, given.choices, progressBar("Cross-validating"))
                : oneModel(model, data);
  const Evaluation result = evaluation(data, predictAll(models, data));
  const std::string origin =
      isTrained ? "trained anew in each of " + std::to_string(settings.folds) + " folds of clusters" : tables;
  const auto writeTo = [](const std::string& path, const std::function<void(std::ostream&)>& write) {
    if (!path.empty()) writeWhole(path, write);
  };
  writeTo(settings.predictions, [&](std::ostream& out) { writePredictions(out, result, data); });
  writeTo(settings.roc, [&](std::ostream& out) { writeRoc(out, result); });
  writeTo(settings.calibration, [&](std::ostream& out) { writeCalibration(out, result); });
  const auto report = settings.json ? writeEvaluationJson : writeEvaluationTable;
  writeTo(settings.output, [&](std::ostream& out) { report(out, result, origin, settings.rounds); });
}

}  // namespace

void addTrain(Command& program) {
  const auto data = std::make_shared<DataSettings>();
  const auto output = std::make_shared<std::string>();
  Command command =
      program.addCommand("train", "Make the seven reference tables from proteins with known prolines");
  addLabelledEntries(command, *data);
  command.add("--output", *output, "DIR", "Folder for the tables; made if it is not there").required();
  addPublishedData(command, data->published);
  addTrainingOptions(command, data->choices);
  command.ends(
      kDataToTry,
      {"zorvela-kit train --entries entries --labels prolines.csv --output tables",
       "zorvela-kit train --entries entries --labels prolines.csv \\\n    --output untrimmed --trim 0"});
  command.runs([data, output] {
    data->published = besideLabels(data->published, data->labels);
    trainAndWrite(*data, *output);
  });
}

void addEvaluate(Command& program) {
  const auto settings = std::make_shared<EvaluateSettings>();
  Command command = program.addCommand("evaluate", "Compare predictions with prolines known from structures");
  addLabelledEntries(command, settings->data);
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
  std::vector<Option> forFolds = addTrainingOptions(command, settings->data.choices);
  const std::vector<Option> published = addPublishedData(command, settings->data.published);
  forFolds.insert(forFolds.end(), published.begin(), published.end());
  for (const Option option : forFolds) option.needs(folds);
  command.ends(kDataToTry,
               {"zorvela-kit evaluate --entries entries --labels prolines.csv --bootstrap 0",
                "zorvela-kit evaluate --entries entries --labels prolines.csv \\\n    --cross-validate 10"});
  command.runs([settings] {
    settings->data.published = besideLabels(settings->data.published, settings->data.labels);
    evaluate(*settings);
  });
}

}  // namespace zorvela

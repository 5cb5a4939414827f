// The sub-command `evaluate`: how often the predictor is right, on prolines known from structures.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/evaluate_referencing.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/reference_tables.h"
#include "cli/training_options.h"
#include "cli/whole_file.h"
#include "train/evaluation.h"
#include "train/evaluation_groups.h"
#include "train/evaluation_report.h"
#include "train/labelled_prolines.h"
#include "train/published_tables.h"
#include "train/study/next_shift_trial.h"
#include "train/study/referencing_study.h"
#include "train/table_training.h"

namespace zorvela {

namespace {

// No spectrum is folded or referenced that far away (ppm).
constexpr double kLargestOffset = 1000;

struct EvaluateSettings {
  std::string entries;
  std::string labels;
  std::string tables;
  std::size_t folds = 0;
  PublishedData published;
  TrainingChoices choices;
  int rounds = 2000;
  bool json = false;
  bool nextShift = false;
  std::string output = "-";
  std::string predictions;
  std::string roc;
  std::string calibration;
  double carbonAdded = 0;
  double protonAdded = 0;
  bool rereference = false;
  bool referencing = false;
  std::string relations;
};

// --- What to measure next -----------------------------------------------------------------------

constexpr std::size_t kTrialSteps = 4;
constexpr int kTrialRounds = 20;
constexpr std::uint64_t kTrialSeed = 9;

/// The prolines that are scored, in their order.
std::vector<TrialProline> scoredOnly(const Evaluation& evaluation,
                                     std::map<std::size_t, TrialProline> byLabel) {
  std::vector<TrialProline> prolines;
  for (const Evaluated& p : evaluation.prolines) {
    TrialProline& proline = byLabel.at(p.label);
    proline.isCis = p.isCis;
    proline.cluster = p.cluster;
    prolines.push_back(std::move(proline));
  }
  return prolines;
}

// --- The command ----------------------------------------------------------------------------------

/// Where no path was given: the published files beside the labels, as our data folder has them.
PublishedData besideLabels(PublishedData published, const std::string& labels) {
  const std::filesystem::path folder = std::filesystem::path(labels).parent_path();
  const auto fill = [&](std::string& path, const char* name) {
    if (path.empty()) path = (folder / name).string();
  };
  fill(published.neighbours, "proline_neighbour_counts.csv");
  fill(published.randomCoil, "random_coil/nielsen_mulder_2018.csv");
  fill(published.neighbourEffects, "random_coil/nielsen_mulder_2018_neighbours.csv");
  return published;
}

/// How well offsets are seen, instead of how well prolines are predicted.
void evaluateReferencing(const EvaluateSettings& settings) {
  ZORVELA run;
  useTables(*loadTables(findTables(settings.tables)), run);
  const LabelledProlines data =
      readLabelled(settings.labels, settings.entries, run, progressBar("Reading shift tables"));
  const ReferencingStudy study = studyReferencing(run, data);
  if (!settings.relations.empty())
    writeWhole(settings.relations, [&](std::ostream& out) { writeRelations(out, study); });
  writeWhole(settings.output, [&](std::ostream& out) { writeReferencing(out, study); });
}

/// The proteins as a spectrometer with wrong referencing would have given them, corrected if asked for.
/// Nothing where neither is.
std::optional<LabelledProlines> withOffsets(const LabelledProlines& known, const EvaluateSettings& settings) {
  if (settings.carbonAdded == 0 && settings.protonAdded == 0 && !settings.rereference) return std::nullopt;
  LabelledProlines data = known;
  for (EntryShifts& entry : data.entries) {
    addOffsets(entry, settings.carbonAdded, settings.protonAdded);
    if (settings.rereference) rereference(entry);
  }
  return data;
}

void checkOutputs(const EvaluateSettings& settings) {
  const std::vector<std::string> outputs = {settings.output, settings.predictions, settings.roc,
                                            settings.calibration, settings.relations};
  const PublishedData published = besideLabels(settings.published, settings.labels);
  InputFiles inputs(
      {settings.labels, published.neighbours, published.randomCoil, published.neighbourEffects});
  inputs.addFolder(settings.entries);
  if (settings.folds == 0) inputs.addFolder(findTables(settings.tables));
  for (const std::string& output : outputs) inputs.mustNotHold(output);
  mustDiffer(outputs);
}

/// What predicts: given tables, or what is published and the same in all folds.
struct ChosenTables {
  ReferenceTables published;
  std::string origin;  ///< for the report
};

/// Loads them into the run.
ChosenTables chooseTables(const EvaluateSettings& settings, ZORVELA& run) {
  ChosenTables tables;
  if (settings.folds == 0) {
    tables.origin = findTables(settings.tables);
    useTables(*loadTables(tables.origin), run);
    return tables;
  }
  tables.origin = "trained anew in each of " + std::to_string(settings.folds) + " folds of clusters";
  tables.published =
      publishedTables(besideLabels(settings.published, settings.labels), settings.choices.pseudocount);
  useTables(tables.published, run);
  return tables;
}

using Predict = std::function<Predictions(const PredictionVisitor&)>;

void evaluateNextShifts(const EvaluateSettings& settings, const LabelledProlines& data,
                        const Predict& predict, const std::string& tables) {
  std::map<std::size_t, TrialProline> trial;
  const Predictions predictions =
      predict([&trial](std::size_t label, ZORVELA& run, const ProlinePrediction& prediction) {
        trial[label] = trialProline(run, prediction);
      });
  const Trial figures = tryNextShifts(scoredOnly(evaluation(data, predictions), std::move(trial)),
                                      kTrialSteps, kTrialRounds, settings.rounds, kTrialSeed);
  writeWhole(settings.output, [&](std::ostream& out) { writeTrial(out, figures, tables, kTrialRounds); });
}

void evaluateAccuracy(const EvaluateSettings& settings, const LabelledProlines& data, const Predict& predict,
                      const std::string& tables) {
  const Evaluation result = evaluation(data, predict({}));
  const std::vector<GroupFigures> figures = allFigures(result, settings.rounds);
  const auto writeTo = [](const std::string& path, const std::function<void(std::ostream&)>& write) {
    if (!path.empty()) writeWhole(path, write);
  };
  writeTo(settings.predictions, [&](std::ostream& out) { writePredictions(out, result, data); });
  writeTo(settings.roc, [&](std::ostream& out) { writeRoc(out, result); });
  writeTo(settings.calibration, [&](std::ostream& out) { writeCalibration(out, result); });
  writeTo(settings.output, [&](std::ostream& out) {
    if (settings.json)
      writeEvaluationJson(out, result, figures, tables, settings.rounds);
    else
      writeEvaluationTable(out, result, figures, tables);
  });
}

void evaluate(const EvaluateSettings& settings) {
  checkOutputs(settings);
  if (settings.referencing) return evaluateReferencing(settings);
  ZORVELA run;
  const ChosenTables tables = chooseTables(settings, run);
  const LabelledProlines known =
      readLabelled(settings.labels, settings.entries, run, progressBar("Reading shift tables"));
  sayLeftOut(known);
  const std::optional<LabelledProlines> changed = withOffsets(known, settings);
  const LabelledProlines& data = changed ? *changed : known;
  const Predict predict = [&](const PredictionVisitor& visit) {
    if (settings.folds == 0) return predictAll(run, data, visit);
    return crossValidate(tables.published, known, data, settings.folds, settings.choices,
                         progressBar("Cross-validating"), visit);
  };
  const auto evaluateBy = settings.nextShift ? evaluateNextShifts : evaluateAccuracy;
  evaluateBy(settings, data, predict, tables.origin);
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
  const Option nextShift =
      command.addFlag("--next-shift", settings->nextShift,
                      "Instead of accuracy: does the expected gain rank first what is worth measuring?");
  const Option json =
      command.addFlag("--json", settings->json, "JSON instead of a table, with the calibration");
  command.add("--output", settings->output, "FILE", "File for the figures; default: standard output");
  const Option bootstrap =
      command.add("--bootstrap", settings->rounds, {"N", 0, 100000}, "Rounds for the intervals");
  bootstrap.showsDefault();
  const std::string files = "Files for plots and for a closer look (CSV)";
  const std::vector<Option> ofAccuracy = {
      json,
      command
          .add("--predictions", settings->predictions, "FILE",
               "Each proline with its label and probabilities")
          .group(files),
      command.add("--roc", settings->roc, "FILE", "Points of the ROC curves").group(files),
      command
          .add("--calibration", settings->calibration, "FILE",
               "Predicted probability against observed share of cis")
          .group(files)};
  const std::string offsets = "Wrong referencing";
  const std::vector<Option> ofShifts = {
      command
          .add("--add-13c", settings->carbonAdded, {"PPM", -kLargestOffset, kLargestOffset},
               "Added to CA, CB, C and CG before predicting")
          .group(offsets),
      command
          .add("--add-ha", settings->protonAdded, {"PPM", -kLargestOffset, kLargestOffset},
               "Added to HA before predicting")
          .group(offsets),
      command
          .addFlag("--rereference", settings->rereference,
                   "Take away offsets that call for a correction before predicting")
          .group(offsets)};
  const Option referencing =
      command
          .addFlag("--referencing", settings->referencing,
                   "Instead of predictions: how often a correction is called for, as the entries are and "
                   "with offsets added")
          .group(offsets);
  command
      .add("--relations", settings->relations, "FILE",
           "With --referencing: file for the constants of the estimate, fitted to the entries")
      .needs(referencing)
      .group(offsets);
  // What would not be looked at is refused, so that nobody waits for a file that is never written.
  for (const Option option : ofAccuracy) nextShift.excludes(option);
  for (const Option option : ofAccuracy) referencing.excludes(option);
  for (const Option option : ofShifts) referencing.excludes(option);
  for (const Option option : {folds, nextShift, bootstrap}) referencing.excludes(option);
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

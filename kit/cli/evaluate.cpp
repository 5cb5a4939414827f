// The sub-command `evaluate`: how often the predictor is right, on prolines known from structures.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/evaluate_referencing.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/number_option.h"
#include "cli/reference_tables.h"
#include "cli/training_options.h"
#include "cli/whole_file.h"
#include "train/evaluation.h"
#include "train/labelled_prolines.h"
#include "train/metrics.h"
#include "train/next_shift_trial.h"
#include "train/published_tables.h"
#include "train/referencing_study.h"
#include "train/table_training.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/calls.h"

namespace zorvela {

namespace {

using Json = nlohmann::ordered_json;

// Seed of the bootstrap; any number does, but always the same one.
constexpr std::uint64_t kBootstrapSeed = 7;
// No spectrum is folded or referenced that far away (ppm).
constexpr double kLargestOffset = 1000;
const std::vector<double> kCalibrationEdges = {0, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 0.8, 0.95, 1};

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

// --- Groups ---------------------------------------------------------------------------------------

enum class Method { program, rule };

struct Group {
  std::string key;   ///< in JSON
  std::string name;  ///< in the table
  Method method = Method::program;
  std::function<bool(const Evaluated&)> holds;
};

std::vector<Group> groups() {
  const auto all = [](const Evaluated&) { return true; };
  const auto withBoth = [](const Evaluated& p) { return p.ruleApplies(); };
  const auto without = [](const Evaluated& p) { return !p.ruleApplies(); };
  const auto fair = [](const Evaluated& p) { return !p.isContradicted(); };
  const auto fairWithBoth = [](const Evaluated& p) { return p.ruleApplies() && !p.isContradicted(); };
  const auto onlyCB = [](const Evaluated& p) { return p.hasCB && !p.hasCG; };
  const auto noCB = [](const Evaluated& p) { return !p.hasCB; };
  const auto few = [](const Evaluated& p) { return p.shiftCount() <= 9; };
  const auto some = [](const Evaluated& p) { return p.shiftCount() >= 10 && p.shiftCount() <= 13; };
  const auto many = [](const Evaluated& p) { return p.shiftCount() >= 14; };
  return {{"all", "all prolines", Method::program, all},
          {"with_cb_and_cg", "with CB and CG", Method::program, withBoth},
          {"with_cb_and_cg_rule", "  CB - CG above 7.1 ppm", Method::rule, withBoth},
          {"without_cb_minus_cg", "without CB - CG", Method::program, without},
          {"not_contradicted", "label not contradicted", Method::program, fair},
          {"not_contradicted_with_cb_and_cg", "  of these, with CB and CG", Method::program, fairWithBoth},
          {"not_contradicted_with_cb_and_cg_rule", "  CB - CG above 7.1 ppm", Method::rule, fairWithBoth},
          {"cb_without_cg", "with CB, without CG", Method::program, onlyCB},
          {"without_cb", "without CB", Method::program, noCB},
          {"up_to_9_shifts", "up to 9 shifts", Method::program, few},
          {"from_10_to_13_shifts", "10 to 13 shifts", Method::program, some},
          {"from_14_shifts", "14 shifts or more", Method::program, many}};
}

std::vector<Scored> scored(const Evaluation& evaluation, const Group& group) {
  std::vector<Scored> set;
  for (const Evaluated& p : evaluation.prolines) {
    if (!group.holds(p)) continue;
    if (group.method == Method::rule)
      set.push_back({p.isCis, p.cbMinusCg, p.cbMinusCg > kRuleCisAbove, -1, p.cluster});
    else
      set.push_back(
          {p.isCis, p.pCisNorm, callOf(static_cast<float>(p.pCisNorm)) == Call::cis, p.pCisNorm, p.cluster});
  }
  return set;
}

struct GroupFigures {
  Group group;
  Figures figures;
  FigureIntervals intervals;
};

std::vector<GroupFigures> allFigures(const Evaluation& evaluation, int rounds) {
  std::vector<GroupFigures> all;
  for (const Group& group : groups()) {
    const std::vector<Scored> set = scored(evaluation, group);
    all.push_back({group, figuresOf(set), bootstrap(set, rounds, kBootstrapSeed)});
  }
  return all;
}

// --- Output ---------------------------------------------------------------------------------------

std::string figureText(const std::optional<double>& value, const std::optional<Interval>& interval) {
  if (!value) return "-";
  std::string text = fixedText(*value, 3);
  if (!interval) return text;
  return text + " [" + fixedText(interval->low, 3) + " " + fixedText(interval->high, 3) + "]";
}

void writeLine(std::ostream& out, const std::string& name, const std::string& count, const std::string& cis,
               const std::vector<std::string>& figures) {
  char buffer[256];
  std::snprintf(buffer, sizeof buffer, "%-27s %5s %4s", name.c_str(), count.c_str(), cis.c_str());
  out << buffer;
  for (std::size_t i = 0; i < figures.size(); ++i) {
    const bool isLast = i + 1 == figures.size();
    std::snprintf(buffer, sizeof buffer, isLast ? "  %s" : "  %-19s", figures[i].c_str());
    out << buffer;
  }
  out << '\n';
}

void writeTable(std::ostream& out, const Evaluation& evaluation, const std::vector<GroupFigures>& all,
                const std::string& tables) {
  out << "Tables: " << shown(tables) << '\n'
      << evaluation.labelled << " prolines labelled by structure; " << evaluation.notPredicted
      << " without prediction, " << evaluation.repeated << " in a window seen before, "
      << evaluation.notANumber.size() << " with shifts too far from both classes\n"
      << "Called cis: P_CIS_NORM at least " << numberText(kCisFrom)
      << ". In brackets: 95 % of bootstrap rounds over clusters.\n\n";
  writeLine(out, "prolines", "n", "cis",
            {"AUC", "sensitivity", "specificity", "MCC", "Brier score", "log loss"});
  for (const GroupFigures& g : all) {
    if (g.group.key == "cb_without_cg") out << '\n';
    writeLine(out, g.group.name, std::to_string(g.figures.count), std::to_string(g.figures.cis),
              {figureText(g.figures.auc, g.intervals.auc),
               figureText(g.figures.sensitivity, g.intervals.sensitivity),
               figureText(g.figures.specificity, g.intervals.specificity),
               figureText(g.figures.mcc, g.intervals.mcc), figureText(g.figures.brier, g.intervals.brier),
               figureText(g.figures.logLoss, g.intervals.logLoss)});
  }
}

Json figureJson(const std::optional<double>& value, const std::optional<Interval>& interval) {
  if (!value) return nullptr;
  Json json = {{"value", *value}};
  if (interval) {
    json["low"] = interval->low;
    json["high"] = interval->high;
  }
  return json;
}

Json groupJson(const GroupFigures& g) {
  return {{"group", g.group.key},
          {"method", g.group.method == Method::rule ? "rule" : "program"},
          {"n", g.figures.count},
          {"cis", g.figures.cis},
          {"auc", figureJson(g.figures.auc, g.intervals.auc)},
          {"sensitivity", figureJson(g.figures.sensitivity, g.intervals.sensitivity)},
          {"specificity", figureJson(g.figures.specificity, g.intervals.specificity)},
          {"mcc", figureJson(g.figures.mcc, g.intervals.mcc)},
          {"brier", figureJson(g.figures.brier, g.intervals.brier)},
          {"log_loss", figureJson(g.figures.logLoss, g.intervals.logLoss)}};
}

std::vector<Scored> allScored(const Evaluation& evaluation) {
  return scored(evaluation, groups().front());
}

Json calibrationJson(const Evaluation& evaluation) {
  Json bins = Json::array();
  for (const CalibrationBin& bin : calibration(allScored(evaluation), kCalibrationEdges))
    bins.push_back({{"from", bin.from},
                    {"below", bin.below},
                    {"n", bin.count},
                    {"cis", bin.cis},
                    {"mean_probability", bin.meanProbability},
                    {"observed_share", bin.share},
                    {"low", bin.interval.low},
                    {"high", bin.interval.high}});
  return bins;
}

void writeJson(std::ostream& out, const Evaluation& evaluation, const std::vector<GroupFigures>& all,
               const std::string& tables, int rounds) {
  Json json = {{"tables", tables},
               {"labelled", evaluation.labelled},
               {"not_predicted", evaluation.notPredicted},
               {"repeated_window", evaluation.repeated},
               {"not_a_number", evaluation.notANumber.size()},
               {"called_cis_from", kCisFrom},
               {"rule_cis_above_ppm", kRuleCisAbove},
               {"bootstrap_rounds", rounds},
               {"groups", Json::array()}};
  for (const GroupFigures& g : all) json["groups"].push_back(groupJson(g));
  json["calibration"] = calibrationJson(evaluation);
  out << json.dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
}

std::string number(double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.6g", value);
  return buffer;
}

void writePredictions(std::ostream& out, const Evaluation& evaluation, const LabelledProlines& data) {
  out << "entry,resid,window,cluster,label_structure,contradicted,shifts,cb_minus_cg,p_cis,p_cis_norm\n";
  for (const Evaluated& p : evaluation.prolines) {
    const ProlineLabel& label = data.labels.prolines[p.label];
    out << csvCell(label.entry) << ',' << label.resid << ',' << csvCell(data.windows[p.label]) << ','
        << csvCell(label.cluster) << ',' << (p.isCis ? "cis" : "trans") << ','
        << (p.isContradicted() ? "yes" : "no") << ',' << p.shiftCount() << ','
        << (p.ruleApplies() ? number(p.cbMinusCg) : "") << ',' << number(p.pCis) << ',' << number(p.pCisNorm)
        << '\n';
  }
}

void writeRoc(std::ostream& out, const Evaluation& evaluation) {
  out << "group,threshold,false_positive_rate,true_positive_rate\n";
  for (const Group& group : groups())
    for (const RocPoint& point : rocCurve(scored(evaluation, group)))
      out << group.key << ',' << number(point.threshold) << ',' << number(point.falsePositiveRate) << ','
          << number(point.truePositiveRate) << '\n';
}

void writeCalibration(std::ostream& out, const Evaluation& evaluation) {
  out << "from,below,n,cis,mean_probability,observed_share,low,high\n";
  for (const CalibrationBin& bin : calibration(allScored(evaluation), kCalibrationEdges))
    out << number(bin.from) << ',' << number(bin.below) << ',' << bin.count << ',' << bin.cis << ','
        << number(bin.meanProbability) << ',' << number(bin.share) << ',' << number(bin.interval.low) << ','
        << number(bin.interval.high) << '\n';
}

// --- What to measure next -----------------------------------------------------------------------

constexpr std::size_t kTrialSteps = 4;
constexpr int kTrialRounds = 20;
constexpr std::uint64_t kTrialSeed = 9;

void writeTrialSet(std::ostream& out, const std::string& name, const TrialFigures& figures) {
  char buffer[160];
  std::snprintf(buffer, sizeof buffer, "\n%s: %zu starts of %zu prolines\n", name.c_str(), figures.starts,
                figures.prolines);
  out << buffer
      << "          log loss (bits)                               undecided\n"
         "shifts    by gain  at random  saved [95 %]              by gain  at random\n";
  for (std::size_t i = 0; i < figures.steps.size(); ++i) {
    const TrialStep& step = figures.steps[i];
    std::snprintf(buffer, sizeof buffer, "%6zu    %7.4f  %9.4f  %6.4f [%.4f %.4f]  %8.3f  %9.3f\n", i,
                  step.byGain, step.atRandom, step.atRandom - step.byGain, step.saved.low, step.saved.high,
                  step.undecidedByGain, step.undecidedAtRandom);
    out << buffer;
  }
  std::snprintf(buffer, sizeof buffer,
                "The first shift by gain: %.4f bits expected, %.4f bits less log loss.\n", figures.promised,
                figures.kept);
  out << buffer;
}

void writeTrial(std::ostream& out, const Trial& trial, const std::string& tables) {
  out << "Tables: " << shown(tables) << "\nEach shift is hidden with a chance of one half, " << kTrialRounds
      << " times for each proline; hidden ones are then\n"
         "given back one at a time, by expected gain of information or at random.\n";
  writeTrialSet(out, "All", trial.all);
  writeTrialSet(out, "Undecided at the start", trial.undecided);
}

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

void evaluate(const EvaluateSettings& settings) {
  checkOutputs(settings);
  if (settings.referencing) return evaluateReferencing(settings);
  ZORVELA run;
  ReferenceTables published;
  std::string tables;
  if (settings.folds > 0) {
    published =
        publishedTables(besideLabels(settings.published, settings.labels), settings.choices.pseudocount);
    useTables(published, run);
    tables = "trained anew in each of " + std::to_string(settings.folds) + " folds of clusters";
  } else {
    tables = findTables(settings.tables);
    useTables(*loadTables(tables), run);
  }
  const LabelledProlines known =
      readLabelled(settings.labels, settings.entries, run, progressBar("Reading shift tables"));
  sayLeftOut(known);
  const std::optional<LabelledProlines> changed = withOffsets(known, settings);
  const LabelledProlines& data = changed ? *changed : known;
  std::map<std::size_t, TrialProline> trial;
  PredictionVisitor visit;
  if (settings.nextShift)
    visit = [&trial](std::size_t label, ZORVELA& with, const ProlinePrediction& prediction) {
      trial[label] = trialProline(with, prediction);
    };
  const Predictions predictions =
      settings.folds > 0 ? crossValidate(published, known, data, settings.folds, settings.choices,
                                         progressBar("Cross-validating"), visit)
                         : predictAll(run, data, visit);

  const Evaluation result = evaluation(data, predictions);
  if (settings.nextShift) {
    const Trial figures = tryNextShifts(scoredOnly(result, std::move(trial)), kTrialSteps, kTrialRounds,
                                        settings.rounds, kTrialSeed);
    writeWhole(settings.output, [&](std::ostream& out) { writeTrial(out, figures, tables); });
    return;
  }
  const std::vector<GroupFigures> figures = allFigures(result, settings.rounds);
  const auto writeTo = [](const std::string& path, const std::function<void(std::ostream&)>& write) {
    if (!path.empty()) writeWhole(path, write);
  };
  writeTo(settings.predictions, [&](std::ostream& out) { writePredictions(out, result, data); });
  writeTo(settings.roc, [&](std::ostream& out) { writeRoc(out, result); });
  writeTo(settings.calibration, [&](std::ostream& out) { writeCalibration(out, result); });
  writeTo(settings.output, [&](std::ostream& out) {
    if (settings.json)
      writeJson(out, result, figures, tables, settings.rounds);
    else
      writeTable(out, result, figures, tables);
  });
}

}  // namespace

void addEvaluate(CLI::App& app) {
  auto settings = std::make_shared<EvaluateSettings>();
  CLI::App* command =
      app.add_subcommand("evaluate", "Compare predictions with prolines known from structures");
  command->add_option("--entries", settings->entries, "folder of shift tables, one NAME.tab for each entry")
      ->required();
  command
      ->add_option(
          "--labels", settings->labels,
          "CSV of prolines: entry, resid, label_structure (cis, trans or empty), cluster, and label_shift "
          "(cis, trans, unclear or empty) where CB - CG says so")
      ->required();
  CLI::Option* tables = command->add_option("--tables", settings->tables,
                                            "folder of the seven tables (default: those of zorvela)");
  CLI::Option* folds =
      command
          ->add_option(
              "--cross-validate", settings->folds,
              "instead of given tables: train all tables anew without the clusters of each of N folds")
          ->check(CLI::Range(std::size_t{2}, std::size_t{1000}))
          ->excludes(tables);
  CLI::Option* nextShift =
      command->add_flag("--next-shift", settings->nextShift,
                        "instead of accuracy: does the expected gain rank first what is worth measuring?");
  CLI::Option* json =
      command->add_flag("--json", settings->json, "JSON instead of a table, with the calibration");
  command->add_option("--output", settings->output, "file for the figures (default: standard output)");
  CLI::Option* bootstrap = command->add_option("--bootstrap", settings->rounds, "rounds for the intervals")
                               ->check(CLI::Range(0, 100000))
                               ->capture_default_str();
  const std::vector<CLI::Option*> ofAccuracy = {
      json,
      command->add_option("--predictions", settings->predictions,
                          "each proline with its label and probabilities"),
      command->add_option("--roc", settings->roc, "points of the ROC curves"),
      command->add_option("--calibration", settings->calibration,
                          "predicted probability against observed share of cis")};
  for (CLI::Option* option : ofAccuracy)
    if (option != json) option->group("Files for plots and for a closer look (CSV)");
  const std::string offsets = "Wrong referencing";
  const std::vector<CLI::Option*> ofShifts = {
      command
          ->add_option("--add-13c", settings->carbonAdded, "ppm added to CA, CB, C and CG before predicting")
          ->check(numberFrom(-kLargestOffset, kLargestOffset)),
      command->add_option("--add-ha", settings->protonAdded, "ppm added to HA before predicting")
          ->check(numberFrom(-kLargestOffset, kLargestOffset)),
      command->add_flag("--rereference", settings->rereference,
                        "take away offsets that call for a correction before predicting")};
  for (CLI::Option* option : ofShifts) option->group(offsets);
  CLI::Option* referencing =
      command
          ->add_flag("--referencing", settings->referencing,
                     "instead of predictions: how often a correction is called for, as the entries are and "
                     "with offsets added")
          ->group(offsets);
  command
      ->add_option("--relations", settings->relations,
                   "with --referencing: file for the constants of the estimate, fitted to the entries")
      ->needs(referencing)
      ->group(offsets);
  // What would not be looked at is refused, so that nobody waits for a file that is never written.
  for (CLI::Option* option : ofAccuracy) nextShift->excludes(option);
  for (CLI::Option* option : ofAccuracy) referencing->excludes(option);
  for (CLI::Option* option : ofShifts) referencing->excludes(option);
  for (CLI::Option* option : {folds, nextShift, bootstrap}) referencing->excludes(option);
  std::vector<CLI::Option*> forFolds = addTrainingOptions(*command, settings->choices);
  const auto addSource = [&](const char* name, std::string& path, const char* description) {
    forFolds.push_back(command->add_option(name, path, description)
                           ->group("Published data for --cross-validate (default: beside the labels)"));
  };
  addSource("--neighbours", settings->published.neighbours, "CSV of counts (proline_neighbour_counts.csv)");
  addSource("--random-coil", settings->published.randomCoil,
            "CSV of random-coil shifts (random_coil/nielsen_mulder_2018.csv)");
  addSource("--neighbour-effects", settings->published.neighbourEffects,
            "CSV of neighbour effects (random_coil/nielsen_mulder_2018_neighbours.csv)");
  for (CLI::Option* option : forFolds) option->needs(folds);
  command->callback([settings] { evaluate(*settings); });
}

}  // namespace zorvela

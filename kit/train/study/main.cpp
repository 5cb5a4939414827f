// zorvela-study: trials behind the figures of doc/accuracy.md. For developers, not installed.
#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "train/evaluation.h"
#include "train/evaluation_groups.h"
#include "train/published_tables.h"
#include "train/study/next_shift_trial.h"
#include "train/study/referencing_study.h"
#include "train/study/study_report.h"

namespace zorvela {

namespace {

constexpr std::size_t kFolds = 10;
constexpr int kTrialRounds = 20;
constexpr int kBootstrapRounds = 2000;

LabelledProlines dataOf(const std::string& folder, const ReferenceTables& tables) {
  return readLabelled(folder + "/prolines.csv", folder + "/entries", tables);
}

/// The data, and tables that are trained anew for each fold.
struct CrossValidation {
  explicit CrossValidation(const std::string& folder)
      : published(publishedTables(besideLabels({}, folder + "/prolines.csv"), TrainingChoices().pseudocount)),
        data(dataOf(folder, published)),
        models(trainFolds(published, data, kFolds, {})) {}

  ReferenceTables published;
  LabelledProlines data;
  FoldModels models;
};

// --- The trials -----------------------------------------------------------------------------------

ReferencingStudy studyOf(const std::string& folder, const std::string& tables) {
  const Tables shipped = tablesFromFolder(tables);
  ZORVELA run;
  useTables(*shipped, run);
  return studyReferencing(run, dataOf(folder, *shipped));
}

void tryNextShift(const std::string& folder) {
  const CrossValidation trained(folder);
  std::map<std::size_t, TrialProline> byLabel;
  const Predictions predictions =
      predictAll(trained.models, trained.data,
                 [&](std::size_t label, ZORVELA& run, const ProlinePrediction& prediction) {
                   byLabel[label] = trialProline(run, prediction);
                 });
  std::vector<TrialProline> prolines;
  for (const Evaluated& proline : evaluation(trained.data, predictions).prolines) {
    prolines.push_back(byLabel.at(proline.label));
    prolines.back().isCis = proline.isCis;
    prolines.back().cluster = proline.cluster;
  }
  std::cout << "Tables: trained anew in each of " << kFolds << " folds of clusters\n";
  writeTrial(std::cout, tryNextShifts(prolines, kTrialRounds, kBootstrapRounds), kTrialRounds);
}

void tryOffsets(const std::string& folder) {
  const CrossValidation trained(folder);
  writeOffsetHeader(std::cout);
  for (const double ppm : {0.0, 1.0, 2.0, 3.0})
    for (const bool isCorrected : {false, true}) {
      LabelledProlines data = trained.data;
      for (EntryShifts& entry : data.entries) {
        addOffsets(entry, ppm, 0);
        if (isCorrected) rereference(entry);
      }
      const Evaluation result = evaluation(data, predictAll(trained.models, data));
      writeOffsetRow(std::cout, ppm, isCorrected, allFigures(result, 0));
    }
}

int run(const std::vector<std::string>& words) {
  const std::string command = words.empty() ? "" : words[0];
  if (command == "next-shift" && words.size() == 2)
    tryNextShift(words[1]);
  else if (command == "offsets" && words.size() == 2)
    tryOffsets(words[1]);
  else if (command == "referencing" && words.size() == 3)
    writeReferencing(std::cout, studyOf(words[1], words[2]));
  else if (command == "relations" && words.size() == 3)
    writeRelations(std::cout, studyOf(words[1], words[2]).fitted);
  else {
    std::cerr
        << "usage: zorvela-study next-shift DATA | offsets DATA | referencing DATA TAB | relations DATA TAB\n"
           "DATA: the folder with entries/, prolines.csv and the published data; TAB: the reference tables\n";
    return 2;
  }
  return std::cout.flush() ? 0 : 1;
}

}  // namespace

}  // namespace zorvela

int main(int argc, char** argv) {
  try {
    return zorvela::run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "zorvela-study: " << error.what() << '\n';
    return 1;
  }
}

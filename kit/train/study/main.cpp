// zorvela-study: trials behind the figures of doc/accuracy.md. For developers, not installed.
#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "predict/tables.h"
#include "train/evaluation.h"
#include "train/published_tables.h"
#include "train/study/formatted.h"
#include "train/study/referencing_study.h"
#include "train/study/sequence_study.h"

namespace zorvela {

namespace {

constexpr std::size_t kFolds = 10;

LabelledProlines dataOf(const std::string& folder, const Model& model) {
  return readLabelled(folder + "/prolines.csv", folder + "/entries", model);
}

/// The data, and tables that are trained anew for each fold.
struct CrossValidation {
  explicit CrossValidation(const std::string& folder)
      : published(modelOf(
            publishedTables(besideLabels({}, folder + "/prolines.csv"), TrainingChoices().pseudocount))),
        data(dataOf(folder, published)),
        folded(trainFolds(published, data, kFolds, {})) {}

  Model published;
  LabelledProlines data;
  FoldModels folded;
};

// --- The trials -----------------------------------------------------------------------------------

LabelledProlines dataOfTables(const std::string& folder, const std::string& tables) {
  return dataOf(folder, modelOf(*tablesFromFolder(tables)));
}

void fitAllRelations(const LabelledProlines& data) {
  std::vector<const EntryShifts*> chains;
  for (const EntryShifts& entry : data.entries) chains.push_back(&entry);
  writeRelations(std::cout, fitRelations(chains));
}

Figures figuresOf(const Evaluation& evaluation, const std::string& key) {
  for (const Group& group : groups())
    if (group.key == key) return figuresOf(scored(evaluation, group));
  return {};
}

/// What an offset of 13C costs, as a Markdown table.
void tryOffsets(const std::string& folder) {
  const CrossValidation trained(folder);
  std::cout << "| 13C offset | corrected | AUC | AUC, CB and CG | log loss | log loss, CB and CG |\n"
               "|---|---|---|---|---|---|\n";
  for (const double ppm : {0.0, 1.0, 2.0, 3.0})
    for (const bool isCorrected : {false, true}) {
      LabelledProlines data = trained.data;
      for (EntryShifts& entry : data.entries) {
        addOffsets(entry, ppm, 0);
        if (isCorrected) rereference(entry);
      }
      const Evaluation result = evaluation(data, predictAll(trained.folded, data));
      const Figures all = figuresOf(result, "all");
      const Figures withBoth = figuresOf(result, "with_cb_and_cg");
      std::cout << formatted("| %g ppm | %s | %.3f | %.3f | %.3f | %.3f |\n", ppm, isCorrected ? "yes" : "no",
                             all.auc.value(), withBoth.auc.value(), all.logLoss.value(),
                             withBoth.logLoss.value());
    }
}

void fitSequences(const std::string& folder) {
  std::vector<std::string> tables;
  for (const auto& entry : std::filesystem::directory_iterator(folder + "/entries"))
    tables.push_back(entry.path().string());
  std::sort(tables.begin(), tables.end());
  writeSequenceFits(std::cout, tables);
}

int run(const std::vector<std::string>& words) {
  const std::string command = words.empty() ? "" : words[0];
  if (command == "offsets" && words.size() == 2)
    tryOffsets(words[1]);
  else if (command == "sequence" && words.size() == 2)
    fitSequences(words[1]);
  else if (command == "referencing" && words.size() == 3)
    writeReferencing(std::cout, dataOfTables(words[1], words[2]));
  else if (command == "relations" && words.size() == 3)
    fitAllRelations(dataOfTables(words[1], words[2]));
  else {
    std::cerr
        << "usage: zorvela-study offsets DATA | sequence DATA | referencing DATA TAB | relations DATA TAB\n"
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

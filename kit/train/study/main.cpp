// zorvela-study: trials behind the figures of doc/accuracy.md. For developers, not installed.
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "predict/tables.h"
#include "train/evaluation.h"
#include "train/published_tables.h"
#include "train/study/studies.h"
#include "train/table_cells.h"
#include "zorvela/calls.h"

namespace zorvela {

namespace {

constexpr std::size_t kFolds = 10;

LabelledProlines dataOf(const std::string& folder, const Model& model) {
  return readLabelled(folder + "/prolines.csv", folder + "/entries", model);
}

// --- The trials -----------------------------------------------------------------------------------

Figures figuresOf(const Evaluation& evaluation, const std::string& key) {
  for (const Group& group : groups())
    if (group.key == key) return figuresOf(scored(evaluation, group));
  return {};
}

/// Shifts that are off, and what the file says of them.
struct Disturbance {
  const char* name;
  double carbon = 0;  ///< ppm
  double proton = 0;
  double deuteration = 0;        ///< share of deuterons
  double statedDeuteration = 0;  ///< by the file, or the user
  bool hasNoAlphaProtons = false;
};

constexpr Disturbance kDisturbances[] = {{"as they are"},
                                         {"13C 2 ppm too low", -2},
                                         {"13C 1 ppm too high", 1},
                                         {"13C 2 ppm too high", 2},
                                         {"13C 3 ppm too high", 3},
                                         {"HA 0.5 ppm too high", 0, 0.5},
                                         {"13C 2, HA 0.5 ppm too high", 2, 0.5},
                                         {"as they are, without HA", 0, 0, 0, 0, true},
                                         {"deuterated", 0, 0, 1, 1, true},
                                         {"deuterated, 13C 2 ppm too high", 2, 0, 1, 1, true},
                                         {"deuterated, not stated", 0, 0, 1, 0, true},
                                         {"the same, 13C 2 ppm too high", 2, 0, 1, 0, true},
                                         {"not deuterated, --deuterated", 0, 0, 0, 1}};

/// The data as they would be measured then.
LabelledProlines disturbed(LabelledProlines data, const Disturbance& how) {
  for (EntryShifts& entry : data.entries) {
    addOffsets(entry, how.carbon, how.proton);
    addIsotopeShifts(entry, how.deuteration);
    if (how.hasNoAlphaProtons) removeAlphaProtons(entry);
  }
  return data;
}

/// Corrects the data as `run` does, and returns the number of chains with an offset.
std::size_t correct(LabelledProlines& data, const Disturbance& how) {
  std::size_t corrected = 0;
  for (EntryShifts& entry : data.entries) {
    addIsotopeShifts(entry, -how.statedDeuteration);
    corrected += rereference(entry) ? 1 : 0;
  }
  return corrected;
}

/// Prints the cost of wrong referencing and deuteration as a Markdown table.
void tryOffsets(const std::string& folder) {
  const Model published =
      modelOf(publishedTables(besideLabels({}, folder + "/prolines.csv"), TrainingChoices().pseudocount));
  const LabelledProlines measured = dataOf(folder, published);
  const FoldModels folded = trainFolds(published, measured, kFolds, {});
  std::cout << "| shifts | used | chains re-referenced | AUC | AUC, CB and CG | log loss | log loss, CB and "
               "CG | cis "
               "called trans |\n|---|---|---|---|---|---|---|---|\n";
  for (const Disturbance& how : kDisturbances) {
    LabelledProlines data = disturbed(measured, how);
    for (const bool isCorrected : {false, true}) {
      const std::size_t chains = isCorrected ? correct(data, how) : 0;
      const Evaluation result = evaluation(data, predictAll(folded, data));
      const auto cisCalledTrans =
          std::count_if(result.prolines.begin(), result.prolines.end(), [](const Evaluated& proline) {
            return proline.isCis && proline.pCisNorm <= static_cast<double>(kTransUpTo);
          });
      const Figures all = figuresOf(result, "all");
      const Figures withBoth = figuresOf(result, "with_cb_and_cg");
      std::cout << formatted("| %s | %s | %.1f %% | %.3f | %.3f | %.3f | %.3f | %zu |\n", how.name,
                             isCorrected ? "corrected" : "as they are",
                             100.0 * static_cast<double>(chains) / static_cast<double>(data.entries.size()),
                             all[kAuc].value(), withBoth[kAuc].value(), all[kLogLoss].value(),
                             withBoth[kLogLoss].value(), static_cast<std::size_t>(cisCalledTrans));
    }
  }
}

/// Prints the relations that are fitted to all chains.
void fitAllRelations(const LabelledProlines& data) {
  std::vector<const EntryShifts*> chains;
  for (const EntryShifts& entry : data.entries) chains.push_back(&entry);
  writeRelations(std::cout, fitRelations(chains));
}

int run(const std::vector<std::string>& words) {
  const auto data = [&words] { return dataOf(words[1], modelOf(*tablesFromFolder(words[2]))); };
  const std::string command = words.empty() ? "" : words[0];
  if (command == "offsets" && words.size() == 2)
    tryOffsets(words[1]);
  else if (command == "sequence" && words.size() == 2)
    writeSequenceFits(std::cout, words[1] + "/entries");
  else if (command == "referencing" && words.size() == 3)
    writeReferencing(std::cout, data());
  else if (command == "relations" && words.size() == 3)
    fitAllRelations(data());
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

// The choices in training on the command line.
#include "cli/training_options.h"

#include <map>
#include <memory>
#include <string>

#include "cli/messages.h"
#include "cli/progress.h"

namespace zorvela {

namespace {

// Closer to the ends of the range, or to the median, hardly a shift is left to take a deviation of.
constexpr double kLeastLimitPercent = 0.001;
constexpr double kLeastTrim = 1;

}  // namespace

void addLabelledEntries(Command& command, std::string& entries, std::string& labels) {
  command.add("--entries", entries, "DIR", "Folder of shift tables, NAME.tab for each entry").required();
  command
      .add(
          "--labels", labels, "FILE",
          "CSV file of prolines: entry, resid, label_structure (cis, trans or empty), cluster; evaluate also "
          "uses label_shift (cis, trans, unclear or empty)")
      .required();
}

std::vector<Option> addPublishedData(Command& command, PublishedData& published) {
  std::vector<Option> options;
  const auto add = [&](const char* name, std::string& path, const char* text, const std::string& usual) {
    options.push_back(command.add(name, path, "FILE", text)
                          .showsDefault(usual + " beside the labels")
                          .group("Published data"));
  };
  add("--neighbours", published.neighbours,
      "CSV file of counts: resname, cis_prev, cis_next, trans_prev, trans_next",
      "proline_neighbour_counts.csv");
  add("--random-coil", published.randomCoil,
      "CSV file of random-coil shifts: res, N, HA, C, CA, CB, HN (ppm)",
      "random_coil/nielsen_mulder_2018.csv");
  add("--neighbour-effects", published.neighbourEffects,
      "CSV file of neighbour effects: neighbour, atom, nbr_at_i-1, nbr_at_i+1 (ppm)",
      "random_coil/nielsen_mulder_2018_neighbours.csv");
  return options;
}

std::vector<Option> addTrainingOptions(Command& command, TrainingChoices& choices) {
  std::vector<Option> options = {
      command
          .add("--limit-percent", choices.limitPercent, ValueKind("N", kLeastLimitPercent, 25).orZero(),
               "Clip secondary shifts below percentile N and above 100-N")
          .showsDefault(),
      command
          .add("--trim", choices.trim, ValueKind("N", kLeastTrim, 100).orZero(),
               "Leave out values further than N robust deviations from the class median; 0 leaves out none")
          .showsDefault(),
      command
          .add("--pool", choices.pooling, {"MODE", {"natural", "equal", "none"}},
               "Pool the deviations of both classes: natural (variances weighted 1 to 19), equal (1 to 1) or "
               "none")
          .showsDefault(),
      command
          .add("--widen-proline", choices.widenProline, {"N", 0.1, 100},
               "Multiply the deviations of the proline's own shifts by N")
          .showsDefault(),
      command
          .add("--widen-neighbours", choices.widenNeighbours, {"N", 0.1, 100},
               "Multiply the deviations of the neighbours' shifts by N")
          .showsDefault(),
      command
          .add("--pseudocount", choices.pseudocount, {"N", 0, 1000000}, "Add N to each count of neighbours")
          .showsDefault()};
  for (const Option option : options) option.group("Choices in training");
  return options;
}

OnStep progressBar(const std::string& what) {
  auto bar = std::make_shared<std::unique_ptr<Progress>>();
  return [what, bar](std::size_t done, std::size_t total) {
    if (done == 1) *bar = std::make_unique<Progress>(what, total);
    (*bar)->step();
    if (done == total) bar->reset();
  };
}

}  // namespace zorvela

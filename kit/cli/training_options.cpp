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

std::vector<Option> addTrainingOptions(Command& command, TrainingChoices& choices) {
  const std::map<std::string, Pooling> poolings = {
      {"natural", Pooling::natural}, {"equal", Pooling::equal}, {"none", Pooling::none}};
  std::vector<Option> options = {
      command
          .add("--limit-percent", choices.limitPercent, ValueKind("PERCENT", kLeastLimitPercent, 25).orZero(),
               "Clip secondary shifts below this percentile and above its mirror")
          .showsDefault(),
      command
          .add("--trim", choices.trim, ValueKind("N", kLeastTrim, 100).orZero(),
               "Leave out values further from the class median than this many robust deviations (0: none)")
          .showsDefault(),
      command
          .add(
              "--pool",
              [poolings, &choices](const std::string& name) { choices.pooling = poolings.at(name); },
              {"MODE", {"natural", "equal", "none"}},
              "Deviations: natural (one for both classes, variances 1 to 19), equal (1 to 1), none")
          .showsDefault("natural"),
      command
          .add("--widen-proline", choices.widenProline, {"FACTOR", 0.1, 100},
               "Factor on deviations of the proline's own shifts")
          .showsDefault(),
      command
          .add("--widen-neighbours", choices.widenNeighbours, {"FACTOR", 0.1, 100},
               "Factor on deviations of the neighbours' shifts")
          .showsDefault(),
      command
          .add("--pseudocount", choices.pseudocount, {"N", 0, 1000000}, "Added to each count of neighbours")
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

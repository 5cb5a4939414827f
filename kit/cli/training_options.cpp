// The choices in training on the command line.
#include "cli/training_options.h"

#include <map>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/number_option.h"
#include "cli/progress.h"

namespace zorvela {

namespace {

// Closer to the ends of the range, or to the median, hardly a shift is left to take a deviation of.
constexpr double kLeastLimitPercent = 0.001;
constexpr double kLeastTrim = 1;

}  // namespace

std::vector<CLI::Option*> addTrainingOptions(CLI::App& command, TrainingChoices& choices) {
  const std::map<std::string, Pooling> poolings = {
      {"natural", Pooling::natural}, {"equal", Pooling::equal}, {"none", Pooling::none}};
  std::vector<CLI::Option*> options = {
      command
          .add_option("--limit-percent", choices.limitPercent,
                      "clip secondary shifts below this percentile and above its mirror")
          ->check(numberFrom(kLeastLimitPercent, 25, true))
          ->capture_default_str(),
      command
          .add_option(
              "--trim", choices.trim,
              "leave out values further from the class median than this many robust deviations (0: none)")
          ->check(numberFrom(kLeastTrim, 100, true))
          ->capture_default_str(),
      command
          .add_option("--pool", choices.pooling,
                      "deviations: natural (one for both classes, variances 1 to 19), equal (1 to 1), none")
          ->transform(CLI::CheckedTransformer(poolings, CLI::ignore_case).description(""))
          ->type_name("MODE")
          ->default_str("natural"),
      command
          .add_option("--widen-proline", choices.widenProline,
                      "factor on deviations of the proline's own shifts")
          ->check(numberFrom(0.1, 100))
          ->capture_default_str(),
      command
          .add_option("--widen-neighbours", choices.widenNeighbours,
                      "factor on deviations of the neighbours' shifts")
          ->check(numberFrom(0.1, 100))
          ->capture_default_str(),
      command.add_option("--pseudocount", choices.pseudocount, "added to each count of neighbours")
          ->check(CLI::Range(0, 1000000))
          ->capture_default_str()};
  for (CLI::Option* option : options) option->group("Choices in training");
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

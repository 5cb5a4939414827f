#include "cli/prediction_options.h"

namespace zorvela {

void addPredictionOptions(Command& command, PredictorOptions& options) {
  command.addFlag(
      "--as-referenced", options.asReferenced,
      "Use the shifts as the file has them; without it, certain referencing offsets are corrected, and the "
      "isotope shifts of a sample that the file calls deuterated");
  addDeuterationOptions(command, options);
}

void addDeuterationOptions(Command& command, PredictorOptions& options) {
  const Option deuterated =
      command.addFlag("--deuterated", options.deuterated,
                      "Correct isotope shifts even if the file does not call the sample deuterated");
  command
      .addFlag("--protonated", options.protonated,
               "Do not correct isotope shifts even if the file calls the sample deuterated")
      .excludes(deuterated);
}

}  // namespace zorvela

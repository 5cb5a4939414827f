#include "cli/prediction_options.h"

namespace zorvela {

void addPredictionOptions(Command& command, PredictorOptions& options) {
  command.addFlag(
      "--as-referenced", options.asReferenced,
      "Use shifts as they are in the file; default: certain referencing offsets, and isotope shifts of "
      "samples that the file calls deuterated, are taken away");
  addDeuterationOptions(command, options);
}

void addDeuterationOptions(Command& command, PredictorOptions& options) {
  const Option deuterated =
      command.addFlag("--deuterated", options.deuterated,
                      "The sample is deuterated, whatever the file says: take isotope shifts away");
  command
      .addFlag("--protonated", options.protonated,
               "The sample is not deuterated, whatever the file says: take no isotope shifts away")
      .excludes(deuterated);
}

}  // namespace zorvela

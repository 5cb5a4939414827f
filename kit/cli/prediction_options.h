// The options of the sub-commands that predict.
#pragma once

#include "cli/command_line.h"
#include "zorvela/predict.h"

namespace zorvela {

/// Adds --as-referenced, and --deuterated and --protonated.
void addPredictionOptions(Command& command, PredictorOptions& options);

/// Adds --deuterated and --protonated.
void addDeuterationOptions(Command& command, PredictorOptions& options);

}  // namespace zorvela

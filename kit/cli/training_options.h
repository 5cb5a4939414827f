// Options of train and evaluate for the choices in training.
#pragma once

#include <string>
#include <vector>

#include "cli/command_line.h"
#include "train/table_training.h"

namespace zorvela {

/// Adds the options to a sub-command, and returns them. `choices` must outlive the command.
std::vector<Option> addTrainingOptions(Command& command, TrainingChoices& choices);

/// Shows how far long work of the training library is.
OnStep progressBar(const std::string& what);

}  // namespace zorvela

// Options of train and evaluate for the choices in training.
#pragma once

#include <string>
#include <vector>

#include "train/table_training.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace zorvela {

/// Adds the options to a sub-command, and returns them. `choices` must outlive the command.
std::vector<CLI::Option*> addTrainingOptions(CLI::App& command, TrainingChoices& choices);

/// A progress bar for long work of the training library.
OnStep progressBar(const std::string& what);

}  // namespace zorvela

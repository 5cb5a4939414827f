// Options of train and evaluate for the choices in training.
#pragma once

#include <string>
#include <vector>

#include "cli/command_line.h"
#include "train/published_tables.h"
#include "train/table_training.h"

namespace zorvela {

/// Names data for the examples of train and evaluate.
inline constexpr const char* kDataToTry =
    "Data to try: the folder of data/zorvela-data.tar.xz in the sources has all files that the examples name";

/// Adds --entries and --labels.
void addLabelledEntries(Command& command, std::string& entries, std::string& labels);

/// Adds --neighbours, --random-coil and --neighbour-effects, and returns them.
std::vector<Option> addPublishedData(Command& command, PublishedData& published);

/// Adds the choices in training, and returns them.
std::vector<Option> addTrainingOptions(Command& command, TrainingChoices& choices);

/// Shows how far long work of the training library is.
OnStep progressBar(const std::string& what);

}  // namespace zorvela

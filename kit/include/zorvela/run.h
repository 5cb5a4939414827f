// From a shift file to its results: read, predict, compare with structures.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/protein.h"
#include "zorvela/report.h"
#include "zorvela/structure.h"

namespace zorvela {

/// Predicts what `read` gives for a file, and compares it with the structures, if there are any. An Error of
/// the file is its error in the results; it ends nothing else.
FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    const Predictor& predictor, const std::vector<ProteinStructure>& structures = {});

/// Notes in the report which chains of its structures have no shifts, once all files are in it.
void noteChainsWithoutShifts(RunReport& report);

}  // namespace zorvela

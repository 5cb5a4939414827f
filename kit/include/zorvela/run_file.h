// Runs a shift file: read, predict, compare with structures.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/protein.h"
#include "zorvela/report.h"
#include "zorvela/structure.h"

namespace zorvela {

/// Predicts the proteins that `read` returns, and compares them with the structures, if any. An Error of the
/// file goes into its results; other files are not affected.
FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    const Predictor& predictor, const std::vector<ProteinStructure>& structures = {});

/// Adds a line to the report for each structure chain without a match. Example: "model.pdb, chain C (25
/// residues) has no shifts". Call it once all files are in the report.
void noteChainsWithoutShifts(RunReport& report);

}  // namespace zorvela

// What the reports on a file have in common.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/report.h"

namespace zorvela {

std::vector<ProteinResult> resultsOf(const std::vector<Protein>& proteins, Predictor& predictor);

/// A report on the file, made by `fill`; an exception of it is the error of the report, which then holds
/// nothing else.
FileReport filledReport(const std::string& file, const std::function<void(FileReport&)>& fill);

}  // namespace zorvela

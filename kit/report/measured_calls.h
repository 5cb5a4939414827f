// Share of right calls by the shifts behind them, from cross-validation with the shipped tables.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// Returns "in cross-validation, 32 of 32 prolines with CB and CG and P_CIS_NORM above 0.8 were cis", and how
/// many cis prolines are called cis if these are less than half. Empty without a prediction.
std::string howOftenRight(const ProlineResult& proline);

}  // namespace zorvela

// How often calls are right, by what they rest on: counted in cross-validation with the tables that come with
// the program.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// "of 32 prolines with CB and CG and P_CIS_NORM above 0.8, 32 were cis", and how many cis prolines are found
/// where that is few. Empty without a prediction.
std::string howOftenRight(const ProlineResult& proline);

}  // namespace zorvela

// How far a sample is deuterated, which a shift table keeps in a remark.
#pragma once

#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

/// Sets the share of deuterons (0 to 1) and the remark that states it; 0 removes the remark.
void setDeuteration(double share, Protein& protein);

/// Returns the share that such a remark states; 0 without one.
double deuterationFromRemarks(const std::vector<std::string>& remarks);

}  // namespace zorvela

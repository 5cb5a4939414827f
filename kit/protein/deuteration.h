// How far a sample is deuterated, which a shift table keeps in a remark.
#pragma once

#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

/// Sets the share of deuterons (0 to 1) and the remark that says so; 0 removes it.
void setDeuteration(double share, Protein& protein);

/// The share by such a remark; 0 without one.
double deuterationFromRemarks(const std::vector<std::string>& remarks);

}  // namespace zorvela

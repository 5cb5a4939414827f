// What the reports of a comparison say of one proline, in one place for all of them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/compare_report.h"

namespace zorvela {

/// A value of every site, joined by semicolons: "A;B".
std::string joined(const std::vector<BondSite>& sites, const std::string BondSite::*value);

template <class Visit>
void forEachCompared(const CompareReport& report, Visit visit) {
  for (const ComparedProtein& protein : report.proteins)
    for (const ComparedProline& proline : protein.prolines) visit(protein, proline);
}

}  // namespace zorvela

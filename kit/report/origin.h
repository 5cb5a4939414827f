// The origin of the rows and chains of a report, as short as the report allows.
#pragma once

#include <string>

#include "zorvela/report.h"

namespace zorvela {

/// The parts of an origin that a report needs.
struct Origin {
  bool withList = false;  ///< a chain comes with several shift lists
  std::string folder;     ///< of all files, with its slash; empty without one in common or with one file

  explicit Origin(const RunReport& report);
};

/// Returns "b.str, chain A, shift list 2", without the folder that all files share.
std::string chainName(const ProteinResult& protein, const Origin& origin);

}  // namespace zorvela

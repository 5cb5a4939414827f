// The seven reference tables of the program, held together.
#pragma once

#include <array>
#include <string>
#include <utility>

#include "GDB.h"
#include "zorvela/predict.h"

namespace zorvela {

struct ReferenceTables {
  GDB randomCoil;   ///< randcoil.tab
  GDB adjustments;  ///< rcadj.tab
  GDB previous;     ///< rcprev.tab
  GDB next;         ///< rcnext.tab
  GDB limits;       ///< sslimit.tab
  GDB shifts;       ///< Pro.cs.tab
  GDB sequence;     ///< Pro.seq.tab
};

/// The numbers of the tables.
Model modelOf(const ReferenceTables& tables);

/// A table with the name of its file.
using NamedTable = std::pair<const char*, GDB*>;

/// The seven tables with the names of their files, in the order of `kTableNames`.
std::array<NamedTable, 7> namedTables(ReferenceTables& tables);

}  // namespace zorvela

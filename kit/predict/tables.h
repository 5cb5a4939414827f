// The seven reference tables of the program, held together.
#pragma once

#include <array>
#include <string>
#include <utility>

#include "GDB.h"
#include "ZORVELA.h"

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

/// Gives the tables to a run object, as if it had read them from files.
void useTables(const ReferenceTables& tables, ZORVELA& run);

/// Reads a table in the program's format. What the program would write to standard error becomes the
/// text of the error.
GDB loadTable(const std::string& path, const std::string& remedy);

/// A table with the name of its file.
using NamedTable = std::pair<const char*, GDB*>;

/// The seven tables with the names of their files.
std::array<NamedTable, 7> namedTables(ReferenceTables& tables);

}  // namespace zorvela

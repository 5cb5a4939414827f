// The seven reference tables of the program, held together.
#pragma once

#include <string>  // for std::string

#include "GDB.h"
#include "ZORVELA.h"

namespace kit {

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

/// Writes the seven files into a folder, which is made if it is not there.
void writeTables(ReferenceTables& tables, const std::string& folder);

}  // namespace kit

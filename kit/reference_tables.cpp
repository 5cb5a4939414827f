// Tables into a run object and into files.
#include "reference_tables.h"

#include <array>         // for std::array
#include <filesystem>    // for std::filesystem::create_directories
#include <system_error>  // for std::error_code
#include <utility>       // for std::pair

#include "common.h"

namespace kit {

void useTables(const ReferenceTables& tables, ZORVELA& run) {
  run.rcTable = tables.randomCoil;
  run.adjTable = tables.adjustments;
  run.prevTable = tables.previous;
  run.nextTable = tables.next;
  run.limitTable = tables.limits;
  run.useProCSTable(tables.shifts);
  run.useProSeqTable(tables.sequence);
}

void writeTables(ReferenceTables& tables, const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    throw UserError(folder, 0, "cannot be made: " + error.message(), "choose another folder with --output");
  const std::array<std::pair<const char*, GDB*>, 7> files = {{{"randcoil.tab", &tables.randomCoil},
                                                              {"rcadj.tab", &tables.adjustments},
                                                              {"rcprev.tab", &tables.previous},
                                                              {"rcnext.tab", &tables.next},
                                                              {"sslimit.tab", &tables.limits},
                                                              {"Pro.cs.tab", &tables.shifts},
                                                              {"Pro.seq.tab", &tables.sequence}}};
  for (const auto& [name, table] : files)
    writeWhole(folder + "/" + name, [&table = table](std::ostream& out) { table->writeTable(out); });
}

}  // namespace kit

// Tables into a run object and into files.
#include "predict/tables.h"

#include <sys/stat.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "zorvela/error.h"

#include <system_error>

namespace zorvela {

GDB loadTable(const std::string& path, const std::string& remedy) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) throw Error(path, 0, std::generic_category().message(errno), remedy);
  if (S_ISDIR(info.st_mode)) throw Error(path, 0, "is a folder, not a table", remedy);
  try {
    GDB table;
    table.readFile(path);
    return table;
  } catch (const BadTable& e) {
    throw Error(path, e.line, GDB::simplifyWhiteSpace(e.message), remedy);
  } catch (const std::out_of_range&) {
    throw Error(path, 0, "a REMARK or DATA line has nothing behind the keyword", remedy);
  }
}

void useTables(const ReferenceTables& tables, ZORVELA& run) {
  run.rcTable = tables.randomCoil;
  run.adjTable = tables.adjustments;
  run.prevTable = tables.previous;
  run.nextTable = tables.next;
  run.limitTable = tables.limits;
  run.useProCSTable(tables.shifts);
  run.useProSeqTable(tables.sequence);
}

std::array<NamedTable, 7> namedTables(ReferenceTables& tables) {
  return {{{"randcoil.tab", &tables.randomCoil},
           {"rcadj.tab", &tables.adjustments},
           {"rcprev.tab", &tables.previous},
           {"rcnext.tab", &tables.next},
           {"sslimit.tab", &tables.limits},
           {"Pro.cs.tab", &tables.shifts},
           {"Pro.seq.tab", &tables.sequence}}};
}

}  // namespace zorvela

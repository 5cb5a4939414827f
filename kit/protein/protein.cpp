// A protein as the program's own shift table.
#include "zorvela/protein.h"

#include "GDB.h"
#include "util/text.h"

namespace zorvela {

GDB toTable(const Protein& protein) {
  GDB table;
  table.presetClass("KIVRA_SHIFT");
  for (const std::string& remark : protein.remarks) table.remarks.push_back(shown(remark, ' '));
  table.setData("SEQUENCE", protein.sequence);
  for (const char letter : protein.sequence)
    table.residNames[static_cast<int>(table.residNames.size()) + 1] = letter;
  int row = 0;
  for (const Shift& shift : protein.shifts) {
    GDB::Row& cells = table.entries[++row];
    cells["RESID"] = std::to_string(shift.resid);
    cells["RESNAME"] = protein.sequence.at(static_cast<std::size_t>(shift.resid) - 1);
    cells["ATOMNAME"] = shift.atom;
    cells["SHIFT"] = shift.shift;
  }
  return table;
}

}  // namespace zorvela

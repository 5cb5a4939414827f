// What the numbers of a reference table can be: a table in another's place has others.
#pragma once

#include <functional>
#include <string>

#include "GDB.h"

namespace zorvela {

/// Says what is wrong with a row, from 1; row 0 is the whole table.
using TableFault = std::function<void(int row, const std::string& what)>;

/// Reports each value that no shift, correction or deviation of its column can have, and what all sets of
/// values have in common where a table lacks it. `name` is that of the file as in `kTableNames`.
void checkRanges(const std::string& name, const GDB& table, const TableFault& report);

}  // namespace zorvela

// Where the program looks for its reference tables.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// The folder of the reference tables: `given` if not empty; else tab/ in ZORVELA_DIR; else, where that
/// is not set, tab/ beside the program or share/zorvela/tab of its installation; else ./tab.
std::string findTables(const std::string& given);

/// The tables in that folder. TableError with the options that name another one.
Tables loadTables(const std::string& folder);

}  // namespace zorvela

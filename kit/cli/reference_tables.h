// Where the program looks for its reference tables.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// The folder of the reference tables: `given` if not empty; else tab/ in ZORVELA_DIR; else, where that
/// is not set, share/zorvela/tab of the installation, or ./tab if the program is not installed.
std::string findTables(const std::string& given);

/// The tables in that folder. TableError with the options that name another one.
Tables loadTables(const std::string& folder);

}  // namespace zorvela

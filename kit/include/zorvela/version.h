// The version of the library and of its program.
#pragma once

namespace zorvela {

/// Returns the version: "1.1.0" is major, minor, patch.
const char* version();

}  // namespace zorvela

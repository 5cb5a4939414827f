// The version of the library and of its program.
#pragma once

namespace zorvela {

/// "1.1.0": major, minor, patch.
const char* version();

}  // namespace zorvela

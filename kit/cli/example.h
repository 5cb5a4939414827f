// The example of `demo`; the build makes its source from a file of examples/.
#pragma once

namespace zorvela {

extern const char* const kExampleName;
extern const char* const kExample;

}  // namespace zorvela

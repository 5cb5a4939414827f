// The version as the build has it.
#include "zorvela/version.h"

namespace zorvela {

const char* version() {
  return ZORVELA_VERSION;
}

}  // namespace zorvela

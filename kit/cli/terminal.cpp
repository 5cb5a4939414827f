// Terminals, as each operating system tells of them.
#include "cli/terminal.h"

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

#include <cstdlib>
#include <cstring>

namespace zorvela {

#ifdef _WIN32

bool isCapableTerminal(StandardStream stream) {
  const int number = static_cast<int>(stream);
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(number));
  DWORD mode = 0;
  return _isatty(number) != 0 && GetConsoleMode(console, &mode) != 0 &&
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

#else

bool isCapableTerminal(StandardStream stream) {
  const char* term = std::getenv("TERM");
  return isatty(static_cast<int>(stream)) != 0 && term != nullptr && std::strcmp(term, "dumb") != 0 &&
         *term != '\0';
}

#endif

}  // namespace zorvela
